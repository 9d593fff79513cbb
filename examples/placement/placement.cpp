// Brings a window back to where it was closed:
//     placement [SECONDS]
//
// It shows how a program in C++ uses qvSave, which knows forms by the names of their members: an object with those members stands
// for the window. The program moves its window, closes it, opens it again and restores its place. It waits so many seconds
// before and after that.
// Build it as a 32-bit program, with one of
//     cl /std:c++17 /EHsc /DUNICODE placement.cpp ole32.lib oleaut32.lib uuid.lib user32.lib gdi32.lib
//     i686-w64-mingw32-g++ -std=c++17 -municode -static placement.cpp -o placement.exe -lole32 -loleaut32 -luuid -lgdi32
#include "../late_bound.h"

#include <cstdio>
#include <cwchar>

/// A window as qvSave sees it: lengths in twips, of which an inch has 1440. It lives where it is declared, so nobody needs to
/// count its references.
class Form final : public IDispatch {
public:
    explicit Form(HWND window) : window_{window} {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override
    {
        for (*id = 0; *id < member_count; ++*id)
            if (!_wcsicmp(members[*id], names[0]))
                return S_OK;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                                     UINT*) override
    {
        if (member < 0 || member >= member_count)
            return DISP_E_MEMBERNOTFOUND;
        if (flags & DISPATCH_PROPERTYPUT)
            return put(member, arguments->rgvarg[0]);
        Value value = get(member);
        return result ? VariantCopy(result, &value) : S_OK;
    }

private:
    enum Member : DISPID { Left, Top, Width, Height, WindowState, BorderStyle, MaxButton, MinButton, member_count };
    static constexpr const wchar_t* members[]{L"Left",        L"Top",         L"Width",     L"Height",
                                              L"WindowState", L"BorderStyle", L"MaxButton", L"MinButton"};

    Value get(DISPID member) const
    {
        RECT place{};
        GetWindowRect(window_, &place);
        switch (member) {
        case Left: return twips(place.left);
        case Top: return twips(place.top);
        case Width: return twips(place.right - place.left);
        case Height: return twips(place.bottom - place.top);
        case WindowState: return IsIconic(window_) ? 1L : IsZoomed(window_) ? 2L : 0L;
        case BorderStyle: return 2L; // can be sized
        default: return true;
        }
    }
    HRESULT put(DISPID member, const VARIANT& given) const
    {
        Value value;
        if (FAILED(VariantChangeType(&value, const_cast<VARIANT*>(&given), 0, VT_R8)))
            return DISP_E_TYPEMISMATCH;
        if (member == WindowState) {
            ShowWindow(window_, value.dblVal == 1 ? SW_SHOWMINIMIZED : value.dblVal == 2 ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL);
            return S_OK;
        }
        RECT place{};
        GetWindowRect(window_, &place);
        const SIZE size{place.right - place.left, place.bottom - place.top};
        const int length = static_cast<int>(value.dblVal / twips(1) + (value.dblVal < 0 ? -0.5 : 0.5));
        MoveWindow(window_, member == Left ? length : place.left, member == Top ? length : place.top,
                   member == Width ? length : size.cx, member == Height ? length : size.cy, TRUE);
        return S_OK;
    }
    static long twips(long pixels) { return pixels * pixels_to_twips; }

    static constexpr long pixels_to_twips = 15; // the window is not aware of finer screens: its inch has 96 pixels
    const HWND window_;
};

/// Writes into the window where it is.
LRESULT CALLBACK tell_place(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_MOVE || message == WM_SIZE)
        InvalidateRect(window, nullptr, TRUE);
    if (message != WM_PAINT)
        return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint;
    RECT place{}, inside{};
    GetWindowRect(window, &place);
    GetClientRect(window, &inside);
    wchar_t text[80];
    std::swprintf(text, 80, L"At %ld, %ld: %ld by %ld", place.left, place.top, place.right - place.left,
                  place.bottom - place.top);
    const HDC screen = BeginPaint(window, &paint);
    SetBkMode(screen, TRANSPARENT);
    DrawTextW(screen, text, -1, &inside, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    EndPaint(window, &paint);
    return 0;
}

HWND open_window()
{
    WNDCLASSW of_window{};
    of_window.lpfnWndProc = tell_place;
    of_window.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    of_window.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    of_window.lpszClassName = L"placement";
    RegisterClassW(&of_window); // unless it is already
    return CreateWindowW(L"placement", L"Stations", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 200, 110, nullptr, nullptr, nullptr,
                         nullptr);
}

void handle_messages_for(DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    do {
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessageW(&message);
        Sleep(10);
    } while (GetTickCount() - start < milliseconds);
}

void tell(const char* what, HWND window)
{
    RECT place{};
    GetWindowRect(window, &place);
    std::printf("%s %ld, %ld: %ld by %ld\n", what, place.left, place.top, place.right - place.left, place.bottom - place.top);
    std::fflush(stdout);
}

void run(DWORD milliseconds)
{
    const Object save{L"qvObjects.qvSave"};
    save.set(L"Application", L"qvObjects examples");
    save.set(L"Section", L"Placement");

    const HWND window = open_window();
    MoveWindow(window, 120, 60, 250, 150, TRUE); // its user does that
    Form form{window};
    save.set(L"Form", &form);
    save.call(L"WritePosition");
    tell("Closed at", window);
    DestroyWindow(window);

    const HWND again = open_window();
    Form form_again{again};
    save.set(L"Form", &form_again);
    tell("Opened at", again);
    handle_messages_for(milliseconds);
    save.call(L"ReadPosition");
    tell("Restored to", again);
    handle_messages_for(milliseconds);
    save.set(L"Form", static_cast<IDispatch*>(nullptr));
    DestroyWindow(again);
}

int wmain(int count, wchar_t** arguments)
{
    CoInitialize(nullptr);
    int code = 0;
    try {
        run(count > 1 ? 1000 * std::wcstoul(arguments[1], nullptr, 10) : 0);
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        code = 1;
    }
    CoUninitialize();
    return code;
}
