#pragma once

#include <algorithm>

/// Where something of a length lies in a room, in any one unit.
namespace position {

/// The nearest position at which it lies inside; what is longer than the room begins at 0.
constexpr double inside(double position, double length, double room) noexcept
{
    return std::max(std::min(position, room - length), 0.);
}

/// From the start (-1) over the centre (0) to the end (1) of the room; towards what lies beyond these, no further.
constexpr double between_edges(double towards, double length, double room) noexcept
{
    return (room - length) / 2 * (1 + std::clamp(towards, -1., 1.));
}

} // namespace position
