#include "numeric/decimal_cut.h"

#include "automation/error.h"

namespace numeric {

using automation::Error;
using automation::Runtime;

std::optional<std::wstring_view> cut_decimals(std::wstring_view number, std::int32_t places)
{
    std::size_t separator = number.find(L',');
    if (separator == number.npos)
        separator = number.find(L'.');
    if (separator == number.npos)
        return std::nullopt;
    std::int32_t length = 0;
    if (__builtin_add_overflow(separator + 1, places, &length))
        throw Error{Runtime::Overflow};
    if (length < 0)
        throw Error{Runtime::InvalidCall};
    return number.substr(0, static_cast<std::size_t>(length));
}

} // namespace numeric
