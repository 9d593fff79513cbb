// Members that read the screen, the printer, the system's metrics and colours, and bitmap files, against the platform.

#include "support/client.h"

#include <cmath>
#include <set>

using client::expect_error;
using client::Folder;
using client::Object;
using client::Value;

namespace {

/// A capability of the screen, as another program would ask for it.
int of_screen(int capability)
{
    const HDC screen = GetDC(nullptr);
    const int value = GetDeviceCaps(screen, capability);
    ReleaseDC(nullptr, screen);
    return value;
}

int CALLBACK add_family(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM families)
{
    reinterpret_cast<std::set<std::wstring>*>(families)->insert(font->lfFaceName);
    return 1;
}

class Platform : public testing::Test {
protected:
    client::Apartment apartment;
};

using Screen = Platform;
using Printer = Platform;
using Metrics = Platform;
using Colours = Platform;
using Bitmap = Platform;

/// Makes this the user's default printer. The system knows no driver for it.
class DefaultPrinter {
public:
    explicit DefaultPrinter(const std::wstring& name) : name_{name}
    {
        GetProfileStringW(L"windows", L"device", L"", former_, MAX_PATH);
        WriteProfileStringW(L"windows", L"device", (name + L",winspool,FILE:").c_str());
    }
    ~DefaultPrinter() { WriteProfileStringW(L"windows", L"device", former_[0] ? former_ : nullptr); }
    DefaultPrinter(const DefaultPrinter&) = delete;
    DefaultPrinter& operator=(const DefaultPrinter&) = delete;

private:
    std::wstring name_;
    wchar_t former_[MAX_PATH];
};

} // namespace

TEST_F(Screen, SizesAreThoseOfThePrimaryScreen)
{
    const Object screen = Object::create(L"qvObjects.qvScreen");
    const double x = 1440. / of_screen(LOGPIXELSX), y = 1440. / of_screen(LOGPIXELSY);
    for (const auto& [member, value] :
         {std::pair{L"TwipsPerPixelX", x}, {L"TwipsPerPixelY", y}, {L"WidthTwips", of_screen(HORZRES) * x},
          {L"WidthPixel", of_screen(HORZRES)}, {L"HeightTwips", of_screen(VERTRES) * y}, {L"HeightPixel", of_screen(VERTRES)}}) {
        const client::Outcome outcome = screen.try_call(member);
        if (std::nearbyint(value) > 32767) {
            expect_error(outcome, 6, L"Overflow");
            continue;
        }
        EXPECT_EQ(outcome.value.vt, VT_I2);
        EXPECT_EQ(outcome.value.iVal, std::nearbyint(value)) << std::wstring{member}.c_str();
    }
    const Value pixels = screen.call(L"TwipX", {150});
    EXPECT_EQ(pixels.vt, VT_R4);
    EXPECT_EQ(pixels.fltVal, static_cast<float>(150 / x));
    EXPECT_EQ(screen.call(L"TwipY", {-7.5}).fltVal, static_cast<float>(-7.5 / y));
}

TEST_F(Screen, FontsAreItsFamiliesEachOnce)
{
    const HDC context = GetDC(nullptr);
    LOGFONTW all{};
    all.lfCharSet = DEFAULT_CHARSET;
    std::set<std::wstring> families;
    EnumFontFamiliesExW(context, &all, add_family, reinterpret_cast<LPARAM>(&families), 0);
    ReleaseDC(nullptr, context);

    const Object screen = Object::create(L"qvObjects.qvScreen");
    const Value count = screen.call(L"FontCount");
    EXPECT_EQ(count.vt, VT_I2);
    ASSERT_EQ(count.number(), static_cast<long>(families.size()));
    ASSERT_GT(count.number(), 0) << "this machine has no fonts";
    std::set<std::wstring> given;
    for (long i = 0; i < count.number(); ++i)
        given.insert(screen.call(L"Fonts", {i}).text());
    EXPECT_EQ(given, families);
    for (const long outside : {-1L, count.number(), 32767L})
        expect_error(screen.try_call(L"Fonts", {outside}), 381, L"Invalid property array index");
}

TEST_F(Screen, DeviceContextsAreGivenBack)
{
    const Object screen = Object::create(L"qvObjects.qvScreen");
    const auto next_context = [] { // the platform lends one again as soon as it is back
        const HDC context = GetDC(nullptr);
        ReleaseDC(nullptr, context);
        return context;
    };
    const HDC before = next_context();
    for (int i = 0; i < 10; ++i) {
        screen.call(L"WidthPixel");
        screen.try_call(L"Fonts", {-1});
    }
    EXPECT_EQ(next_context(), before);
}

TEST_F(Printer, WithoutOneEverythingIsAnError)
{
    wchar_t name[MAX_PATH];
    DWORD size = MAX_PATH;
    if (GetProfileStringW(L"windows", L"device", L"", name, size) > 0)
        GTEST_SKIP() << "this machine has a printer";
    const Object printer = Object::create(L"qvObjects.qvPrinter");
    for (const wchar_t* member : {L"TwipsPerPixelX", L"TwipsPerPixelY", L"Height", L"Width", L"FontCount", L"DeviceName"})
        expect_error(printer.try_call(member), 482, L"Printer error");
    expect_error(printer.try_call(L"Fonts", {0}), 482, L"Printer error");
}

TEST_F(Printer, ItsNameIsTakenForANumber)
{
    const Object printer = Object::create(L"qvObjects.qvPrinter");
    {
        const DefaultPrinter laser{L"A laser printer"};
        expect_error(printer.try_call(L"DeviceName"), 13, L"Type mismatch");
        expect_error(printer.try_call(L"Width"), 482, L"Printer error");
    }
    {
        const DefaultPrinter number{L"4711"};
        const Value name = printer.call(L"DeviceName");
        EXPECT_EQ(name.vt, VT_I2);
        EXPECT_EQ(name.number(), 4711);
    }
    const DefaultPrinter large{L"32768"};
    expect_error(printer.try_call(L"DeviceName"), 6, L"Overflow");
}

TEST_F(Metrics, AreThePlatformsInPixelsOrTwips)
{
    struct Case { const wchar_t* name; int index; char scale; };
    constexpr Case cases[]{
        {L"ScreenX", 0, 'X'}, {L"ScreenY", 1, 'Y'}, {L"ScrollXH", 21, 'X'}, {L"ScrollYV", 20, 'Y'}, {L"ScrollXV", 2, 'X'},
        {L"ScrollYH", 20, 'Y'}, {L"CaptionY", 4, 'Y'}, {L"BorderX", 5, 'X'}, {L"BorderY", 6, 'Y'}, {L"DlgFrameX", 7, 'X'},
        {L"DlgFrameY", 8, 'Y'}, {L"ThumbYV", 9, 'Y'}, {L"ThumbXH", 10, 'X'}, {L"IconX", 11, 'X'}, {L"IconY", 12, 'Y'},
        {L"CursorX", 13, 'X'}, {L"CursorY", 14, 'Y'}, {L"MenuY", 15, 'Y'}, {L"FullScreenX", 16, 'X'}, {L"FullScreenY", 17, 'Y'},
        {L"KanjiWindowY", 18, 'Y'}, {L"MousePresent", 19, '-'}, {L"DebugF", 22, '-'}, {L"MinX", 28, 'X'}, {L"MinY", 29, 'Y'},
        {L"SizeX", 30, 'X'}, {L"SizeY", 31, 'Y'}, {L"FrameX", 32, 'X'}, {L"FrameY", 33, 'Y'}, {L"MinTrackX", 34, 'X'},
        {L"MinTrackY", 35, 'Y'}, {L"DoubleClkX", 36, 'X'}, {L"DoubleClkY", 37, 'Y'}, {L"IconSpacingX", 38, 'X'},
        {L"IconSpacingY", 39, 'Y'}, {L"MenuDropAlignment", 40, '-'}, {L"PenWindows", 41, '-'}, {L"DbcEnabled", 42, '-'},
        {L"MouseButtons", 43, '-'}, {L"Metrics", 76, '-'}, {L"SizeFrameX", 32, 'X'}, {L"SizeFrameY", 33, 'Y'},
        {L"FixedFrameX", 7, 'X'}, {L"FixedFrameY", 8, 'Y'}};
    const Object metrics = Object::create(L"qvObjects.qvSystemMetrics");
    const auto expect_metrics = [&](double x, double y) {
        for (const Case& c : cases) {
            const double factor = c.scale == 'X' ? x : c.scale == 'Y' ? y : 1;
            const Value value = metrics.call(c.name);
            EXPECT_EQ(value.vt, VT_I4);
            EXPECT_EQ(value.lVal, GetSystemMetrics(c.index) * factor) << std::wstring{c.name}.c_str();
        }
        EXPECT_EQ(metrics.call(L"ScaleMode").number(), 1) << "whatever is set";
    };
    const double x = std::nearbyint(1440. / of_screen(LOGPIXELSX)), y = std::nearbyint(1440. / of_screen(LOGPIXELSY));
    expect_metrics(1, 1);
    metrics.put(L"ScaleMode", {1});
    expect_metrics(x, y);
    for (const short unit : {0, 2, 4, -1})
        expect_error(metrics.try_put(L"ScaleMode", {unit}), static_cast<long>(0x80040001),
                     L"Eigenschaft wird nicht unterst\u00fctzt!");
    expect_metrics(x, y);
    metrics.put(L"ScaleMode", {3});
    expect_metrics(1, 1);
}

TEST_F(Colours, AreThePlatforms)
{
    constexpr const wchar_t* names[]{L"ScrollBar", L"BackGround", L"CaptionActive", L"CaptionInactive", L"Menu", L"Window",
                                     L"WindowFrame", L"MenuText", L"WindowText", L"CaptionText", L"BorderActive",
                                     L"BorderInactive", L"AppWorkspace", L"HighLight", L"HighLightText", L"BtnFace", L"BtnShadow",
                                     L"GrayText", L"BtnText", L"CaptionTextInactive", L"BtnHighLight"};
    // Each one has a colour of its own for a while.
    constexpr int count = std::size(names);
    INT indexes[count];
    COLORREF former[count], own[count];
    for (int i = 0; i < count; ++i) {
        indexes[i] = i;
        former[i] = GetSysColor(i);
        own[i] = RGB(i, 100 + i, 255 - i);
    }
    SetSysColors(count, indexes, own);
    const Object colours = Object::create(L"qvObjects.qvSystemColors");
    for (int i = 0; i < count; ++i) {
        const Value colour = colours.call(names[i]);
        EXPECT_EQ(colour.vt, VT_I4);
        EXPECT_EQ(colour.lVal, static_cast<long>(own[i])) << std::wstring{names[i]}.c_str();
    }
    SetSysColors(count, indexes, former);
}

TEST_F(Bitmap, FilesTellTheirSize)
{
    using namespace std::string_literals;
    const Folder folder;
    const Object bitmap = Object::create(L"qvObjects.qvBitmap");
    const auto size_of = [&](const std::wstring& path) {
        Value x{-3}, y{-4};
        const bool read = bitmap.call(L"GetBitmapSizeS", {path, Value::variable(x), Value::variable(y)}).flag();
        return (read ? L"" : L"failed ") + std::to_wstring(x.number()) + L" " + std::to_wstring(y.number());
    };
    const std::string header = "BM\x76\x0E\0\0\0\0\0\0\x36\0\0\0"s, size = "\x28\0\0\0\x80\2\0\0\xE0\1\0\0\1\0\x18\0"s;
    const std::wstring plain = folder.write(L"plain.bmp", header + size + std::string(4000, 'x'));
    EXPECT_EQ(size_of(plain), L"640 480");
    for (const char kind : {'\x0C', '\x38', '\x40', '\x6C', '\x7C', '\0'})
        EXPECT_EQ(size_of(folder.write(L"other.bmp", header + kind + size.substr(1))), L"640 480") << "header size " << int{kind};
    EXPECT_EQ(size_of(folder.write(L"down.bmp", header + "\x28\0\0\0\1\0\0\0\x20\xFE\xFF\xFF"s)), L"1 -480");
    EXPECT_EQ(size_of(folder.write(L"cut.bmp", (header + size).substr(0, 20))), L"640 0");
    EXPECT_EQ(size_of(folder.write(L"text", "no bitmap at all, but it has enough characters")), L"544503138 1746957417");
    EXPECT_EQ(size_of(folder.write(L"empty", "")), L"0 0");
    EXPECT_EQ(size_of(folder.file(L"missing")), L"0 0");
    EXPECT_EQ(Folder::read(folder.file(L"missing")), "") << "it is there now, empty";
    EXPECT_EQ(Folder::read(plain).size(), 4030u) << "unchanged";

    SetFileAttributesW(plain.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(size_of(plain), L"640 480");
    SetFileAttributesW(plain.c_str(), FILE_ATTRIBUTE_NORMAL);
    const HANDLE lock = CreateFileW(plain.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(size_of(plain), L"failed -3 -4") << "locked";
    CloseHandle(lock);
    for (const std::wstring& path : {folder.path(), folder.file(L"no\\file"), std::wstring{L""}, plain + L'\0'})
        EXPECT_EQ(size_of(path), L"failed -3 -4");

    Value x{5}, y{L"six"};
    EXPECT_EQ(bitmap.try_call(L"GetBitmapSize", {7, Value::variable(x), 8}).result, S_OK);
    EXPECT_EQ(x.number(), 5);
    EXPECT_EQ(bitmap.try_call(L"GetBitmapSizeS", {plain, Value::variable(x), Value::variable(y)}).result, DISP_E_TYPEMISMATCH);
}
