// Folders, windows and the display as clients meet them.
#include "support/own_process.h"

#include "support/dispatch_object.h"
#include "support/tables.h"

#include <algorithm>

using client::expect_error;
using client::Folder;
using client::Object;
using client::Value;

namespace {

constexpr const wchar_t* copy_variable = L"LIBRARY_COPY";

/// What a function of the system writes into room for 255 bytes.
template <class Call>
std::wstring from_system(const Call& call)
{
    char text[255];
    const auto length = static_cast<std::size_t>(call(text, 255));
    std::wstring wide(length, L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(length), wide.data(), static_cast<int>(length));
    return wide;
}

/// A top-level window of the class `Static`, or of another.
class Window {
public:
    explicit Window(const std::wstring& text, const wchar_t* class_name = L"Static")
        : window_{CreateWindowW(class_name, text.c_str(), WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr)}
    {
        EXPECT_TRUE(window_);
    }
    ~Window() { DestroyWindow(window_); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND handle() const { return window_; }
    long number() const { return static_cast<long>(reinterpret_cast<LONG_PTR>(window_)); }

private:
    HWND window_;
};

/// A client's collection of handles.
class Handles : public DispatchObject {
public:
    Handles()
        : DispatchObject{{L"Count", L"Remove", L"Add"}, [this](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
                             return answer(member, arguments, result);
                         }}
    {
    }

    std::vector<long> all;
    std::function<HRESULT()> before_add = [] { return S_OK; };

private:
    HRESULT answer(DISPID member, const DISPPARAMS& arguments, VARIANT* result)
    {
        if (member == 1) {
            result->vt = VT_I4;
            result->lVal = static_cast<long>(all.size());
            return S_OK;
        }
        if (arguments.cArgs != 1 || arguments.rgvarg[0].vt != VT_I4)
            return E_INVALIDARG;
        const long argument = arguments.rgvarg[0].lVal;
        if (member == 2) {
            all.erase(all.begin() + argument - 1);
            return S_OK;
        }
        const HRESULT outcome = before_add();
        if (SUCCEEDED(outcome))
            all.push_back(argument);
        return outcome;
    }
};

BOOL CALLBACK list_window(HWND window, LPARAM list)
{
    reinterpret_cast<std::vector<long>*>(list)->push_back(static_cast<long>(reinterpret_cast<LONG_PTR>(window)));
    return TRUE;
}

class System : public testing::Test {
protected:
    client::Apartment apartment;
    const Object api = Object::create(L"qvObjects.qvAPI");
};

} // namespace

TEST_F(System, FoldersAndTheComputer)
{
    EXPECT_EQ(api.call(L"GetTempPath").text(), from_system([](char* text, UINT size) { return GetTempPathA(size, text); }));
    EXPECT_EQ(api.call(L"GetSystemDirectory").text(), from_system(GetSystemDirectoryA));
    EXPECT_EQ(api.call(L"GetWindowsDirectory").text(), from_system(GetWindowsDirectoryA));
    EXPECT_EQ(api.call(L"qvGetComputerName").text(), from_system([](char* text, DWORD size) {
                  GetComputerNameA(text, &size);
                  return size;
              }));
    EXPECT_EQ(api.call(L"GetSysColor", {COLOR_HIGHLIGHT}).number(), static_cast<long>(GetSysColor(COLOR_HIGHLIGHT)));
}

TEST_F(System, ATemporaryFileIsNewAndEmpty)
{
    const std::wstring folder = api.call(L"GetTempPath").text();
    const std::wstring one = api.call(L"GetTempFileName").text(), other = api.call(L"GetTempFileName").text();
    EXPECT_NE(one, other);
    for (const std::wstring& path : {one, other}) {
        EXPECT_TRUE(path.starts_with(folder + L"qvO")) << path;
        EXPECT_EQ(Folder::read(path), "");
        DeleteFileW(path.c_str());
    }
    wchar_t former[MAX_PATH];
    GetEnvironmentVariableW(L"TMP", former, MAX_PATH);
    SetEnvironmentVariableW(L"TMP", L"C:\\no such folder");
    EXPECT_EQ(api.call(L"GetTempFileName").text(), L"");
    SetEnvironmentVariableW(L"TMP", former);
}

TEST(SystemRole, DISABLED_RenamedLibrary)
{
    const client::Apartment apartment;
    wchar_t path[MAX_PATH];
    GetEnvironmentVariableW(copy_variable, path, MAX_PATH);
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const FARPROC entry = GetProcAddress(LoadLibraryW(path), "DllGetClassObject");
    const auto get = reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(entry));
    CLSID id{};
    CLSIDFromProgID(L"qvObjects.qvAPI", &id);
    IClassFactory* factory = nullptr;
    ASSERT_EQ(get(id, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
    IDispatch* made = nullptr;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&made)), S_OK);
    {
        const Object api{made};
        const std::wstring file = api.call(L"GetTempFileName").text();
        EXPECT_NE(file.find(L"\\$ab"), file.npos) << file;
        DeleteFileW(file.c_str());
        expect_error(api.try_call(L"HexToByte", {L"x0"}), 6, L"\u00DC" L"berlauf", L"ab.c");
    }
    made->Release();
    factory->Release();
}

TEST_F(System, TheModuleIsCalledWhatItsFileIsCalled)
{
    const Folder folder;
    wchar_t library[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"qvObjects.dll"), library, MAX_PATH);
    const std::wstring copy = folder.file(L"ab.c.dll");
    EXPECT_TRUE(CopyFileW(library, copy.c_str(), FALSE));
    SetEnvironmentVariableW(copy_variable, copy.c_str());
    EXPECT_EQ(client::OwnProcess{L"SystemRole.DISABLED_RenamedLibrary"}.exit_code(), 0u);
}

TEST_F(System, TheTextOfAWindow)
{
    const auto text_of = [&](long window, std::size_t length) {
        Value text = 5;
        const Value count = api.call(L"GetWindowText", {window, Value::variable(text)});
        EXPECT_EQ(count.vt, VT_I2);
        EXPECT_EQ(static_cast<std::size_t>(count.iVal), length);
        return text.text();
    };
    EXPECT_EQ(text_of(Window{L"Gr\u00FC\u00DFe"}.number(), 5), L"Gr\u00FC\u00DFe");
    EXPECT_EQ(text_of(Window{std::wstring(300, L'\u00E4')}.number(), 254), std::wstring(254, L'\u00E4'));
    for (const long none : {0, -1, 12345678})
        EXPECT_EQ(text_of(none, 0), L"");
}

TEST_F(System, FindWindowAllFindsWhatTheSystemLists)
{
    Handles found;
    const auto find = [&](const wchar_t* class_name, const Value& text, bool clear = true) {
        const long count = api.call(L"FindWindowAll", {class_name, text, Value{&found}, clear}).number();
        EXPECT_EQ(count, static_cast<long>(found.all.size()));
        return found.all;
    };
    const Window one{L"qvObjects t\u00E4st 1"}, two{L"qvObjects t\u00E4st 2"}, button{L"qvObjects t\u00E4st 1", L"Button"};
    std::vector<long> all;
    EnumWindows(list_window, reinterpret_cast<LPARAM>(&all));
    EXPECT_EQ(find(L"", L""), all);
    EXPECT_EQ(find(L"Static", L"qvObjects t\u00E4st 1"), std::vector{one.number()});
    EXPECT_EQ(find(L"Button", L"", false).front(), one.number()) << "the former one stays";
    EXPECT_EQ(find(L"", L"qvObjects t\u00E4st 1").size(), 2u);
    EXPECT_EQ(find(L"STATIC", L"qvObjects t\u00E4st 1"), std::vector<long>{}) << "case matters";
    EXPECT_EQ(find(L"Static", L"qvObjects t\u00E4st"), std::vector<long>{}) << "the whole text";
    found.all = {1, 2};
    EXPECT_EQ(api.call(L"FindWindowAll", {L"no such class", L"", Value{&found}}).number(), 2) << "omitted: nothing is removed";
}

TEST_F(System, FindWindowAllBearsWithItsCollection)
{
    const Window one{L"qvObjects nested 1"}, two{L"qvObjects nested 1"};
    Handles outer, inner;
    outer.before_add = [&] {
        api.call(L"FindWindowAll", {L"Button", L"none of this text", Value{&inner}});
        return S_OK;
    };
    EXPECT_EQ(api.call(L"FindWindowAll", {L"", L"qvObjects nested 1", Value{&outer}}).number(), 2);
    outer.before_add = [calls = 0]() mutable { return ++calls == 1 ? E_FAIL : S_OK; };
    const Value count = api.call(L"FindWindowAll", {L"", L"qvObjects nested 1", Value{&outer}, true});
    EXPECT_EQ(count.number(), 1) << "what fails is passed over";
    expect_error(api.try_call(L"FindWindowAll", {L"", L"", Value{static_cast<IDispatch*>(nullptr)}}), 91,
                 L"Object variable or With block variable not set");
    EXPECT_EQ(api.try_call(L"FindWindowAll", {L"", L"", api}).number(), 438) << "no collection";
}

TEST_F(System, ADisplayModeThatThereIsNotIsRefused)
{
    DEVMODEW before{}, after{};
    before.dmSize = after.dmSize = sizeof before;
    EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &before);
    long frequency = 3;
    EXPECT_FALSE(api.call(L"SetDisplayResolution", {12345, L"1", 7, Value::reference(VT_I4, &frequency)}).flag());
    EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &after);
    EXPECT_TRUE(before.dmPelsWidth == after.dmPelsWidth && before.dmPelsHeight == after.dmPelsHeight && frequency == 3);
}
