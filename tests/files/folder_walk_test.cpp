#include "files/folder_walk.h"

#include "files/content_watch.h"
#include "support/client.h"

#include <functional>

using client::Folder;
using files::FolderSearch;
using files::WalkRules;

namespace {

using Finds = std::vector<std::wstring>;
using Handler = std::function<void(const std::wstring& folder, std::wstring_view name)>;

class Recorder final : public files::WalkVisitor {
public:
    Recorder(std::size_t root_length, Handler handler) : root_length_{root_length}, handler_{std::move(handler)} {}

    bool found(const std::wstring& folder, const FolderSearch& entry) override
    {
        finds.push_back(folder.substr(root_length_) + std::wstring{entry.name()});
        handler_(folder, entry.name());
        return true;
    }

    Finds finds;

private:
    std::size_t root_length_;
    Handler handler_;
};

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
    Finds subfolders;
    for (FolderSearch search{folder + L"*.*", files::Folders}; search.next();)
        if (!search.name().starts_with(L'.') && files::is_folder(folder + std::wstring{search.name()}))
            subfolders.emplace_back(search.name());
    for (const std::wstring& name : subfolders)
        plain_walk(folder + name + L"\\", rules, found);
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

/// Wine shows names that begin with a dot as hidden ones unless its user wants to see them.
void make_content(const Folder& place, const std::wstring& folder, bool goes_deeper)
{
    for (const wchar_t* name : {L"a.txt", L"b.TXT", L".file", L"none", L"hidden.txt", L"system.txt"})
        place.write(folder + name, "");
    SetFileAttributesW(place.file(folder + L"hidden.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW(place.file(folder + L"system.txt").c_str(), FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_HIDDEN);
    for (const wchar_t* name : {L".dot", L"first", L"hidden", L"last.txt", L"middle"}) {
        CreateDirectoryW(place.file(folder + name).c_str(), nullptr);
        place.write(folder + name + L"\\deep.txt", "");
    }
    SetFileAttributesW(place.file(folder + L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    if (goes_deeper)
        make_content(place, folder + L"middle\\", false);
}

/// A tree two levels deep, at rest for long or changed just now.
struct Tree {
    explicit Tree(bool is_old)
    {
        make_content(place, L"", true);
        if (is_old)
            plain_walk(place.path() + L"\\", {.pattern = L"*", .folders_only = true},
                       [](const std::wstring& folder, std::wstring_view name) { grow_old(folder + std::wstring{name}); });
        if (is_old)
            grow_old(place.path());
    }
    Folder place;
};

/// Changes what lies before it and behind it in its folder.
void change(const std::wstring& folder, std::wstring_view name)
{
    if (name == L"a.txt" || name == L"first") {
        CreateDirectoryW((folder + L"new").c_str(), nullptr);
        SetFileAttributesW((folder + L"hidden").c_str(), FILE_ATTRIBUTE_NORMAL);
        MoveFileW((folder + L"last.txt").c_str(), (folder + L"other").c_str());
    }
}

void change_attributes(const std::wstring& folder, std::wstring_view name)
{
    if (name == L"b.TXT" || name == L"first") {
        SetFileAttributesW((folder + L"hidden").c_str(), FILE_ATTRIBUTE_NORMAL);
        SetFileAttributesW((folder + L"middle").c_str(), FILE_ATTRIBUTE_HIDDEN);
    }
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
    const auto watch_only = [](const std::wstring&, std::wstring_view) {};
    std::size_t all = 0;
    for (const Handler& handler : {Handler{watch_only}, Handler{change}, Handler{change_attributes}})
        for (const bool is_old : {true, false})
            for (const WalkRules& rules : all_rules) {
                const Tree one{is_old}, other{is_old};
                Recorder walked{one.place.path().size() + 1, handler};
                files::walk(one.place.path() + L"\\", rules, walked);
                Finds plain;
                plain_walk(other.place.path() + L"\\", rules, [&](const std::wstring& folder, std::wstring_view name) {
                    plain.push_back(folder.substr(other.place.path().size() + 1) + std::wstring{name});
                    handler(folder, name);
                });
                EXPECT_EQ(walked.finds, plain) << "rules " << &rules - all_rules << (is_old ? ", old" : ", young");
                all += plain.size();
            }
    EXPECT_GT(all, 300u);
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
    const std::wstring missing = folder.file(L"missing");
    EXPECT_TRUE(files::ContentWatch{missing}.may_have_changed());
    EXPECT_FALSE(files::keeps_folder_times(missing));
}
