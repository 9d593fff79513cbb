#include "files/path_combination.h"

#include "files/path_buffer.h"

#include <shlwapi.h>

namespace files {
namespace {

/// Whether the folder does not count: the file has a drive or a server of its own.
bool stands_for_itself(std::wstring_view file)
{
    return file.starts_with(L"\\\\") || (!file.starts_with(L'\\') && !file.empty() && !PathIsRelativeW(std::wstring{file}.c_str()));
}

} // namespace

bool can_combine(std::wstring_view path, std::wstring_view file) noexcept
{
    return path.size() < MAX_PATH - 1 && fits_platform(file);
}

std::wstring combined(std::wstring_view path, std::wstring_view file)
{
    PathBuffer whole;
    if (fits_platform(file) && stands_for_itself(file))
        path = {};
    if (can_combine(path, file))
        PathCombineW(whole.get(), std::wstring{path}.c_str(), std::wstring{file}.c_str());
    return std::wstring{whole.text()};
}

} // namespace files
