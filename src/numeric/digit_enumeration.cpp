#include "numeric/digit_enumeration.h"

#include <algorithm>
#include <limits>

namespace numeric {
namespace {

/// How many values a digit takes before it starts again; in a negative base it does not within `rows`.
std::size_t digit_values(std::int32_t base, std::size_t rows) noexcept
{
    return base > 0 ? static_cast<std::size_t>(base) : rows;
}

/// Fills a column with 0, 1, 2, ..., each in a run of equal ones, and starts again after so many values.
void fill_cyclically(std::span<std::int32_t> column, std::size_t run, std::size_t values) noexcept
{
    std::size_t filled = 0;
    for (std::int32_t digit = 0; static_cast<std::size_t>(digit) < values && filled < column.size(); ++digit) {
        const std::size_t next = std::min(run, column.size() - filled);
        std::ranges::fill(column.subspan(filled, next), digit);
        filled += next;
    }
    // What is repeated stays in the processor's cache, unless a single cycle is larger.
    constexpr std::size_t block = 4096;
    for (std::size_t repeated = filled; filled < column.size();) {
        const std::size_t next = std::min(repeated, column.size() - filled);
        std::copy_n(column.begin(), next, column.begin() + static_cast<std::ptrdiff_t>(filled));
        filled += next;
        repeated = repeated < block ? filled : repeated;
    }
}

std::int32_t first_figure(std::size_t digit) noexcept
{
    while (digit >= 10)
        digit /= 10;
    return static_cast<std::int32_t>(digit);
}

} // namespace

double last_place(std::int32_t base, std::int32_t digits) noexcept
{
    // By squares: exact as long as the result has room in a Double's 53 bits.
    double power = 1, square = base;
    for (; digits > 0; digits /= 2, square *= square)
        if (digits % 2 != 0)
            power *= square;
    return power - 1;
}

void enumerate_digits(Table<std::int32_t> table, std::int32_t base) noexcept
{
    const std::size_t values = digit_values(base, table.rows);
    std::size_t run = 1; // how many numbers in succession have the same digit
    for (std::size_t column = table.columns; column-- > 0;) {
        fill_cyclically({table.column(column), table.rows}, run, values);
        run = run < table.rows / values ? run * values : table.rows;
    }
}

bool fit_long(std::int32_t base, std::int32_t digits) noexcept
{
    if (base < 2) // one figure at most
        return true;
    std::int64_t largest = 0;
    for (; digits > 0 && largest <= std::numeric_limits<std::int32_t>::max(); --digits)
        largest = largest * 10 + std::min(base, 10) - 1;
    return largest <= std::numeric_limits<std::int32_t>::max();
}

void enumerate_numbers(std::span<std::int32_t> numbers, std::int32_t base) noexcept
{
    if (numbers.empty())
        return;
    const std::size_t values = digit_values(base, numbers.size());
    numbers[0] = 0;
    std::int64_t weight = 1;
    for (std::size_t filled = 1; filled < numbers.size(); weight *= 10) {
        // Behind the numbers with the digits known so far stand the same ones with each value of the next digit.
        const std::size_t known = filled;
        for (std::size_t digit = 1; digit < values && filled < numbers.size(); ++digit) {
            const auto more = static_cast<std::int32_t>(first_figure(digit) * weight);
            const std::size_t next = std::min(known, numbers.size() - filled);
            std::ranges::transform(numbers.first(next), numbers.begin() + static_cast<std::ptrdiff_t>(filled),
                                   [=](std::int32_t number) { return number + more; });
            filled += next;
        }
    }
}

} // namespace numeric
