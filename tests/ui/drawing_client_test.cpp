#include "support/canvas.h"
#include "support/client.h"
#include "support/dispatch_object.h"
#include "support/tables.h"

#include <array>
#include <cmath>

using client::Canvas;
using client::expect_error;
using client::Folder;
using client::Object;
using client::Value;

namespace {

long number_of(const void* handle)
{
    return static_cast<long>(reinterpret_cast<LONG_PTR>(handle));
}

class Drawing : public testing::Test {
protected:
    /// A picture twice as wide as high, coloured up to its edges. The path of the file.
    std::wstring make_metafile() const
    {
        std::wstring path = folder.file(L"Bild \u4e2d.emf");
        const RECT frame{0, 0, 4000, 2000};
        const HDC context = CreateEnhMetaFileW(nullptr, path.c_str(), &frame, nullptr);
        const RECT all = in_pixels(frame);
        FillRect(context, &all, reinterpret_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH)));
        SelectObject(context, GetStockObject(DKGRAY_BRUSH));
        Ellipse(context, all.right / 8, all.bottom / 8, all.right / 2, all.bottom - all.bottom / 8);
        MoveToEx(context, 0, all.bottom, nullptr);
        LineTo(context, all.right, 0);
        DeleteEnhMetaFile(CloseEnhMetaFile(context));
        return path;
    }
    static RECT in_pixels(RECT hundredths)
    {
        const HDC screen = GetDC(nullptr);
        const auto across = [&](LONG length, int pixels, int millimetres) {
            return MulDiv(length, GetDeviceCaps(screen, pixels), 100 * GetDeviceCaps(screen, millimetres));
        };
        const RECT area{0, 0, across(hundredths.right, HORZRES, HORZSIZE), across(hundredths.bottom, VERTRES, VERTSIZE)};
        ReleaseDC(nullptr, screen);
        return area;
    }

    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
    const Folder folder;
};

TEST_F(Drawing, PlaysAMetafileIntoDevicePixelsUnderAnyMapping)
{
    const std::wstring path = make_metafile();
    const RECT place{20, 10, 220, 160};
    Canvas direct;
    const HENHMETAFILE metafile = GetEnhMetaFileW(path.c_str());
    ASSERT_TRUE(PlayEnhMetaFile(direct.context, metafile, &place));
    DeleteEnhMetaFile(metafile);
    ASSERT_GT(direct.drawn().right, 200) << "there is something to compare";

    for (const bool is_mapped : {false, true}) {
        Canvas canvas;
        if (is_mapped) {
            SetGraphicsMode(canvas.context, GM_ADVANCED);
            SetMapMode(canvas.context, MM_ANISOTROPIC);
            SetWindowExtEx(canvas.context, 1000, 1000, nullptr);
            SetViewportExtEx(canvas.context, 300, -200, nullptr);
            SetViewportOrgEx(canvas.context, 7, 190, nullptr);
            SetWindowOrgEx(canvas.context, -30, 40, nullptr);
            const XFORM turned{.5f, .25f, -.25f, .5f, 3, 4};
            SetWorldTransform(canvas.context, &turned);
        }
        const auto state = [&] {
            std::array<POINT, 3> points{{{0, 0}, {1000, 0}, {0, 1000}}};
            LPtoDP(canvas.context, points.data(), 3);
            std::vector<LONG> all{GetMapMode(canvas.context), GetGraphicsMode(canvas.context)};
            for (const POINT& point : points)
                all.insert(all.end(), {point.x, point.y});
            return all;
        };
        const auto before = state();
        EXPECT_TRUE(common.call(L"PrintEMF", {path, number_of(canvas.context), 20, 10, 200, 150}).flag());
        EXPECT_EQ(canvas.pixels(), direct.pixels()) << "mapped: " << is_mapped;
        EXPECT_EQ(state(), before);
    }
}

TEST_F(Drawing, KeepsTheProportionWhereASizeIsLeftOpen)
{
    const std::wstring path = make_metafile();
    struct Case {
        int width, height;
        RECT drawn;
    };
    for (const auto& [width, height, drawn] : {Case{100, 0, {20, 10, 120, 60}}, Case{0, 40, {20, 10, 100, 50}}}) {
        Canvas canvas;
        EXPECT_TRUE(common.call(L"PrintEMF", {path, number_of(canvas.context), 20, 10, width, height}).flag());
        const RECT found = canvas.drawn();
        for (const auto& [is, expected] : {std::pair{found.left, drawn.left}, std::pair{found.top, drawn.top},
                                           std::pair{found.right, drawn.right}, std::pair{found.bottom, drawn.bottom}})
            EXPECT_NEAR(is, expected, 1);
    }
    Canvas canvas;
    EXPECT_TRUE(common.call(L"PrintEMF", {path, number_of(canvas.context)}).flag());
    const RECT whole{0, 0, canvas.width, canvas.height}, drawn = canvas.drawn();
    EXPECT_TRUE(EqualRect(&drawn, &whole)) << "as large as the screen";
}

/// No printer can be had where these tests run: that a page is printed is not shown here.
TEST_F(Drawing, SaysWhatKeepsAMetafileFromBeingPlayed)
{
    const std::wstring path = make_metafile();
    const std::string bytes = Folder::read(path);
    Canvas canvas;
    const long context = number_of(canvas.context);
    const auto white = canvas.pixels();
    for (const wchar_t* const missing : {L"missing.emf", L"missing\\x.emf"})
        expect_error(common.try_call(L"PrintEMF", {folder.file(missing)}), 53, L"File not found");
    for (const auto& other : {std::string{}, std::string{"no picture"}, bytes.substr(0, bytes.size() - 4), "x" + bytes})
        for (const long target : {context, 0L})
            EXPECT_FALSE(common.call(L"PrintEMF", {folder.write(L"other.emf", other), target}).flag());
    const std::wstring invalid = L"Invalid procedure call or argument";
    expect_error(common.try_call(L"PrintEMF", {path, 4711}), 5, invalid);
    expect_error(common.try_call(L"PrintEMF", {path, context, 0, 0, -1, 10}), 5, invalid);
    expect_error(common.try_call(L"PrintEMF", {path, context, 0x7FFFFFFF, 0, 1, 10}), 6, L"Overflow");
    EXPECT_EQ(canvas.pixels(), white);
    expect_error(common.try_call(L"PrintEMF", {path}), 482, L"Printer error");
}

TEST_F(Drawing, MakesFontsAndScalesThem)
{
    const Object plain = common.object(L"CreateFontOLE", {L"Liberation Sans"});
    EXPECT_EQ(plain.call(L"Name").text(), L"Liberation Sans");
    EXPECT_EQ(plain.call(L"Size").vt, VT_CY);
    EXPECT_EQ(plain.call(L"Size").number(), 8);
    for (const wchar_t* const style : {L"Bold", L"Italic", L"Underline", L"Strikethrough"})
        EXPECT_FALSE(plain.call(style).flag());
    const Object styled = common.object(L"CreateFontOLE", {L"Liberation Serif", 12, true, true, true, true, EASTEUROPE_CHARSET});
    for (const wchar_t* const style : {L"Bold", L"Italic", L"Underline", L"Strikethrough"})
        EXPECT_TRUE(styled.call(style).flag());
    EXPECT_EQ(styled.call(L"Charset").number(), EASTEUROPE_CHARSET);
    const std::wstring invalid = L"Invalid procedure call or argument";
    expect_error(common.try_call(L"CreateFontOLE", {L"Arial", 0}), 5, invalid);
    expect_error(common.try_call(L"CreateFontOLE", {L"Arial", 1e300}), 6, L"Overflow");

    // The platform may choose the next size of whole pixels.
    const auto size_of = [](const Object& font) { return static_cast<double>(font.call(L"Size").cyVal.int64) / 10000; };
    const double before = size_of(styled), scaled = common.call(L"ScaleFontSize", {styled, 1.5}).dblVal;
    EXPECT_NEAR(scaled, 1.5 * before, .75);
    EXPECT_EQ(size_of(styled), scaled);
    for (const double factor : {0., -1., std::nan("")})
        expect_error(common.try_call(L"ScaleFontSize", {styled, factor}), 5, invalid);
    EXPECT_EQ(size_of(styled), scaled);
    expect_error(common.try_call(L"ScaleFontSize", {static_cast<IDispatch*>(nullptr), 2.}), 91,
                 L"Object variable or With block variable not set");
    expect_error(common.try_call(L"ScaleFontSize", {common, 2.}), 438, L"Object doesn't support this property or method");

    double size = 10;
    DispatchObject whole_sizes{{L"Size"}, [&](DISPID, const DISPPARAMS& arguments, VARIANT* result) {
                                   if (arguments.cArgs == 1)
                                       size = std::floor(arguments.rgvarg[0].dblVal);
                                   else
                                       *result = Value{size};
                                   return S_OK;
                               }};
    EXPECT_EQ(common.call(L"ScaleFontSize", {&whole_sizes, 1.25}).dblVal, 12) << "the size that it has, not the one it was given";
}

TEST_F(Drawing, TellsTheSizeOfAPixel)
{
    const HDC screen = GetDC(nullptr);
    const double across = 25.4 / GetDeviceCaps(screen, LOGPIXELSX), down = 25.4 / GetDeviceCaps(screen, LOGPIXELSY);
    for (const long context : {0L, number_of(screen)}) {
        EXPECT_EQ(common.call(L"MMperPixX", {context}).dblVal, across);
        EXPECT_EQ(common.call(L"MMperPixY", {context}).dblVal, down);
    }
    ReleaseDC(nullptr, screen);
    for (const wchar_t* const member : {L"MMperPixX", L"MMperPixY"})
        for (const long none : {4711L, number_of(GetStockObject(BLACK_PEN))})
            expect_error(common.try_call(member, {none}), 5, L"Invalid procedure call or argument");
}

TEST_F(Drawing, ListsTheColoursOfAPalette)
{
    struct {
        LOGPALETTE palette;
        PALETTEENTRY more[2];
    } const three{{0x300, 3, {{1, 2, 3, 0}}}, {{255, 254, 253, PC_RESERVED}, {0, 0, 128, PC_NOCOLLAPSE}}};
    const HPALETTE palette = CreatePalette(&three.palette);
    EXPECT_EQ(client::told(common.call(L"GetPaletteColors", {number_of(palette)})), L"Long 0: 197121 16645887 8388608");
    DeleteObject(palette);
    for (const long none : {0L, 4711L, number_of(palette), number_of(GetStockObject(BLACK_PEN))})
        EXPECT_EQ(common.call(L"GetPaletteColors", {none}).vt, VT_EMPTY);
}

} // namespace
