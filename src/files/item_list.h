#pragma once

#include <windows.h>

#include <shlobj.h>

#include <memory>
#include <string>

namespace files {

struct FreeTaskMemory {
    void operator()(void* memory) const noexcept { CoTaskMemFree(memory); }
};

/// A place in the shell's tree, in which the folders of the file system are not the only ones.
using ItemList = std::unique_ptr<ITEMIDLIST, FreeTaskMemory>;

/// The path of what an item list stands for; empty when that is no folder of the file system.
inline std::wstring path_of(const ITEMIDLIST& list)
{
    wchar_t path[MAX_PATH] = L"";
    return SHGetPathFromIDListW(&list, path) ? path : L"";
}

} // namespace files
