#pragma once

#include <windows.h>

#include <string>

namespace files {

/// Tells whether names came into a folder since the watch began, by the folder's time of its last change. In doubt it says
/// yes: a change would not show in a time that is only a few seconds old, as two changes may bear the same one.
class ContentWatch {
public:
    explicit ContentWatch(const std::wstring& folder);

    bool may_have_changed() const noexcept;

private:
    const std::wstring& folder_;
    ULONGLONG changed_before_; ///< 0 when it is not known, or too young to tell
};

/// Whether the folder is on a drive that gives a folder a new time when its content changes. FAT does not.
bool keeps_folder_times(const std::wstring& folder) noexcept;

} // namespace files
