#pragma once

#include "support/client.h"

#include <algorithm>
#include <string>

namespace client {

/// A symbolic link, gone with its owner; what it leads to stays. Wine has no call that makes or removes one, but starts the
/// programs of the system that it runs on.
class Link {
public:
    /// `target` as it is seen from the folder where the link stands, both with backslashes.
    Link(const std::wstring& folder, const std::wstring& name, std::wstring target, bool to_folder = true)
        : folder_{folder}, name_{name}, path_{folder + L"\\" + name}
    {
        constexpr DWORD unprivileged = 2;
        CreateSymbolicLinkW(path_.c_str(), target.c_str(), (to_folder ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0) | unprivileged);
        std::ranges::replace(target, L'\\', L'/');
        run_until(true, L"ln -s " + target + L" " + name_);
    }
    ~Link()
    {
        if (opens_itself() && !RemoveDirectoryW(path_.c_str()))
            DeleteFileW(path_.c_str());
        run_until(false, L"rm -f " + name_);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// False on a machine where none could be made.
    bool exists() const { return GetFileAttributesW(path_.c_str()) != INVALID_FILE_ATTRIBUTES; }

    /// Whether the platform can open the link instead of what it leads to. Only then it can be deleted by itself.
    bool opens_itself() const
    {
        constexpr DWORD flags = FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS;
        const HANDLE handle = CreateFileW(path_.c_str(), 0, 7, nullptr, OPEN_EXISTING, flags, nullptr);
        BY_HANDLE_FILE_INFORMATION information{};
        GetFileInformationByHandle(handle, &information);
        CloseHandle(handle);
        return information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT;
    }

private:
    /// Starts a program of Wine's own system, whose end nobody hears of, unless there is a link already, or none any more.
    void run_until(bool there, const std::wstring& command) const
    {
        STARTUPINFOW start{};
        PROCESS_INFORMATION process{};
        std::wstring line = L"\\\\?\\unix\\bin\\" + command;
        if (exists() == there ||
            !CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder_.c_str(), &start, &process))
            return;
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        for (int i = 0; i < 500 && exists() != there; ++i)
            Sleep(10);
    }

    std::wstring folder_, name_, path_;
};

} // namespace client
