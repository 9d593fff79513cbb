#include "numeric/moving_average.h"

#include <algorithm>

namespace numeric {
namespace {

std::int16_t rounded(double number)
{
    const double whole = std::nearbyint(number);
    if (!(whole >= std::numeric_limits<std::int16_t>::min() && whole <= std::numeric_limits<std::int16_t>::max()))
        throw automation::Error{automation::Runtime::Overflow};
    return static_cast<std::int16_t>(whole);
}

} // namespace

HalfWidths::HalfWidths(Widening widening, int width, Row rows)
    : widening_{widening}, all_(static_cast<std::size_t>(rows), rounded(width))
{
    if (constant())
        return;
    const double factor = width / std::log(20.0);
    const auto half_width = [&](Row row) {
        const auto number = static_cast<double>(row);
        return rounded(widening == Widening::Linear ? number / width : factor * std::log(number));
    };
    // It never turns back: where the first and the last of some rows have the same half-width, all of them have.
    constexpr Row many = 64;
    for (Row first = 1; first <= rows; first += many) {
        const Row last = std::min(first + many - 1, rows);
        const std::int16_t at_first = half_width(first);
        const bool same = at_first == half_width(last);
        for (Row row = first; row <= last; ++row)
            all_[static_cast<std::size_t>(row - 1)] = same ? at_first : half_width(row);
    }
}

} // namespace numeric
