// Watches the messages of a window, and limits the sizes of another one:
//     window [--show]
//
// It shows how a program in C++ uses qvWindowProc and hears its event `message`. Of the letters that are typed into the first
// window, each is told, small ones become capital ones, and digits never arrive. The second window can't be made smaller than
// 300 by 200 or larger than 500 by 400. The program types and resizes by itself and ends; with --show the windows stay until
// they are closed.
// Build it as a 32-bit program, with one of
//     cl /std:c++17 /EHsc /DUNICODE window.cpp ole32.lib oleaut32.lib uuid.lib user32.lib
//     i686-w64-mingw32-g++ -std=c++17 -municode -static window.cpp -o window.exe -lole32 -loleaut32 -luuid
#include "../late_bound.h"

#include <cstdio>
#include <string>

/// Hears of the letters that are typed.
class Typing final : public Listener {
public:
    /// The one event is message(hwnd, wMsg, wParam, lParam, Cancel). Arguments come in reverse order.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        constexpr DISPID message = 1;
        if (event != message || arguments->cArgs != 5)
            return DISP_E_MEMBERNOTFOUND;
        const VARIANTARG &wParam = arguments->rgvarg[2], &cancel = arguments->rgvarg[0];
        long& letter = *wParam.plVal;
        std::wprintf(L"  '%lc' was typed\n", static_cast<wint_t>(letter));
        if (letter >= L'a' && letter <= L'z')
            letter += L'A' - L'a'; // the window gets another letter
        if (letter >= L'0' && letter <= L'9')
            *cancel.pboolVal = VARIANT_TRUE; // the window gets nothing
        return S_OK;
    }
};

/// Has an object watch a window.
void watch(const Object& object, HWND window)
{
    object.set(L"hwnd", static_cast<long>(reinterpret_cast<LONG_PTR>(window)));
    object.set(L"Enabled", true);
}

std::wstring arrived;

/// Shows the letters that arrive. It is the procedure that the windows had before they are watched.
LRESULT CALLBACK window_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CHAR:
        arrived += static_cast<wchar_t>(wParam);
        SetWindowTextW(window, (L"Arrived: " + arrived).c_str());
        return 0;
    case WM_CLOSE:
        PostQuitMessage(0); // the windows are destroyed when nobody watches them any more
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

HWND create_window(const char* title, int left)
{
    WNDCLASSA of_window{};
    of_window.lpfnWndProc = window_procedure;
    of_window.hCursor = LoadCursor(nullptr, IDC_ARROW);
    of_window.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    of_window.lpszClassName = "qvObjects example";
    RegisterClassA(&of_window); // unless it is already
    return CreateWindowA(of_window.lpszClassName, title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, left, 50, 400, 300, nullptr, nullptr,
                         nullptr, nullptr);
}

void type_into(HWND window)
{
    std::wprintf(L"Typed into the first window:\n");
    for (const char letter : std::string{"Hall 7"})
        SendMessageA(window, WM_CHAR, static_cast<WPARAM>(letter), 0);
    std::wprintf(L"It got \"%ls\".\n", arrived.c_str());
}

void resize(HWND window)
{
    for (const int wanted : {100, 350, 900}) {
        RECT place{};
        SetWindowPos(window, nullptr, 0, 0, wanted, wanted, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        GetWindowRect(window, &place);
        std::wprintf(L"The second window was made %d by %d, and is %ld by %ld.\n", wanted, wanted, place.right - place.left,
                     place.bottom - place.top);
    }
}

void handle_messages_until_closed()
{
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void run(bool show)
{
    const Object typing{L"qvObjects.qvWindowProc"}, sizing{L"qvObjects.qvWindowProc"};
    Typing listener;
    listener.listen_to(typing);
    const HWND first = create_window("Type here", 50), second = create_window("Resize me", 500);
    typing.call(L"AddMsg", {static_cast<long>(WM_CHAR)});
    watch(typing, first);
    sizing.call(L"SetMinMaxInfo", {300L, 200L, 500L, 400L}); // this one reports no messages now
    watch(sizing, second);

    type_into(first);
    resize(second);
    if (show)
        handle_messages_until_closed();

    // Watching ends here, not when the objects are released: before the windows and the listener go.
    typing.set(L"Enabled", false);
    sizing.set(L"Enabled", false);
    DestroyWindow(first);
    DestroyWindow(second);
}

int wmain(int count, wchar_t** arguments)
{
    CoInitialize(nullptr);
    int code = 0;
    try {
        run(count > 1 && !std::wcscmp(arguments[1], L"--show"));
    } catch (const std::exception& error) {
        std::wprintf(L"%hs\n", error.what());
        code = 1;
    }
    CoUninitialize();
    return code;
}
