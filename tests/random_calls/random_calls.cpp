// Calls every member of every class by name, with arguments of all kinds, and requires of each call that
// - it neither crashes nor hangs, and gives a result code that calls by name give, an error with source and text;
// - what is the caller's is as it was: values, arrays, variables after an error, references to objects, floating-point modes;
// - after all objects were released none is left, and nobody holds an object of the client.
//
//     random_calls [--sessions N] [--seconds T] [--seed S] [--trace]
//
// A session begins with new objects and an empty folder, and depends on its seed alone: the one in which something was wrong is
// run again by `--seed S --sessions 1`.
#include "random_calls/any_object.h"
#include "random_calls/fault.h"

#include <imm.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <thread>

namespace {

unsigned session_seed = 0;
unsigned long calls_in_session = 0;
char last_call[4000] = "none";
bool traces = false;
std::atomic<DWORD> call_began{0}; ///< 0 between calls

void tell(const char* message)
{
    std::printf("%s\n  call %lu of the session with the seed %u:\n  %s\n", message, calls_in_session, session_seed, last_call);
    std::fflush(stdout);
}

/// Where an address lies, if that is in a module.
bool tell_place(const void* place)
{
    HMODULE module = nullptr;
    char name[MAX_PATH] = "?";
    if (!place || !GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<const char*>(place), &module))
        return false;
    GetModuleFileNameA(module, name, MAX_PATH);
    const auto offset = static_cast<const char*>(place) - reinterpret_cast<const char*>(module);
    std::printf("  %s + %x\n", name, static_cast<unsigned>(offset));
    return true;
}

LONG WINAPI tell_of_crash(EXCEPTION_POINTERS* exception)
{
    std::printf("exception %lx at %p\n", exception->ExceptionRecord->ExceptionCode, exception->ExceptionRecord->ExceptionAddress);
    tell_place(exception->ExceptionRecord->ExceptionAddress);
    const auto* const stack = reinterpret_cast<void* const*>(exception->ContextRecord->Esp);
    for (int i = 0, told = 0; i < 300 && told < 20; ++i) // return addresses, and what looks like them
        told += tell_place(stack[i]);
    tell("it crashed");
    TerminateProcess(GetCurrentProcess(), 3);
    return EXCEPTION_CONTINUE_SEARCH;
}

/// As a user would: a dialog that shows a message takes no input meanwhile.
BOOL CALLBACK close_dialog(HWND window, LPARAM round)
{
    constexpr int buttons[]{IDCANCEL, IDNO, IDYES, IDOK};
    DWORD process = 0;
    char kind[16] = "";
    GetWindowThreadProcessId(window, &process);
    GetClassNameA(window, kind, sizeof kind);
    const bool is_own_dialog = process == GetCurrentProcessId() && kind == std::string_view{"#32770"};
    if (is_own_dialog && IsWindowVisible(window) && IsWindowEnabled(window))
        PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(buttons[round % 4]), 0);
    return TRUE;
}

/// Ends the program when a call takes too long, and closes the dialogs that members show.
void watch()
{
    constexpr DWORD longest_call = 60'000, pause = 5; // milliseconds
    for (unsigned round = 0;; ++round) {
        Sleep(pause);
        const DWORD began = call_began;
        if (began == 0)
            continue;
        if (GetTickCount() - began > longest_call) {
            tell("the call does not end");
            TerminateProcess(GetCurrentProcess(), 4);
        }
        if (GetTickCount() - began > 4 * pause)
            EnumWindows(close_dialog, static_cast<LPARAM>(round));
    }
}

/// Members that get harmless arguments only.
bool takes_harmless_only(const members::Member& member)
{
    static const std::set<std::wstring> names{
        // a number may be that of a process that others need
        L"TerminateProgram", L"WaitOnProgram",
        // the address of a record, of a procedure, of an item's name
        L"RaiseFormMessage", L"OriginalWindowProc", L"SelectFolder95",
        // all windows of the screen would change their size
        L"SetDisplayResolution",
        // a name alone is that of a file in the system's folder; Wine writes a long one over its stack
        L"WritePrivateProfileString", L"WritePPs", L"GetPrivateProfileString", L"GetPPs", L"GetPPSectionStr", L"GetPPSectionCol",
        L"GetPPSectionDic", L"GetPPSectionNamesStr", L"GetPPSectionNamesCol", L"GetPPSectionNamesDic"};
    return names.contains(member.name);
}

/// Members that tell their caller, before all else, which file it is.
bool gives_while_failing(const std::wstring& face, const members::Member& member)
{
    return face == L"_qvFile_Nif" && (member.name == L"Load" || member.name == L"Save");
}

/// A drive of its own, whose root is a new folder: no path without a drive leads out of it.
class Folder {
public:
    Folder()
    {
        wchar_t place[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, place);
        GetTempFileNameW(place, L"qvo", 0, name);
        DeleteFileW(name);
        std::filesystem::create_directory(name);
        path_ = name;
        require(path_.native().starts_with(L"C:\\"), "the temporary files are not where nothing else is");
        for (const wchar_t* variable : {L"TMP", L"TEMP"})
            SetEnvironmentVariableW(variable, path_.c_str());
        begin();
    }
    ~Folder()
    {
        SetCurrentDirectoryW(L"C:\\");
        clear();
        std::error_code none;
        std::filesystem::remove(path_, none);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::wstring file(const wchar_t* name) const { return path_ / name; }
    void begin() const
    {
        enter();
        std::filesystem::create_directory(path_ / L"sub");
        for (const wchar_t* name : {L"a", L"b.txt", L"sub\\c.ini"})
            if (FILE* const created = _wfopen(file(name).c_str(), L"wb")) {
                std::fputs("[Main]\r\na=1\r\nk = v ; note\r\n", created);
                std::fclose(created);
            }
    }
    void enter() const { require(SetCurrentDirectoryW(path_.c_str()), "the folder is gone"); }
    void clear() const { clear(path_); }

private:
    /// What can't be deleted stays. The standard library's function would try for ever.
    static void clear(const std::wstring& folder)
    {
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        for (bool more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found)) {
            const std::wstring name = found.cFileName, path = folder + L"\\" + name;
            if (name == L"." || name == L"..")
                continue;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
                DeleteFileW(path.c_str());
                continue;
            }
            clear(path);
            RemoveDirectoryW(path.c_str());
        }
        if (search != INVALID_HANDLE_VALUE)
            FindClose(search);
    }

    std::filesystem::path path_;
};

/// The user's settings are somewhere else for this process, and gone with it.
class Settings {
public:
    Settings()
    {
        RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key_, nullptr);
        RegOverridePredefKey(HKEY_CURRENT_USER, key_);
    }
    ~Settings()
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegCloseKey(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, name);
    }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

private:
    static constexpr const wchar_t* name = L"Software\\random_calls";
    HKEY key_ = nullptr;
};

/// What was reached of a member.
struct Reached {
    unsigned long calls = 0, successes = 0;
};
using Statistics = std::map<std::pair<std::wstring, std::wstring>, Reached>;

/// What calls by name may give, apart from success.
bool is_known(HRESULT result)
{
    static const std::set<HRESULT> known{DISP_E_EXCEPTION,     DISP_E_BADPARAMCOUNT,    DISP_E_TYPEMISMATCH,
                                         DISP_E_MEMBERNOTFOUND, DISP_E_PARAMNOTFOUND,    DISP_E_PARAMNOTOPTIONAL,
                                         DISP_E_OVERFLOW,       DISP_E_BADVARTYPE,       E_OUTOFMEMORY,
                                         E_INVALIDARG};
    return known.contains(result);
}

class Session final : public AnyObject::Client {
public:
    Session(unsigned seed, const members::Library& library, const Folder& folder, Statistics& statistics)
        : values_{seed, library}, library_{library}, folder_{folder}, statistics_{statistics}
    {
        session_seed = seed;
        calls_in_session = 0;
        for (const wchar_t* name : {L"a", L"b.txt", L"new.qvb", L"sub\\c.ini", L"no\\d"})
            values_.files.push_back(folder.file(name));
        for (unsigned i = 0; i < 6; ++i)
            values_.objects.push_back(clients_.emplace_back(std::make_unique<AnyObject>(values_, *this, i)).get());
    }

    void run()
    {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        const HWND window = CreateWindowExW(0, L"STATIC", L"a client", 0, 0, 0, 100, 50, nullptr, nullptr, nullptr, nullptr);
        values_.window = static_cast<long>(reinterpret_cast<LONG_PTR>(window));
        call_all(2);
        end();
        DestroyWindow(window);
        CoUninitialize(); // what the library keeps for the thread goes
        for (const auto& object : clients_)
            require(object->references() == 1, "somebody holds an object of the client");
        const auto can_unload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"qvObjects.dll"), "DllCanUnloadNow")));
        require(can_unload && can_unload() == S_OK, "objects of the library are left");
    }

private:
    static constexpr std::size_t most_objects = 120;

    /// Every member of every class so many times, in any order.
    void call_all(unsigned times)
    {
        std::vector<std::pair<const members::Class*, const members::Member*>> order;
        for (unsigned i = 0; i < times; ++i)
            for (const members::Class& one : library_.classes)
                for (const members::Member& member : one.members)
                    order.emplace_back(&one, &member);
        for (std::size_t i = order.size(); i > 1; --i)
            std::swap(order[i - 1], order[values_.below(i)]);
        for (const auto& [one, member] : order)
            if (IDispatch* const object = object_of(*one)) {
                call(*one, *member, *object);
                object->Release();
            }
    }

    /// One of those that there are, now and then a new one; null where there is none.
    IDispatch* object_of(const members::Class& one)
    {
        auto& kept = pool_[one.face];
        if (one.id != CLSID_NULL && (kept.empty() || values_.one_in(10))) {
            IDispatch* made = nullptr;
            const HRESULT creation = CoCreateInstance(one.id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&made));
            require(creation == S_OK, "no object of a class can be made");
            keep(made);
            prepare(*made);
            return made;
        }
        if (kept.empty())
            return nullptr;
        IDispatch* const chosen = kept[values_.below(kept.size())];
        chosen->AddRef();
        return chosen;
    }

    void keep(IDispatch* object)
    {
        ITypeInfo* info = nullptr;
        BSTR name = nullptr;
        if (FAILED(object->GetTypeInfo(0, 0, &info)) || !info)
            return;
        const HRESULT naming = info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
        require(naming == S_OK, "an object without a description");
        auto& kept = pool_[name];
        info->Release();
        if (may_hold_itself(name))
            holders_.push_back(object), object->AddRef();
        SysFreeString(name);
        object->AddRef();
        kept.push_back(object);
        values_.objects.push_back(object);
        if (values_.objects.size() > most_objects)
            drop(values_.objects[clients_.size() + values_.below(values_.objects.size() - clients_.size())]);
    }

    /// Gives an object what most of its members need.
    void prepare(IDispatch& object)
    {
        if (values_.one_in(4))
            return;
        VARIANT path{};
        path.vt = VT_BSTR;
        path.bstrVal = SysAllocString(values_.files[values_.below(values_.files.size())].c_str());
        DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
        DISPPARAMS parameters{&path, &put, 1, 1};
        for (const wchar_t* name : {L"Application", L"Section", L"File", L"FileName"})
            if (auto* text = const_cast<wchar_t*>(name); SUCCEEDED(object.GetIDsOfNames(IID_NULL, &text, 1, 0, &id)))
                object.Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr, nullptr);
        VariantClear(&path);
    }

    void drop(IDispatch* object)
    {
        for (auto& [face, kept] : pool_)
            if (const auto found = std::ranges::find(kept, object); found != kept.end()) {
                kept.erase(found);
                values_.objects.erase(std::ranges::find(values_.objects, object));
                object->Release();
                return;
            }
    }

    void interrupted() override
    {
        interrupted_ = true;
        if (values_.one_in(2) && values_.objects.size() > clients_.size())
            drop(values_.objects[clients_.size() + values_.below(values_.objects.size() - clients_.size())]);
        if (!arguments_.empty())
            arguments_[values_.below(arguments_.size())]->change();
    }

    void make_arguments(const members::Member& member, bool harmless)
    {
        const std::size_t wanted = member.parameters.size();
        std::size_t count = values_.one_in(6) ? values_.below(wanted + 3) : wanted;
        while (count > 0 && count <= wanted && member.parameters[count - 1].optional && values_.one_in(2))
            --count;
        arguments_.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const members::Parameter parameter = i < wanted ? member.parameters[i] : members::Parameter{VT_VARIANT, false, true};
            arguments_.push_back(std::make_unique<Argument>(values_, parameter.type, parameter.by_reference, harmless));
        }
    }

    /// Which of the arguments have names; a property's new value has one nearly always.
    std::vector<DISPID> names(const members::Member& member)
    {
        std::vector<DISPID> names;
        if ((member.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) && !values_.one_in(10))
            names.push_back(DISPID_PROPERTYPUT);
        if (values_.one_in(8))
            for (std::size_t left = values_.below(4); left > 0; --left)
                names.push_back(static_cast<DISPID>(values_.below(member.parameters.size() + 2)) - values_.one_in(20));
        names.resize(std::min(names.size(), arguments_.size()));
        return names;
    }

    void describe(const members::Class& one, const members::Member& member, WORD flags, const std::vector<DISPID>& names)
    {
        int length = std::snprintf(last_call, sizeof last_call, "%ls.%ls, flags %u, %u named", one.face.c_str(), member.name.c_str(),
                                   flags, static_cast<unsigned>(names.size()));
        for (const auto& argument : arguments_)
            if (length < static_cast<int>(sizeof last_call) - 400)
                length += std::snprintf(last_call + length, sizeof last_call - static_cast<std::size_t>(length), "\n    %s",
                                        argument->description().c_str());
        if (traces)
            std::printf("%s\n", last_call), std::fflush(stdout);
    }

    DISPID id_of(const members::Member& member, IDispatch& object)
    {
        std::wstring name = member.name;
        for (wchar_t& c : name)
            if (c < 128 && values_.one_in(4))
                c ^= (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') ? 32 : 0;
        DISPID id = DISPID_UNKNOWN;
        auto* text = name.data();
        if (member.id != DISPID_NEWENUM)
            require(object.GetIDsOfNames(IID_NULL, &text, 1, 0, &id) == S_OK && id == member.id, "a name finds another member");
        return member.id;
    }

    ULONG references() const
    {
        ULONG count = 0;
        for (const auto& object : clients_)
            count += object->references();
        return count;
    }

    void call(const members::Class& one, const members::Member& member, IDispatch& object)
    {
        ++calls_in_session;
        folder_.enter();
        make_arguments(member, takes_harmless_only(member));
        std::vector<DISPID> names = this->names(member);
        constexpr WORD get = DISPATCH_METHOD | DISPATCH_PROPERTYGET; // as scripts send it
        const WORD flags = values_.one_in(12)                        ? static_cast<WORD>(values_.below(16))
                         : (member.kind & get) && values_.one_in(2) ? get
                                                                     : member.kind;
        describe(one, member, flags, names);
        std::vector<VARIANTARG> reversed(arguments_.size() + 1);
        for (std::size_t i = 0; i < arguments_.size(); ++i)
            reversed[arguments_.size() - 1 - i] = arguments_[i]->passed();
        DISPPARAMS parameters{arguments_.empty() ? nullptr : reversed.data(), names.empty() ? nullptr : names.data(),
                              static_cast<UINT>(arguments_.size()), static_cast<UINT>(names.size())};
        const DISPID id = id_of(member, object);
        const bool wants_result = !values_.one_in(10), wants_exception = !values_.one_in(10), wants_place = !values_.one_in(10);
        VARIANT result{};
        EXCEPINFO exception{};
        UINT bad_argument = 0;
        const ULONG references_before = references();
        interrupted_ = false;
        AnyObject::patience = 500;
        client_modes.x87 = values_.one_of<unsigned short>({0x027F, 0x037F, 0x0F7F, 0x067F});
        client_modes.sse = values_.one_of({0x1F80u, 0x5F80u, 0x3F80u});
        client_modes.set();
        call_began = std::max<DWORD>(1, GetTickCount());
        const HRESULT outcome = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                              wants_result ? &result : nullptr, wants_exception ? &exception : nullptr,
                                              wants_place ? &bad_argument : nullptr);
        call_began = 0;
        const FloatingModes modes = FloatingModes::now();
        FloatingModes{0x037F, 0x1F80}.set();

        if (traces)
            std::printf("    = %lx %ls\n", outcome, exception.bstrDescription ? exception.bstrDescription : L"");
        require(modes == client_modes, "the caller's floating-point modes have changed");
        check_outcome(outcome, wants_exception, exception, result, bad_argument);
        for (const auto& argument : arguments_)
            argument->check(outcome == S_OK, outcome == DISP_E_EXCEPTION && gives_while_failing(one.face, member));
        require(outcome == S_OK || interrupted_ || references() == references_before, "a failed call holds an object");
        Reached& reached = statistics_[{one.face, member.name}];
        ++reached.calls;
        reached.successes += outcome == S_OK;
        if (result.vt == VT_DISPATCH && result.pdispVal)
            keep(result.pdispVal);
        VariantClear(&result);
        arguments_.clear();
    }

    void check_outcome(HRESULT outcome, bool wants_exception, EXCEPINFO& exception, const VARIANT& result, UINT bad_argument)
    {
        if (outcome != S_OK && !is_known(outcome)) {
            char text[60];
            std::snprintf(text, sizeof text, "the result code %lx is none of those of calls by name", outcome);
            require(false, text);
        }
        if (outcome != S_OK) {
            require(result.vt == VT_EMPTY, "a failed call gives something");
            require(bad_argument == 0 || bad_argument < arguments_.size(), "it is none of the arguments");
        }
        if (outcome == DISP_E_EXCEPTION && wants_exception) {
            require(FAILED(exception.scode) || exception.wCode != 0, "an error without a number");
            require(SysStringLen(exception.bstrSource) > 0 || interrupted_, "an error without a source");
            require(SysStringLen(exception.bstrDescription) > 0, "an error without a text");
        }
        require(image_of(result).size() > 1, "a result that can't be read");
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
    }

    static bool may_hold_itself(std::wstring_view face)
    {
        return face == L"_Collection" || face == L"_qvSave" || face == L"_qvIniSection" || face == L"_qvIniFile";
    }

    /// Makes an object let go of what it holds, which may be that object itself.
    static void empty(IDispatch& object)
    {
        VARIANT argument{};
        argument.vt = VT_DISPATCH;
        DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
        DISPPARAMS parameters{&argument, &put, 1, 1};
        for (const wchar_t* name : {L"Form", L"Section"})
            if (auto* text = const_cast<wchar_t*>(name); SUCCEEDED(object.GetIDsOfNames(IID_NULL, &text, 1, 0, &id)))
                object.Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUTREF, &parameters, nullptr, nullptr, nullptr);
        argument.vt = VT_I4;
        argument.lVal = 1;
        parameters = {&argument, nullptr, 1, 0};
        if (auto* text = const_cast<wchar_t*>(L"Remove"); SUCCEEDED(object.GetIDsOfNames(IID_NULL, &text, 1, 0, &id)))
            while (object.Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr) == S_OK)
                continue;
        object.Release();
    }

    void end()
    {
        for (IDispatch* const holder : holders_)
            empty(*holder);
        for (auto& [face, kept] : pool_)
            for (IDispatch* const object : kept)
                object->Release();
        pool_.clear();
        std::strcpy(last_call, "the end of the session");
    }

    Values values_;
    const members::Library& library_;
    const Folder& folder_;
    Statistics& statistics_;
    std::vector<std::unique_ptr<AnyObject>> clients_;
    std::map<std::wstring, std::vector<IDispatch*>> pool_; ///< objects of the library
    std::vector<IDispatch*> holders_;                     ///< those of them that may hold themselves, to the end
    std::vector<std::unique_ptr<Argument>> arguments_;
    bool interrupted_ = false;
};

/// Where the library lies.
std::wstring library_file()
{
    CLSID id{};
    IDispatch* made = nullptr;
    require(SUCCEEDED(CLSIDFromProgID(L"qvObjects.qvMath", &id)) &&
                SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&made))),
            "the library is not registered");
    made->Release();
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(GetModuleHandleW(L"qvObjects.dll"), path, MAX_PATH);
    return path;
}

/// Requires that every member was called, but those of the one class that no member gives an object of.
void report(const members::Library& library, const Statistics& statistics, unsigned long sessions, double seconds)
{
    unsigned long calls = 0, successes = 0, members = 0, succeeding = 0;
    for (const auto& [name, reached] : statistics) {
        calls += reached.calls;
        successes += reached.successes;
        ++members;
        succeeding += reached.successes > 0;
        if (traces && reached.successes == 0)
            std::printf("never succeeded: %ls.%ls, %lu calls\n", name.first.c_str(), name.second.c_str(), reached.calls);
    }
    std::printf("%lu sessions, %lu calls of %lu members, %lu succeeded, of %lu members, %.0f s\n", sessions, calls, members,
                successes, succeeding, seconds);
    for (const members::Class& one : library.classes)
        for (const members::Member& member : one.members)
            if (one.face != L"_CFile_sNames" && !statistics.contains({one.face, member.name})) {
                std::printf("never called: %ls.%ls\n", one.face.c_str(), member.name.c_str());
                std::exit(1);
            }
}

} // namespace

void require(bool holds, const char* message)
{
    if (holds)
        return;
    tell(message);
    TerminateProcess(GetCurrentProcess(), 1);
}

int main(int count, char** arguments)
{
    double sessions = 1, seconds = 0, seed = 1;
    const std::map<std::string_view, double*> options{{"--sessions", &sessions}, {"--seconds", &seconds}, {"--seed", &seed}};
    for (int i = 1; i < count; ++i) {
        if (arguments[i] == std::string_view{"--trace"})
            traces = true;
        else if (const auto option = options.find(arguments[i]); option != options.end() && i + 1 < count)
            *option->second = std::strtod(arguments[++i], nullptr);
        else
            return std::printf("%s is no option\n", arguments[i]), 2;
    }
    SetUnhandledExceptionFilter(tell_of_crash);
    ImmDisableIME(static_cast<DWORD>(-1)); // it would keep the thread in its apartment to the end
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const members::Library library = members::read(library_file().c_str());
    CoUninitialize();
    std::thread{watch}.detach();
    const Folder folder;
    const Settings settings;

    Statistics statistics;
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    unsigned long done = 0;
    for (; seconds > 0 ? elapsed() < seconds : done < sessions; ++done) {
        Session{static_cast<unsigned>(seed) + done, library, folder, statistics}.run();
        folder.clear();
        folder.begin();
    }
    report(library, statistics, done, elapsed());
    return 0;
}
