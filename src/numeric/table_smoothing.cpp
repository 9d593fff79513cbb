#include "numeric/table_smoothing.h"

#include "messages/MErrors.h"
#include "numeric/client_table.h"
#include "numeric/moving_average.h"
#include "numeric/variant_arithmetic.h"

namespace numeric {
namespace {

using automation::Variant;

/// A column of elements of any type, with the platform's arithmetic.
class VariantColumn {
public:
    VariantColumn(const ClientTable& table, long long column) noexcept : table_{table}, column_{column} {}

    double value(Row row) const { return to_double(at(row)); }
    double sum(double sum, Row row) const { return to_double(numeric::sum(Variant{sum}, at(row))); }
    double slid(double average, Row entering, Row leaving, int span) const
    {
        const Variant change = quotient(difference(at(entering), at(leaving)), whole(span));
        return to_double(numeric::sum(Variant{average}, change));
    }
    double grown(double average, Row one, Row other, int span) const
    {
        const Variant former_sum = product(whole(span - 2), Variant{average});
        return to_double(quotient(numeric::sum(numeric::sum(former_sum, at(one)), at(other)), whole(span)));
    }

private:
    VARIANT at(Row row) const { return table_[table_.at(row, column_)]; }

    /// An Integer, or a Long if it is too large for one: it decides the type of quotients.
    static Variant whole(int number) noexcept
    {
        Variant value{static_cast<long>(number)};
        if (number != static_cast<short>(number))
            return value;
        value.vt = VT_I2;
        value.iVal = static_cast<short>(number);
        return value;
    }

    const ClientTable& table_;
    long long column_;
};

void report(Part part)
{
    MErrors::ShowMessage(part == Part::Body ? L"funAvgDyn: Error1" : L"funAvgDyn: Error2");
}

/// Smooths the columns from `first` on. `column_at` gives one of them by its own index.
template <class ColumnAt>
void smooth_columns(const ClientTable& table, long long first, const HalfWidths& half_widths, const ClientTable& averages,
                    const ColumnAt& column_at)
{
    for (long long column = first; column <= table.upper(2); ++column) {
        double* const target = averages.as<double>().data() + averages.at(1, column);
        smooth(column_at(column), half_widths, target, report);
    }
}

template <class Number>
void smooth_numbers(const ClientTable& table, Table<const Number> numbers, long long first, const HalfWidths& half_widths,
                    const ClientTable& averages)
{
    smooth_columns(table, first, half_widths, averages, [&](long long column) {
        const Number* const cells = numbers.column(static_cast<std::size_t>(column - table.lower(2)));
        return NumberColumn<Number>{{cells, numbers.rows}, static_cast<Row>(table.lower(1))};
    });
}

void smooth(const ClientTable& table, long long first, const HalfWidths& half_widths, const ClientTable& averages)
{
    if (table.type() == VT_R4)
        return smooth_numbers(table, table.view<const float>(), first, half_widths, averages);
    if ((kinds(table) & ~(Small | Long | Double)) == 0)
        return smooth_numbers(table, Doubles{table}.table(), first, half_widths, averages);
    smooth_columns(table, first, half_widths, averages, [&](long long column) { return VariantColumn{table, column}; });
}

} // namespace

Variant smoothed(const VARIANT& value, unsigned char mode, short width)
{
    if (mode == 0 || width == 0)
        return Variant{automation::followed(value)};
    const ClientTable table{value};
    Variant result = new_table(VT_R8, bounds(1, table.upper(1)), bounds_of(table, 2));
    const auto widening = static_cast<Widening>(mode);
    if (widening > Widening::Linear)
        return result;
    const bool all = widening == Widening::Logarithmic;
    const long long first = all ? table.lower(2) : 1;
    smooth(table, first, HalfWidths{widening, width, static_cast<Row>(table.upper(1))}, ClientTable{result});
    return result;
}

} // namespace numeric
