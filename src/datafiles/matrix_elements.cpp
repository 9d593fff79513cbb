#include "datafiles/matrix_elements.h"

#include "datafiles/element_conversion.h"

#include <cstring>
#include <limits>
#include <memory>

namespace qvb {

using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Variant;

namespace {

std::int32_t count_of(const SAFEARRAYBOUND& bound)
{
    if (bound.cElements > static_cast<ULONG>(std::numeric_limits<std::int32_t>::max()))
        throw Error{Runtime::Overflow};
    return static_cast<std::int32_t>(bound.cElements);
}

enum class Outcome { Converted, Overflow, NotPlain };

/// Converts a number; anything that the platform should be asked for is not plain.
template <class Number>
Outcome convert_plain(const VARIANT& value, Number& element) noexcept
{
    bool fits = false;
    switch (value.vt) {
    case VT_R8:
        fits = convert(value.dblVal, element);
        break;
    case VT_I4:
        fits = convert(static_cast<std::int32_t>(value.lVal), element);
        break;
    case VT_I2:
        fits = convert(std::int32_t{value.iVal}, element);
        break;
    case VT_R4:
        if (!std::isfinite(value.fltVal))
            return Outcome::NotPlain;
        fits = convert(double{value.fltVal}, element);
        break;
    case VT_UI1:
        fits = convert(std::int32_t{value.bVal}, element);
        break;
    case VT_EMPTY:
        fits = convert(0, element);
        break;
    default:
        return Outcome::NotPlain;
    }
    return fits ? Outcome::Converted : Outcome::Overflow;
}

template <class Number>
void convert(const VARIANT& value, Number& element, VARTYPE type)
{
    const Outcome outcome = convert_plain(value, element);
    if (outcome == Outcome::Overflow)
        throw Error{Runtime::Overflow};
    if (outcome == Outcome::Converted)
        return;
    const Variant converted = automation::converted(value, type);
    std::memcpy(&element, &converted.lVal, sizeof element);
}

/// Converts plain numbers that fit; false where it meets anything else.
template <class Number>
bool convert_all_plain(const LockedArray<const VARIANT>& values, Number* elements) noexcept
{
    for (std::size_t i = 0; i < values.size(); ++i)
        if (convert_plain(values[i], elements[i]) != Outcome::Converted)
            return false;
    return true;
}

template <class Number>
void write_as(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    const LockedArray<const VARIANT> values{array};
    const auto elements = std::make_unique_for_overwrite<Number[]>(values.size());
    // Anything but plain numbers is converted row by row: an error then is that of the first row, and objects are asked in order.
    if (!convert_all_plain(values, elements.get())) {
        const std::size_t rows = array->rgsabound[1].cElements;
        for (std::size_t row = 0; row < rows; ++row)
            for (std::size_t i = row; i < values.size(); i += rows)
                convert(values[i], elements[i], type);
    }
    file.write({reinterpret_cast<const char*>(elements.get()), values.size() * sizeof(Number)});
}

bool has_shape(const SAFEARRAY* array, VARTYPE type, const Bounds& bounds) noexcept
{
    const auto same = [](const SAFEARRAYBOUND& one, const SAFEARRAYBOUND& other) {
        return one.lLbound == other.lLbound && one.cElements == other.cElements;
    };
    return array && array->cDims == bounds.size() && array->cbElements == automation::size_of_value(type) && same(array->rgsabound[1], bounds[0])
        && same(array->rgsabound[0], bounds[1]);
}

void read_elements(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    const LockedArray<char> elements{array};
    file.read(elements.begin(), elements.size() * automation::size_of_value(type));
}

} // namespace

std::optional<Element> element_of(long type) noexcept
{
    switch (type) {
    case VT_UI1:
        return Element::Byte;
    case VT_I2:
        return Element::Int;
    case VT_I4:
        return Element::Lng;
    case VT_R4:
        return Element::Sng;
    case VT_R8:
        return Element::Dbl;
    default:
        return std::nullopt;
    }
}

std::optional<VARTYPE> type_of(std::int32_t element) noexcept
{
    constexpr VARTYPE types[]{VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8};
    if (element < 0 || element >= static_cast<std::int32_t>(std::size(types)))
        return std::nullopt;
    return types[element];
}

Bounds bounds_of_data(const Source& source, const MatrixHeader& header, VARTYPE type, long lower1, long lower2)
{
    const auto [rows, columns] = size_of_data(source, header, automation::size_of_value(type), lower1, lower2);
    return {{{static_cast<ULONG>(rows), lower1}, {static_cast<ULONG>(columns), lower2}}};
}

void fit(MatrixHeader& header, const SAFEARRAY* array)
{
    if (!array || array->cDims != 2)
        throw Error{Runtime::SubscriptOutOfRange};
    // The array keeps its bounds from the last dimension to the first.
    fit(header, count_of(array->rgsabound[1]), count_of(array->rgsabound[0]));
}

Variant read_matrix(DataFile& file, VARTYPE type, const Bounds& bounds)
{
    Variant matrix = automation::new_array(type, bounds);
    read_elements(file, matrix.parray, type);
    return matrix;
}

void read_matrix(DataFile& file, VARTYPE type, const Bounds& bounds, SAFEARRAY*& array)
{
    if (has_shape(array, type, bounds))
        read_elements(file, array, type); // saves making a new one, which takes longer than reading
    else
        automation::assign(array, read_matrix(file, type, bounds));
}

void write_matrix(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    if (array->cbElements != automation::size_of_value(type))
        throw Error{Runtime::TypeMismatch};
    const LockedArray<const char> elements{array};
    file.write({elements.begin(), elements.size() * automation::size_of_value(type)});
}

void write_converted(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    switch (type) {
    case VT_UI1:
        return write_as<std::uint8_t>(file, array, type);
    case VT_I2:
        return write_as<std::int16_t>(file, array, type);
    case VT_I4:
        return write_as<std::int32_t>(file, array, type);
    case VT_R4:
        return write_as<float>(file, array, type);
    default:
        return write_as<double>(file, array, type);
    }
}

} // namespace qvb
