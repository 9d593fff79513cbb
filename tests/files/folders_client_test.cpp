#include "support/item_listener.h"
#include "support/link.h"
#include "support/message_box.h"

#include <filesystem>

using client::ItemListener;
using client::Link;
using client::Object;
using client::Value;
using std::filesystem::current_path;
using std::filesystem::exists;

namespace {

using Names = std::vector<std::wstring>;

constexpr long current_only = 1, folders_only = 2;

class Folders : public testing::Test {
protected:
    ~Folders() override
    {
        current_path(came_from_);
        common.call(L"qvObjectsInit", {L"Language", 0});
    }

    /// Makes empty files, and folders where a name ends in a backslash. The last one's path.
    std::wstring make(const Names& names, DWORD attributes = FILE_ATTRIBUTE_NORMAL) const
    {
        for (const std::wstring& name : names) {
            if (name.ends_with(L'\\'))
                CreateDirectoryW(folder.file(name).c_str(), nullptr);
            else
                folder.write(name, "");
            EXPECT_TRUE(SetFileAttributesW(folder.file(name).c_str(), attributes));
        }
        return folder.file(names.back());
    }
    bool flag(const wchar_t* member, std::initializer_list<Value> arguments) const { return file.call(member, arguments).flag(); }

    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
    Object file = Object::create(L"qvObjects.qvFile");
    const client::Folder folder;

private:
    const std::filesystem::path came_from_ = current_path();
};

class Walks : public Folders {
protected:
    Walks()
    {
        make({L".cache\\", L"Gr\u00f6\u00dfe\\", L"sub\\", L"sub\\deep\\", L"a.txt", L"b.doc", L".cache\\x.txt",
              L"Gr\u00f6\u00dfe\\\u00e4.txt", L"sub\\deep\\c.txt"});
        make({L"hidden\\", L"hidden\\x.txt", L"hidden.txt"}, FILE_ATTRIBUTE_HIDDEN);
    }

    /// What is found, each without the path of the folder.
    Names walk(const wchar_t* pattern, long flags = 0, long attributes = 0, const ItemListener::Handler& ends_at = goes_on) const
    {
        ItemListener listener{file, ends_at};
        file.call(L"WalkDirTree", {folder.path(), pattern, flags, attributes});
        for (std::wstring& one : listener.found)
            if (one.starts_with(folder.path()))
                one.erase(0, folder.path().size());
        return listener.found;
    }
    static bool goes_on(std::wstring_view) { return false; }
};

/// A folder to be cleared, and what lies beside it.
class Clearing : public Folders {
protected:
    Clearing()
    {
        make({L"in\\", L"out\\"});
        make(cleared);
        make(kept);
        for (const wchar_t* name : {L"in\\hidden", L"in\\hidden.txt", L"in\\sub\\deep\\hidden"})
            SetFileAttributesW(folder.file(name).c_str(), FILE_ATTRIBUTE_HIDDEN);
        for (const wchar_t* name : {L"in\\\u00e4", L"in\\sub\\deep", L"in\\sub\\deep\\read-only"})
            SetFileAttributesW(folder.file(name).c_str(), FILE_ATTRIBUTE_READONLY);
    }

    long clear(const std::wstring& path, bool ignore_errors = true) const
    {
        return file.call(L"ClearFolder", {path, ignore_errors}).number();
    }
    Names left_of(Names names) const
    {
        std::erase_if(names, [&](const std::wstring& name) { return !exists(folder.file(name)); });
        return names;
    }
    void expect_cleared() const
    {
        EXPECT_EQ(left_of(cleared), Names{});
        EXPECT_EQ(left_of(kept), kept);
    }

    const Names cleared{L"in\\\u00e4", L"in\\sub\\", L"in\\sub\\x", L"in\\sub\\deep\\", L"in\\sub\\deep\\hidden",
                        L"in\\sub\\deep\\read-only"};
    const Names kept{L"in\\.dot\\", L"in\\.dot\\x", L"in\\hidden\\", L"in\\hidden\\x", L"in\\hidden.txt",
                     L"out\\empty\\", L"out\\file", L"out\\full\\", L"out\\full\\file"};
};

HANDLE scanner = INVALID_HANDLE_VALUE;

void CALLBACK end_scan(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    CloseHandle(scanner);
}

} // namespace

TEST_F(Walks, ReportFilesBeforeTheSubfoldersOfTheirFolder)
{
    const std::wstring umlauts = L"\\Gr\u00f6\u00dfe\\|\u00e4.txt";
    EXPECT_EQ(walk(L"*.*"), (Names{L"\\|a.txt", L"\\|b.doc", umlauts, L"\\sub\\deep\\|c.txt"}));
    EXPECT_EQ(walk(L"*.txt", current_only), (Names{L"\\|a.txt"}));
    EXPECT_EQ(walk(L"*.txt", current_only, FILE_ATTRIBUTE_HIDDEN), (Names{L"\\|a.txt", L"\\|hidden.txt"}));
    EXPECT_EQ(walk(L"*", folders_only), (Names{L"\\|Gr\u00f6\u00dfe", L"\\|sub", L"\\sub\\|deep"}));
    EXPECT_EQ(walk(L"?ee*", folders_only), (Names{L"\\sub\\|deep"})) << "the pattern tells what is found, not where it goes";
    EXPECT_EQ(walk(L"*", folders_only | current_only), (Names{L"\\|Gr\u00f6\u00dfe", L"\\|sub"}));
    EXPECT_EQ(walk(L"s*", current_only, FILE_ATTRIBUTE_DIRECTORY), (Names{L"\\|sub"})) << "found by its attributes";
    EXPECT_EQ(walk(L"a<b|"), Names{});
    file.call(L"WalkDirTree", {folder.file(L"missing"), L"*"});
}

TEST_F(Walks, GiveTheCallersVariableItsBackslash)
{
    for (const std::wstring& path : {folder.path(), folder.path() + L"\\", std::wstring{}}) {
        Value variable = path;
        file.call(L"WalkDirTree", {Value::reference(VT_BSTR, &variable.bstrVal), L"*", current_only});
        EXPECT_EQ(variable.text(), path.ends_with(L'\\') ? path : path + L"\\");
    }
}

TEST_F(Walks, EndWhenAHandlerSaysSo)
{
    for (const long flags : {0L, folders_only})
        for (const wchar_t* pattern : {L"*", L"*b*"})
            EXPECT_EQ(walk(pattern, flags, 0, [](auto) { return true; }).size(), 1u);
    EXPECT_EQ(walk(L"*").size(), 4u) << "the next walk starts afresh";
    EXPECT_EQ(walk(L"*", 0, 0, [](std::wstring_view name) { return name == L"\u00e4.txt"; }).size(), 3u) << "in a subfolder";
}

TEST_F(Walks, KeepTheirObject)
{
    IDispatch* const object = file.dispatch();
    ItemListener listener{file, [&](auto) {
                          listener.let_go();
                          object->AddRef();
                          file = Object{};
                          EXPECT_GT(object->Release(), 0u) << "the client has let go of it, not the walk";
                          return false;
                      }};
    file.call(L"WalkDirTree", {folder.path(), L"*"});
    EXPECT_EQ(listener.found.size(), 1u) << "nobody listens after that";
}

TEST_F(Folders, TheChecksTellWhatThereIs)
{
    make({L"pl\u00e4in.txt", L"sub\\", L"parent\\", L"parent\\sub\\"});
    make({L"hidden"}, FILE_ATTRIBUTE_HIDDEN);
    make({L"read-only"}, FILE_ATTRIBUTE_READONLY);
    const struct {
        std::wstring_view name;
        bool is_file, is_path, may_be_written;
    } cases[]{{L"pl\u00e4in.txt", true, true, true}, {L"read-only", true, true, false},
              {L"*.txt", true, true, false},         {L"hidden", false, false, true},
              {L"sub", false, true, false},          {L"missing", false, false, true},
              {L"sub\\", false, false, false},       {L"missing\\x", false, false, true},
              {L"parent\\", false, true, false},     {L"*\\x", false, false, false},
              {L"", true, true, false},              {{L"a\0b", 3}, false, false, false}};
    for (const auto& one : cases) {
        const std::wstring path = folder.file(one.name);
        EXPECT_EQ(flag(L"CheckFile", {path}), one.is_file) << testing::PrintToString(path);
        EXPECT_EQ(flag(L"CheckPath", {path}), one.is_path) << testing::PrintToString(path);
        EXPECT_EQ(flag(L"CheckForWrite", {path}), one.may_be_written) << testing::PrintToString(path);
    }
    EXPECT_FALSE(flag(L"CheckFile", {L""}) || flag(L"CheckPath", {L""}));
    EXPECT_TRUE(flag(L"CheckForWrite", {L""}));
}

TEST_F(Folders, TheChecksTellTheUser)
{
    const std::wstring missing = folder.file(L"fehlt\u00e4.txt");
    const std::wstring locked = make({L"read-only"}, FILE_ATTRIBUTE_READONLY);
    const struct {
        const wchar_t* member;
        const std::wstring& path; // which stands for the |
        const wchar_t* texts[2];
    } cases[]{
        {L"CheckFile", missing, {L"Die Datei \"|\" konnte nicht gefunden werden!", L"The file \"|\" could not be found!"}},
        {L"CheckPath", missing, {L"Der Ordner \"|\" konnte nicht gefunden werden!", L"The folder \"|\" could not be found!"}},
        {L"CheckForWrite", folder.path(), {L"\"|\" ist keine Datei.", L"\"|\" is not a file."}},
        {L"CheckForWrite", locked, {L"Die Datei \"|\" ist schreibgesch\u00fctzt.", L"The file \"|\" is write protected."}},
    };
    for (const int language : {0, 1}) {
        common.call(L"qvObjectsInit", {L"Language", language});
        for (const auto& one : cases) {
            MessageBoxCatcher box;
            EXPECT_FALSE(flag(one.member, {one.path, L"\u00dcberschrift", true}));
            ASSERT_TRUE(box.caught());
            std::wstring text = one.texts[language];
            EXPECT_EQ(box.text, text.replace(text.find(L'|'), 1, one.path));
            EXPECT_EQ(box.caption, L"\u00dcberschrift");
            EXPECT_EQ(box.icon, 32513);
            EXPECT_EQ(box.buttons, 1);
        }
    }
}

TEST_F(Folders, WhatCannotBeDoneRaisesAnErrorOfTheRuntime)
{
    make({L"sub\\", L"held"});
    make({L"read-only"}, FILE_ATTRIBUTE_READONLY);
    const std::wstring nul{L"held\0b", 6};
    current_path(folder.path());
    const HANDLE held = CreateFileW(L"held", GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    const struct {
        const wchar_t* member;
        long number;
        const wchar_t* description;
        Names paths;
    } cases[]{{L"DelFile", 53, L"File not found", {L"*.txt", L"missing", L"missing\\*.txt"}},
              {L"DelFile", 76, L"Path not found", {L"missing\\x"}},
              {L"DelFile", 75, L"Path/File access error", {L"read-only", L"sub", L"sub\\"}},
              {L"DelFile", 70, L"Permission denied", {L"held"}},
              {L"DelFile", 52, L"Bad file name or number", {L"s*\\x", nul}},
              {L"qvMkDirMulti", 75, L"Path/File access error", {L"held", L"held\\x"}},
              {L"qvMkDirMulti", 76, L"Path not found", {L"Q:\\x"}},
              {L"qvMkDirMulti", 52, L"Bad file name or number", {L"a*b\\x", nul}},
              {L"qvChDir", 76, L"Path not found", {L"missing", folder.file(L"missing\\x"), L"held", L"Q:\\"}},
              {L"ClearFolder", 52, L"Bad file name or number", {nul}}};
    for (const auto& one : cases)
        for (const std::wstring& path : one.paths) {
            SCOPED_TRACE(testing::Message() << one.member << ' ' << testing::PrintToString(path));
            client::expect_error(file.try_call(one.member, {path}), one.number, one.description);
            file.call(L"qvKill", {path}); // never says a word
        }
    EXPECT_EQ(current_path(), folder.path());
    CloseHandle(held);
    EXPECT_TRUE(exists(L"held") && exists(L"read-only"));
    file.call(L"qvKill", {L""});
    file.call(L"qvKill", {L"held"});
    EXPECT_FALSE(exists(L"held"));
}

TEST_F(Folders, DelFileDeletesWhatFits)
{
    make({L"one.txt", L"two.txt", L"x.doc"});
    make({L"hidden.txt"}, FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(flag(L"DelFile", {folder.file(L"*.txt")}));
    EXPECT_FALSE(exists(folder.file(L"one.txt")) || exists(folder.file(L"two.txt")));
    EXPECT_TRUE(exists(folder.file(L"x.doc")) && exists(folder.file(L"hidden.txt")));
    EXPECT_TRUE(flag(L"DelFile", {folder.file(L"hidden.txt")})) << "by its name";
    EXPECT_FALSE(exists(folder.file(L"hidden.txt")));
}

TEST_F(Folders, DelFileWaitsWhileMessagesAreHandled)
{
    const std::wstring path = folder.file(L"scanned");
    const auto scan = [&] { // which does not mind the file's deletion
        scanner = CreateFileW(make({L"scanned"}).c_str(), GENERIC_READ, 7, nullptr, OPEN_EXISTING, 0, nullptr);
    };
    scan();
    SetTimer(nullptr, 0, 10, end_scan);
    EXPECT_TRUE(flag(L"DelFile", {path}));
    EXPECT_FALSE(exists(path));

    scan();
    PostQuitMessage(7);
    EXPECT_FALSE(flag(L"DelFile", {path})) << "after 500 polls";
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_TRUE(message.message == WM_QUIT && message.wParam == 7);
    CloseHandle(scanner);
}

TEST_F(Folders, QvMkDirMultiCreatesWhatIsMissing)
{
    current_path(folder.path());
    for (const std::wstring& path : {folder.file(L"a\\\u00e4 b\\c\\"), folder.file(L"a\\\u00e4 b\\c"), std::wstring{L"\\x\\y"},
                                     std::wstring{}, std::wstring{L"\\"}, std::wstring{L"C:"}, std::wstring{L"C:\\"}})
        file.call(L"qvMkDirMulti", {path});
    EXPECT_TRUE(exists(folder.file(L"a\\\u00e4 b\\c")) && exists(folder.file(L"x\\y")));
    file.call(L"qvMkDirMulti", {L"C:new"});
    EXPECT_FALSE(exists(L"C:new")) << "a part with a drive is taken for granted";
    make({L"x\\", L"x\\y\\"}, FILE_ATTRIBUTE_HIDDEN);
    file.call(L"qvMkDirMulti", {L"x\\y\\z"});
    EXPECT_TRUE(exists(folder.file(L"x\\y\\z"))) << "hidden folders exist as well";
}

TEST_F(Folders, QvChDirChangesDriveAndFolder)
{
    make({L"\u00fcber\\"});
    const std::wstring sub = folder.file(L"\u00fcber"), drive = sub.substr(0, 2);
    const std::pair<std::wstring, std::wstring> steps[]{
        {folder.path(), folder.path()}, {L"\u00fcber", sub}, {drive, sub}, {L"..", folder.path()}};
    for (const auto& [given, expected] : steps) {
        file.call(L"qvChDir", {given});
        EXPECT_EQ(current_path(), expected) << given;
    }
}

TEST_F(Folders, PathIsEmptyLooksForVisibleThings)
{
    const auto expect_empty = [&](bool expected) {
        for (const std::wstring& path : {folder.path(), folder.path() + L"\\"})
            EXPECT_EQ(flag(L"PathIsEmpty", {path}), expected);
    };
    make({L".dot\\"});
    make({L"hidden"}, FILE_ATTRIBUTE_HIDDEN);
    make({L"system\\"}, FILE_ATTRIBUTE_SYSTEM);
    expect_empty(true);
    EXPECT_TRUE(flag(L"PathIsEmpty", {folder.file(L"missing")}));
    const std::wstring plain = make({L"x"});
    expect_empty(false);
    DeleteFileW(plain.c_str());
    expect_empty(true);
    make({L"sub\\"});
    expect_empty(false);
}

TEST_F(Clearing, CountsAFolderThatCannotBeRead)
{
    for (const bool ignore_errors : {true, false}) {
        const HANDLE held = CreateFileW(folder.file(L"in").c_str(), FILE_LIST_DIRECTORY, 0, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        EXPECT_EQ(clear(folder.file(L"in"), ignore_errors), 1);
        EXPECT_TRUE(exists(folder.file(L"in\\sub\\x")));
        CloseHandle(held);
    }
    EXPECT_EQ(clear(folder.file(L"in")), 0);
    expect_cleared();
}

TEST_F(Clearing, DeletesFilesAndSubfoldersWithAllTheyHold)
{
    current_path(folder.file(L"out"));
    EXPECT_EQ(clear(L"..\\in"), 0);
    expect_cleared();
    EXPECT_EQ(clear(folder.file(L"in\\")), 0) << "nothing is left";
    EXPECT_EQ(clear(folder.path().substr(0, 2) + L"full/"), 0);
    EXPECT_EQ(left_of(kept).back(), L"out\\full\\") << "but not its file";
}

TEST_F(Clearing, DeletesNothingForANameThatIsNoFolder)
{
    current_path(folder.file(L"in"));
    for (const std::wstring& name : {folder.file(L"missing"), folder.file(L"i*"), folder.file(L"in\\*"),
                                     folder.file(L"in\\sub\\*.*"), folder.file(L"in\\sub\\x"), std::wstring{L"?"}})
        EXPECT_EQ(clear(name), 0) << name;
    EXPECT_EQ(left_of(cleared), cleared);
    EXPECT_EQ(left_of(kept), kept);
}

TEST_F(Clearing, CountsWhatCannotBeDeleted)
{
    const std::wstring path = make({L"in\\sub\\locked"});
    const HANDLE locked = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(clear(folder.file(L"in")), 2) << "the file and its folder";
    EXPECT_EQ(left_of(cleared), Names{L"in\\sub\\"});
    const std::wstring later = make({L"in\\sub\\more"});
    EXPECT_EQ(clear(folder.file(L"in"), false), 1) << "stops there";
    EXPECT_TRUE(exists(later));
    CloseHandle(locked);
    EXPECT_EQ(clear(folder.file(L"in"), false), 0);
    expect_cleared();
}

TEST_F(Clearing, NeverLeavesTheFolder)
{
    const std::wstring in = folder.file(L"in"), sub = in + L"\\sub", deep = sub + L"\\deep";
    const Link links[]{{in, L"empty", L"..\\out\\empty"}, {in, L"full", L"..\\out\\full"}, {in, L"file", L"..\\out\\file", false},
                       {deep, L"empty", L"..\\..\\..\\out\\empty"}, {deep, L"full", L"..\\..\\..\\out\\full"},
                       {deep, L"file", L"..\\..\\..\\out\\file", false}, {sub, L"parent", L".."}};
    if (!std::ranges::all_of(links, &Link::exists))
        GTEST_SKIP() << "no link can be made on this machine";
    const long left = clear(in);
    if (links[0].opens_itself()) {
        EXPECT_EQ(left, 0);
        EXPECT_TRUE(std::ranges::none_of(links, &Link::exists));
        expect_cleared();
    } else { // where a link can't be deleted without what it leads to, both stay, with the folders that hold the link
        EXPECT_EQ(left, 9);
        EXPECT_TRUE(std::ranges::all_of(links, &Link::exists));
        EXPECT_EQ(left_of(cleared), (Names{L"in\\sub\\", L"in\\sub\\deep\\"}));
        EXPECT_EQ(left_of(kept), kept);
    }
}

TEST_F(Clearing, FollowsTheLinkThatItWasGiven)
{
    const Link link{folder.path(), L"link", L"in"};
    if (!link.exists())
        GTEST_SKIP() << "no link can be made on this machine";
    EXPECT_EQ(clear(folder.file(L"link")), 0);
    expect_cleared();
    EXPECT_TRUE(link.exists());
}
