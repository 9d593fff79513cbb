// Smooths a noisy spectrum, draws it before and after into an enhanced metafile, and plays that into a bitmap:
//     spectrum [METAFILE [BITMAP]]
//
// It shows how a program in C++ passes a table to qvMath and takes one back, and how qvCommon plays a metafile.
// Build it as a 32-bit program, with one of
//     cl /std:c++17 /EHsc /DUNICODE spectrum.cpp ole32.lib oleaut32.lib uuid.lib user32.lib gdi32.lib
//     i686-w64-mingw32-g++ -std=c++17 -municode -static spectrum.cpp -o spectrum.exe -lole32 -loleaut32 -luuid -lgdi32
#include "../late_bound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

constexpr long channels = 120, half_width = 3;
constexpr SIZE picture{640, 260}; // in pixels
constexpr RECT panels[]{{20, 40, 310, 230}, {330, 40, 620, 230}}; // before, after
constexpr double top_value = 30;
constexpr COLORREF frame_colour = RGB(150, 150, 150), noisy = RGB(130, 150, 170), smooth = RGB(200, 60, 30);

/// Three lines of a spectrum with some noise, the same in every run.
std::vector<double> measured()
{
    std::vector<double> values;
    std::uint32_t random = 1;
    for (long channel = 0; channel < channels; ++channel) {
        double value = 3;
        for (const auto& [place, height, width] : {std::array{28.0, 14.0, 5.0}, {62.0, 22.0, 7.0}, {92.0, 9.0, 4.0}})
            value += height * std::exp(-std::pow((channel - place) / width, 2));
        random = random * 1664525 + 1013904223;
        values.push_back(value + 5.0 * (random >> 8) / (1 << 24) - 2.5);
    }
    return values;
}

/// A table with one column. Rows and columns count from 1, as smoothing has it.
Value table_of(const std::vector<double>& values)
{
    SAFEARRAYBOUND bounds[]{{static_cast<ULONG>(values.size()), 1}, {1, 1}};
    SAFEARRAY* const table = SafeArrayCreate(VT_R8, 2, bounds);
    for (long place[]{1, 1}; place[0] <= static_cast<long>(values.size()); ++place[0])
        SafeArrayPutElement(table, place, const_cast<double*>(&values[static_cast<std::size_t>(place[0] - 1)]));
    return {table, VT_R8};
}

std::vector<double> values_of(const Value& table)
{
    std::vector<double> values(channels);
    for (long place[]{1, 1}; place[0] <= channels; ++place[0])
        SafeArrayGetElement(table.parray, place, &values[static_cast<std::size_t>(place[0] - 1)]);
    return values;
}

/// 2: over as many rows to both sides as the last argument says.
std::vector<double> smoothed(const std::vector<double>& values)
{
    return values_of(Object{L"qvObjects.qvMath"}.call(L"AvgDyn", {table_of(values), 2L, half_width}));
}

void draw_curve(HDC context, const RECT& panel, const std::vector<double>& values, COLORREF colour, int width)
{
    std::vector<POINT> points;
    for (long channel = 0; channel < channels; ++channel) {
        const double part = values[static_cast<std::size_t>(channel)] / top_value;
        points.push_back({panel.left + 5 + (panel.right - panel.left - 10) * channel / (channels - 1),
                          panel.bottom - std::lround((panel.bottom - panel.top) * part)});
    }
    const HGDIOBJ former = SelectObject(context, CreatePen(PS_SOLID, width, colour));
    Polyline(context, points.data(), static_cast<int>(points.size()));
    DeleteObject(SelectObject(context, former));
}

void draw_panel(HDC context, const RECT& panel, const wchar_t* title)
{
    const HGDIOBJ former = SelectObject(context, CreatePen(PS_SOLID, 1, frame_colour));
    Rectangle(context, panel.left, panel.top, panel.right, panel.bottom);
    DeleteObject(SelectObject(context, former));
    TextOutW(context, panel.left, panel.top - 24, title, static_cast<int>(wcslen(title)));
}

void draw(HDC context, const std::vector<double>& before, const std::vector<double>& after)
{
    LOGFONTW font{};
    font.lfHeight = -15;
    wcscpy(font.lfFaceName, L"Arial");
    const HGDIOBJ former = SelectObject(context, CreateFontIndirectW(&font));
    draw_panel(context, panels[0], L"As measured");
    draw_curve(context, panels[0], before, noisy, 2);
    draw_panel(context, panels[1], L"Smoothed");
    draw_curve(context, panels[1], before, noisy, 1);
    draw_curve(context, panels[1], after, smooth, 2);
    DeleteObject(SelectObject(context, former));
}

/// The frame of a metafile is told in hundredths of a millimetre.
void write_metafile(const wchar_t* file, const Object& common, const std::vector<double>& before,
                    const std::vector<double>& after)
{
    const double across = 100 * common.call(L"MMperPixX").dblVal, down = 100 * common.call(L"MMperPixY").dblVal;
    const RECT frame{0, 0, std::lround(picture.cx * across), std::lround(picture.cy * down)};
    const HDC context = CreateEnhMetaFileW(nullptr, file, &frame, L"qvObjects\0A spectrum\0");
    if (!context)
        throw std::runtime_error{"the metafile can't be written"};
    draw(context, before, after);
    DeleteEnhMetaFile(CloseEnhMetaFile(context)); // the file stays
}

void write_bitmap(const wchar_t* file, const Object& common, const wchar_t* metafile)
{
    BITMAPINFO information{{sizeof(BITMAPINFOHEADER), picture.cx, picture.cy, 1, 24, BI_RGB, 0, 0, 0, 0, 0}, {}};
    const DWORD size = static_cast<DWORD>((picture.cx * 3 + 3) / 4 * 4 * picture.cy);
    void* pixels = nullptr;
    const HDC context = CreateCompatibleDC(nullptr);
    const HGDIOBJ bitmap = CreateDIBSection(nullptr, &information, DIB_RGB_COLORS, &pixels, nullptr, 0);
    const HGDIOBJ former = SelectObject(context, bitmap);
    PatBlt(context, 0, 0, picture.cx, picture.cy, WHITENESS);
    const auto handle = static_cast<long>(reinterpret_cast<LONG_PTR>(context));
    common.call(L"PrintEMF", {metafile, handle, 0L, 0L, picture.cx, picture.cy});
    GdiFlush();

    const DWORD headers = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    const BITMAPFILEHEADER header{0x4D42, headers + size, 0, 0, headers};
    if (std::FILE* const target = _wfopen(file, L"wb")) {
        std::fwrite(&header, sizeof header, 1, target);
        std::fwrite(&information.bmiHeader, sizeof information.bmiHeader, 1, target);
        std::fwrite(pixels, size, 1, target);
        std::fclose(target);
    }
    SelectObject(context, former);
    DeleteObject(bitmap);
    DeleteDC(context);
}

double largest(const std::vector<double>& values) { return *std::max_element(values.begin(), values.end()); }

void run(const wchar_t* metafile, const wchar_t* bitmap)
{
    const std::vector<double> before = measured(), after = smoothed(before);
    std::printf("%ld channels, the largest %.1f before and %.1f after\n", channels, largest(before), largest(after));

    const Object common{L"qvObjects.qvCommon"};
    write_metafile(metafile, common, before, after);
    write_bitmap(bitmap, common, metafile);
    long width = 0, height = 0;
    Object{L"qvObjects.qvBitmap"}.call(L"GetBitmapSizeS", {bitmap, &width, &height});
    std::printf("a picture of %ld by %ld pixels\n", width, height);
}

int wmain(int count, wchar_t** arguments)
{
    CoInitialize(nullptr);
    int code = 0;
    try {
        run(count > 1 ? arguments[1] : L"spectrum.emf", count > 2 ? arguments[2] : L"spectrum.bmp");
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        code = 1;
    }
    CoUninitialize();
    return code;
}
