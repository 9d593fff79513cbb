#include "datafiles/qvFile_qvb.h"

#include "messages/MErrors.h"
#include "text/message_template.h"

using automation::Error;
using automation::make;
using automation::Ref;
using automation::Runtime;
using automation::Variant;

namespace {

constexpr std::int32_t version = 1;
constexpr long default_output_type = VT_R8;
constexpr std::int32_t not_an_array = 105, unknown_type = 106, unknown_output_type = 107;

[[noreturn]] void raise(std::int32_t number, std::initializer_list<std::int32_t> messages)
{
    std::wstring description;
    for (const std::int32_t id : messages)
        description += text::expand(MErrors::LangStr(id));
    throw Error{MErrors::ToObjectError(number), description};
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

} // namespace

Ref<CFileInfoHeader> qvFile_qvb::new_information()
{
    return make<CFileInfoHeader>(version, qvb::ID_QVB);
}

void qvFile_qvb::putref_FileInfoHeader(_CFileInfoHeader* value)
{
    information_ = part<CFileInfoHeader>(value);
}

void qvFile_qvb::putref_FileQVBHeader(_CFileQVBHeader* value)
{
    matrix_ = part<CFileQVBHeader>(value);
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

qvb::Bounds qvFile_qvb::bounds_of_data(const DataFile& file, const Parts& parts, VARTYPE type) const
{
    return qvb::bounds_of_data(file, parts.matrix->fields(), type, lower1_, lower2_);
}

void qvFile_qvb::ReadHeader(const VARIANT&)
{
    const Parts parts = this->parts();
    DataFile file{file_};
    parts.load_headers(file);
}

void qvFile_qvb::ReadFile(VARIANT* V)
{
    automation::check(V ? S_OK : E_POINTER);
    const Parts parts = this->parts();
    DataFile file{file_};
    parts.load_headers(file);
    if (const auto type = qvb::type_of(parts.matrix->fields().element)) {
        Variant matrix = qvb::read_matrix(file, *type, bounds_of_data(file, parts, *type));
        parts.load_names(file);
        automation::assign(*V, std::move(matrix));
    }
}

/// The array is the caller's as soon as it is read, whatever becomes of the names.
void qvFile_qvb::read(SAFEARRAY** target, VARTYPE type)
{
    const Parts parts = this->parts();
    DataFile file{file_};
    parts.load_headers(file);
    SAFEARRAY*& array = automation::referred(target);
    automation::require_replaceable(array);
    qvb::read_matrix(file, type, bounds_of_data(file, parts, type), array);
    parts.load_names(file);
}

void qvFile_qvb::WriteFile(const VARIANT& V, const long* OutputDataType)
{
    const long output_type = OutputDataType ? *OutputDataType : default_output_type;
    write_new(file_, [&](DataFile& file) { write(file, V, output_type); });
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
    qvb::fit(header, *array);
    const bool of_variants = type == VT_VARIANT;
    const auto element = qvb::element_of(of_variants ? output_type : type);
    if (element || of_variants)
        header.element = static_cast<std::int32_t>(element.value_or(qvb::Element::Byte));
    const bool with_names = header.object_names; // a client's object may change the header while it is converted
    parts.matrix->save(file);
    if (!element && of_variants)
        raise(unknown_output_type, {10013});
    if (!element)
        raise(unknown_type, {10013, 10015});
    if (of_variants)
        qvb::write_converted(file, *array, static_cast<VARTYPE>(output_type));
    else
        qvb::write_matrix(file, *array, type);
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
    qvb::fit(header, array);
    header.element = static_cast<std::int32_t>(*qvb::element_of(type));
    parts.information->save(file);
    parts.matrix->save(file);
    qvb::write_matrix(file, array, type);
    if (header.object_names)
        parts.names->save(file);
}

Variant qvFile_qvb::get_ObjNames() const noexcept
{
    try {
        return names_ ? names_->texts() : Variant{};
    } catch (...) {
        return {};
    }
}

void qvFile_qvb::put_ObjNames(SAFEARRAY** value) noexcept
{
    try {
        const Parts parts = this->parts();
        parts.matrix->fields().object_names = true;
        parts.names->set_names(automation::array_of_type(value ? *value : nullptr, VT_BSTR));
    } catch (...) { // sets as much as it can
    }
}
