#include "files/replacing.h"

#include "files/binary_file.h"
#include "support/client.h"
#include "support/error_of.h"

#include <functional>
#include <thread>

using client::Folder;
using files::BinaryFile;
using files::read_whole;

namespace {

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD moment = 200; // milliseconds

/// Someone else who replaces a file: it is gone, and the new one lies beside until a moment later.
class SlowReplacing {
public:
    SlowReplacing(const std::wstring& path, std::string_view content)
        : path_{path}, beside_{files::name_beside(path, files::new_content)}, former_{files::name_beside(path, files::former_content)}
    {
        MoveFileExW(path_.c_str(), former_.c_str(), 0);
        files::Handle file{CreateFileW(beside_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr)};
        files::write(file, content);
    }
    ~SlowReplacing() { finish_.join(); }

    const std::wstring& beside() const { return beside_; }

private:
    std::wstring path_, beside_, former_;
    std::thread finish_{[this] {
        Sleep(moment);
        EXPECT_TRUE(MoveFileExW(beside_.c_str(), path_.c_str(), 0)) << "nobody else took the place";
        DeleteFileW(former_.c_str());
    }};
};

ULONGLONG duration_of(const std::function<void()>& action)
{
    const ULONGLONG start = GetTickCount64();
    action();
    return GetTickCount64() - start;
}

class Replacing : public testing::Test {
protected:
    Folder folder;
    const std::wstring path = folder.write(L"File", "old");
};

} // namespace

TEST_F(Replacing, IsWaitedFor)
{
    const std::wstring other_case = folder.file(L"FILE");
    const std::pair<const char*, std::function<void()>> cases[]{
        {"reading", [&] { EXPECT_EQ(read_whole(other_case), "theirs"); }},
        {"looking", [&] { EXPECT_TRUE(files::is_normal_file(path)); }},
        {"opening", [&] { EXPECT_EQ(BinaryFile{path}.left(), 6u); }},
        {"saving", [&] { files::write_whole(path, "ours"); }},
        {"writing", [&] {
             BinaryFile file{path, BinaryFile::Opening::Replacing};
             file.keep();
         }}};
    for (const auto& [name, action] : cases) {
        SCOPED_TRACE(name);
        const SlowReplacing other{path, "theirs"};
        action();
    }
    EXPECT_EQ(folder.size(), 1);
}

TEST_F(Replacing, OfAFileThatHasJustGoneNeverWritesOverTheNextOne)
{
    {
        files::Output ours{path};
        ours.write("ours");
        const SlowReplacing other{path, "theirs"};
        const files::Handle theirs{CreateFileW(other.beside().c_str(), GENERIC_READ, share_all, nullptr, OPEN_EXISTING, 0, nullptr)};
        ours.commit();
        char content[7] = {};
        EXPECT_EQ(files::read(theirs, content, 6), 6u);
        EXPECT_STREQ(content, "theirs") << "as who opened it sees it";
    }
    EXPECT_EQ(read_whole(path), "ours");
    EXPECT_EQ(folder.size(), 1);
}

TEST_F(Replacing, IsNotWaitedForWithoutReason)
{
    const std::wstring missing = folder.file(L"missing");
    EXPECT_LT(duration_of([&] { EXPECT_EQ(error_of([&] { read_whole(missing); }), 53); }), 1000u);
    // Another file is being replaced, and this one was when a program ended too early.
    folder.write(files::name_beside(path, files::new_content).substr(folder.path().size() + 1), "");
    const std::wstring abandoned = files::name_beside(missing, files::new_content);
    const files::Handle file{CreateFileW(abandoned.c_str(), GENERIC_WRITE, share_all, nullptr, CREATE_NEW, 0, nullptr)};
    const FILETIME long_ago{0, 0x01C00000};
    SetFileTime(file.get(), nullptr, nullptr, &long_ago);
    EXPECT_LT(duration_of([&] { EXPECT_EQ(error_of([&] { read_whole(missing); }), 53); }), 1000u);
    // One that stays for ever is not waited for for ever.
    folder.write(files::name_beside(missing, files::new_content).substr(folder.path().size() + 1), "");
    EXPECT_LT(duration_of([&] { EXPECT_FALSE(files::is_normal_file(missing)); }), 10'000u);
}

TEST_F(Replacing, KeepsTheFormerFileUntilTheNewOneIsKept)
{
    for (const bool keeps : {false, true}) {
        {
            BinaryFile file{path, BinaryFile::Opening::Replacing};
            file.write("new");
            EXPECT_EQ(error_of([&] { read_whole(path); }), 70) << "half of it is nobody's business";
            EXPECT_EQ(error_of([&] { BinaryFile{path}; }), 70);
            EXPECT_EQ((error_of([&] { BinaryFile{path, BinaryFile::Opening::Replacing}; })), 70);
            if (keeps)
                file.keep();
        }
        EXPECT_EQ(read_whole(path), keeps ? "new" : "old");
        EXPECT_EQ(folder.size(), 1);
    }
}

TEST_F(Replacing, PutsTheFormerFileBackWhenTheDeviceFails)
{
    void* const no_access = VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
    const files::Handle watcher{CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr)};
    {
        BinaryFile file{path, BinaryFile::Opening::Replacing};
        file.write("new");
        const files::Handle other{CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr)};
        EXPECT_NE(error_of([&] { file.write({static_cast<const char*>(no_access), 4096}); }), 0);
        file.keep();
    }
    VirtualFree(no_access, 0, MEM_RELEASE);
    EXPECT_EQ(read_whole(path), "old");
    EXPECT_EQ(folder.size(), 1);
    {
        BinaryFile never_kept{folder.file(L"other"), BinaryFile::Opening::Replacing};
    }
    EXPECT_EQ(folder.size(), 1) << "where there was none, there is none again";
}

TEST_F(Replacing, LeavesWhatMustNotBeReplaced)
{
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    CreateDirectoryW(folder.file(L"sub").c_str(), nullptr);
    for (const auto& [name, number] : std::vector<std::pair<const wchar_t*, int>>{{L"File", 75}, {L"sub", 75}, {L"missing\\x", 76}, {L"*", 52}})
        EXPECT_EQ((error_of([&] { BinaryFile{folder.file(name), BinaryFile::Opening::Replacing}; })), number) << name;
    EXPECT_EQ((error_of([&] { BinaryFile{L"", BinaryFile::Opening::Replacing}; })), 76);
    EXPECT_EQ(read_whole(path), "old");
    EXPECT_EQ(folder.size(), 2);
    BinaryFile device{L"NUL", BinaryFile::Opening::Replacing};
    device.write("gone");
}
