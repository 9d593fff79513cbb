#include "numeric/digit_tables.h"

#include "automation/border.h"
#include "numeric/client_table.h"
#include "numeric/digit_enumeration.h"

#include <cstdint>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

SAFEARRAYBOUND row_for_each(long base, long digits)
{
    if (digits < 1)
        throw Error{Runtime::SubscriptOutOfRange};
    LONG last = 0;
    automation::check(VarI4FromR8(last_place(base, digits), &last));
    if (last < 0)
        throw Error{Runtime::SubscriptOutOfRange};
    return bounds(0, last);
}

} // namespace

Variant digits_of_all(long base, long digits)
{
    Variant result = new_table(VT_I4, row_for_each(base, digits), bounds(0, digits - 1LL));
    enumerate_digits(ClientTable{result}.view<std::int32_t>(), base);
    return result;
}

Variant numbers_of_all(long base, long digits)
{
    const SAFEARRAYBOUND rows = row_for_each(base, digits);
    if (!fit_long(base, digits))
        throw Error{Runtime::Overflow};
    Variant result = new_table(VT_I4, rows, bounds(1, 1));
    enumerate_numbers(ClientTable{result}.as<std::int32_t>(), base);
    return result;
}

} // namespace numeric
