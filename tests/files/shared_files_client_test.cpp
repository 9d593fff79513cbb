// One file, several programs that write and read it at the same time. This program starts itself again for each of them.
#include "support/tables.h"

#include <algorithm>

using client::Folder;
using client::Object;
using client::Outcome;
using client::Value;

namespace {

constexpr ULONGLONG duration = 1500; // milliseconds
constexpr int lines = 3000;
constexpr const wchar_t* path_variable = L"SHARED_FILE";

std::wstring shared_path()
{
    wchar_t path[MAX_PATH];
    return {path, GetEnvironmentVariableW(path_variable, path, MAX_PATH)};
}

/// What one writer writes: contents of different lengths, so that parts of two show.
std::wstring mark(unsigned writer)
{
    return std::wstring(1 + writer % 7, static_cast<wchar_t>(L'a' + writer % 26));
}

/// Does something over and over, and tells how often.
template <class Action>
void repeat(const Action& action)
{
    int times = 0;
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < duration && !testing::Test::HasFailure(); ++times)
        action(static_cast<unsigned>(times) + GetCurrentProcessId() / 4);
    EXPECT_GT(times, 2) << "too slow to tell";
}

class Process {
public:
    explicit Process(std::wstring_view role)
    {
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        std::wstring line = L"\"" + std::wstring{program} + L"\" --gtest_also_run_disabled_tests --gtest_brief=1 --gtest_filter=SharedFileRole.DISABLED_"
                          + std::wstring{role};
        STARTUPINFOW start{};
        start.cb = sizeof start;
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process_));
    }
    Process(Process&& other) noexcept : process_{std::exchange(other.process_, {})} {}
    ~Process()
    {
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }
    bool succeeds() const
    {
        DWORD code = 1;
        EXPECT_EQ(WaitForSingleObject(process_.hProcess, 60'000), WAIT_OBJECT_0);
        GetExitCodeProcess(process_.hProcess, &code);
        return code == 0;
    }

private:
    PROCESS_INFORMATION process_{};
};

/// Runs one process in each of these roles, all with a file that is there from the start.
void run_together(std::initializer_list<const wchar_t*> roles, const std::wstring& path)
{
    SetEnvironmentVariableW(path_variable, path.c_str());
    std::vector<Process> processes;
    for (const wchar_t* role : roles)
        processes.emplace_back(role);
    for (std::size_t i = 0; i < processes.size(); ++i)
        EXPECT_TRUE(processes[i].succeeds()) << *(roles.begin() + i);
}

void save_ini(const std::wstring& path, unsigned writer)
{
    const Object ini = Object::create(L"qvObjects.qvIniFile");
    const Object parameters = ini.object(L"qvIniSection_Parameter");
    for (int i = 0; i < lines; ++i)
        parameters.object(L"Add", {std::to_wstring(i)}).put(L"Value", {mark(writer)});
    ini.call(L"Save", {path});
}

void save_nif(const std::wstring& path, unsigned writer)
{
    const Object nif = Object::create(L"qvObjects.qvFile_Nif");
    nif.call(L"SetSize", {lines, 1});
    for (int i = 1; i <= lines; ++i)
        nif.put(L"Value", {i, 1, static_cast<double>(writer % 1000)});
    EXPECT_TRUE(nif.call(L"Save", {path}).flag());
}

Value matrix(unsigned writer)
{
    Value all = client::array(VT_I4, {{lines + writer % 7, 0}, {30, 0}}, {});
    std::fill_n(static_cast<long*>(all.parray->pvData), (lines + writer % 7) * 30, static_cast<long>(writer));
    return all;
}

} // namespace

TEST(SharedFileRole, DISABLED_SaveIni)
{
    const client::Apartment apartment;
    repeat([](unsigned turn) { save_ini(shared_path(), turn); });
}

TEST(SharedFileRole, DISABLED_LoadIni)
{
    const client::Apartment apartment;
    repeat([](unsigned) {
        const Object ini = Object::create(L"qvObjects.qvIniFile");
        ini.call(L"Load", {shared_path()});
        const Object parameters = ini.object(L"qvIniSection_Parameter");
        ASSERT_EQ(parameters.call(L"Count").number(), lines);
        const auto value = [&](int i) { return parameters.object(L"Item", {i}).call(L"Value").text(); };
        const std::wstring first = value(1);
        for (int i = 2; i <= lines; ++i)
            ASSERT_EQ(value(i), first) << i;
    });
}

TEST(SharedFileRole, DISABLED_SaveNif)
{
    const client::Apartment apartment;
    repeat([](unsigned turn) { save_nif(shared_path(), turn); });
}

TEST(SharedFileRole, DISABLED_LoadNif)
{
    const client::Apartment apartment;
    repeat([](unsigned) {
        const Object nif = Object::create(L"qvObjects.qvFile_Nif");
        ASSERT_TRUE(nif.call(L"Load", {shared_path()}).flag()) << "it was there all the time";
        ASSERT_EQ(nif.call(L"m").number(), lines);
        const double first = nif.call(L"Value", {1, 1}).dblVal;
        for (int i = 2; i <= lines; ++i)
            ASSERT_EQ(nif.call(L"Value", {i, 1}).dblVal, first) << i;
    });
}

TEST(SharedFileRole, DISABLED_WriteQvb)
{
    const client::Apartment apartment;
    const Object file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {shared_path()});
    repeat([&](unsigned turn) {
        const Outcome outcome = file.try_call(L"WriteFile", {matrix(turn)});
        ASSERT_TRUE(outcome.result == S_OK || outcome.number() == 70) << outcome.number();
    });
}

TEST(SharedFileRole, DISABLED_ReadQvb)
{
    const client::Apartment apartment;
    const Object file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {shared_path()});
    repeat([&](unsigned) {
        Value all;
        const Outcome outcome = file.try_call(L"ReadFile", {Value::variable(all)});
        ASSERT_TRUE(outcome.result == S_OK || outcome.number() == 70) << outcome.number();
        if (outcome.result != S_OK)
            return;
        ASSERT_EQ(all.vt, VT_ARRAY | VT_I4);
        const ULONG count = all.parray->rgsabound[0].cElements * all.parray->rgsabound[1].cElements;
        const auto* const first = static_cast<const long*>(all.parray->pvData);
        ASSERT_EQ(all.parray->rgsabound[1].cElements, lines + static_cast<ULONG>(*first) % 7);
        ASSERT_EQ(std::find_if(first, first + count, [&](long number) { return number != *first; }), first + count);
    });
}

class SharedFile : public testing::Test {
protected:
    client::Apartment apartment;
    Folder folder;
};

TEST_F(SharedFile, IniIsLoadedAsAWhole)
{
    const std::wstring path = folder.file(L"Shared.ini");
    save_ini(path, 1);
    run_together({L"SaveIni", L"SaveIni", L"LoadIni", L"LoadIni"}, path);
    EXPECT_EQ(folder.size(), 1);
}

TEST_F(SharedFile, NifIsLoadedAsAWhole)
{
    const std::wstring path = folder.file(L"Shared.nif");
    save_nif(path, 1);
    run_together({L"SaveNif", L"SaveNif", L"LoadNif", L"LoadNif"}, path);
    EXPECT_EQ(folder.size(), 1);
}

TEST_F(SharedFile, QvbIsReadAsAWholeOrRefused)
{
    const std::wstring path = folder.file(L"Shared.qvb");
    const Object file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {path});
    file.call(L"WriteFile", {matrix(1)});
    run_together({L"WriteQvb", L"WriteQvb", L"ReadQvb", L"ReadQvb"}, path);
    EXPECT_EQ(folder.size(), 1);
}
