#pragma once

#include "automation/error.h"

#include <cmath>
#include <concepts>
#include <limits>

/// Lengths of devices. A twip is 1/1440 inch.
namespace device {

/// One side of what a device shows: of a screen, of a page.
struct Extent {
    int pixels;
    int pixels_per_inch;

    double twips_per_pixel() const noexcept { return 1440. / pixels_per_inch; }
    double twips() const noexcept { return pixels * 1440. / pixels_per_inch; }
    /// A length in twips as one in pixels. Raises 6.
    float in_pixels(float twips) const
    {
        const auto length = static_cast<float>(twips / twips_per_pixel());
        if (std::isinf(length) && !std::isinf(twips))
            throw automation::Error{automation::Runtime::Overflow};
        return length;
    }
};

struct Area {
    Extent width, height;
};

/// The nearest whole number, of two the even one. Raises 6 where this type can't hold it.
template <std::signed_integral Whole>
Whole rounded(double length)
{
    const double nearest = std::nearbyint(length);
    if (!(nearest >= std::numeric_limits<Whole>::min() && nearest <= std::numeric_limits<Whole>::max()))
        throw automation::Error{automation::Runtime::Overflow};
    return static_cast<Whole>(nearest);
}

} // namespace device
