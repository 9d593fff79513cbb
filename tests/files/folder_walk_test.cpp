#include "files/folder_walk.h"

#include "files/content_watch.h"
#include "support/link.h"

#include <functional>

using client::Folder;
using files::FolderSearch;
using files::WalkRules;

namespace {

using Handler = std::function<void(const std::wstring& folder, std::wstring_view name)>;

/// The plain way: what fits first, then a search for subfolders, then down into each. Always true to what is there.
void plain_walk(const std::wstring& folder, const WalkRules& rules, const Handler& found)
{
    const long admitted = rules.folders_only ? long{files::Folders} : rules.admitted;
    for (FolderSearch search{folder + std::wstring{rules.pattern}, admitted}; search.next();) {
        const std::wstring name{search.name()};
        if (!rules.folders_only || (!name.starts_with(L'.') && files::is_folder(folder + name)))
            found(folder, name);
    }
    if (rules.this_folder_only)
        return;
    std::vector<std::wstring> subfolders;
    for (FolderSearch search{folder + L"*.*", files::Folders}; search.next();)
        if (!search.name().starts_with(L'.') && files::is_folder(folder + std::wstring{search.name()}))
            subfolders.emplace_back(search.name());
    for (const std::wstring& name : subfolders)
        plain_walk(folder + name + L"\\", rules, found);
}

void tested_walk(const std::wstring& folder, const WalkRules& rules, const Handler& found)
{
    struct Visitor final : files::WalkVisitor {
        explicit Visitor(const Handler& handler) : handler_{handler} {}
        bool found(const std::wstring& in, const FolderSearch& entry) override
        {
            handler_(in, entry.name());
            return true;
        }
        const Handler& handler_;
    } visitor{found};
    files::walk(folder, rules, visitor);
}

/// Sets a folder's times to an hour ago, as if nothing had happened in it since.
void grow_old(const std::wstring& folder)
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    time.dwHighDateTime -= 9; // of about seven minutes each
    const HANDLE handle = CreateFileW(folder.c_str(), FILE_WRITE_ATTRIBUTES, 7, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    EXPECT_TRUE(SetFileTime(handle, nullptr, nullptr, &time));
    CloseHandle(handle);
}

/// Content one or two levels deep, at rest for long or changed just now.
void make_content(const Folder& place, const std::wstring& folder, bool is_old, bool goes_deeper)
{
    for (const wchar_t* name : {L"a.txt", L"b.TXT", L".file", L"none", L"hidden.txt", L"system.txt"})
        place.write(folder + name, "");
    SetFileAttributesW(place.file(folder + L"hidden.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW(place.file(folder + L"system.txt").c_str(), FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_HIDDEN);
    for (const wchar_t* name : {L".dot", L"first", L"hidden", L"last.txt", L"middle"}) {
        CreateDirectoryW(place.file(folder + name).c_str(), nullptr);
        place.write(folder + name + L"\\deep.txt", "");
        if (is_old)
            grow_old(place.file(folder + name));
    }
    SetFileAttributesW(place.file(folder + L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    if (goes_deeper)
        make_content(place, folder + L"middle\\", is_old, false);
    if (is_old)
        grow_old(place.file(folder));
}

enum Change { Nothing, Names, Attributes, NextFolder };

/// What a handler changes before and behind what was found.
void change(Change what, const std::wstring& folder, std::wstring_view name)
{
    const bool is_first = name == L"a.txt" || name == L"first";
    if (what == Names && is_first) {
        CreateDirectoryW((folder + L"new").c_str(), nullptr);
        MoveFileW((folder + L"last.txt").c_str(), (folder + L"other").c_str());
    }
    if (what == Attributes && is_first) {
        SetFileAttributesW((folder + L"hidden").c_str(), FILE_ATTRIBUTE_NORMAL);
        SetFileAttributesW((folder + L"middle").c_str(), FILE_ATTRIBUTE_HIDDEN);
    }
    if (what == NextFolder && name == L"deep.txt")
        MoveFileW((folder + L"..\\last.txt").c_str(), (folder + L"..\\other").c_str());
}

} // namespace

TEST(Walk, FindsWhatThePlainWayFinds)
{
    const WalkRules all_rules[]{{.pattern = L"*.*"},
                                {.pattern = L"*", .folders_only = true},
                                {.pattern = L"", .admitted = files::EveryEntry},
                                {.pattern = L"*.txt"},
                                {.pattern = L"*t*", .folders_only = true},
                                {.pattern = L"*", .admitted = files::Hidden, .this_folder_only = true}};
    std::size_t all = 0;
    for (const Change what : {Nothing, Names, Attributes, NextFolder})
        for (const bool is_old : {true, false})
            for (const WalkRules& rules : all_rules) {
                const auto finds_of = [&](auto walk) {
                    const Folder place;
                    make_content(place, L"", is_old, true);
                    std::vector<std::wstring> finds;
                    walk(place.file(L""), rules, [&](const std::wstring& folder, std::wstring_view name) {
                        finds.push_back(folder.substr(place.path().size()) + std::wstring{name});
                        change(what, folder, name);
                    });
                    return finds;
                };
                const auto plain = finds_of(plain_walk);
                EXPECT_EQ(finds_of(tested_walk), plain)
                    << "change " << what << ", rules " << &rules - all_rules << ", old " << is_old;
                all += plain.size();
            }
    EXPECT_GT(all, 400u);
}

TEST(Walk, FollowsLinksButNeitherInCirclesNorOnEveryWayThereIs)
{
    const Folder place;
    for (const wchar_t* folder : {L"a", L"b", L"c"})
        CreateDirectoryW(place.file(folder).c_str(), nullptr);
    place.write(L"c\\file", "");
    const client::Link links[]{{place.file(L"a"), L"x", L"..\\b"}, {place.file(L"a"), L"y", L"..\\b"},
                               {place.file(L"b"), L"x", L"..\\c"}, {place.file(L"b"), L"y", L"..\\c"},
                               {place.file(L"c"), L"x", L"..\\a"}, {place.file(L"c"), L"y", L"..\\a"}};
    if (!std::ranges::all_of(links, &client::Link::exists))
        GTEST_SKIP() << "no link can be made on this machine";
    for (const wchar_t* pattern : {L"*", L"*e"}) {
        int found = 0;
        tested_walk(place.file(L""), {.pattern = pattern}, [&](auto&, std::wstring_view name) { found += name == L"file"; });
        EXPECT_EQ(found, 5) << "each link from outside is followed, behind it one to each folder";
    }
}

TEST(ContentWatch, NoticesChangesAndSaysYesInDoubt)
{
    const Folder folder;
    ASSERT_TRUE(files::keeps_folder_times(folder.path()));
    EXPECT_TRUE(files::ContentWatch{folder.path()}.may_have_changed()) << "it is new";
    grow_old(folder.path());
    const files::ContentWatch watch{folder.path()};
    EXPECT_FALSE(watch.may_have_changed());
    folder.write(L"file", "");
    EXPECT_TRUE(watch.may_have_changed());
    EXPECT_TRUE(files::ContentWatch{folder.file(L"missing")}.may_have_changed());
}
