#pragma once

#include "automation/object.h"
#include "ui/device.h"

#include <qvObjects_contract.h>

#include <string>

/// Sizes of the primary screen, and its fonts. A twip is 1/1440 inch.
class qvScreen final : public automation::Object<qvScreen, faces::qvScreen> {
public:
    short get_TwipsPerPixelX() { return device::rounded<short>(width().twips_per_pixel()); }
    short get_TwipsPerPixelY() { return device::rounded<short>(height().twips_per_pixel()); }
    short get_HeightTwips() { return device::rounded<short>(height().twips()); }
    short get_HeightPixel() { return device::rounded<short>(height().pixels); }
    short get_WidthTwips() { return device::rounded<short>(width().twips()); }
    short get_WidthPixel() { return device::rounded<short>(width().pixels); }
    std::wstring get_Fonts(short i) { return device::screen_font(i); }
    short get_FontCount() { return device::screen_font_count(); }
    float TwipX(float x) { return width().in_pixels(x); }
    float TwipY(float y) { return height().in_pixels(y); }

private:
    static device::Extent width() { return device::screen_area().width; }
    static device::Extent height() { return device::screen_area().height; }
};
