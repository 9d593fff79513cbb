#include "text/qvCommon_conversions.h"

#include "automation/code_page.h"
#include "automation/safe_array.h"

#include <algorithm>

using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Variant;

namespace {

bool is_dimensioned(const SAFEARRAY* array) noexcept
{
    return array && array->cDims > 0;
}

/// The characters of single bytes. The half of a longer character is what the platform makes of it.
class AnsiCharacters {
public:
    AnsiCharacters()
    {
        for (std::size_t code = 0; code < std::size(characters_); ++code) {
            const char byte = static_cast<char>(code);
            automation::decode({&byte, 1}, &characters_[code]);
        }
    }
    wchar_t operator[](unsigned char code) const noexcept { return characters_[code]; }

private:
    wchar_t characters_[256];
};

/// A text as long as the array's upper bound, with a blank wherever the array has no character. `put` puts those that it has
/// into their places; element 0 is that of the first one.
template <class Put>
std::wstring text_up_to_bound(const SAFEARRAY& array, const Put& put)
{
    constexpr long long longest = 0x3FFFFFFF;
    const SAFEARRAYBOUND& bound = array.rgsabound[array.cDims - 1]; // the first dimension
    const long long first = bound.lLbound, last = first + bound.cElements - 1;
    if (last > longest)
        throw Error{Runtime::OutOfMemory};
    std::wstring text(static_cast<std::size_t>(std::max(last, 0LL)), L' ');
    if (array.cDims == 1)
        for (long long i = std::max(first, 0LL); i < last; ++i)
            put(text[static_cast<std::size_t>(i)], static_cast<std::size_t>(i - first));
    return text;
}

std::wstring text_of_bytes(SAFEARRAY* array)
{
    if (!is_dimensioned(array))
        return {};
    const LockedArray<unsigned char> bytes{array};
    const AnsiCharacters characters;
    return text_up_to_bound(*array, [&](wchar_t& place, std::size_t element) { place = characters[bytes[element]]; });
}

/// A number that is no code of one byte, and what is no number, leaves a blank.
std::wstring text_of_codes(const VARIANT& value)
{
    const auto array = automation::array_in(value);
    if (!array || !is_dimensioned(*array))
        return {};
    SAFEARRAY& given = automation::readable_array(value);
    if (automation::element_type(value) == VT_UI1)
        return text_of_bytes(&given);
    const Variant own = automation::array_of_type(&given, VT_VARIANT); // an object's code may change the client's
    const LockedArray<VARIANT> elements{own.parray};
    const AnsiCharacters characters;
    return text_up_to_bound(*own.parray, [&](wchar_t& place, std::size_t element) {
        Variant code;
        if (automation::converts(code, elements[element], VT_I4) && code.lVal >= 0 && code.lVal <= 0xFF)
            place = characters[static_cast<unsigned char>(code.lVal)];
    });
}

/// What an array that keeps its elements when its upper bound changes has at an index; 0 where it ends before. Raises 9 for an
/// array that can't be one from 0 to another bound.
unsigned char kept_element(SAFEARRAY* array, std::size_t index)
{
    if (!is_dimensioned(array))
        return 0;
    if (array->cDims != 1 || array->rgsabound[0].lLbound != 0)
        throw Error{Runtime::SubscriptOutOfRange};
    const LockedArray<unsigned char> bytes{array};
    return index < bytes.size() ? bytes[index] : 0;
}

} // namespace

Variant qvCommon_conversions::BstrToByte(std::wstring_view s, SAFEARRAY*& b)
{
    Variant filled = automation::new_array(VT_UI1, s.size() + 1);
    {
        const LockedArray<unsigned char> bytes{filled.parray};
        std::ranges::transform(s, bytes.begin(), [](wchar_t character) { return static_cast<unsigned char>(character); });
        bytes[s.size()] = kept_element(b, s.size());
    }
    automation::assign(b, std::move(filled));
    return {};
}

Variant qvCommon_conversions::ByteToBstr(SAFEARRAY* b, BSTR& s)
{
    automation::replace(s, text_of_bytes(b));
    return {};
}

Variant qvCommon_conversions::ByteToBstrV(const VARIANT& V, BSTR& s)
{
    automation::replace(s, text_of_codes(V));
    return {};
}

std::wstring qvCommon_conversions::ByteToStr(SAFEARRAY* b)
{
    return text_of_bytes(b);
}

std::wstring qvCommon_conversions::ByteToStrV(const VARIANT& V)
{
    return text_of_codes(V);
}
