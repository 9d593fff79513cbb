#include "files/path_names.h"

namespace files {

std::wstring_view GetPath(std::wstring_view File) noexcept
{
    const std::size_t backslash = File.rfind(L'\\');
    return backslash == File.npos ? std::wstring_view{} : File.substr(0, backslash);
}

std::wstring_view GetFile(std::wstring_view File, bool NoExtension) noexcept
{
    const std::wstring_view name = File.substr(File.rfind(L'\\') + 1);
    return NoExtension ? RemoveExtension(name) : name;
}

std::wstring_view GetExtension(std::wstring_view sFile) noexcept
{
    return sFile.substr(sFile.rfind(L'.') + 1);
}

std::wstring_view RemoveExtension(std::wstring_view sFile) noexcept
{
    return sFile.substr(0, sFile.rfind(L'.'));
}

bool is_below_application(std::wstring_view path) noexcept
{
    return path.starts_with(L'\\') && !path.starts_with(L"\\\\");
}

} // namespace files
