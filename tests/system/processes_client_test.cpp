// Other processes and libraries as clients meet them. This program starts itself again to be waited for.
#include "support/own_process.h"

#include "support/client.h"

using client::expect_error;
using client::Object;
using client::OwnProcess;
using client::Value;

namespace {

constexpr const wchar_t* code_variable = L"EXIT_CODE";
constexpr DWORD still_active = 259;
constexpr int terminated = -24321;

/// This program again, which ends with this code after a while.
OwnProcess ending_with(DWORD code)
{
    SetEnvironmentVariableW(code_variable, std::to_wstring(code).c_str());
    return OwnProcess{L"ProcessRole.DISABLED_End"};
}

OwnProcess running()
{
    return OwnProcess{L"ProcessRole.DISABLED_Stay"};
}

class Processes : public testing::Test {
protected:
    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
};

int ticks = 0;
void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD)
{
    ++ticks;
}

} // namespace

TEST(ProcessRole, DISABLED_End)
{
    wchar_t code[16];
    GetEnvironmentVariableW(code_variable, code, 16);
    Sleep(300);
    TerminateProcess(GetCurrentProcess(), std::stoul(code));
}

TEST(ProcessRole, DISABLED_Stay)
{
    Sleep(60'000);
}

TEST_F(Processes, AreWaitedFor)
{
    struct Case {
        DWORD code;
        std::vector<Value> how;
    };
    for (const auto& [code, how] :
         {Case{42, {true}}, Case{43, {false}}, Case{0xFFFFFFFE, {}}, Case{still_active, {}}, Case{still_active, {true}}}) {
        const OwnProcess process = ending_with(code);
        std::vector<Value> arguments{static_cast<long>(process.id())};
        arguments.insert(arguments.end(), how.begin(), how.end());
        for (int again = 0; again < 2; ++again) {
            const Value result = common.call(L"WaitOnProgram", arguments);
            EXPECT_EQ(result.vt, VT_I4);
            EXPECT_EQ(static_cast<DWORD>(result.lVal), code);
        }
    }
}

TEST_F(Processes, ThatAreWaitedForLetMessagesThrough)
{
    const OwnProcess process = ending_with(1);
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, tick);
    PostQuitMessage(7);
    ticks = 0;
    EXPECT_EQ(common.call(L"WaitOnProgram", {static_cast<long>(process.id())}).number(), 1);
    EXPECT_GT(ticks, 3) << "also behind the end of the program";
    KillTimer(nullptr, timer);
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_TRUE(message.message == WM_QUIT && message.wParam == 7);
}

TEST_F(Processes, ThatAreNoneCannotBeWaitedFor)
{
    for (const int none : {0, -1, 3}) {
        EXPECT_EQ(common.call(L"WaitOnProgram", {none}).number(), 0);
        expect_error(common.try_call(L"WaitOnProgram", {none, true}), -1, client::system_text(ERROR_INVALID_HANDLE));
        EXPECT_EQ(common.call(L"TerminateProgram", {none}).number(), 0);
    }
}

TEST_F(Processes, AreEndedOnce)
{
    const DWORD identifier = [&] {
        const OwnProcess process = running();
        Value variable = static_cast<long>(process.id());
        EXPECT_EQ(common.call(L"WaitOnProgram", {0}).number(), 0);
        EXPECT_EQ(common.call(L"TerminateProgram", {Value::variable(variable)}).number(), 0);
        EXPECT_EQ(variable.number(), static_cast<long>(process.id()));
        EXPECT_EQ(process.exit_code(), static_cast<DWORD>(terminated));
        return process.id();
    }();
    // The process can be asked although nobody else holds it any more.
    EXPECT_EQ(common.call(L"TerminateProgram", {static_cast<long>(identifier)}).number(), 0);
    EXPECT_EQ(common.call(L"WaitOnProgram", {static_cast<long>(identifier)}).number(), terminated);

    const OwnProcess ended = ending_with(5);
    EXPECT_EQ(ended.exit_code(), 5u);
    common.call(L"TerminateProgram", {static_cast<long>(ended.id())});
    EXPECT_EQ(ended.exit_code(), 5u);
}

TEST_F(Processes, CheckLibFunctionLooksIntoALibrary)
{
    wchar_t library[MAX_PATH], before[MAX_PATH], after[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"qvObjects.dll"), library, MAX_PATH);
    GetCurrentDirectoryW(MAX_PATH, before);
    // Libraries that this one needs lie beside it only.
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring own_folder = std::filesystem::path{program}.parent_path(), plug_in = own_folder + L"\\hosts\\plug_in.dll";
    EXPECT_FALSE(LoadLibraryW(plug_in.c_str()));

    const client::Folder folder;
    const std::wstring text_file = folder.write(L"no library.dll", "text");
    struct Case {
        std::wstring library;
        const wchar_t* function;
        bool found;
    };
    for (const auto& [path, function, found] :
         {Case{library, L"DllGetClassObject", true}, Case{library, L"dllGetClassObject", false},
          Case{plug_in, L"catches_exceptions", true}, Case{L"kernel32", L"GetProcAddress", true}, Case{L"kernel32.dll", L"", false},
          Case{text_file, L"x", false}, Case{folder.file(L"nothing.dll"), L"x", false}, Case{L"", L"x", false},
          Case{L"C:\\no such folder\\kernel32.dll", L"GetProcAddress", false}}) {
        EXPECT_EQ(common.call(L"CheckLibFunction", {path, function}).flag(), found) << path << L" " << function;
        GetCurrentDirectoryW(MAX_PATH, after);
        EXPECT_STREQ(before, after);
    }

    const auto finds = [&](const wchar_t* path) { return common.call(L"CheckLibFunction", {path, L"catches_exceptions"}).flag(); };
    const std::wstring hosts = own_folder + L"\\hosts";
    SetCurrentDirectoryW(hosts.c_str());
    EXPECT_FALSE(finds(L"plug_in.dll")) << "it lies in the current folder, where nobody asked for it";
    EXPECT_TRUE(finds(L".\\plug_in.dll"));
    SetCurrentDirectoryW(before);
    std::wstring search_path(GetEnvironmentVariableW(L"PATH", nullptr, 0), L'\0');
    search_path.resize(GetEnvironmentVariableW(L"PATH", search_path.data(), static_cast<DWORD>(search_path.size())));
    SetEnvironmentVariableW(L"PATH", (search_path + L";" + hosts).c_str());
    EXPECT_TRUE(finds(L"plug_in.dll"));
    SetEnvironmentVariableW(L"PATH", search_path.c_str());
}
