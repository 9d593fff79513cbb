#include "numeric/table_products.h"

#include "automation/safe_array.h"
#include "messages/MErrors.h"
#include "numeric/client_table.h"
#include "numeric/matrix.h"
#include "numeric/variant_arithmetic.h"

#include <optional>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

constexpr unsigned whole_kinds = Small | Long, kinds_beside_single = Small | Single;

/// Whether elements of these kinds compute as Singles, whichever meet.
bool all_as_singles(unsigned left, unsigned right) noexcept
{
    return (left == Single && !(right & ~kinds_beside_single)) || (right == Single && !(left & ~kinds_beside_single));
}

bool some_as_singles(unsigned left, unsigned right) noexcept
{
    return ((left & Single) && (right & kinds_beside_single)) || ((right & Single) && (left & kinds_beside_single));
}

/// How elements of these kinds are multiplied, whichever meet, where products are added to other numbers; none where that
/// depends on the elements.
std::optional<Arithmetic> arithmetic_in_sums(unsigned left, unsigned right) noexcept
{
    if ((left | right) & Other)
        return std::nullopt;
    if (all_as_singles(left, right))
        return Arithmetic::Single;
    if (some_as_singles(left, right))
        return std::nullopt;
    return Arithmetic::Double; // of whole numbers too: in a sum that began as 0 the sign of a product 0 is lost
}

/// The same where products stay as they are.
std::optional<Arithmetic> arithmetic(unsigned left, unsigned right) noexcept
{
    if ((left & whole_kinds) && (right & whole_kinds))
        return (left | right) & ~whole_kinds ? std::nullopt : std::optional{Arithmetic::Whole};
    return arithmetic_in_sums(left, right);
}

void multiply_by_platform(const ClientTable& left, const ClientTable& right, Table<double> result)
{
    for (std::size_t i = 0; i < result.rows; ++i)
        for (std::size_t j = 0; j < result.columns; ++j)
            for (std::size_t k = 0; k < left.columns(); ++k) {
                if (k >= right.rows())
                    throw Error{Runtime::SubscriptOutOfRange};
                const Variant step = product(right[j * right.rows() + k], left[k * left.rows() + i]);
                result(i, j) = to_double(sum(step, Variant{result(i, j)}));
            }
}

void multiply_by_platform(const ClientTable& table, const VARIANT& number, Table<double> result)
{
    for (std::size_t i = 0; i < result.rows; ++i)
        for (std::size_t j = 0; j < result.columns; ++j)
            result(i, j) = to_double(product(number, table[j * result.rows + i]));
}

void expect_in_range(bool in_range)
{
    if (!in_range)
        throw Error{Runtime::Overflow};
}

Variant product_of_tables(const ClientTable& left, const ClientTable& right)
{
    if (left.columns() != right.rows())
        MErrors::ShowErrorBox(L"qvO102");
    Variant result = new_table(VT_R8, bounds_of(left, 1), bounds_of(right, 2));
    const ClientTable sums{result};
    const auto arithmetic = arithmetic_in_sums(kinds(left), kinds(right));
    if (arithmetic && left.columns() <= right.rows())
        expect_in_range(multiply(Doubles{left}.table(), Doubles{right}.table(), sums.view<double>(), *arithmetic));
    else
        multiply_by_platform(left, right, sums.view<double>());
    return result;
}

Variant product_of_table(const ClientTable& table, const VARIANT& number)
{
    Variant result = new_table(VT_R8, bounds_of(table, 1), bounds_of(table, 2));
    const ClientTable products{result};
    if (const auto how = arithmetic(kinds(table), kind(number.vt)))
        expect_in_range(multiply(Doubles{table}.table(), to_double(number), products.view<double>(), *how));
    else
        multiply_by_platform(table, number, products.view<double>());
    return result;
}

} // namespace

Variant multiplied(const VARIANT& left, const VARIANT& right)
{
    const bool left_is_array = automation::array_in(left).has_value(), right_is_array = automation::array_in(right).has_value();
    if (left_is_array && right_is_array)
        return product_of_tables(ClientTable{left}, ClientTable{right});
    if (left_is_array)
        return product_of_table(ClientTable{left}, Variant{automation::followed(right)});
    if (right_is_array)
        return product_of_table(ClientTable{right}, Variant{automation::followed(left)});
    return product(right, left);
}

} // namespace numeric
