// A process in which threads and the library come and go.
#include "hosts/library.h"
#include "support/tables.h"

#include <thread>

using client::Apartment;
using client::expect_error;
using client::Object;
using client::Value;

namespace {

constexpr int many = 3000; // more than the platform has places for the state of threads

HMODULE loaded() { return GetModuleHandleW(L"qvObjects.dll"); }

void raise_error(const Object& math)
{
    expect_error(math.try_call(L"MMult", {L"no number", 1}), 13, L"Type mismatch");
}

void use_data_files(const client::Folder& folder, const std::wstring& name)
{
    const Object file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {folder.file(name)});
    file.call(L"WriteFile", {client::table(VT_R8, 0, 0, {{1.5}, {2.5}})});
    Value read;
    file.call(L"ReadFile", {Value::variable(read)});
    EXPECT_EQ(read.vt & VT_ARRAY, VT_ARRAY);
}

/// Whether it ends in time. One that does not stays behind.
[[nodiscard]] bool ends(std::thread thread)
{
    const bool ended = WaitForSingleObject(reinterpret_cast<HANDLE>(pthread_gethandle(thread.native_handle())), 20000) == WAIT_OBJECT_0;
    ended ? thread.join() : thread.detach();
    return ended;
}

} // namespace

// The first test: no other may have loaded the library for good.
TEST(Library, CanBeLoadedAndFreedAnyNumberOfTimes)
{
    const std::wstring file = library::file();
    for (int i = 0; i < many && !HasFailure(); ++i) {
        const HMODULE module = LoadLibraryW(file.c_str());
        ASSERT_TRUE(module) << "load " << i;
        raise_error(library::create(module, __uuidof(qvMath)));
        EXPECT_EQ(library::can_unload(module), S_OK);
        FreeLibrary(module);
    }
}

TEST(Library, LetsThreadsEndThatUsedDataFiles)
{
    client::Folder folder;
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(ends(std::thread{[&] {
            Apartment apartment;
            use_data_files(folder, L"thread.qvb");
        }}));
    Apartment apartment;
    use_data_files(folder, L"main.qvb");
}

TEST(Library, LetsThreadsEndWheneverTheLastObjectGoes)
{
    HANDLE released = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const auto user = [&](auto&& then) {
        return std::thread{[&, then] {
            Apartment apartment;
            Object math = Object::create(L"qvObjects.qvMath");
            raise_error(math);
            then();
        }};
    };
    for (int i = 0; i < 20; ++i) {
        ResetEvent(released);
        Object last;
        std::thread after, during;
        {
            Apartment apartment;
            last = Object::create(L"qvObjects.qvCommon");
            ASSERT_TRUE(ends(user([] {}))) << "before";
            EXPECT_EQ(library::can_unload(loaded()), S_FALSE);
            after = user([&] { WaitForSingleObject(released, 20000); });
            during = user([] {});
            last = Object{};
        }
        ASSERT_TRUE(ends(std::move(during))) << "during";
        SetEvent(released);
        ASSERT_TRUE(ends(std::move(after))) << "after";
        EXPECT_EQ(library::can_unload(loaded()), S_OK);
    }
    CloseHandle(released);
}

TEST(Library, StartsEveryThreadInGerman)
{
    const client::Folder folder;
    const auto told = [&](bool english) {
        std::wstring text;
        std::thread{[&] {
            Apartment apartment;
            const Object common = Object::create(L"qvObjects.qvCommon");
            if (english)
                common.call(L"qvObjectsInit", {L"Language", 1});
            const Object file = Object::create(L"qvObjects.qvFile_qvb");
            file.put(L"File", {folder.file(L"none.qvb")});
            text = file.try_call(L"WriteFile", {L"no table"}).description;
        }}.join();
        return text;
    };
    const std::wstring german = told(false), english = told(true);
    EXPECT_NE(german, english);
    EXPECT_EQ(told(false), german);
}
