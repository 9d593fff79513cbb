#include "datafiles/qvFile_Nif.h"

#include "datafiles/locale_numbers.h"
#include "datafiles/nif_format.h"
#include "files/binary_file.h"
#include "automation/code_page.h"
#include "messages/MErrors.h"

#include <algorithm>
#include <memory>
#include <string_view>

using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Text;
using automation::Variant;
using automation::view;

namespace {

constexpr std::int32_t bad_format = 1;
constexpr const wchar_t* bad_format_source = L"Nif-File";
constexpr const wchar_t* bad_format_text = L"Fehler beim einlesen. Datei entspricht nicht dem NIF-Format."; // in every language
constexpr std::size_t piece = 1 << 16;

[[noreturn]] void raise_subscript()
{
    throw Error{Runtime::SubscriptOutOfRange};
}

/// Null for an array still to be dimensioned.
SAFEARRAY* array_of(const Variant& variant) noexcept
{
    return automation::array_in(variant).value_or(nullptr);
}

/// How far an index is from the lower bound. Raises 9 for one that is not within the bounds.
std::size_t offset(const SAFEARRAYBOUND& bound, long index)
{
    const std::int64_t distance = std::int64_t{index} - bound.lLbound;
    if (distance < 0 || distance >= std::int64_t{bound.cElements})
        raise_subscript();
    return static_cast<std::size_t>(distance);
}

/// The place of a value. Raises 9 where there is none.
double& value_at(const Variant& values, long m, long n)
{
    const SAFEARRAY* const array = array_of(values);
    if (!array || array->cDims != 2)
        raise_subscript();
    // The array keeps its bounds from the last dimension to the first.
    const SAFEARRAYBOUND *rows = &array->rgsabound[1], *columns = &array->rgsabound[0];
    return static_cast<double*>(array->pvData)[offset(*rows, m) + offset(*columns, n) * rows->cElements];
}

std::size_t distance_of_columns(const Variant& values)
{
    return array_of(values)->rgsabound[1].cElements;
}

/// The place of a name. Raises 9 where there is none.
BSTR& name_at(const Variant& names, long m)
{
    const SAFEARRAY* const array = array_of(names);
    if (!array || array->cDims != 1)
        raise_subscript();
    return static_cast<BSTR*>(array->pvData)[offset(array->rgsabound[0], m)];
}

void replace(BSTR& name, std::wstring_view text)
{
    const Text former = Text::adopt(std::exchange(name, Text{text}.release()));
}

std::int32_t to_long(std::string_view text)
{
    return automation::converted(Variant{std::wstring_view{automation::decode(text)}}, VT_I4).lVal;
}

std::string encoded(std::wstring_view text)
{
    std::string bytes;
    automation::append_encoded(bytes, text);
    return bytes;
}

std::string text_of(const nif::LocaleNumbers& numbers, double number)
{
    std::string bytes;
    numbers.append(bytes, number);
    return bytes;
}

struct Range {
    double highest, lowest;
};

/// What comparing one value after the other with the one that is best so far gives. What is no number (NaN) is neither more
/// nor less than any other.
Range range_of(const Variant& values)
{
    const LockedArray<const double> all{array_of(values)};
    if (all.size() == 0)
        raise_subscript();
    Range range{all[0], all[0]};
    for (const double value : all) {
        if (value > range.highest)
            range.highest = value;
        if (value < range.lowest)
            range.lowest = value;
    }
    return range;
}

} // namespace

void qvFile_Nif::choose_file(BSTR* sFile)
{
    const std::wstring_view given = sFile ? view(*sFile) : std::wstring_view{};
    if (!given.empty())
        file_name_ = given;
    else if (sFile)
        replace(*sFile, file_name_);
}

void qvFile_Nif::SetSize(long m, long n)
{
    nif::require_possible(m, n);
    SAFEARRAYBOUND bounds[]{{static_cast<ULONG>(m), 1}, {static_cast<ULONG>(n), 1}};
    Variant values = automation::new_array(VT_R8, bounds);
    names_ = automation::new_array(VT_BSTR, std::span{bounds}.first(1));
    values_ = std::move(values);
    m_ = m;
    n_ = n;
}

void qvFile_Nif::load()
{
    files::Input file{file_name_};
    try {
        const auto bytes = std::make_unique_for_overwrite<char[]>(piece);
        const auto next_piece = [&] { return std::string_view{bytes.get(), file.read(bytes.get(), piece)}; };
        nif::Reader reader{file.size(), next_piece, to_long};
        read(reader);
    } catch (...) {
        throw Error{MErrors::ToObjectError(bad_format), bad_format_text, bad_format_source};
    }
}

/// Keeps what is read, whatever comes after it.
void qvFile_Nif::read(nif::Reader& reader)
{
    reader.read_sizes(m_, n_);
    description_ = automation::decode(reader.read_description());
    reader.skip_to_objects();
    if (!reader.can_hold(m_, n_)) {
        values_ = Variant{}; // the table before is gone in any case
        names_ = Variant{};
        raise_subscript();
    }
    SetSize(m_, n_);
    for (std::int32_t i = 1; i <= m_; ++i) {
        replace(name_at(names_, i), automation::decode(reader.read_name()));
        reader.read_values(n_, &value_at(values_, i, 1), distance_of_columns(values_));
    }
}

/// Raises 9 unless there are a name and values for each object.
void qvFile_Nif::require_arrays() const
{
    for (const std::int32_t i : {1, m_}) {
        name_at(names_, i);
        value_at(values_, i, 1);
        value_at(values_, i, n_);
    }
}

void qvFile_Nif::save() const
{
    files::Output file{file_name_};
    require_arrays();
    const nif::LocaleNumbers numbers;
    const auto [highest, lowest] = range_of(values_);
    std::string text = nif::header_lines(m_, n_, text_of(numbers, highest), text_of(numbers, lowest), encoded(description_));
    for (std::int32_t i = 1; i <= m_; ++i) {
        automation::append_encoded(text, view(name_at(names_, i)));
        text += nif::line_end;
        const double* value = &value_at(values_, i, 1);
        const std::size_t distance = distance_of_columns(values_);
        for (std::int32_t j = 1; j <= n_; ++j, value += distance) {
            numbers.append(text, *value);
            text += nif::line_end;
            if (text.size() < piece)
                continue;
            file.write(text);
            text.clear();
        }
    }
    file.write(text);
    file.commit();
}

bool qvFile_Nif::Load(BSTR* sFile)
{
    choose_file(sFile);
    const bool found = files::is_normal_file(file_name_);
    if (found)
        load();
    return found;
}

bool qvFile_Nif::Save(BSTR* sFile)
{
    choose_file(sFile);
    const bool named = !file_name_.empty();
    if (named)
        save();
    return named;
}

double qvFile_Nif::get_Value(long m, long n) const
{
    return value_at(values_, m, n);
}

void qvFile_Nif::put_Value(long m, long n, double value)
{
    value_at(values_, m, n) = value;
}

std::wstring_view qvFile_Nif::get_Name(long m) const
{
    return view(name_at(names_, m));
}

void qvFile_Nif::put_Name(long m, std::wstring_view value)
{
    replace(name_at(names_, m), value);
}

void qvFile_Nif::GetValues(SAFEARRAY*& d) const
{
    automation::assign(d, automation::array_of_type(array_of(values_), VT_R8));
}

void qvFile_Nif::GetNames(SAFEARRAY*& sNames) const
{
    automation::assign(sNames, automation::array_of_type(array_of(names_), VT_BSTR));
}
