#pragma once

#include "automation/values.h"

namespace drawing {

/// A new brush, as a Long that the caller owns, which paints every other pixel like a chessboard; Empty when the platform
/// makes no pattern for it.
automation::Variant halftone_brush();

/// Draws a sunken edge along the inside of an area. Where scroll bars of this width and this height leave a corner between
/// them, fills that, or draws a size grip in it.
void sunken_edge(HDC context, RECT area, SIZE scroll_bars, bool size_grip);

} // namespace drawing
