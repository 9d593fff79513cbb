#include "ui/qvCommon_drawing.h"

#include "automation/border.h"
#include "automation/client_object.h"
#include "automation/handle.h"
#include "automation/safe_array.h"
#include "files/file.h"
#include "files/folder_search.h"
#include "files/path_names.h"
#include "ui/device.h"
#include "ui/enhanced_metafile.h"

#include <olectl.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using automation::CalculatesAsClient;
using automation::Error;
using automation::Runtime;

struct OfScreen {
    using Value = HDC;
    static Value none() noexcept { return nullptr; }
    static void close(Value context) noexcept { ReleaseDC(nullptr, context); }
};
struct OfPrinter {
    using Value = HDC;
    static Value none() noexcept { return nullptr; }
    static void close(Value context) noexcept { DeleteDC(context); }
};
struct OfMetafile {
    using Value = HENHMETAFILE;
    static Value none() noexcept { return nullptr; }
    static void close(Value metafile) noexcept { DeleteEnhMetaFile(metafile); }
};
using ScreenContext = automation::Handle<OfScreen>;
using PrinterContext = automation::Handle<OfPrinter>;
using MetafileHandle = automation::Handle<OfMetafile>;

/// Raises 5 where a device knows no such number, as what is no device does not.
int capability(HDC device, int which)
{
    const int value = GetDeviceCaps(device, which);
    if (value <= 0)
        throw Error{Runtime::InvalidCall};
    return value;
}

double millimetres_per_pixel(long hDC, int pixels_per_inch)
{
    const ScreenContext screen{hDC ? nullptr : GetDC(nullptr)};
    return 25.4 / capability(hDC ? automation::handle_from<HDC>(hDC) : screen.get(), pixels_per_inch);
}

/// A device context as pixels of its device, whatever its owner has made of it; as it was at the end.
class InPixels {
public:
    explicit InPixels(HDC context) : context_{context}, saved_{SaveDC(context)}
    {
        if (saved_ == 0)
            throw Error{Runtime::InvalidCall};
        ModifyWorldTransform(context, nullptr, MWT_IDENTITY);
        SetLayout(context, 0);
        SetMapMode(context, MM_TEXT);
        SetViewportOrgEx(context, 0, 0, nullptr);
        SetWindowOrgEx(context, 0, 0, nullptr);
    }
    ~InPixels() { RestoreDC(context_, saved_); }
    InPixels(const InPixels&) = delete;
    InPixels& operator=(const InPixels&) = delete;

private:
    HDC context_;
    int saved_;
};

struct Place {
    long left, top, width, height; ///< a side of 0 stands for the page's
};

LONG coordinate(double value)
{
    if (std::abs(value) > std::numeric_limits<LONG>::max())
        throw Error{Runtime::Overflow};
    return static_cast<LONG>(std::lround(value));
}

/// The rectangle of a picture on a device, whose pixels need not be square.
RECT rectangle(HDC device, const Place& place, ui::Extent frame)
{
    const auto number = [&](int which) { return static_cast<double>(capability(device, which)); };
    const ui::Extent page{number(HORZRES), number(VERTRES)};
    const ui::Extent picture{frame.width * number(LOGPIXELSX), frame.height * number(LOGPIXELSY)};
    const ui::Extent wanted{static_cast<double>(place.width), static_cast<double>(place.height)};
    const ui::Extent size = ui::picture_size(wanted, page, picture);
    return {place.left, place.top, coordinate(place.left + size.width), coordinate(place.top + size.height)};
}

/// A metafile in memory.
struct Picture {
    MetafileHandle metafile;
    ui::Extent frame;
};

/// Raises 53 also where the folder is missing.
void require_file(std::wstring_view path)
{
    DWORD failure = 0;
    files::attributes_of(files::checked(path), failure);
    if (failure == ERROR_FILE_NOT_FOUND || failure == ERROR_PATH_NOT_FOUND)
        throw Error{Runtime::FileNotFound};
}

/// No metafile when the file holds none.
Picture read_picture(std::wstring_view path)
{
    require_file(path);
    const std::string bytes = files::read_whole(path);
    const auto found = ui::enhanced_metafile(bytes);
    if (!found)
        return {MetafileHandle{}, {}};
    const auto* const records = reinterpret_cast<const BYTE*>(found->records.data());
    return {MetafileHandle{SetEnhMetaFileBits(static_cast<UINT>(found->records.size()), records)}, found->frame};
}

bool play(const Picture& picture, HDC device, const Place& place)
{
    const InPixels in_pixels{device};
    const RECT area = rectangle(device, place, picture.frame);
    return PlayEnhMetaFile(device, picture.metafile.get(), &area);
}

/// Raises the printer's error unless something has succeeded.
void require_printer(bool done)
{
    if (!done)
        throw Error{Runtime::Printer};
}

/// A document on its way to a printer, of which nothing is printed unless it is finished.
class Document {
public:
    Document(HDC printer, const std::wstring& title) : printer_{printer}
    {
        const DOCINFOW document{sizeof document, title.c_str(), nullptr, nullptr, 0};
        const CalculatesAsClient as_client; // the driver may ask the user for a file
        is_open_ = StartDocW(printer, &document) > 0;
        require_printer(is_open_ || GetLastError() == ERROR_CANCELLED);
    }
    ~Document()
    {
        if (is_open_)
            AbortDoc(printer_);
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// False when the user cancelled it.
    bool is_open() const noexcept { return is_open_; }
    void finish()
    {
        require_printer(EndDoc(printer_) > 0);
        is_open_ = false;
    }

private:
    HDC printer_;
    bool is_open_;
};

bool print(const Picture& picture, const std::wstring& title, const Place& place)
{
    const PrinterContext printer{CreateDCW(L"WINSPOOL", device::printer_name().c_str(), nullptr, nullptr)};
    require_printer(static_cast<bool>(printer));
    Document document{printer.get(), title};
    if (!document.is_open())
        return false;
    require_printer(StartPage(printer.get()) > 0);
    if (!play(picture, printer.get(), place))
        return false;
    require_printer(EndPage(printer.get()) > 0);
    document.finish();
    return true;
}

} // namespace

bool qvCommon_drawing::PrintEMF(std::wstring_view sFile, long hDC, long Left, long Top, long Width, long Height)
{
    if (Width < 0 || Height < 0)
        throw Error{Runtime::InvalidCall};
    const Picture picture = read_picture(sFile);
    if (!picture.metafile)
        return false;
    const Place place{Left, Top, Width, Height};
    if (hDC)
        return play(picture, automation::handle_from<HDC>(hDC), place);
    return print(picture, std::wstring{files::GetFile(sFile)}, place);
}

automation::Ref<IDispatch> qvCommon_drawing::CreateFontOLE(std::wstring_view sName, const VARIANT& Size, bool Bold, bool Italic,
                                                           bool Underline, bool Strikethrough, short Charset)
{
    std::wstring name{sName};
    constexpr LONGLONG usual_size = 80000; // 8 points, of which a Currency has ten thousandths
    FONTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.lpstrName = name.data();
    description.cySize.int64 = automation::is_missing(Size) ? usual_size : automation::converted(Size, VT_CY).cyVal.int64;
    description.sWeight = Bold ? FW_BOLD : FW_NORMAL;
    description.sCharset = Charset;
    description.fItalic = Italic;
    description.fUnderline = Underline;
    description.fStrikethrough = Strikethrough;
    if (description.cySize.int64 <= 0)
        throw Error{Runtime::InvalidCall};
    automation::Ref<IDispatch> font;
    automation::check(OleCreateFontIndirect(&description, IID_IFontDisp, font.put_void()));
    return font;
}

double qvCommon_drawing::ScaleFontSize(IDispatch* oFont, double dFactor)
{
    if (!(dFactor > 0))
        throw Error{Runtime::InvalidCall};
    const automation::Ref font{oFont}; // which its own code may let go of
    const auto size = [&] { return automation::converted(automation::get(font.get(), L"Size"), VT_R8).dblVal; };
    const double scaled = size() * dFactor;
    if (!std::isfinite(scaled))
        throw Error{Runtime::Overflow};
    automation::put(font.get(), L"Size", automation::Variant{scaled});
    return size();
}

double qvCommon_drawing::MMperPixX(long hDC)
{
    return millimetres_per_pixel(hDC, LOGPIXELSX);
}

double qvCommon_drawing::MMperPixY(long hDC)
{
    return millimetres_per_pixel(hDC, LOGPIXELSY);
}

automation::Variant qvCommon_drawing::GetPaletteColors(long hPalette)
{
    const auto palette = automation::handle_from<HPALETTE>(hPalette);
    if (GetObjectType(palette) != OBJ_PAL)
        return {};
    std::vector<PALETTEENTRY> entries(GetPaletteEntries(palette, 0, 0, nullptr));
    const UINT count = GetPaletteEntries(palette, 0, static_cast<UINT>(entries.size()), entries.data());
    entries.resize(std::min<std::size_t>(count, entries.size()));
    automation::Variant colours = automation::new_array(VT_I4, entries.size());
    const automation::LockedArray<long> elements{colours.parray};
    std::ranges::transform(entries, elements.begin(), [](const PALETTEENTRY& entry) {
        return static_cast<long>(RGB(entry.peRed, entry.peGreen, entry.peBlue));
    });
    return colours;
}
