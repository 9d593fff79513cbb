#include "datafiles/qvFile_qvb.h"

#include "datafiles/element_conversion.h"
#include "frame/MErrors.h"
#include "text/message_template.h"

#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>

using automation::answer;
using automation::Error;
using automation::LockedArray;
using automation::make;
using automation::Ref;
using automation::Runtime;
using automation::Variant;
using automation::view;

namespace {

constexpr std::int32_t version = 1;
constexpr long default_output_type = VT_R8;
constexpr std::int32_t not_an_array = 105, unknown_type = 106, unknown_output_type = 107;

/// The type of element in the file for a type of the platform; none for a type that no file holds.
std::optional<qvb::Element> element_of(long type) noexcept
{
    switch (type) {
    case VT_UI1:
        return qvb::Element::Byte;
    case VT_I2:
        return qvb::Element::Int;
    case VT_I4:
        return qvb::Element::Lng;
    case VT_R4:
        return qvb::Element::Sng;
    case VT_R8:
        return qvb::Element::Dbl;
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

std::size_t width_of(VARTYPE type) noexcept
{
    return type == VT_UI1 ? 1 : type == VT_I2 ? 2 : type == VT_R8 ? 8 : 4;
}

[[noreturn]] void raise(std::int32_t number, std::initializer_list<std::int32_t> messages)
{
    std::wstring description;
    for (const std::int32_t id : messages)
        description += text::expand(MErrors::LangStr(id));
    throw Error{MErrors::ToObjectError(number), description};
}

std::int32_t count_of(const SAFEARRAYBOUND& bound)
{
    if (bound.cElements > static_cast<ULONG>(std::numeric_limits<std::int32_t>::max()))
        throw Error{Runtime::Overflow};
    return static_cast<std::int32_t>(bound.cElements);
}

/// Raises 9 for an array that has not two dimensions.
void fit(qvb::MatrixHeader& header, const SAFEARRAY* array)
{
    if (!array || array->cDims != 2)
        throw Error{Runtime::SubscriptOutOfRange};
    // The array keeps its bounds from the last dimension to the first.
    qvb::fit(header, count_of(array->rgsabound[1]), count_of(array->rgsabound[0]));
}

void write_elements(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    if (array->cbElements != width_of(type))
        throw Error{Runtime::TypeMismatch};
    const LockedArray<const char> elements{array};
    file.write({elements.begin(), elements.size() * width_of(type)});
}

enum class Outcome { Converted, Overflow, NotPlain };

/// Converts a number; anything that the platform should be asked for is not plain.
template <class Element>
Outcome convert_plain(const VARIANT& value, Element& element) noexcept
{
    bool fits = false;
    switch (value.vt) {
    case VT_R8:
        fits = qvb::convert(value.dblVal, element);
        break;
    case VT_I4:
        fits = qvb::convert(static_cast<std::int32_t>(value.lVal), element);
        break;
    case VT_I2:
        fits = qvb::convert(std::int32_t{value.iVal}, element);
        break;
    case VT_R4:
        if (!std::isfinite(value.fltVal))
            return Outcome::NotPlain;
        fits = qvb::convert(double{value.fltVal}, element);
        break;
    case VT_UI1:
        fits = qvb::convert(std::int32_t{value.bVal}, element);
        break;
    case VT_EMPTY:
        fits = qvb::convert(0, element);
        break;
    default:
        return Outcome::NotPlain;
    }
    return fits ? Outcome::Converted : Outcome::Overflow;
}

template <class Element>
void convert(const VARIANT& value, Element& element, VARTYPE type)
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
template <class Element>
bool convert_all_plain(const LockedArray<const VARIANT>& values, Element* elements) noexcept
{
    for (std::size_t i = 0; i < values.size(); ++i)
        if (convert_plain(values[i], elements[i]) != Outcome::Converted)
            return false;
    return true;
}

template <class Element>
void write_converted(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    const LockedArray<const VARIANT> values{array};
    const auto elements = std::make_unique_for_overwrite<Element[]>(values.size());
    // Anything but plain numbers is converted row by row: an error then is that of the first row, and objects are asked in order.
    if (!convert_all_plain(values, elements.get())) {
        const std::size_t rows = array->rgsabound[1].cElements;
        for (std::size_t row = 0; row < rows; ++row)
            for (std::size_t i = row; i < values.size(); i += rows)
                convert(values[i], elements[i], type);
    }
    file.write({reinterpret_cast<const char*>(elements.get()), values.size() * sizeof(Element)});
}

void write_variants(DataFile& file, SAFEARRAY* array, long output_type)
{
    switch (output_type) {
    case VT_UI1:
        return write_converted<std::uint8_t>(file, array, VT_UI1);
    case VT_I2:
        return write_converted<std::int16_t>(file, array, VT_I2);
    case VT_I4:
        return write_converted<std::int32_t>(file, array, VT_I4);
    case VT_R4:
        return write_converted<float>(file, array, VT_R4);
    case VT_R8:
        return write_converted<double>(file, array, VT_R8);
    default:
        raise(unknown_output_type, {10013});
    }
}

void require_replaceable(SAFEARRAY* const* array)
{
    if (!array)
        throw Error{Runtime::InvalidCall};
    if (*array && ((*array)->cLocks > 0 || ((*array)->fFeatures & (FADF_STATIC | FADF_FIXEDSIZE))))
        throw Error{Runtime::ArrayLocked};
}

bool has_shape(const SAFEARRAY* array, VARTYPE type, const std::array<SAFEARRAYBOUND, 2>& bounds) noexcept
{
    const auto same = [](const SAFEARRAYBOUND& one, const SAFEARRAYBOUND& other) {
        return one.lLbound == other.lLbound && one.cElements == other.cElements;
    };
    return array && array->cDims == bounds.size() && array->cbElements == width_of(type) && same(array->rgsabound[1], bounds[0])
        && same(array->rgsabound[0], bounds[1]);
}

void read_elements(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    const LockedArray<char> elements{array};
    file.read(elements.begin(), elements.size() * width_of(type));
}

/// What a client gives as a part; null for nothing. Raises 13 for an object that is not this library's.
template <class Part, class Interface>
Ref<Part> part(Interface* value)
{
    Ref<Part> given = automation::own<Part>(value);
    if (value && !given)
        throw Error{Runtime::TypeMismatch};
    return given;
}

/// Writes a new file in place of the one before. An error in what is to be written keeps what was written until then; where
/// memory runs out or the file can't be written, the one before comes back.
template <class Content>
void write_new(const std::wstring& path, const Content& content)
{
    DataFile file{path, DataFile::Opening::Replacing};
    try {
        content(file);
    } catch (const Error& error) {
        if (error.number() != static_cast<std::int32_t>(Runtime::OutOfMemory))
            file.keep();
        throw;
    }
    file.keep();
}

/// For the members that never raise.
template <class Rule>
HRESULT attempt(Rule&& rule) noexcept
{
    try {
        rule();
    } catch (...) {
    }
    return S_OK;
}

} // namespace

Ref<CFileInfoHeader> qvFile_qvb::new_information()
{
    return make<CFileInfoHeader>(version, qvb::ID_QVB);
}

qvFile_qvb::Parts qvFile_qvb::parts()
{
    if (!information_)
        information_ = new_information();
    if (!matrix_)
        matrix_ = make<CFileQVBHeader>();
    if (!names_)
        names_ = make<CFile_sNames>();
    return {information_, matrix_, names_};
}

void qvFile_qvb::Parts::load_headers(DataFile& file) const
{
    information->load(file);
    matrix->load(file);
}

void qvFile_qvb::Parts::load_names(DataFile& file) const
{
    if (matrix->fields().object_names)
        names->load(file);
}

qvFile_qvb::Bounds qvFile_qvb::bounds_of_data(const DataFile& file, const Parts& parts, VARTYPE type) const
{
    const auto [rows, columns] = qvb::size_of_data(file, parts.matrix->fields(), width_of(type), lower1_, lower2_);
    return {{{static_cast<ULONG>(rows), lower1_}, {static_cast<ULONG>(columns), lower2_}}};
}

/// Reads what is behind the headers as an array of this type.
Variant qvFile_qvb::read_matrix(DataFile& file, const Parts& parts, VARTYPE type) const
{
    Variant matrix = automation::new_array(type, bounds_of_data(file, parts, type));
    read_elements(file, matrix.parray, type);
    return matrix;
}

void qvFile_qvb::read(VARIANT& target)
{
    const Parts parts = this->parts();
    DataFile file{file_};
    parts.load_headers(file);
    if (const auto type = type_of(parts.matrix->fields().element)) {
        Variant matrix = read_matrix(file, parts, *type);
        parts.load_names(file);
        automation::assign(target, std::move(matrix));
    }
}

/// The array is the caller's as soon as it is read, whatever becomes of the names.
void qvFile_qvb::read(SAFEARRAY** target, VARTYPE type)
{
    const Parts parts = this->parts();
    DataFile file{file_};
    parts.load_headers(file);
    require_replaceable(target);
    if (has_shape(*target, type, bounds_of_data(file, parts, type)))
        read_elements(file, *target, type); // saves making a new one, which takes longer than reading
    else
        automation::assign(target, read_matrix(file, parts, type));
    parts.load_names(file);
}

void qvFile_qvb::write(const VARIANT& value, long output_type)
{
    write_new(file_, [&](DataFile& file) { write(file, value, output_type); });
}

void qvFile_qvb::write(DataFile& file, const VARIANT& value, long output_type)
{
    const Parts parts = this->parts();
    parts.information->save(file);

    const auto array = automation::array_in(value);
    if (!array) {
        parts.matrix->save(file);
        raise(not_an_array, {10014});
    }
    const VARTYPE type = automation::element_type(value);
    qvb::MatrixHeader& header = parts.matrix->fields();
    fit(header, *array);
    const bool of_variants = type == VT_VARIANT;
    const auto element = element_of(of_variants ? output_type : type);
    if (element || of_variants)
        header.element = static_cast<std::int32_t>(element.value_or(qvb::Element::Byte));
    const bool with_names = header.object_names; // a client's object may change the header while it is converted
    parts.matrix->save(file);
    if (of_variants)
        write_variants(file, *array, output_type);
    else if (element)
        write_elements(file, *array, type);
    else
        raise(unknown_type, {10013, 10015});
    if (with_names)
        parts.names->save(file);
}

void qvFile_qvb::write(SAFEARRAY** array, VARTYPE type)
{
    write_new(file_, [&](DataFile& file) { write(file, array ? *array : nullptr, type); });
}

void qvFile_qvb::write(DataFile& file, SAFEARRAY* array, VARTYPE type)
{
    const Parts parts = this->parts();
    qvb::MatrixHeader& header = parts.matrix->fields();
    fit(header, array);
    header.element = static_cast<std::int32_t>(*element_of(type));
    parts.information->save(file);
    parts.matrix->save(file);
    write_elements(file, array, type);
    if (header.object_names)
        parts.names->save(file);
}

HRESULT qvFile_qvb::get_FileInfoHeader(_CFileInfoHeader** result) noexcept
{
    return answer(result, [&] { return parts().information; });
}

HRESULT qvFile_qvb::putref_FileInfoHeader(_CFileInfoHeader* value) noexcept
{
    return answer([&] { information_ = part<CFileInfoHeader>(value); });
}

HRESULT qvFile_qvb::get_FileQVBHeader(_CFileQVBHeader** result) noexcept
{
    return answer(result, [&] { return parts().matrix; });
}

HRESULT qvFile_qvb::putref_FileQVBHeader(_CFileQVBHeader* value) noexcept
{
    return answer([&] { matrix_ = part<CFileQVBHeader>(value); });
}

HRESULT qvFile_qvb::ReadHeader(VARIANT) noexcept
{
    return answer([&] {
        const Parts parts = this->parts();
        DataFile file{file_};
        parts.load_headers(file);
    });
}

HRESULT qvFile_qvb::ReadFile(VARIANT* V) noexcept
{
    return V ? answer([&] { read(*V); }) : E_POINTER;
}

HRESULT qvFile_qvb::ReadFile_Byte(SAFEARRAY** b) noexcept
{
    return answer([&] { read(b, VT_UI1); });
}

HRESULT qvFile_qvb::ReadFile_Int(SAFEARRAY** i) noexcept
{
    return answer([&] { read(i, VT_I2); });
}

HRESULT qvFile_qvb::ReadFile_Lng(SAFEARRAY** l) noexcept
{
    return answer([&] { read(l, VT_I4); });
}

HRESULT qvFile_qvb::ReadFile_Sng(SAFEARRAY** g) noexcept
{
    return answer([&] { read(g, VT_R4); });
}

HRESULT qvFile_qvb::ReadFile_Dbl(SAFEARRAY** d) noexcept
{
    return answer([&] { read(d, VT_R8); });
}

HRESULT qvFile_qvb::WriteFile(VARIANT V, long* OutputDataType) noexcept
{
    return answer([&] { write(V, OutputDataType ? *OutputDataType : default_output_type); });
}

HRESULT qvFile_qvb::WriteFile_Byte(SAFEARRAY** b) noexcept
{
    return answer([&] { write(b, VT_UI1); });
}

HRESULT qvFile_qvb::WriteFile_Int(SAFEARRAY** i) noexcept
{
    return answer([&] { write(i, VT_I2); });
}

HRESULT qvFile_qvb::WriteFile_Lng(SAFEARRAY** l) noexcept
{
    return answer([&] { write(l, VT_I4); });
}

HRESULT qvFile_qvb::WriteFile_Sng(SAFEARRAY** g) noexcept
{
    return answer([&] { write(g, VT_R4); });
}

HRESULT qvFile_qvb::WriteFile_Dbl(SAFEARRAY** d) noexcept
{
    return answer([&] { write(d, VT_R8); });
}

HRESULT qvFile_qvb::get_File(BSTR* result) noexcept
{
    return answer(result, [&] { return std::wstring_view{file_}; });
}

HRESULT qvFile_qvb::put_File(BSTR value) noexcept
{
    return answer([&] { file_ = view(value); });
}

HRESULT qvFile_qvb::get_ObjNames(SAFEARRAY** result) noexcept
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    return attempt([&] {
        if (names_)
            *result = names_->texts().release().parray;
    });
}

HRESULT qvFile_qvb::put_ObjNames(SAFEARRAY** value) noexcept
{
    return attempt([&] {
        const Parts parts = this->parts();
        parts.matrix->fields().object_names = true;
        parts.names->set_names(automation::array_of_type(value ? *value : nullptr, VT_BSTR));
    });
}

HRESULT qvFile_qvb::get_LBound1(long* result) noexcept
{
    return answer(result, [&] { return lower1_; });
}

HRESULT qvFile_qvb::put_LBound1(long value) noexcept
{
    return answer([&] { lower1_ = value; });
}

HRESULT qvFile_qvb::get_LBound2(long* result) noexcept
{
    return answer(result, [&] { return lower2_; });
}

HRESULT qvFile_qvb::put_LBound2(long value) noexcept
{
    return answer([&] { lower2_ = value; });
}

HRESULT qvFile_qvb::put_LBoundAll(long value) noexcept
{
    return answer([&] { lower1_ = lower2_ = value; });
}
