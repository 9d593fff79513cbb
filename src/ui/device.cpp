#include "ui/device.h"

#include "automation/border.h"
#include "automation/case_folding.h"
#include "automation/handle.h"

#include <algorithm>
#include <new>
#include <vector>

// winspool.h does not say that it is imported.
extern "C" DECLSPEC_IMPORT BOOL WINAPI GetDefaultPrinterW(wchar_t* name, DWORD* size);

namespace device {
namespace {

using automation::Error;
using automation::Runtime;

struct OfScreen {
    using Value = HDC;
    static Value none() noexcept { return nullptr; }
    static void close(Value context) noexcept { ReleaseDC(nullptr, context); }
};

using Screen = automation::Handle<OfScreen>;
using Printer = automation::Handle<automation::NullMeansNone<HDC, &DeleteDC>>;

Screen screen()
{
    Screen context{GetDC(nullptr)};
    if (!context)
        throw Error{Runtime::OutOfMemory};
    return context;
}

/// To ask it, not to print.
Printer printer()
{
    Printer context{CreateICW(L"WINSPOOL", printer_name().c_str(), nullptr, nullptr)};
    if (!context)
        throw Error{Runtime::Printer};
    return context;
}

Area area(HDC context, Runtime failure)
{
    const auto capability = [&](int index) { return GetDeviceCaps(context, index); };
    const Area area{{capability(HORZRES), capability(LOGPIXELSX)}, {capability(VERTRES), capability(LOGPIXELSY)}};
    if (area.width.pixels_per_inch <= 0 || area.height.pixels_per_inch <= 0)
        throw Error{failure};
    return area;
}

struct Families {
    std::vector<std::wstring> names;
    bool is_whole = true;
};

/// The platform may report a family once for each character set that it has: one after the other.
int CALLBACK add_family(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM parameter) noexcept
{
    auto& families = *reinterpret_cast<Families*>(parameter);
    families.is_whole = false;
    return automation::answer_callback(automation::Ref<IUnknown>{}, 0, [&] {
        const std::wstring_view name = font->lfFaceName;
        const auto is_name = [&](const std::wstring& other) { return automation::equal_folded(name, other); };
        if (std::none_of(families.names.rbegin(), families.names.rend(), is_name))
            families.names.emplace_back(name);
        families.is_whole = true;
        return 1;
    });
}

std::vector<std::wstring> font_families(HDC context)
{
    LOGFONTW all{};
    all.lfCharSet = DEFAULT_CHARSET;
    Families families;
    EnumFontFamiliesExW(context, &all, add_family, reinterpret_cast<LPARAM>(&families), 0);
    if (!families.is_whole)
        throw std::bad_alloc{};
    return std::move(families.names);
}

std::wstring font_family(HDC context, short index)
{
    std::vector<std::wstring> families = font_families(context);
    if (index < 0 || static_cast<std::size_t>(index) >= families.size())
        throw Error{Runtime::InvalidPropertyArrayIndex};
    return std::move(families[static_cast<std::size_t>(index)]);
}

short font_count(HDC context)
{
    return rounded<short>(static_cast<double>(font_families(context).size()));
}

} // namespace

Area screen_area()
{
    return area(screen().get(), Runtime::OutOfMemory);
}

std::wstring screen_font(short index)
{
    return font_family(screen().get(), index);
}

short screen_font_count()
{
    return font_count(screen().get());
}

Area printer_area()
{
    return area(printer().get(), Runtime::Printer);
}

std::wstring printer_font(short index)
{
    return font_family(printer().get(), index);
}

short printer_font_count()
{
    return font_count(printer().get());
}

std::wstring printer_name()
{
    std::wstring name;
    DWORD size = 0; // with the closing NUL
    while (!GetDefaultPrinterW(size > 0 ? name.data() : nullptr, &size)) {
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || size <= name.size())
            throw Error{Runtime::Printer};
        name.resize(size);
    }
    name.resize(size > 0 ? size - 1 : 0);
    return name;
}

} // namespace device
