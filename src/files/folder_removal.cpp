#include "files/folder_removal.h"

#include "automation/error.h"
#include "files/file.h"
#include "files/folder_walk.h"

#include <utility>
#include <vector>

namespace files {
namespace {

constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Handle open(const std::wstring& path, DWORD access, DWORD flags) noexcept
{
    flags |= FILE_FLAG_BACKUP_SEMANTICS; // for folders
    return Handle{CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, flags, nullptr)};
}

/// The name by which the platform itself knows what was opened, without any link on the way; empty when it has none.
std::wstring system_name(const Handle& opened)
{
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(name.size());
        const DWORD length = GetFinalPathNameByHandleW(opened.get(), name.data(), room, FILE_NAME_OPENED | VOLUME_NAME_NT);
        name.resize(length);
        if (length < room)
            return name;
    }
}

std::wstring with_backslash(std::wstring path)
{
    if (!path.ends_with(L'\\'))
        path += L'\\';
    return path;
}

/// Deletes what a walk finds below one folder, subfolders with all they hold.
class Removal final : public WalkVisitor {
public:
    Removal(const std::wstring& root, bool ignore_failures)
        : root_{root}, root_name_{with_backslash(system_name(open(root, FILE_READ_ATTRIBUTES, 0)))},
          ignore_failures_{ignore_failures}
    {
    }

    bool found(const std::wstring& folder, const FolderSearch& entry) override
    {
        failures_ += !remove(entry_of(folder, entry));
        return goes_on();
    }
    /// Subfolders that can't be searched can't be deleted either, unless they are empty: that one failure is counted then.
    void unreadable(const std::wstring& folder) override { root_is_unreadable_ |= folder == root_; }
    bool goes_on() const noexcept { return failures() == 0 || ignore_failures_; }
    long failures() const noexcept { return failures_ + root_is_unreadable_; }

private:
    struct Entry {
        std::wstring path;
        DWORD attributes;
        bool may_hold_others; ///< a folder that was not looked into yet
    };

    static Entry entry_of(const std::wstring& folder, const FolderSearch& entry)
    {
        return {folder + std::wstring{entry.name()}, entry.attributes(), entry.is_folder() && !entry.is_link()};
    }

    /// Without recursion: how deep the folders lie does not matter.
    bool remove(Entry first)
    {
        std::vector<Entry> left;
        left.push_back(std::move(first));
        bool all_gone = true;
        while (!left.empty() && (all_gone || ignore_failures_)) {
            if (std::exchange(left.back().may_hold_others, false)) {
                add_content(left);
            } else {
                all_gone &= remove_itself(left.back());
                left.pop_back();
            }
        }
        return all_gone;
    }

    /// What the last folder holds, behind it.
    static void add_content(std::vector<Entry>& entries)
    {
        const std::wstring folder = entries.back().path + L'\\';
        for (FolderSearch search{folder + L'*', EveryEntry}; search.next();)
            if (search.name() != L"." && search.name() != L"..")
                entries.push_back(entry_of(folder, search));
    }

    /// A file, an empty folder or a link.
    bool remove_itself(const Entry& entry) const
    {
        const bool read_only = entry.attributes & FILE_ATTRIBUTE_READONLY;
        const Handle opened = open_to_remove(entry.path, read_only);
        if (!opened || !is_in_its_place(opened, entry.path))
            return false;
        if (read_only)
            set_attributes(opened, (entry.attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) | FILE_ATTRIBUTE_NORMAL);
        FILE_DISPOSITION_INFO deletion{TRUE};
        if (SetFileInformationByHandle(opened.get(), FileDispositionInfo, &deletion, sizeof deletion))
            return true;
        if (read_only)
            set_attributes(opened, entry.attributes);
        return false;
    }

    /// Some systems do not let this attribute be changed through a file that is opened for it, but through any other.
    static Handle open_to_remove(const std::wstring& path, bool read_only) noexcept
    {
        constexpr DWORD access = DELETE | FILE_READ_ATTRIBUTES;
        Handle opened;
        if (read_only)
            opened = open(path, access | FILE_WRITE_ATTRIBUTES, FILE_FLAG_OPEN_REPARSE_POINT);
        return opened ? std::move(opened) : open(path, access, FILE_FLAG_OPEN_REPARSE_POINT);
    }

    /// Whether what was opened lies where its path says. It does not if the platform went through a link instead of opening
    /// it, or if a folder on the way has become one.
    bool is_in_its_place(const Handle& opened, const std::wstring& path) const
    {
        const std::wstring name = system_name(opened), expected = root_name_ + path.substr(root_.size());
        return CompareStringOrdinal(name.data(), static_cast<int>(name.size()), expected.data(),
                                    static_cast<int>(expected.size()), TRUE) == CSTR_EQUAL;
    }

    static void set_attributes(const Handle& opened, DWORD attributes) noexcept
    {
        FILE_BASIC_INFO information{};
        information.FileAttributes = attributes;
        SetFileInformationByHandle(opened.get(), FileBasicInfo, &information, sizeof information);
    }

    const std::wstring& root_;
    const std::wstring root_name_;
    const bool ignore_failures_;
    long failures_ = 0;
    bool root_is_unreadable_ = false;
};

/// A file, or a name with wildcards. A folder that can't be looked at may well be one.
bool can_be_no_folder(const std::wstring& root)
{
    constexpr std::size_t start = 4; // of the name itself, behind \\?\ and its own question mark
    if (root.find_first_of(L"*?", start) != root.npos)
        return true;
    const DWORD attributes = GetFileAttributesW(root.substr(0, root.size() - 1).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

} // namespace

/// In any other form the platform would read a name that ends in a dot or a blank as another one.
std::wstring folder_to_clear(std::wstring_view given)
{
    if (given.find_first_not_of(L" \t\r\n") == given.npos)
        return {};
    if (given.size() == 2 && given[1] == L':')
        throw automation::Error{automation::Runtime::BadFileNumber};
    std::wstring folder = with_backslash(checked(given));
    if (folder.starts_with(L"\\\\?\\"))
        return folder;
    std::wstring path = whole_path(folder);
    if (path.empty())
        return path;
    return with_backslash(path.starts_with(L"\\\\") ? L"\\\\?\\UNC" + path.substr(1) : L"\\\\?\\" + path);
}

long clear_folder(std::wstring_view folder, bool ignore_failures)
{
    const std::wstring root = folder_to_clear(folder);
    if (root.empty() || can_be_no_folder(root))
        return 0;
    Removal removal{root, ignore_failures};
    walk(root, {.pattern = L"*", .through_links = false}, removal);
    if (removal.goes_on())
        walk(root, {.pattern = L"*", .folders_only = true, .through_links = false}, removal);
    return removal.failures();
}

} // namespace files
