// One file, several programs that write and read it at the same time. This program starts itself again for each of them.
#include "support/own_process.h"
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

void save_qvb(const std::wstring& path, unsigned writer)
{
    Value all = client::array(VT_I4, {{lines + writer % 7, 0}, {30, 0}}, {});
    std::fill_n(static_cast<long*>(all.parray->pvData), (lines + writer % 7) * 30, static_cast<long>(writer));
    const Object file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {path});
    const Outcome outcome = file.try_call(L"WriteFile", {all});
    EXPECT_TRUE(outcome.result == S_OK || outcome.number() == 70) << outcome.number();
}

void load_ini(const std::wstring& path)
{
    const Object ini = Object::create(L"qvObjects.qvIniFile");
    ini.call(L"Load", {path});
    const Object parameters = ini.object(L"qvIniSection_Parameter");
    ASSERT_EQ(parameters.call(L"Count").number(), lines);
    const auto value = [&](int i) { return parameters.object(L"Item", {i}).call(L"Value").text(); };
    const std::wstring first = value(1);
    for (int i = 2; i <= lines; ++i)
        ASSERT_EQ(value(i), first) << i;
}

void load_nif(const std::wstring& path)
{
    const Object nif = Object::create(L"qvObjects.qvFile_Nif");
    ASSERT_TRUE(nif.call(L"Load", {path}).flag()) << "it was there all the time";
    ASSERT_EQ(nif.call(L"m").number(), lines);
    const double first = nif.call(L"Value", {1, 1}).dblVal;
    for (int i = 2; i <= lines; ++i)
        ASSERT_EQ(nif.call(L"Value", {i, 1}).dblVal, first) << i;
}

void load_qvb(const std::wstring& path)
{
    const Object file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {path});
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
}

/// A kind of file: how a writer saves it, and how a reader finds it to be of one writer.
struct Kind {
    const wchar_t* extension;
    void (*save)(const std::wstring& path, unsigned writer);
    void (*load)(const std::wstring& path);
};
const Kind kinds[]{{L".ini", save_ini, load_ini}, {L".nif", save_nif, load_nif}, {L".qvb", save_qvb, load_qvb}};

const Kind& kind_of(const std::wstring& path)
{
    return *std::ranges::find_if(kinds, [&](const Kind& kind) { return path.ends_with(kind.extension); });
}

} // namespace

TEST(SharedFileRole, DISABLED_Save)
{
    const client::Apartment apartment;
    repeat([path = shared_path()](unsigned turn) { kind_of(path).save(path, turn); });
}

TEST(SharedFileRole, DISABLED_Load)
{
    const client::Apartment apartment;
    repeat([path = shared_path()](unsigned) { kind_of(path).load(path); });
}

// A file that is there from the start.
TEST(SharedFile, IsReadAsAWholeOrRefused)
{
    const client::Apartment apartment;
    for (const Kind& kind : kinds) {
        const Folder folder;
        const std::wstring path = folder.file(std::wstring{L"Shared"} + kind.extension);
        kind.save(path, 1);
        SetEnvironmentVariableW(path_variable, path.c_str());
        std::vector<client::OwnProcess> processes;
        for (const wchar_t* role : {L"Save", L"Save", L"Load", L"Load"})
            processes.emplace_back(std::wstring{L"SharedFileRole.DISABLED_"} + role);
        for (const client::OwnProcess& process : processes)
            EXPECT_EQ(process.exit_code(), 0u) << path;
        EXPECT_EQ(folder.size(), 1);
    }
}
