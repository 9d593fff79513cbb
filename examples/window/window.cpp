// Watches the messages of a window, and limits the sizes of another one:
//     window [--show]
//
// It shows how a program in C++ uses qvWindowProc and hears its event `message`. Of the letters that are typed into the first
// window, each is told, small ones become capital ones, and digits never arrive. The second window can't be made smaller than
// 300 by 200 or larger than 500 by 400. The program types and resizes by itself and ends; with --show the windows stay until
// they are closed.
// Build it as a 32-bit program, with one of
//     cl /EHsc /DUNICODE window.cpp ole32.lib oleaut32.lib uuid.lib user32.lib
//     i686-w64-mingw32-g++ -municode -static window.cpp -o window.exe -lole32 -loleaut32 -luuid
#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

/// Hears of the letters that are typed. It lives where it is declared, so nobody needs to count its references.
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

private:
    const IID events_;
};

/// Which interface the object calls to tell of its events.
IID events_of(IUnknown* object)
{
    IID events = GUID_NULL;
    IProvideClassInfo2* information = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&information)))) {
        information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
        information->Release();
    }
    return events;
}

/// Where a listener is made known to the object; null if there is no such place.
IConnectionPoint* connection_point(IUnknown* object, REFIID events)
{
    IConnectionPoint* point = nullptr;
    IConnectionPointContainer* container = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)))) {
        container->FindConnectionPoint(events, &point);
        container->Release();
    }
    return point;
}

/// object.member arguments, or object.member = value, with numbers only
HRESULT invoke(IDispatch* object, const wchar_t* member, WORD flags, const std::vector<long>& numbers)
{
    DISPID id, put = DISPID_PROPERTYPUT;
    std::wstring text = member;
    LPOLESTR name = &text[0];
    const HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result))
        return result;
    std::vector<VARIANTARG> reversed;
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
        VARIANTARG argument;
        argument.vt = VT_I4;
        argument.lVal = *number;
        reversed.push_back(argument);
    }
    const bool sets = flags == DISPATCH_PROPERTYPUT;
    DISPPARAMS arguments{reversed.data(), sets ? &put : nullptr, static_cast<UINT>(reversed.size()), sets ? 1u : 0u};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments, nullptr, nullptr, nullptr);
}

/// Has an object watch a window.
void watch(IDispatch* object, HWND window)
{
    invoke(object, L"hwnd", DISPATCH_PROPERTYPUT, {static_cast<long>(reinterpret_cast<LONG_PTR>(window))});
    invoke(object, L"Enabled", DISPATCH_PROPERTYPUT, {-1});
}

IDispatch* create_watcher()
{
    CLSID id;
    IDispatch* object = nullptr;
    HRESULT result = CLSIDFromProgID(L"qvObjects.qvWindowProc", &id);
    if (SUCCEEDED(result))
        result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
    if (FAILED(result))
        std::wprintf(L"qvObjects.qvWindowProc can't be created: error %08lX\n", static_cast<unsigned long>(result));
    return object;
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

int run(IDispatch* typing, IDispatch* sizing, bool show)
{
    Listener listener{events_of(typing)};
    DWORD cookie = 0;
    IConnectionPoint* const point = connection_point(typing, events_of(typing));
    if (!point || FAILED(point->Advise(&listener, &cookie)))
        return 1;
    const HWND first = create_window("Type here", 50), second = create_window("Resize me", 500);
    invoke(typing, L"AddMsg", DISPATCH_METHOD, {WM_CHAR});
    watch(typing, first);
    invoke(sizing, L"SetMinMaxInfo", DISPATCH_METHOD, {300, 200, 500, 400}); // this one reports no messages now
    watch(sizing, second);

    type_into(first);
    resize(second);
    if (show)
        handle_messages_until_closed();

    // Watching ends here, not when the objects are released: before the windows and the listener go.
    for (IDispatch* const object : {typing, sizing})
        invoke(object, L"Enabled", DISPATCH_PROPERTYPUT, {0});
    DestroyWindow(first);
    DestroyWindow(second);
    point->Unadvise(cookie);
    point->Release();
    return arrived.compare(0, 5, L"HALL ") == 0 ? 0 : 1;
}

int wmain(int count, wchar_t** arguments)
{
    CoInitialize(nullptr);
    IDispatch* const typing = create_watcher();
    IDispatch* const sizing = create_watcher();
    const int code = typing && sizing ? run(typing, sizing, count > 1 && !std::wcscmp(arguments[1], L"--show")) : 1;
    for (IDispatch* const object : {typing, sizing})
        if (object)
            object->Release();
    CoUninitialize();
    return code;
}
