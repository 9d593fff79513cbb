// Shows tooltips over a window, one after the other, and ends:
//     tips [SECONDS]
//
// It shows how a program in C++ uses qvToolTip: a tool with a fixed text, one whose text the event NeedText asks for, and a
// balloon with a title. It prints when it is asked for a text. Here the program says when a tooltip appears and where; without
// the flag track the system shows it where the mouse rests on the tool. Build it as a 32-bit program, with one of
//     cl /EHsc /DUNICODE tips.cpp ole32.lib oleaut32.lib uuid.lib user32.lib gdi32.lib
//     i686-w64-mingw32-g++ -municode -static tips.cpp -o tips.exe -lole32 -loleaut32 -luuid -lgdi32
#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <vector>

constexpr long always = 1, balloon = 64;   // TTS_ALWAYSTIP, TTS_BALLOON
constexpr long information = 1;            // TTI_INFOICON
constexpr long track = 32, absolute = 128; // TTF_TRACK, TTF_ABSOLUTE
constexpr long fixed_tool = 1, asking_tool = 2, balloon_tool = 3;
constexpr RECT areas[]{{20, 20, 180, 80}, {20, 110, 180, 170}, {20, 200, 180, 260}};

/// A value for a call. It owns its text.
class Argument : public VARIANT {
public:
    Argument(long number) { vt = VT_I4; lVal = number; }
    Argument(bool flag) { vt = VT_BOOL; boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE; }
    Argument(const wchar_t* text) { vt = VT_BSTR; bstrVal = SysAllocString(text); }
    Argument(const Argument& other) { VariantInit(this); VariantCopy(this, const_cast<Argument*>(&other)); }
    Argument& operator=(const Argument&) = delete;
    ~Argument() { VariantClear(this); }
};

/// object.Member arguments
HRESULT call(IDispatch* object, const wchar_t* member, std::vector<Argument> arguments)
{
    DISPID id;
    auto name = const_cast<LPOLESTR>(member);
    const HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result))
        return result;
    std::vector<VARIANTARG> reversed(arguments.rbegin(), arguments.rend()); // the texts stay with `arguments`
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
}

/// Answers NeedText. It lives where it is declared, so nobody needs to count its references.
class Listener final : public IDispatch {
public:
    explicit Listener(REFIID events) : events_{events} {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

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

private:
    const IID events_;
};

/// A tooltip object whose window has this style; null if it can't be created.
IDispatch* create_tooltip(long style)
{
    CLSID id;
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(L"qvObjects.qvToolTip", &id)) ||
        FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object))))
        return nullptr;
    call(object, L"Init", {style});
    return object;
}

/// Where listeners are made known to an object, and what they hear.
IConnectionPoint* events_of(IDispatch* object, IID& events)
{
    IProvideClassInfo2* information = nullptr;
    IConnectionPointContainer* container = nullptr;
    IConnectionPoint* point = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&information)))) {
        information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
        information->Release();
    }
    if (SUCCEEDED(object->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)))) {
        container->FindConnectionPoint(events, &point);
        container->Release();
    }
    return point;
}

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
void show(IDispatch* tip, HWND window, long tool, DWORD milliseconds)
{
    const auto handle = static_cast<long>(reinterpret_cast<LONG_PTR>(window));
    POINT place{areas[tool - 1].left + 40, areas[tool - 1].top + 30};
    ClientToScreen(window, &place);
    call(tip, L"SetTrackPosition", {place.y, place.x});
    call(tip, L"SetTrackActivate", {true, handle, tool});
    handle_messages_for(milliseconds);
    call(tip, L"SetTrackActivate", {false, handle, tool});
}

void show_tooltips(IDispatch* plain, IDispatch* balloons, HWND window, DWORD milliseconds)
{
    const auto handle = static_cast<long>(reinterpret_cast<LONG_PTR>(window));
    const auto& [first, second, third] = areas;
    constexpr long flags = track | absolute;
    call(plain, L"AddTTRect", {handle, first.left, first.top, first.right, first.bottom, L"A fixed text", flags, fixed_tool});
    call(plain, L"AddTTRectCB", {handle, second.left, second.top, second.right, second.bottom, flags, asking_tool});
    call(balloons, L"AddTTRectCB", {handle, third.left, third.top, third.right, third.bottom, flags, balloon_tool});
    call(balloons, L"SetTitle", {L"A title", information});
    show(plain, window, fixed_tool, milliseconds);
    show(plain, window, asking_tool, milliseconds);
    show(balloons, window, balloon_tool, milliseconds);
}

int run(DWORD milliseconds)
{
    IDispatch* const plain = create_tooltip(always);
    IDispatch* const balloons = create_tooltip(always | balloon);
    if (!plain || !balloons) {
        std::printf("qvObjects.qvToolTip can't be created.\n");
        return 1;
    }
    IID events = GUID_NULL;
    IConnectionPoint* const points[]{events_of(plain, events), events_of(balloons, events)};
    Listener listener{events};
    DWORD cookies[2]{};
    for (int i = 0; i < 2; ++i)
        points[i]->Advise(&listener, &cookies[i]);

    const HWND window = create_window();
    show_tooltips(plain, balloons, window, milliseconds);

    for (int i = 0; i < 2; ++i) {
        points[i]->Unadvise(cookies[i]); // before the listener goes
        points[i]->Release();
    }
    balloons->Release(); // the tooltips go before the window whose messages they hear
    plain->Release();
    DestroyWindow(window);
    return 0;
}

int wmain(int count, wchar_t** arguments)
{
    const auto seconds = count > 1 ? static_cast<DWORD>(std::wcstol(arguments[1], nullptr, 10)) : 0;
    CoInitialize(nullptr);
    const int code = run((seconds > 0 ? seconds : 6) * 1000 / 3);
    CoUninitialize();
    return code;
}
