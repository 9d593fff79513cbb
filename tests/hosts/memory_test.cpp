// What becomes of calls when memory runs short: the library's own requests are refused, one after the other.
#include "hosts/library.h"
#include "support/message_listener.h"
#include "support/tables.h"
#include "support/test_window.h"

#include <functional>
#include <span>
#include <thread>

using client::Object;
using client::Outcome;
using client::Value;

namespace {

/// Which of the requests of one thread are refused.
struct Shortage {
    DWORD thread = 0; ///< 0 for none
    int first = 0;    ///< from 1
    bool lasts = false;
    int asked = 0;

    bool refuses()
    {
        if (thread != GetCurrentThreadId())
            return false;
        ++asked;
        return lasts ? asked >= first : asked == first;
    }
};
Shortage shortage;

void* malloc_in_shortage(std::size_t size) { return shortage.refuses() ? nullptr : std::malloc(size); }
void* calloc_in_shortage(std::size_t count, std::size_t size) { return shortage.refuses() ? nullptr : std::calloc(count, size); }
void* realloc_in_shortage(void* memory, std::size_t size) { return shortage.refuses() ? nullptr : std::realloc(memory, size); }

/// A function of the platform, refused in a shortage with what it answers then.
template <auto function, auto refusal>
struct Refused;
template <class Result, class... Arguments, Result(STDAPICALLTYPE* function)(Arguments...), auto refusal>
struct Refused<function, refusal> {
    static Result STDAPICALLTYPE call(Arguments... arguments)
    {
        return shortage.refuses() ? static_cast<Result>(refusal) : function(arguments...);
    }
};

struct Import {
    const char* name;
    const void* function;
};
template <auto function>
const void* failing = reinterpret_cast<const void*>(&Refused<function, E_OUTOFMEMORY>::call);
template <auto function>
const void* empty = reinterpret_cast<const void*>(&Refused<function, nullptr>::call);

const Import imports[]{
    {"malloc", reinterpret_cast<const void*>(&malloc_in_shortage)},
    {"calloc", reinterpret_cast<const void*>(&calloc_in_shortage)},
    {"realloc", reinterpret_cast<const void*>(&realloc_in_shortage)},
    {"SysAllocStringLen", empty<SysAllocStringLen>},
    {"SafeArrayCreate", empty<SafeArrayCreate>},
    {"SafeArrayCopy", failing<SafeArrayCopy>},
    {"SafeArrayRedim", failing<SafeArrayRedim>},
    {"CreateErrorInfo", failing<CreateErrorInfo>},
    {"LoadTypeLibEx", failing<LoadTypeLibEx>},
    {"VariantCopyInd", failing<VariantCopyInd>},
    {"VariantChangeTypeEx", failing<VariantChangeTypeEx>},
};

/// Has a module's requests for memory go through the functions above.
int divert_imports(HMODULE module)
{
    auto* const base = reinterpret_cast<std::byte*>(module);
    const auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    int diverted = 0;
    for (auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress); library->Name; ++library) {
        const auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* place = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++place) {
            const auto* known = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            const auto found = std::ranges::find_if(imports, [&](const Import& import) {
                return !std::strcmp(import.name, reinterpret_cast<const char*>(known->Name));
            });
            if (found == std::end(imports))
                continue;
            DWORD former = 0;
            VirtualProtect(place, sizeof *place, PAGE_READWRITE, &former);
            place->u1.Function = reinterpret_cast<DWORD>(found->function);
            VirtualProtect(place, sizeof *place, former, &former);
            ++diverted;
        }
    }
    return diverted;
}

/// What a client does with the library. `expect` takes every call's outcome, whether it succeeds or fails for want of memory.
class Client {
public:
    explicit Client(HMODULE module, const client::Folder& folder) : module_{module}, folder_{folder} {}

    Object create(REFCLSID id)
    {
        Object object;
        settle(library::try_create(module_, id, object), 0);
        return object;
    }
    /// Gives nothing where the memory was missing.
    Value call(const Object& object, const wchar_t* member, std::vector<Value> arguments, long expected_error = 0)
    {
        return invoke(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments), expected_error);
    }
    /// Whether there was enough memory.
    bool put(const Object& object, const wchar_t* member, Value value)
    {
        const int former = shortages_;
        invoke(object, member, DISPATCH_PROPERTYPUT, {std::move(value)}, 0);
        return object && shortages_ == former;
    }
    std::wstring file(std::wstring_view name) const { return folder_.file(name); }

    int shortages() const { return shortages_; }

private:
    Value invoke(const Object& object, const wchar_t* member, WORD flags, std::vector<Value> arguments, long expected_error)
    {
        if (!object)
            return {};
        DISPID id = DISPID_UNKNOWN;
        auto name = const_cast<LPOLESTR>(member);
        const HRESULT found = object.dispatch()->GetIDsOfNames(IID_NULL, &name, 1, 0, &id);
        settle(found, 0);
        if (FAILED(found))
            return {};
        Outcome outcome = object.invoke(id, flags, arguments);
        if (outcome.number() == 7 && !shortage.lasts) {
            EXPECT_EQ(outcome.description, L"Out of memory");
        }
        settle(outcome.result == DISP_E_EXCEPTION ? outcome.code : outcome.result, expected_error);
        return std::move(outcome.value);
    }
    void settle(HRESULT result, long expected_error)
    {
        const long number = HRESULT_FACILITY(result) == FACILITY_CONTROL ? HRESULT_CODE(result) : result;
        if (number == 7 || result == E_OUTOFMEMORY)
            ++shortages_;
        else
            EXPECT_EQ(number, expected_error) << std::hex << result << " at request " << std::dec << shortage.first;
    }

    const HMODULE module_;
    const client::Folder& folder_;
    int shortages_ = 0;
};

using Use = void (*)(Client&);

void raise_an_error(Client& client)
{
    client.call(client.create(__uuidof(qvMath)), L"MMult", {L"no number", 1}, 13);
}

void expand_a_template(Client& client)
{
    const Object common = client.create(__uuidof(qvCommon));
    client.call(common, L"Insert", {L"Saved |a|1|a with |2 section of a long text.", L"the first", 2.5});
    client.call(common, L"qvObjectsInit", {L"Language", 1});
}

void compute(Client& client)
{
    const Object math = client.create(__uuidof(qvMath)), common = client.create(__uuidof(qvCommon));
    client.call(math, L"MMult", {client::table(VT_R8, 0, 0, {{1.5, 2}, {3, 4}}), client::table(VT_R8, 0, 0, {{1.5, 2}, {3, 4}})});
    Value list = client::list(0, {L"three", 2, 1.5});
    client.call(common, L"Sort", {Value::variable(list)});
    EXPECT_EQ(list.parray->cLocks, 0u);
    client.call(common, L"MinMax", {client::table(VT_VARIANT, 0, 0, {{L"a", 2}, {3, 4}})});
}

void keep_settings(Client& client)
{
    const Object ini = client.create(__uuidof(qvIniFile));
    Value section = client.call(ini, L"Section", {L"Main of all sections"});
    if (section.vt == VT_DISPATCH) {
        const Value parameter = client.call(Object{section.pdispVal}, L"Parameter", {L"Path"});
        if (parameter.vt == VT_DISPATCH)
            client.put(Object{parameter.pdispVal}, L"Value", L"a value that is longer than a few letters");
    }
    client.call(ini, L"Save", {client.file(L"settings.ini")});
    if (client.shortages() > 0)
        return; // there may be no file
    client.call(client.create(__uuidof(qvIniFile)), L"Load", {client.file(L"settings.ini")});
}

void keep_data(Client& client)
{
    const Object file = client.create(__uuidof(qvFile_qvb));
    if (!client.put(file, L"File", client.file(L"data.qvb")))
        return;
    const int former = client.shortages();
    client.call(file, L"WriteFile", {client::table(VT_R8, 0, 0, {{1.5}, {2.5}})});
    if (client.shortages() > former)
        return; // there may be no whole file
    Value read;
    client.call(file, L"ReadFile", {Value::variable(read)});
}

void convert_and_share(Client& client)
{
    const Object common = client.create(__uuidof(qvCommon)), api = client.create(__uuidof(qvAPI));
    Value bytes, text, guid;
    client.call(common, L"BstrToByte", {L"AB", Value::variable(bytes)});
    client.call(common, L"ByteToBstrV", {client::list(0, {65, L"66", 0}), Value::variable(text)});
    client.call(common, L"CheckLibFunction", {L"kernel32.dll", L"GetTempPathA"});
    client.call(api, L"GUIDFromString", {L"{00020400-0000-0000-C000-000000000046}", Value::variable(guid)});
    const Object memory = client.create(__uuidof(qvSharedMemory));
    const int former = client.shortages();
    client.call(memory, L"CreateForString", {L"qvObjects memory_test", L"a text that is longer than a few letters"});
    if (client.shortages() == former)
        client.call(memory, L"Str", {});
}

/// Runs it on a thread that has never called the library. The number of requests that it made, and of calls that failed.
std::pair<int, int> run(Use use, HMODULE module, const client::Folder& folder, int first, bool lasts)
{
    Client in_need{module, folder};
    std::thread{[&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        shortage = {GetCurrentThreadId(), first, lasts, 0};
        use(in_need);
        shortage.thread = 0;
        Client afterwards{module, folder};
        use(afterwards);
        EXPECT_EQ(afterwards.shortages(), 0) << "request " << first;
        CoUninitialize();
    }}.join();
    return {shortage.asked, in_need.shortages()};
}

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

class ErrorInformation : public testing::Test {
protected:
    /// A copy of the library that no one has called yet. It stays loaded; its file goes when the system starts the next time.
    static HMODULE fresh_library()
    {
        wchar_t place[MAX_PATH], copy[MAX_PATH];
        GetTempPathW(MAX_PATH, place);
        GetTempFileNameW(place, L"qvo", 0, copy);
        CopyFileW(library::file().c_str(), copy, FALSE);
        MoveFileExW(copy, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
        const HMODULE module = LoadLibraryW(copy);
        EXPECT_TRUE(module);
        EXPECT_EQ(divert_imports(module), static_cast<int>(std::size(imports)));
        return module;
    }

    const client::Folder folder;
};

using Windows = ErrorInformation;

class Memory : public ErrorInformation, public testing::WithParamInterface<Use> {};

} // namespace

TEST_P(Memory, ThatIsRefusedGivesErrorSeven)
{
    const HMODULE module = fresh_library();
    for (const bool lasts : {false, true}) {
        int failures = 0, first = 1;
        for (;; ++first) {
            const auto [asked, failed] = run(GetParam(), module, folder, first, lasts);
            failures += failed;
            if (asked < first || HasFailure())
                break;
        }
        EXPECT_GT(first, 5) << "hardly anything was refused";
        EXPECT_GT(failures, first / 3);
        EXPECT_EQ(library::can_unload(module), S_OK) << "objects are left";
    }
}

TEST_P(Memory, ThatIsRefusedToTheFirstCallOfAllGivesErrorSeven)
{
    for (int first = 1;; first += 1 + first / 4) {
        const auto [asked, failed] = run(GetParam(), fresh_library(), folder, first, true);
        if (asked < first || HasFailure())
            break;
    }
}

TEST_F(ErrorInformation, IsNeverThatOfAFormerError)
{
    const Object math = library::create(fresh_library(), __uuidof(qvMath));
    _qvMath* face = nullptr;
    ASSERT_EQ(math.dispatch()->QueryInterface(__uuidof(_qvMath), reinterpret_cast<void**>(&face)), S_OK);
    Value text{L"no number"}, large{1e300}, product;
    bool refused = true;
    for (int first = 1; refused; ++first) {
        EXPECT_EQ(face->MMult(&text, &large, &product), static_cast<HRESULT>(0x800A000D));
        shortage = {GetCurrentThreadId(), first, false, 0};
        const HRESULT result = face->MMult(&large, &large, &product);
        shortage.thread = 0;
        refused = shortage.asked >= first;
        EXPECT_TRUE(result == static_cast<HRESULT>(0x800A0006) || (refused && result == static_cast<HRESULT>(0x800A0007))) << first;
        const std::wstring told = error_text();
        EXPECT_TRUE(told == (result == static_cast<HRESULT>(0x800A0006) ? L"Overflow" : L"Out of memory") || (refused && told.empty())) << first;
    }
    face->Release();
}

TEST_F(Windows, GetTheirMessagesAlsoWhenThereIsNoMemoryToWatchThem)
{
    const HMODULE module = fresh_library();
    std::size_t heard = 0;
    bool refused = true;
    int first = 1;
    for (; refused; ++first)
        std::thread{[&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            client::TestWindow window;
            {
                const Object watcher = library::create(module, __uuidof(qvWindowProc));
                client::MessageListener listener{watcher};
                shortage = {GetCurrentThreadId(), first, false, 0};
                for (const long message : {1L, 2L, long{WM_USER}})
                    watcher.try_call(L"AddMsg", {message});
                watcher.try_put(L"hwnd", {window.number()});
                watcher.try_put(L"Enabled", {true});
                EXPECT_EQ(window.send(WM_USER), client::TestWindow::answer) << first;
                shortage.thread = 0;
                refused = shortage.asked >= first;
                heard += listener.heard().size();
            }
            CoUninitialize();
            EXPECT_EQ(window.send(WM_USER), client::TestWindow::answer) << first;
        }}.join();
    EXPECT_GT(first, 10) << "hardly anything was refused";
    EXPECT_GT(heard, 1u);
    EXPECT_EQ(library::can_unload(module), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Uses, Memory,
                         testing::Values(raise_an_error, expand_a_template, compute, keep_settings, keep_data, convert_and_share));
