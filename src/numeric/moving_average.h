#pragma once

#include "automation/error.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

/// A centred moving average of a column of numbers whose span may widen from row to row. Rows count from 1. With the half-width
/// h, the span of row i is i - h to i + h; its average follows from that of the row before by the rows that it has more or less.
namespace numeric {

using Row = std::ptrdiff_t;

/// How the half-width follows from the row.
enum class Widening {
    Logarithmic = 1, ///< width / ln 20 * ln row
    Constant = 2,    ///< width
    Linear = 3,      ///< row / width
};

/// The half-widths of the rows 1 to `rows`, rounded to whole numbers, halves to the even one.
class HalfWidths {
public:
    /// Raises 6 when one is beyond 16 bits.
    HalfWidths(Widening widening, int width, Row rows);

    int operator()(Row row) const noexcept { return all_[static_cast<std::size_t>(row - 1)]; }
    Row rows() const noexcept { return static_cast<Row>(all_.size()); }
    bool constant() const noexcept { return widening_ == Widening::Constant; }

private:
    Widening widening_;
    std::vector<std::int16_t> all_;
};

/// Where a row lies whose span can't follow from that of the row before.
enum class Part {
    Body, ///< its span lies above the end of the column
    Tail, ///< one of the last rows, as many as the last half-width, and the one before
};

/// A result that has left the range of Double though its operands are in it raises 6.
inline double in_range(double result, double left, double right)
{
    if (!std::isfinite(result) && std::isfinite(left) && std::isfinite(right)) [[unlikely]]
        throw automation::Error{automation::Runtime::Overflow};
    return result;
}

inline double quotient_of_difference(double left, double right, int divisor)
{
    return in_range(left - right, left, right) / divisor;
}

/// Singles give a Single, as long as the difference is one and the divisor a 16-bit number.
inline double quotient_of_difference(float left, float right, int divisor)
{
    const float difference = left - right;
    if (!std::isfinite(difference))
        return quotient_of_difference(double{left}, double{right}, divisor);
    if (divisor > std::numeric_limits<std::int16_t>::max())
        return double{difference} / divisor;
    return difference / static_cast<float>(divisor);
}

/// The numbers of a column of any table, whose first row may be above row 1, with the arithmetic of their type.
template <class Number>
class NumberColumn {
public:
    NumberColumn(std::span<const Number> numbers, Row first) noexcept : numbers_{numbers}, first_{first} {}

    double value(Row row) const { return at(row); }
    double sum(double sum, Row row) const { return in_range(sum + at(row), sum, at(row)); }
    /// The average moved on by one row: the row `entering` comes in, `leaving` goes out.
    double slid(double average, Row entering, Row leaving, int span) const
    {
        const double change = quotient_of_difference(at(entering), at(leaving), span);
        return in_range(average + change, average, change);
    }
    /// The average of a span two rows wider than that of `average`.
    double grown(double average, Row one, Row other, int span) const
    {
        const double former_span = span - 2;
        return sum(sum(in_range(former_span * average, former_span, average), one), other) / span;
    }

private:
    Number at(Row row) const
    {
        const auto index = static_cast<std::size_t>(row - first_); // huge for a row above the first one
        if (index >= numbers_.size()) [[unlikely]]
            throw automation::Error{automation::Runtime::SubscriptOutOfRange};
        return numbers_[index];
    }

    std::span<const Number> numbers_;
    Row first_;
};

/// The averages of the rows whose span, of constant half-width, begins above row 1: those of the rows that exist.
template <class Column>
void average_head(const Column& column, const HalfWidths& half_widths, double* averages)
{
    const Row rows = half_widths.rows(), half_width = half_widths(1);
    double sum = column.value(1);
    Row last = 1;
    for (Row row = 2; row <= rows && row <= half_width + 1; ++row) {
        while (last < rows && last < row + half_width)
            sum = column.sum(sum, ++last);
        averages[row - 1] = sum / static_cast<double>(last);
    }
}

/// The same for the rows behind these in a column that is shorter than one span.
template <class Column>
void average_rest(const Column& column, const HalfWidths& half_widths, double* averages)
{
    const Row rows = half_widths.rows(), half_width = half_widths(1);
    double sum = column.value(rows);
    Row first = rows;
    for (Row row = rows; row > half_width + 1; --row) {
        while (first > row - half_width)
            sum = column.sum(sum, --first);
        averages[row - 1] = sum / static_cast<double>(rows - first + 1);
    }
}

/// The averages from a row on, each from the one before. Behind the last row a span sees the column mirrored at that row.
template <class Column, class Report>
void average_onwards(const Column& column, const HalfWidths& half_widths, Row row, double* averages, const Report& report)
{
    const Row rows = half_widths.rows(), tail = rows - half_widths(rows);
    if (tail < 1 || tail > rows + 1)
        throw automation::Error{automation::Runtime::SubscriptOutOfRange};
    const auto mirrored = [rows](Row row) { return row <= rows ? row : rows - (row - rows); };
    for (; row <= rows; ++row) {
        const int half_width = half_widths(row), step = half_width - half_widths(row - 1), span = 2 * half_width + 1;
        const double before = averages[row - 2];
        const Row end = row + half_width;
        if (step == 0)
            averages[row - 1] = column.slid(before, mirrored(end), row - half_width - 1, span);
        else if (step == 1)
            averages[row - 1] = column.grown(before, mirrored(end), mirrored(end - 1), span);
        else
            report(row < tail ? Part::Body : Part::Tail);
    }
}

/// Puts the averages of the rows 1 to half_widths.rows() into `averages`, which holds zeros. That of row 1 is its number. Of
/// spans of constant half-width, those that begin above row 1 count only the rows that exist, and so do all in a column that
/// is shorter than a span. A row whose half-width differs from that of the row before by other than 0 or 1 is reported, and
/// its average stays 0. Raises 9 for rows that the column has not, 6 beyond a Double.
template <class Column, class Report>
void smooth(const Column& column, const HalfWidths& half_widths, double* averages, const Report& report)
{
    averages[0] = column.value(1);
    if (!half_widths.constant())
        return average_onwards(column, half_widths, 2, averages, report);

    const Row rows = half_widths.rows(), half_width = half_widths(1);
    average_head(column, half_widths, averages);
    if (rows < 2 * half_width + 1)
        average_rest(column, half_widths, averages);
    else
        average_onwards(column, half_widths, half_width < 0 ? 2 : half_width + 2, averages, report);
}

} // namespace numeric
