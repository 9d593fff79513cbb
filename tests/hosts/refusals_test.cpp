// What becomes of calls when memory runs short or the system refuses what the library asks it for: each of its requests is
// refused, one after the other, in something that clients do with every part of it.
#include "hosts/library.h"
#include "hosts/refusals.h"
#include "support/canvas.h"
#include "support/item_listener.h"
#include "support/message_listener.h"
#include "support/tables.h"
#include "support/test_window.h"
#include "support/tooltip_window.h"

#include <cstdio>
#include <limits>
#include <map>
#include <set>
#include <thread>

using client::Object;
using client::Outcome;
using client::Value;
using refusals::Kind;
using refusals::Plan;

namespace {

const std::string no_file = "(no file)";
using Files = std::map<std::wstring, std::string>; ///< content by name

/// A data file without the time of its creation, a text behind its length.
std::string without_time(std::string bytes)
{
    constexpr std::string_view label = "Created";
    const std::size_t length = bytes.find(label) + label.size();
    if (length >= label.size())
        bytes.erase(length, sizeof(DWORD) + static_cast<unsigned char>(bytes[length]));
    return bytes;
}

Files files_in(const client::Folder& folder)
{
    Files all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator{folder.path()})
        if (!entry.is_directory())
            all[entry.path().wstring().substr(folder.path().size() + 1)] = without_time(client::Folder::read(entry.path()));
    return all;
}

/// Makes these the only files of the folder.
void put_files(const client::Folder& folder, const Files& files)
{
    const Files there = files_in(folder);
    for (const auto& [name, bytes] : there)
        if (!files.contains(name))
            DeleteFileW(folder.file(name).c_str());
    for (const auto& [name, bytes] : files)
        if (const auto found = there.find(name); found == there.end() || found->second != bytes) {
            std::filesystem::create_directories(std::filesystem::path{folder.file(name)}.parent_path());
            folder.write(name, bytes);
        }
}

/// What a use of the library comes to when nothing is refused.
struct Course {
    std::vector<std::wstring> answers;
    std::map<std::wstring, std::set<std::string>> contents; ///< that a file has at some time; none where it is missing

    void add(const Files& files)
    {
        for (const auto& [name, bytes] : files)
            if (!contents.contains(name) && !answers.empty())
                contents[name].insert(no_file);
        for (const auto& [name, bytes] : files)
            contents[name].insert(bytes);
        for (auto& [name, known] : contents)
            if (!files.contains(name))
                known.insert(no_file);
    }
};

/// A client in a thread of its own. Its calls come to what they did before, or fail, which ends what it does.
class Client {
public:
    struct Failed {};

    Client(HMODULE module, const client::Folder& folder, Course& course) : module_{module}, folder_{folder}, course_{course} {}

    /// Does the next thing with the objects that it has already.
    void begin_again()
    {
        answered_ = used_ = 0;
        error_ = 0;
        less_ = false;
    }
    Object object(REFCLSID id)
    {
        if (used_ == objects_.size()) {
            Object made;
            settle(library::try_create(module_, id, made), {}, {});
            objects_.push_back(made);
        }
        return objects_[used_++];
    }
    /// Calls a member that answers as ever, or raises an error.
    Value call(const Object& object, const wchar_t* member, const std::vector<Value>& arguments = {})
    {
        return invoke(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, false);
    }
    /// Calls one that never raises an error, or whose answer says less where the system does.
    Value ask(const Object& object, const wchar_t* member, const std::vector<Value>& arguments = {})
    {
        return invoke(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, true);
    }
    void put(const Object& object, const wchar_t* member, const std::vector<Value>& arguments)
    {
        invoke(object, member, DISPATCH_PROPERTYPUT, arguments, false);
    }
    std::wstring file(std::wstring_view name) const { return folder_.file(name); }
    const client::Folder& folder() const { return folder_; }

    long error() const { return error_; }
    bool told_less() const { return less_; }
    const std::wstring& difference() const { return difference_; }

private:
    Value invoke(const Object& object, const wchar_t* member, WORD flags, const std::vector<Value>& arguments, bool may_tell_less)
    {
        DISPID id = DISPID_UNKNOWN;
        auto name = const_cast<LPOLESTR>(member);
        settle(object.dispatch()->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), {}, member);
        const std::wstring before = told_variables(arguments);
        Outcome outcome = object.invoke(id, flags, arguments);
        const std::wstring answer = std::wstring{member} + L": " +
            (SUCCEEDED(outcome.result)
                 ? client::told(outcome.value) + told_variables(arguments)
                 : std::to_wstring(outcome.number()) + L", " + outcome.description + L", " + outcome.source.substr(0, 3));
        if (is_reference_) {
            course_.answers.push_back(answer);
            course_.add(files_in(folder_));
        } else if (answered_ < course_.answers.size() && course_.answers[answered_] != answer) {
            if (FAILED(outcome.result)) {
                EXPECT_EQ(told_variables(arguments), before) << "the caller's variables of a call that failed";
            }
            settle(outcome.result, outcome, member);
            if (!may_tell_less)
                ADD_FAILURE() << "answered differently: " << testing::PrintToString(answer) << " instead of "
                              << testing::PrintToString(course_.answers[answered_]);
            difference_ = answer;
            less_ = true;
        }
        ++answered_;
        return std::move(outcome.value);
    }
    static std::wstring told_variables(const std::vector<Value>& arguments)
    {
        std::wstring all;
        for (const Value& argument : arguments)
            if (argument.vt == (VT_BYREF | VT_VARIANT))
                all += L", " + client::told(static_cast<const Value&>(*argument.pvarVal));
        return all;
    }
    /// Ends what the client does if something has failed; it has to say why.
    void settle(HRESULT result, const Outcome& outcome, const wchar_t* member)
    {
        if (SUCCEEDED(result))
            return;
        const bool told = result == DISP_E_EXCEPTION;
        error_ = told ? outcome.number() : HRESULT_FACILITY(result) == FACILITY_CONTROL ? HRESULT_CODE(result) : result;
        if (refusals::state.plan.kind == Kind::Memory) {
            // An error that comes as ever may come without its texts.
            const std::wstring as_ever = member ? member + (L": " + std::to_wstring(error_)) + L"," : L"";
            EXPECT_TRUE(error_ == 7 || error_ == E_OUTOFMEMORY || outcome.source == L"Nif-File" ||
                        (member && course_.answers[answered_].starts_with(as_ever)))
                << error_;
            if (told && error_ == 7 && !refusals::state.plan.lasts) {
                EXPECT_EQ(outcome.description, L"Out of memory");
            }
        } else if (member) {
            EXPECT_TRUE(told) << std::hex << result;
            EXPECT_NE(outcome.description, L"");
            EXPECT_TRUE(!outcome.source.empty() || refusals::state.last == "GetModuleFileNameW");
        }
        throw Failed{};
    }

    const HMODULE module_;
    const client::Folder& folder_;
    Course& course_;
    const bool is_reference_ = course_.answers.empty();
    std::vector<Object> objects_;
    std::size_t used_ = 0, answered_ = 0;
    long error_ = 0;
    bool less_ = false;
    std::wstring difference_;
};

struct Use {
    const char* name;
    void (*run)(Client&);
    Files (*files)() = [] { return Files{}; };
    int kept = 0; ///< handles that it leaves open until the process ends

    friend void PrintTo(const Use& use, std::ostream* out) { *out << use.name; }
};

void raise_an_error(Client& client)
{
    client.call(client.object(__uuidof(qvMath)), L"MMult", {L"no number", 1});
}

void expand_a_template(Client& client)
{
    const Object common = client.object(__uuidof(qvCommon));
    client.call(common, L"Insert", {L"Saved |a|1|a with |2 section of a long text.", L"the first", 2.5});
    client.ask(common, L"qvObjectsInit", {L"Language", 1});
    client.call(common, L"qvIsNumeric", {L"1.5"});
}

void compute(Client& client)
{
    const Object math = client.object(__uuidof(qvMath)), common = client.object(__uuidof(qvCommon));
    client.call(math, L"MMult", {client::table(VT_R8, 0, 0, {{1.5, 2}, {3, 4}}), client::table(VT_R8, 0, 0, {{1.5, 2}, {3, 4}})});
    Value list = client::list(0, {L"three", 2, 1.5});
    const SAFEARRAY* const array = list.parray;
    try {
        client.call(common, L"Sort", {Value::variable(list)});
    } catch (Client::Failed) {
        EXPECT_EQ(array->cLocks, 0u);
        throw;
    }
    client.call(common, L"MinMax", {client::table(VT_VARIANT, 0, 0, {{L"a", 2}, {3, 4}})});
}

void keep_settings(Client& client)
{
    const Object written = client.object(__uuidof(qvIniFile)), read = client.object(__uuidof(qvIniFile));
    client.call(written, L"Load", {client.file(L"settings.ini")});
    const Object section{client.call(written, L"Section", {L"Main of all sections"}).pdispVal};
    const Object parameter{client.call(section, L"Parameter", {L"Path"}).pdispVal};
    client.put(parameter, L"Value", {L"a value that is longer than a few letters"});
    client.call(written, L"Save", {client.file(L"settings.ini")});
    client.call(written, L"Save", {client.file(L"new.ini")});
    client.call(read, L"Load", {client.file(L"settings.ini")});
}

void keep_data(Client& client)
{
    const Object file = client.object(__uuidof(qvFile_qvb));
    client.put(file, L"File", {client.file(L"data.qvb")});
    client.call(file, L"WriteFile", {client::table(VT_R8, 0, 0, {{1.5}, {2.5}})});
    Value read;
    client.call(file, L"ReadFile", {Value::variable(read)});
    client.call(file, L"WriteFile", {client::table(VT_VARIANT, 0, 0, {{1.5}, {L"no number"}})});
    client.put(file, L"File", {client.file(L"new.qvb")});
    client.call(file, L"WriteFile", {client::table(VT_R8, 0, 0, {{1.5}, {2.5}})});
}

void keep_values(Client& client)
{
    const Object file = client.object(__uuidof(qvFile_Nif));
    client.call(file, L"SetSize", {2, 2});
    client.put(file, L"Value", {1, 2, 2.5});
    client.call(file, L"Save", {client.file(L"values.nif")});
    client.call(file, L"Load", {client.file(L"values.nif")});
    client.call(file, L"Value", {1, 2});
}

void clear_folders(Client& client)
{
    const Object file = client.object(__uuidof(qvFile));
    client.call(file, L"qvMkDirMulti", {client.file(L"new\\folder")});
    client.ask(file, L"PathIsEmpty", {client.file(L"new")});
    client.ask(file, L"CheckFile", {client.file(L"one.txt")});
    client.ask(file, L"CheckForWrite", {client.file(L"one.txt")});
    client.call(file, L"DelFile", {client.file(L"one.txt")});
    client.call(file, L"DelFile", {client.file(L"*.tmp")});
    client.ask(file, L"qvKill", {client.file(L"two.txt")});
    client.ask(file, L"ClearFolder", {client.folder().path()});
}

/// A listener that begins and ends undisturbed.
template <class Listener, class... Handler>
auto listening(const Object& object, Handler... handler)
{
    const auto end = [](Listener* listener) {
        const refusals::Paused undisturbed;
        delete listener;
    };
    const refusals::Paused undisturbed;
    return std::unique_ptr<Listener, decltype(end)>{new Listener{object, handler...}};
}

void walk_folders(Client& client)
{
    const Object file = client.object(__uuidof(qvFile));
    for (const wchar_t* const pattern : {L"*", L"*.txt"}) {
        const auto listener = listening<client::ItemListener>(file, [](auto) { return false; });
        client.ask(file, L"WalkDirTree", {client.folder().path(), pattern});
    }
    client.ask(file, L"GetShortFileName", {client.file(L"one.txt")});
    client.ask(file, L"GetLongFilename", {client.file(L"one.txt")});
    client.ask(file, L"qvGetSpecialFolderPath", {CSIDL_PERSONAL});
    client.ask(file, L"qvPathFileExists", {client.file(L"one.txt")});
    client.call(file, L"qvPathAppend", {L"a", L"b"});
}

void keep_profiles(Client& client)
{
    const Object api = client.object(__uuidof(qvAPI));
    Value text{L""}, table;
    client.ask(api, L"WritePPs", {L"Section", L"Key", L"written", client.file(L"profile.ini")});
    client.ask(api, L"GetPPs", {L"Section", L"Other", Value::variable(text), client.file(L"profile.ini")});
    client.call(api, L"GetPPs2", {L"Section", L"Other", L"none", client.file(L"profile.ini")});
    client.ask(api, L"GetPPSectionStr", {L"Section", Value::variable(table), client.file(L"profile.ini")});
    client.ask(api, L"GetPPSectionNamesStr", {Value::variable(table), client.file(L"profile.ini")});
}

void keep_in_registry(Client& client)
{
    const Object save = client.object(__uuidof(qvSave)), common = client.object(__uuidof(qvCommon));
    client.put(save, L"Application", {L"qvObjects refusals"});
    client.put(save, L"Section", {L"Section"});
    client.call(save, L"WriteS", {L"Key", L"a text that is longer than the sixty-four characters for which there is room"});
    client.call(save, L"ReadS", {L"Key"});
    client.call(common, L"WriteKey", {L"Section", L"Key", L"text"});
    client.call(common, L"ReadKey", {L"Section", L"Key"});
}

void convert_and_share(Client& client)
{
    const Object common = client.object(__uuidof(qvCommon)), api = client.object(__uuidof(qvAPI));
    Value bytes, text, guid;
    client.call(common, L"BstrToByte", {L"AB", Value::variable(bytes)});
    client.call(common, L"ByteToBstrV", {client::list(0, {65, L"66", 0}), Value::variable(text)});
    client.call(api, L"GUIDFromString", {L"{00020400-0000-0000-C000-000000000046}", Value::variable(guid)});
    const Object memory = client.object(__uuidof(qvSharedMemory));
    client.call(memory, L"CreateForString", {L"qvObjects refusals", L"a text that is longer than a few letters"});
    client.call(memory, L"Str");
}

/// A process that has ended, and whose number stays its own.
long ended_process()
{
    static const DWORD number = [] {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        wchar_t command[] = L"cmd /c exit 3";
        EXPECT_TRUE(CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
        WaitForSingleObject(process.hProcess, INFINITE);
        CloseHandle(process.hThread);
        return process.dwProcessId;
    }();
    return static_cast<long>(number);
}

void wait_for_programs(Client& client)
{
    const Object common = client.object(__uuidof(qvCommon)), api = client.object(__uuidof(qvAPI));
    wchar_t before[MAX_PATH] = L"", after[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    client.ask(common, L"WaitOnProgram", {ended_process(), true});
    client.ask(common, L"WaitOnProgram", {ended_process(), false});
    client.ask(common, L"TerminateProgram", {ended_process()});
    client.ask(common, L"CheckLibFunction", {client.file(L"none.dll"), L"GetTempPathA"});
    client.ask(common, L"CheckLibFunction", {L"kernel32.dll", L"GetTempPathA"});
    GetCurrentDirectoryW(MAX_PATH, after);
    EXPECT_TRUE(std::wstring_view{after} == before || refusals::state.last == "SetCurrentDirectoryW");
    client.ask(api, L"GetTempPath");
    client.ask(api, L"GetWindowsDirectory");
    client.ask(api, L"GetSystemDirectory");
    client.ask(api, L"qvGetComputerName");
}

void watch_a_window(Client& client)
{
    client::TestWindow window;
    const Object watcher = client.object(__uuidof(qvWindowProc));
    const auto listener = listening<client::MessageListener>(watcher);
    client.ask(watcher, L"ClearAllMsgs");
    for (const long message : {1L, 2L, long{WM_USER}})
        client.ask(watcher, L"AddMsg", {message});
    try {
        client.put(watcher, L"hwnd", {window.number()});
        client.put(watcher, L"Enabled", {true});
        EXPECT_EQ(window.send(WM_USER), client::TestWindow::answer);
        client.put(watcher, L"Enabled", {false});
        client.put(watcher, L"hwnd", {0});
        EXPECT_EQ(window.send(WM_USER), client::TestWindow::answer);
    } catch (Client::Failed) {
        EXPECT_EQ(window.send(WM_USER), client::TestWindow::answer);
        throw;
    }
}

void show_tips(Client& client)
{
    client::ParentWindow parent;
    const Object tip = client.object(__uuidof(qvToolTip));
    client.ask(tip, L"Init");
    client.ask(tip, L"AddTTRect", {parent, 0, 0, 10, 10, L"a text that is longer than a few letters", 0, 1});
    client.ask(tip, L"AddTTRectCB", {parent, 0, 20, 10, 30, 0, 2});
    client.ask(tip, L"Text", {1, parent});
    EXPECT_TRUE(parent.answers());
}

/// Cancels each dialog of this thread as soon as it becomes active.
class Canceller {
public:
    Canceller() : hook_{SetWindowsHookExW(WH_CBT, &see, nullptr, GetCurrentThreadId())} {}
    ~Canceller() { UnhookWindowsHookEx(hook_); }
    Canceller(const Canceller&) = delete;
    Canceller& operator=(const Canceller&) = delete;

private:
    static LRESULT CALLBACK see(int code, WPARAM window, LPARAM more)
    {
        wchar_t name[16] = L"";
        GetClassNameW(reinterpret_cast<HWND>(window), name, 16);
        RECT place{0, 0, 200, 0};
        GetWindowRect(reinterpret_cast<HWND>(window), &place);
        if (code == HCBT_ACTIVATE && std::wstring{name} == L"#32770") {
            EXPECT_GE(place.right - place.left, 100) << "large enough to be used";
            PostMessageW(reinterpret_cast<HWND>(window), WM_COMMAND, IDCANCEL, 0);
        }
        return CallNextHookEx(nullptr, code, window, more);
    }

    HHOOK hook_;
};

void ask_the_user(Client& client)
{
    const Canceller canceller;
    const Object dialog = client.object(__uuidof(qvPathDialog)), file = client.object(__uuidof(qvFile));
    client.put(dialog, L"Path", {client.folder().path()});
    client.put(dialog, L"Prompt", {L"Where to?"});
    client.call(dialog, L"Show");
    client.ask(file, L"CheckFile", {client.file(L"missing"), L"caption", true});
}

Files metafile()
{
    const HDC context = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    Rectangle(context, 0, 0, 100, 50);
    const HENHMETAFILE made = CloseEnhMetaFile(context);
    std::string bytes(GetEnhMetaFileBits(made, 0, nullptr), '\0');
    GetEnhMetaFileBits(made, static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data()));
    DeleteEnhMetaFile(made);
    return {{L"picture.emf", bytes}};
}

void draw(Client& client)
{
    const Object common = client.object(__uuidof(qvCommon)), screen = client.object(__uuidof(qvScreen));
    const client::Canvas canvas;
    const auto context = static_cast<long>(reinterpret_cast<LONG_PTR>(canvas.context));
    client.ask(common, L"PrintEMF", {client.file(L"picture.emf"), context, 0, 0, 100, 50});
    client.call(common, L"CreateFontOLE", {L"Arial"});
    client.call(common, L"MMperPixX");
    client.call(screen, L"TwipsPerPixelX");
    client.ask(screen, L"FontCount");
    client.call(client.object(__uuidof(qvPrinter)), L"FontCount");
    client.ask(client.object(__uuidof(qvBitmap)), L"GetBitmapSizeS", {client.file(L"picture.emf"), 0, 0});
    const Value brush = client.object(__uuidof(qvForm)).try_call(L"GetHalftoneBrush").value; // another one each time
    if (brush.vt == VT_I4 && DeleteObject(reinterpret_cast<HGDIOBJ>(static_cast<LONG_PTR>(brush.lVal))))
        --refusals::state.held;
}

const Use uses[]{
    {"raise an error", raise_an_error},
    {"expand a template", expand_a_template},
    {"compute", compute},
    {"keep settings", keep_settings, [] { return Files{{L"settings.ini", "[A]\r\nPath=former\r\n"}}; }},
    {"keep data", keep_data, [] { return Files{{L"data.qvb", "former"}}; }},
    {"keep values", keep_values, [] { return Files{{L"values.nif", "former"}}; }},
    {"clear folders", clear_folders,
     [] { return Files{{L"one.txt", "1"}, {L"two.txt", "2"}, {L"a.tmp", "a"}, {L"b.tmp", "b"}, {L"sub\\three.txt", "3"}}; }},
    {"walk folders", walk_folders, [] { return Files{{L"one.txt", "1"}, {L"sub\\two.txt", "2"}, {L"sub\\three.txt", "3"}}; }},
    {"keep profiles", keep_profiles, [] { return Files{{L"profile.ini", "[Section]\r\nOther=value\r\n"}}; }},
    {"keep in registry", keep_in_registry},
    {"convert and share", convert_and_share, [] { return Files{}; }, 1},
    {"wait for programs", wait_for_programs, [] { return Files{}; }, 2},
    {"watch a window", watch_a_window},
    {"show tips", show_tips},
    {"ask the user", ask_the_user},
    {"draw", draw, metafile},
};

/// The text of the thread's last error; empty when it has none.
std::wstring error_text()
{
    IErrorInfo* information = nullptr;
    if (GetErrorInfo(0, &information) != S_OK)
        return {};
    Value text = Value::of_type(VT_BSTR);
    text.bstrVal = nullptr;
    information->GetDescription(&text.bstrVal);
    information->Release();
    return text.text();
}

/// A copy of the library that no one has called yet. It stays loaded; its file goes when the system starts the next time.
struct Library {
    const HMODULE module = load();
    const refusals::Imports imports{module};

    static HMODULE load()
    {
        wchar_t place[MAX_PATH], copy[MAX_PATH];
        GetTempPathW(MAX_PATH, place);
        GetTempFileNameW(place, L"qvo", 0, copy);
        CopyFileW(library::file().c_str(), copy, FALSE);
        MoveFileExW(copy, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
        return LoadLibraryW(copy);
    }
};

/// Otherwise as many as take a second or two for each use.
const bool refuses_everything = std::getenv("QVOBJECTS_EVERY_REFUSAL");

class Refusals : public testing::TestWithParam<Use> {
protected:
    /// On a thread that has never called the library, once with refusals and once without.
    void run(HMODULE module, const Plan& plan)
    {
        const Files files = GetParam().files();
        std::thread{[&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            put_files(folder_, files);
            if (course_.answers.empty())
                course_.add(files);
            {
                Client client{module, folder_, course_};
                {
                    const refusals::Active refusing{plan};
                    attempt(client);
                }
                ++outcomes_[client.error() ? std::to_wstring(client.error()) : client.told_less() ? L"less" : L"as ever"];
                expect_whole_files();
                put_files(folder_, files);
                client.begin_again();
                EXPECT_TRUE(attempt(client) && !client.told_less())
                    << "afterwards: " << client.error() << testing::PrintToString(client.difference());
            }
            CoUninitialize();
        }}.join();
        if (faults() > 0)
            ADD_FAILURE() << refusals::state.last << " was refused, call " << plan.first;
    }
    /// Refuses what is asked for, one after the other.
    void refuse_each(const Library& library, Kind kind, bool lasts, int most)
    {
        if (faults() > 0)
            return;
        run(library.module, {kind, std::numeric_limits<int>::max()}); // only counts
        outcomes_.clear();
        const int asked = refusals::state.asked, step = refuses_everything ? 1 : 1 + asked / most;
        int refused = 0;
        for (int first = 1; first <= asked && faults() == 0; first += step, ++refused) {
            library.imports.forget_delayed();
            const long held = refusals::state.held;
            run(library.module, {kind, first, lasts});
            EXPECT_LE(refusals::state.held - held, GetParam().kept) << "is lost";
            EXPECT_GE(refusals::state.held - held, 0) << "was given back twice";
            EXPECT_EQ(library::can_unload(library.module), S_OK) << "objects are left";
        }
        std::printf("%s: %d of %d %s refused%s:", GetParam().name, refused, asked,
                    kind == Kind::Memory ? "requests for memory" : "calls", lasts ? " with all after it" : "");
        for (const auto& [outcome, count] : outcomes_)
            std::printf(" %d %ls,", count, outcome.c_str());
        std::puts("");
    }
    static int faults() { return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count(); }

private:
    bool attempt(Client& client) const
    {
        try {
            GetParam().run(client);
            return true;
        } catch (Client::Failed) {
            return false;
        }
    }
    /// Each is as it was at some time when nothing was refused, and there are no others.
    void expect_whole_files() const
    {
        Files there = files_in(folder_);
        for (const auto& [name, contents] : course_.contents) {
            const std::string content = there.contains(name) ? there[name] : no_file;
            EXPECT_TRUE(contents.contains(content)) << testing::PrintToString(std::pair{name, content});
            there.erase(name);
        }
        EXPECT_TRUE(there.empty()) << testing::PrintToString(there) << " is left";
    }

    const client::Folder folder_;
    Course course_;
    std::map<std::wstring, int> outcomes_;
};

/// All keys and values in a key.
std::vector<std::wstring> content_of(HKEY key)
{
    std::vector<std::wstring> all;
    wchar_t name[256], text[512];
    DWORD room = 256, size = sizeof text;
    auto* const bytes = reinterpret_cast<BYTE*>(text);
    for (DWORD i = 0; RegEnumValueW(key, i, name, &room, nullptr, nullptr, bytes, &size) == ERROR_SUCCESS; ++i) {
        all.push_back(std::wstring{name} + L"=" + std::wstring{text, size / sizeof(wchar_t)});
        room = 256, size = sizeof text;
    }
    for (DWORD i = 0; RegEnumKeyW(key, i, name, 256) == ERROR_SUCCESS; ++i) {
        HKEY inner = nullptr;
        all.push_back(name);
        RegOpenKeyExW(key, name, 0, KEY_READ, &inner);
        for (const std::wstring& one : content_of(inner))
            all.push_back(std::wstring{name} + L"\\" + one);
        RegCloseKey(inner);
    }
    return all;
}

} // namespace

TEST_P(Refusals, AreClearErrors)
{
    const Library library;
    ASSERT_GT(library.imports.delayed(), 100u);
    const refusals::AutomationMemory memory;
    run(library.module, {Kind::System, std::numeric_limits<int>::max()});
    refuse_each(library, Kind::System, false, 16);
    refuse_each(library, Kind::Memory, false, 4);
    refuse_each(library, Kind::Memory, true, 2);
    for (int first = 1; faults() == 0; first += refuses_everything ? 1 : 2 * first) {
        run(Library{}.module, {Kind::Memory, first, true}); // to the first call of all
        if (refusals::state.asked < first)
            break;
    }
}

TEST(Registration, ThatIsRefusedLeavesNothing)
{
    const Library library;
    HKEY classes = nullptr;
    const wchar_t path[] = L"Software\\qvObjects refusals\\Classes";
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes, nullptr), ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes), ERROR_SUCCESS);
    const auto call = [&](const char* entry, int refused) {
        const refusals::Active refusing{{Kind::System, refused}};
        return library::entry_point<HRESULT(STDAPICALLTYPE*)()>(library.module, entry)();
    };
    EXPECT_EQ(call("DllRegisterServer", 0), S_OK);
    const auto registered = content_of(classes);
    EXPECT_EQ(call("DllUnregisterServer", 0), S_OK);
    const auto nothing = content_of(classes);
    EXPECT_GT(registered.size(), nothing.size() + 100);
    int refused = 0, failed = 0, first = 1;
    for (const char* const entry : {"DllRegisterServer", "DllUnregisterServer"})
        for (first = 1; !HasFailure(); first += refuses_everything ? 1 + first / 50 : 1 + 2 * first, ++refused) {
            if (entry == std::string_view{"DllUnregisterServer"}) {
                EXPECT_EQ(call("DllRegisterServer", 0), S_OK);
            }
            const bool fails = FAILED(call(entry, first));
            if (!refusals::refused_one())
                break;
            failed += fails;
            const auto left = content_of(classes);
            if (entry == std::string_view{"DllRegisterServer"}) {
                EXPECT_EQ(left, fails ? nothing : registered) << refusals::state.last << ", call " << first;
            }
            EXPECT_EQ(call("DllUnregisterServer", 0), S_OK);
            EXPECT_EQ(content_of(classes), nothing) << refusals::state.last << ", call " << first;
        }
    std::printf("register and unregister: %d calls refused, %d failed\n", refused, failed);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(classes);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\qvObjects refusals");
}

TEST(ErrorInformation, IsNeverThatOfAFormerError)
{
    const Library library;
    const Object math = library::create(library.module, __uuidof(qvMath));
    _qvMath* face = nullptr;
    ASSERT_EQ(math.dispatch()->QueryInterface(__uuidof(_qvMath), reinterpret_cast<void**>(&face)), S_OK);
    Value text{L"no number"}, large{1e300}, product;
    bool refused = true;
    for (int first = 1; refused; ++first) {
        EXPECT_EQ(face->MMult(&text, &large, &product), static_cast<HRESULT>(0x800A000D));
        const HRESULT result = [&] {
            const refusals::Active refusing{{Kind::Memory, first}};
            return face->MMult(&large, &large, &product);
        }();
        refused = refusals::refused_one();
        const bool overflows = result == static_cast<HRESULT>(0x800A0006);
        EXPECT_TRUE(overflows || (refused && result == static_cast<HRESULT>(0x800A0007))) << first;
        const std::wstring told = error_text();
        EXPECT_TRUE(told == (overflows ? L"Overflow" : L"Out of memory") || (refused && told.empty())) << first;
    }
    face->Release();
}

INSTANTIATE_TEST_SUITE_P(Uses, Refusals, testing::ValuesIn(uses));
