#pragma once

#include <algorithm>

/// What is kept of the placement of a client's windows. Window states, borders and alignments are the numbers of forms
/// clients; lengths have any one unit.
namespace placement {

inline constexpr long normal = 0, minimised = 1, floating = 4; ///< states of a window; only a bar is floating

/// Whether the user can size a form with this border: a sizable form or tool window.
constexpr bool is_sizable(long border_style) noexcept
{
    return border_style == 2 || border_style == 5;
}

/// The state in which a form comes back: never minimised, where the user would not see it.
constexpr long restored_state(long stored) noexcept
{
    return stored == minimised ? normal : stored;
}

/// Where something of this length begins when it is in the middle.
constexpr double centred(double room, double length) noexcept
{
    return (room - length) / 2;
}

/// Which of its sizes a docked bar has for itself; the other one is given by the edge at which it is docked.
enum class Thickness { None, Height, Width };

constexpr Thickness thickness(long align) noexcept
{
    switch (align) {
    case 1: // top
    case 2: // bottom
        return Thickness::Height;
    case 3: // left
    case 4: // right
        return Thickness::Width;
    default:
        return Thickness::None;
    }
}

struct FittedSize {
    double size;
    bool too_small; ///< to be of use

    bool operator==(const FittedSize&) const = default;
};

/// The size of a docked bar, cut to the room there is and to the bar's own limit; 0 or less is no limit.
constexpr FittedSize fitted(double size, double room, double limit, double least) noexcept
{
    const double fitting = std::min(size, limit > 0 ? std::min(room, limit) : room);
    return {fitting, fitting < least};
}

} // namespace placement
