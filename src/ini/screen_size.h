#pragma once

namespace screen {

struct Size {
    double width, height;
};

/// The size of the screen in twips, of which an inch has 1440, by the screen's own logical inch.
Size size_in_twips();

} // namespace screen
