// A 64-bit client of the library, which the platform's surrogate process serves: what compiled clients do, and how others fare
// when a client dies. It calls by interfaces, so that arguments cross by the registered type library.
//
//     client                       makes all checks
//     client handler|call|idle FILE   dies within a handler of an event, within a call, or holding what the object in the file
#include <qvObjects.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>

using Microsoft::WRL::ComPtr;

namespace {

int checked = 0;

void check(const char* what, bool passed)
{
    ++checked;
    std::printf("%s - %s\n", passed ? "ok" : "not ok", what);
    std::fflush(stdout);
}

struct Text {
    explicit Text(std::wstring_view text) : string{SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))} {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(string); }

    BSTR string;
};

template <class Class, class Interface>
ComPtr<Interface> create()
{
    ComPtr<Interface> object;
    const HRESULT result = CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_ALL, __uuidof(Interface), &object);
    if (FAILED(result)) {
        std::printf("not ok - creating an object: %08lX\n", static_cast<unsigned long>(result));
        std::exit(1);
    }
    return object;
}

/// Hears of what a walk finds; the handler says whether that is enough.
class Listener final : public IDispatch {
public:
    Listener(_qvFile& file, std::function<bool()> handler) : handler_{std::move(handler)}
    {
        ComPtr<IConnectionPointContainer> container;
        if (SUCCEEDED(file.QueryInterface(__uuidof(IConnectionPointContainer), &container))
            && SUCCEEDED(container->FindConnectionPoint(__uuidof(__qvFile), &point_)))
            point_->Advise(this, &cookie_);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener()
    {
        if (point_)
            point_->Unadvise(cookie_);
    }

    int heard = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(__qvFile);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) override
    {
        ++heard;
        if (arguments->cArgs == 3 && arguments->rgvarg[0].vt == (VT_BYREF | VT_BOOL) && handler_())
            *arguments->rgvarg[0].pboolVal = VARIANT_TRUE;
        return S_OK;
    }

private:
    std::function<bool()> handler_;
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

HRESULT walk(_qvFile& file)
{
    Text folder{L"C:\\windows"}, pattern{L"*"};
    return file.WalkDirTree(&folder.string, pattern.string, dwWalkCurDirOnly);
}

bool answers(_qvFile& file)
{
    const Text path{L"C:\\windows\\win.ini"}, caption{L""};
    VARIANT_BOOL found = VARIANT_FALSE;
    return SUCCEEDED(file.CheckFile(path.string, caption.string, VARIANT_FALSE, &found)) && found != VARIANT_FALSE;
}

void calls()
{
    ComPtr<_qvCommon> none;
    check("the library is not for a process of 64 bits",
          CoCreateInstance(__uuidof(qvCommon), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_qvCommon), &none) == REGDB_E_CLASSNOTREG);
    const auto common = create<qvCommon, _qvCommon>();
    const Text number{L" 12 "};
    Text trimmed{L""};
    VARIANT result;
    VariantInit(&result);
    check("a text is trimmed",
          SUCCEEDED(common->qvTrim(number.string, &trimmed.string)) && trimmed.string == std::wstring_view{L"12"});
    VARIANT levels;
    levels.vt = VT_ARRAY | VT_R8;
    levels.parray = SafeArrayCreateVector(VT_R8, 1, 3);
    for (LONG i = 1; i <= 3; ++i) {
        double level = i * 1.25;
        SafeArrayPutElement(levels.parray, &i, &level);
    }
    check("an array of Double is looked through",
          SUCCEEDED(common->max(levels, &result)) && result.vt == VT_R8 && result.dblVal == 3.75);
    VariantClear(&levels);
    SAFEARRAY* bytes = nullptr;
    LONG last = 0;
    check("an array of Byte is filled by reference", SUCCEEDED(common->BstrToByte(number.string, &bytes, &result)) && bytes
              && SUCCEEDED(SafeArrayGetUBound(bytes, 1, &last)) && last == 4);
    SafeArrayDestroy(bytes);

    const auto ini = create<qvIniFile, _qvIniFile>();
    ComPtr<_qvIniSections> sections;
    ComPtr<_qvIniSection> section;
    Text name{L""};
    check("an object of an object is called",
          SUCCEEDED(ini->get_Section(&sections)) && SUCCEEDED(sections->Add(number.string, &section))
              && SUCCEEDED(section->get_Name(&name.string)) && name.string == std::wstring_view{L" 12 "});
    const Text missing{L"C:\\windows\\missing.ini"};
    check("an error has its number", ini->Load(missing.string) == static_cast<HRESULT>(0x800A0035));
}

void events()
{
    const auto file = create<qvFile, _qvFile>();
    Listener listener{*file.Get(), [&] { return listener.heard == 2; }};
    check("a walk ends", walk(*file.Get()) == S_OK);
    check("it ended when the handler said so", listener.heard == 2);
}

// A client that dies, and one that shares its objects and lives on.

std::wstring name_of_event(const std::wstring& path)
{
    return L"qvObjects client at " + path.substr(path.find_last_of(L'\\') + 1);
}

/// This program once more, with the name of a file that holds the object.
HANDLE start(std::wstring_view way, const std::wstring& path)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"\"" + std::wstring{program} + L"\" " + std::wstring{way} + L" \"" + path + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process);
    CloseHandle(process.hThread);
    return process.hProcess;
}

void hand_over(_qvFile& file, const std::wstring& path)
{
    ComPtr<IStream> stream;
    CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    CoMarshalInterface(stream.Get(), __uuidof(_qvFile), &file, MSHCTX_LOCAL, nullptr, MSHLFLAGS_NORMAL);
    HGLOBAL memory = nullptr;
    GetHGlobalFromStream(stream.Get(), &memory);
    STATSTG state{};
    stream->Stat(&state, STATFLAG_NONAME);
    std::FILE* const written = _wfopen(path.c_str(), L"wb");
    std::fwrite(GlobalLock(memory), 1, state.cbSize.LowPart, written);
    GlobalUnlock(memory);
    std::fclose(written);
}

ComPtr<_qvFile> handed_over(const wchar_t* path)
{
    char bytes[4096];
    std::FILE* const read = _wfopen(path, L"rb");
    const auto size = static_cast<ULONG>(std::fread(bytes, 1, sizeof bytes, read));
    std::fclose(read);
    ComPtr<IStream> stream;
    CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    stream->Write(bytes, size, nullptr);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    ComPtr<_qvFile> file;
    CoUnmarshalInterface(stream.Get(), __uuidof(_qvFile), &file);
    return file;
}

[[noreturn]] void die()
{
    TerminateProcess(GetCurrentProcess(), 7);
    std::abort();
}

/// Tells when it holds the object, when its handler runs or its call has begun, and dies there.
[[noreturn]] void live_and_die(std::wstring_view way, const wchar_t* path)
{
    const HANDLE here = CreateEventW(nullptr, TRUE, FALSE, name_of_event(path).c_str());
    const HANDLE enough = CreateEventW(nullptr, TRUE, FALSE, (name_of_event(path) + L", enough").c_str());
    const auto file = handed_over(path);
    const auto tell_and_die = [&] {
        SetEvent(here);
        WaitForSingleObject(enough, 20'000);
        die();
        return true;
    };
    if (!file)
        std::exit(1);
    if (way == L"handler") {
        Listener listener{*file.Get(), tell_and_die};
        walk(*file.Get());
    }
    if (way == L"call") {
        Listener listener{*file.Get(), [] { return false; }};
        std::thread killer{tell_and_die};
        for (;;)
            walk(*file.Get());
    }
    tell_and_die();
    std::exit(1);
}

void deaths()
{
    wchar_t place[MAX_PATH], path[MAX_PATH];
    GetTempPathW(MAX_PATH, place);
    GetTempFileNameW(place, L"qvo", 0, path);
    const auto file = create<qvFile, _qvFile>();
    const HANDLE here = CreateEventW(nullptr, FALSE, FALSE, name_of_event(path).c_str());
    const HANDLE enough = CreateEventW(nullptr, FALSE, FALSE, (name_of_event(path) + L", enough").c_str());
    for (const char* way : {"handler", "call", "idle"}) {
        const std::string died = std::string{", which died: "} + way;
        hand_over(*file.Get(), path);
        const HANDLE process = start(std::wstring{way, way + std::string_view{way}.size()}, path);
        check(("another client holds the object" + died).c_str(), WaitForSingleObject(here, 20'000) == WAIT_OBJECT_0);
        check(("it is called by both" + died).c_str(), answers(*file.Get()));
        SetEvent(enough);
        DWORD code = 0;
        WaitForSingleObject(process, 20'000);
        GetExitCodeProcess(process, &code);
        CloseHandle(process);
        const ULONGLONG begun = GetTickCount64();
        check(("it answers without the other one" + died).c_str(), code == 7 && answers(*file.Get()));
        Listener listener{*file.Get(), [] { return false; }};
        check(("it walks for those that still hear it" + died).c_str(), walk(*file.Get()) == S_OK && listener.heard > 2);
        check(("and needs no time for the dead" + died).c_str(), GetTickCount64() - begun < 10'000);
    }
    DeleteFileW(path);
}

} // namespace

int wmain(int count, wchar_t** words)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (count == 3)
        live_and_die(words[1], words[2]);
    calls();
    events();
    deaths();
    std::printf("1..%d\n", checked);
    CoUninitialize();
    return 0;
}
