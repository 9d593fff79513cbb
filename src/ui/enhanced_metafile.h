#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Pictures in enhanced metafiles.
namespace ui {

/// A width and a height, each in a unit of its own where it says so.
struct Extent {
    double width, height;
};

/// What there is to be known of an enhanced metafile.
struct Metafile {
    std::string_view records; ///< all that belongs to it
    Extent frame;             ///< the picture's size in hundredths of a millimetre
};

/// The enhanced metafile that some bytes begin with, if it is whole: its records follow each other up to the last one.
std::optional<Metafile> enhanced_metafile(std::string_view bytes) noexcept;

/// A picture's size in pixels: the wanted one, or where a side of that is 0 the largest in the same place that keeps the
/// proportion of the picture's sides. A place's side is that of the page where the wanted one is 0. A picture without a
/// proportion fills its place.
Extent picture_size(Extent wanted, Extent page, Extent picture) noexcept;

} // namespace ui
