#pragma once

#include "support/client.h"

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
        if (exists())
            return;
        std::ranges::replace(target, L'\\', L'/');
        run(L"ln -s " + target + L" " + name_);
        for (int i = 0; i < 500 && !exists(); ++i)
            Sleep(10);
    }
    ~Link()
    {
        if (!exists())
            return;
        if (opens_itself())
            is_folder() ? RemoveDirectoryW(path_.c_str()) : DeleteFileW(path_.c_str());
        else
            run(L"rm -f " + name_);
        for (int i = 0; i < 500 && exists(); ++i)
            Sleep(10);
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
    bool is_folder() const { return GetFileAttributesW(path_.c_str()) & FILE_ATTRIBUTE_DIRECTORY; }

    void run(const std::wstring& command) const
    {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        std::wstring line = L"\\\\?\\unix\\bin\\" + command;
        if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder_.c_str(), &start, &process)) {
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
    }

    std::wstring folder_, name_, path_;
};

} // namespace client
