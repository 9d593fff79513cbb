#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace client {

/// A white picture in memory to draw into.
class Canvas {
public:
    explicit Canvas(int columns = 300, int rows = 200) : width{columns}, height{rows}
    {
        BITMAPINFO information{};
        information.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        bitmap_ = CreateDIBSection(context, &information, DIB_RGB_COLORS, reinterpret_cast<void**>(&pixels_), nullptr, 0);
        former_ = SelectObject(context, bitmap_);
        PatBlt(context, 0, 0, width, height, WHITENESS);
    }
    ~Canvas()
    {
        SelectObject(context, former_);
        DeleteObject(bitmap_);
        DeleteDC(context);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    COLORREF operator()(int x, int y) const { return GetPixel(context, x, y); }
    std::vector<DWORD> pixels() const
    {
        GdiFlush();
        return {pixels_, pixels_ + width * height};
    }
    /// The smallest rectangle around what was drawn.
    RECT drawn() const
    {
        RECT area{width, height, 0, 0};
        const auto all = pixels();
        for (LONG y = 0; y < height; ++y)
            for (LONG x = 0; x < width; ++x)
                if ((all[static_cast<std::size_t>(y * width + x)] & 0xFFFFFF) != 0xFFFFFF)
                    area = {std::min(area.left, x), std::min(area.top, y), std::max(area.right, x + 1),
                            std::max(area.bottom, y + 1)};
        return area;
    }

    const int width, height;
    const HDC context = CreateCompatibleDC(nullptr);

private:
    HBITMAP bitmap_;
    HGDIOBJ former_;
    DWORD* pixels_ = nullptr;
};

} // namespace client
