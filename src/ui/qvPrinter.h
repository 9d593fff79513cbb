#pragma once

#include "automation/object.h"
#include "ui/device.h"

#include <qvObjects_contract.h>

#include <string>

/// Sizes of the default printer's page, and its fonts. Without a printer, everything raises 482.
class qvPrinter final : public automation::Object<qvPrinter, faces::qvPrinter> {
public:
    short get_TwipsPerPixelX() { return device::rounded<short>(device::printer_area().width.twips_per_pixel()); }
    short get_TwipsPerPixelY() { return device::rounded<short>(device::printer_area().height.twips_per_pixel()); }
    short get_Height() { return device::rounded<short>(device::printer_area().height.twips()); }
    short get_Width() { return device::rounded<short>(device::printer_area().width.twips()); }
    std::wstring get_Fonts(short i) { return device::printer_font(i); }
    short get_FontCount() { return device::printer_font_count(); }
    /// A number, although it is a name: raises 13 for one that is none.
    short get_DeviceName()
    {
        return automation::converted(automation::Variant{std::wstring_view{device::printer_name()}}, VT_I2).iVal;
    }
};
