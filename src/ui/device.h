#pragma once

#include "ui/extent.h"

#include <string>

/// The screen and the printer. What can't be asked for: the screen raises 7, the printer 482.
namespace device {

/// The primary screen, by its own logical inch.
Area screen_area();
/// A font family of the screen, each of which counts once, in the platform's order from 0 on. Raises 381 outside of it.
std::wstring screen_font(short index);
/// How many there are. Raises 6 for more than 32767.
short screen_font_count();

/// The same of the user's default printer, whose area is what it can print on of a page.
Area printer_area();
std::wstring printer_font(short index);
short printer_font_count();
std::wstring printer_name();

} // namespace device
