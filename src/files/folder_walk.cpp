#include "files/folder_walk.h"

#include "automation/error.h"
#include "files/content_watch.h"
#include "files/file.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace files {
namespace {

constexpr std::size_t most_subfolders = 32767;

bool begins_with_dot(std::wstring_view name) noexcept
{
    return name.starts_with(L'.');
}

bool fits_every_name(std::wstring_view pattern) noexcept
{
    return pattern.empty() || pattern == L"*" || pattern == L"*.*";
}

/// What a folder is, on whatever way it is reached.
struct Identity {
    DWORD volume, high, low;

    bool operator==(const Identity&) const = default;
};

/// None where the system does not tell.
std::optional<Identity> identity_of(const std::wstring& folder) noexcept
{
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Handle opened{CreateFileW(folder.c_str(), FILE_READ_ATTRIBUTES, sharing, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr)};
    BY_HANDLE_FILE_INFORMATION found;
    if (!opened || !GetFileInformationByHandle(opened.get(), &found))
        return std::nullopt;
    return Identity{found.dwVolumeSerialNumber, found.nFileIndexHigh, found.nFileIndexLow};
}

/// Goes down without recursion: how deep the folders lie does not matter.
class Walk {
public:
    Walk(std::wstring_view folder, const WalkRules& rules, WalkVisitor& visitor)
        : path_{folder}, rules_{rules}, visitor_{visitor}, one_search_{fits_every_name(rules.pattern) && !rules.this_folder_only}
    {
    }

    void run()
    {
        visit(one_search_ && visitor_.listens() && keeps_folder_times(path_), false);
        while (!cancelled_ && !way_down_.empty()) {
            Level& level = way_down_.back();
            if (level.next == level.subfolders.size()) {
                way_down_.pop_back();
                continue;
            }
            const Subfolder& subfolder = level.subfolders[level.next++];
            path_.replace(level.path_length, path_.npos, subfolder.name) += L'\\';
            if (!subfolder.is_link || may_follow(level.behind_link))
                visit(level.has_time && !subfolder.is_link, level.behind_link || subfolder.is_link);
        }
    }

private:
    struct Subfolder {
        std::wstring name;
        DWORD attributes;
        bool is_link;
    };
    struct Level {
        std::size_t path_length;
        std::vector<Subfolder> subfolders;
        std::size_t next;
        bool has_time; ///< which changes with the folder's content
        bool behind_link;
        std::optional<Identity> identity; ///< once it was asked for
    };

    /// Reports what the folder of the path holds, and adds its subfolders to those that are still to be visited.
    void visit(bool has_time, bool behind_link)
    {
        heard_here_ = false;
        std::vector<Subfolder> subfolders = one_search_ ? search_once(has_time) : search_twice();
        if (cancelled_ || rules_.this_folder_only)
            return;
        if (subfolders.size() > most_subfolders)
            throw automation::Error{automation::Runtime::Overflow};
        way_down_.push_back({path_.size(), std::move(subfolders), 0, has_time, behind_link, {}});
    }

    /// Whether the walk goes into the link of the path. One that leads back to a folder on the way down would lead there again
    /// and again. Behind a link each folder is entered by further links only once: links that fan out from folder to folder
    /// make more ways than anyone can go.
    bool may_follow(bool behind_link)
    {
        const auto target = identity_of(path_);
        if (!target)
            return true;
        for (Level& level : way_down_) {
            if (!level.identity)
                level.identity = identity_of(path_.substr(0, level.path_length));
            if (level.identity == target)
                return false;
        }
        if (!behind_link)
            entered_.clear();
        if (std::ranges::find(entered_, *target) != entered_.end())
            return false;
        entered_.push_back(*target);
        return true;
    }

    std::vector<Subfolder> search_twice()
    {
        FolderSearch search{path_ + std::wstring{rules_.pattern}, admitted()};
        while (!cancelled_ && search.next())
            report(search);
        if (search.failed())
            visitor_.unreadable(path_);
        return cancelled_ || rules_.this_folder_only ? std::vector<Subfolder>{} : search_subfolders();
    }

    /// Gathers the subfolders while it reports; that they are searched for afterwards shows only when somebody heard of
    /// something and changed the folder.
    std::vector<Subfolder> search_once(bool has_time)
    {
        std::optional<ContentWatch> watch;
        if (has_time && visitor_.listens())
            watch.emplace(path_);
        std::vector<Subfolder> subfolders;
        FolderSearch search{path_ + L"*.*", EveryEntry};
        while (!cancelled_ && search.next()) {
            if (search.is_folder() && !begins_with_dot(search.name()))
                subfolders.push_back({std::wstring{search.name()}, search.attributes(), search.is_link()});
            if (admits(admitted(), search.attributes()))
                report(search);
        }
        if (search.failed())
            visitor_.unreadable(path_);
        if (cancelled_)
            return {};
        if (heard_here_ && (!watch || watch->may_have_changed()))
            return search_subfolders();
        std::erase_if(subfolders, [&](const Subfolder& one) { return !may_be_entered(one); });
        return subfolders;
    }

    std::vector<Subfolder> search_subfolders() const
    {
        std::vector<Subfolder> all;
        for (FolderSearch search{path_ + L"*.*", Folders}; search.next();) {
            const bool wanted = rules_.through_links || !search.is_link();
            if (wanted && search.is_folder() && !begins_with_dot(search.name()))
                all.push_back({std::wstring{search.name()}, search.attributes(), search.is_link()});
        }
        return all;
    }

    /// Its attributes may have changed while its name stayed.
    bool may_be_entered(const Subfolder& subfolder) const
    {
        const DWORD attributes = heard_here_ ? GetFileAttributesW((path_ + subfolder.name).c_str()) : subfolder.attributes;
        const bool wanted = rules_.through_links || !subfolder.is_link;
        return wanted && admits(Folders, attributes) && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    }

    void report(const FolderSearch& entry)
    {
        if (!visitor_.listens() || (rules_.folders_only && !is_folder_to_find(entry)))
            return;
        heard_here_ = true;
        cancelled_ = !visitor_.found(path_, entry);
    }

    /// The search may still give what is no longer there.
    bool is_folder_to_find(const FolderSearch& entry) const
    {
        if (!entry.is_folder() || begins_with_dot(entry.name()))
            return false;
        return !heard_here_ || is_folder(path_ + std::wstring{entry.name()});
    }

    long admitted() const noexcept { return rules_.folders_only ? long{Folders} : rules_.admitted; }

    std::wstring path_; ///< of the folder that is visited, with a backslash
    const WalkRules& rules_;
    WalkVisitor& visitor_;
    const bool one_search_;
    std::vector<Level> way_down_;
    std::vector<Identity> entered_; ///< by links, since the walk left the folders that it reaches without one
    bool heard_here_ = false; ///< of something in this folder
    bool cancelled_ = false;
};

} // namespace

void walk(std::wstring_view folder, const WalkRules& rules, WalkVisitor& visitor)
{
    Walk{folder, rules, visitor}.run();
}

} // namespace files
