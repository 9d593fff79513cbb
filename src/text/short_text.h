#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace text {

/// The text as the platform shortens it to a width in pixels when it draws it, by the drawing flags `style` (DT_...); 0
/// stands for a path with an ellipsis in it.
///
/// As long as the text given: behind a shorter one stand a zero character and what was there before. The text passes
/// through the system's code page. It stays as it is where `context` is no device context.
std::wstring shortened(HDC context, std::wstring_view text, long width, long style);

} // namespace text
