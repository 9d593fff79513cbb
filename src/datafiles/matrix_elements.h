#pragma once

#include "automation/safe_array.h"
#include "datafiles/data_file.h"
#include "datafiles/qvb_format.h"

#include <array>
#include <optional>

/// The elements of a matrix in arrays of the platform and in files.
namespace qvb {

/// The type of element in the file for a type of the platform; none for a type that no file holds.
std::optional<Element> element_of(long type) noexcept;
/// The type of the platform for the number of an element's type in a file.
std::optional<VARTYPE> type_of(std::int32_t element) noexcept;

/// Rows and columns.
using Bounds = std::array<SAFEARRAYBOUND, 2>;

/// The bounds of the matrix behind the headers, whose indices begin at these. Raises what size_of_data raises.
Bounds bounds_of_data(const Source& source, const MatrixHeader& header, VARTYPE type, long lower1, long lower2);

/// Makes the header that of an array's elements. Raises 9 for an array that has not two dimensions.
void fit(MatrixHeader& header, const SAFEARRAY* array);

/// Reads elements into a new array.
automation::Variant read_matrix(DataFile& file, VARTYPE type, const Bounds& bounds);
/// Reads them into a client's array that can be replaced: it is where its shape is another.
void read_matrix(DataFile& file, VARTYPE type, const Bounds& bounds, SAFEARRAY*& array);

/// Writes an array whose elements have a type of the file. Raises 13 where they have another size.
void write_matrix(DataFile& file, SAFEARRAY* array, VARTYPE type);
/// Writes an array of variants as elements of a type of the file. Raises what a conversion fails with.
void write_converted(DataFile& file, SAFEARRAY* array, VARTYPE type);

} // namespace qvb
