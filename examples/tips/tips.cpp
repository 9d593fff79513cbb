// Shows tooltips over a window, one after the other, and ends:
//     tips [SECONDS]
//
// It shows how a program in C++ uses qvToolTip: a tool with a fixed text, one whose text the event NeedText asks for, and a
// balloon with a title. It prints when it is asked for a text. Here the program says when a tooltip appears and where; without
// the flag track the system shows it where the mouse rests on the tool. Build it as a 32-bit program, with one of
//     cl /std:c++17 /EHsc /DUNICODE tips.cpp ole32.lib oleaut32.lib uuid.lib user32.lib gdi32.lib
//     i686-w64-mingw32-g++ -std=c++17 -municode -static tips.cpp -o tips.exe -lole32 -loleaut32 -luuid -lgdi32
#include "../late_bound.h"

#include <cstdio>
#include <cwchar>

constexpr long always = 1, balloon = 64;   // TTS_ALWAYSTIP, TTS_BALLOON
constexpr long information = 1;            // TTI_INFOICON
constexpr long track = 32, absolute = 128; // TTF_TRACK, TTF_ABSOLUTE
constexpr long fixed_tool = 1, asking_tool = 2, balloon_tool = 3;
constexpr RECT areas[]{{20, 20, 180, 80}, {20, 110, 180, 170}, {20, 200, 180, 260}};

/// Gives texts to tooltips.
class Texts final : public Listener {
public:
    /// The event is NeedText(ID, TTText). Arguments come in reverse order.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        constexpr DISPID need_text = 1;
        if (event != need_text || arguments->cArgs != 2)
            return DISP_E_MEMBERNOTFOUND;
        SYSTEMTIME now;
        GetLocalTime(&now);
        wchar_t text[80];
        std::swprintf(text, 80, L"Asked at %02d:%02d:%02d for tool %ld", now.wHour, now.wMinute, now.wSecond,
                      arguments->rgvarg[1].lVal);
        SysReAllocString(arguments->rgvarg[0].pbstrVal, text);
        std::printf("Tool %ld asked for its text.\n", arguments->rgvarg[1].lVal);
        return S_OK;
    }
};

LRESULT CALLBACK paint_areas(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_PAINT)
        return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint;
    const HDC screen = BeginPaint(window, &paint);
    for (const RECT& area : areas)
        Rectangle(screen, area.left, area.top, area.right, area.bottom);
    EndPaint(window, &paint);
    return 0;
}

HWND create_window()
{
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = &paint_areas;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    window_class.lpszClassName = L"tips";
    RegisterClassW(&window_class);
    return CreateWindowW(L"tips", L"Tooltips", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 60, 40, 330, 340, nullptr, nullptr,
                         window_class.hInstance, nullptr);
}

void handle_messages_for(DWORD milliseconds)
{
    for (const DWORD start = GetTickCount(); GetTickCount() - start < milliseconds; Sleep(10))
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessageW(&message);
}

/// Shows a tool's tooltip over its area for some time. The position's high word is x for SetTrackPosition, but y for the system.
void show(const Object& tip, HWND window, long tool, DWORD milliseconds)
{
    const auto handle = static_cast<long>(reinterpret_cast<LONG_PTR>(window));
    POINT place{areas[tool - 1].left + 40, areas[tool - 1].top + 30};
    ClientToScreen(window, &place);
    tip.call(L"SetTrackPosition", {place.y, place.x});
    tip.call(L"SetTrackActivate", {true, handle, tool});
    handle_messages_for(milliseconds);
    tip.call(L"SetTrackActivate", {false, handle, tool});
}

void show_tooltips(const Object& plain, const Object& balloons, HWND window, DWORD milliseconds)
{
    const auto handle = static_cast<long>(reinterpret_cast<LONG_PTR>(window));
    const auto& [first, second, third] = areas;
    constexpr long flags = track | absolute;
    plain.call(L"AddTTRect", {handle, first.left, first.top, first.right, first.bottom, L"A fixed text", flags, fixed_tool});
    plain.call(L"AddTTRectCB", {handle, second.left, second.top, second.right, second.bottom, flags, asking_tool});
    balloons.call(L"AddTTRectCB", {handle, third.left, third.top, third.right, third.bottom, flags, balloon_tool});
    balloons.call(L"SetTitle", {L"A title", information});
    show(plain, window, fixed_tool, milliseconds);
    show(plain, window, asking_tool, milliseconds);
    show(balloons, window, balloon_tool, milliseconds);
}

void run(DWORD milliseconds)
{
    const HWND window = create_window();
    {
        const Object plain{L"qvObjects.qvToolTip"}, balloons{L"qvObjects.qvToolTip"};
        plain.call(L"Init", {always});
        balloons.call(L"Init", {always | balloon});
        Texts texts;
        texts.listen_to(plain);
        texts.listen_to(balloons);
        show_tooltips(plain, balloons, window, milliseconds);
    } // the tooltips go before the window whose messages they hear
    DestroyWindow(window);
}

int wmain(int count, wchar_t** arguments)
{
    const auto seconds = count > 1 ? static_cast<DWORD>(std::wcstol(arguments[1], nullptr, 10)) : 0;
    CoInitialize(nullptr);
    int code = 0;
    try {
        run((seconds > 0 ? seconds : 6) * 1000 / 3);
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        code = 1;
    }
    CoUninitialize();
    return code;
}
