#include "automation/registry.h"

#include "automation/border.h"

#include <algorithm>

namespace automation {
namespace {

bool is_missing_entry(LSTATUS status) noexcept
{
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

void check_registry(LSTATUS status)
{
    if (status != ERROR_SUCCESS)
        check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

} // namespace

RegistryKey RegistryKey::create(HKEY root, const std::wstring& path)
{
    RegistryHandle key;
    check_registry(RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.put(), nullptr));
    return RegistryKey{std::move(key)};
}

std::optional<RegistryKey> RegistryKey::open(HKEY root, const std::wstring& path, REGSAM access)
{
    RegistryHandle key;
    const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, access, key.put());
    if (is_missing_entry(status))
        return std::nullopt;
    check_registry(status);
    return RegistryKey{std::move(key)};
}

std::optional<std::wstring> RegistryKey::text(const std::wstring& name) const
{
    std::wstring text(64, L'\0');
    for (;;) {
        DWORD type = REG_NONE;
        auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegQueryValueExW(key_.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
        if (status == ERROR_MORE_DATA) { // another process may make it longer meanwhile
            text.resize(size / sizeof(wchar_t) + 1);
            continue;
        }
        if (is_missing_entry(status) || (status == ERROR_SUCCESS && type != REG_SZ && type != REG_EXPAND_SZ))
            return std::nullopt;
        check_registry(status);
        text.resize(size / sizeof(wchar_t));
        text.resize(std::min(text.find(L'\0'), text.size())); // not everyone writes one at the end
        return text;
    }
}

void RegistryKey::set_text(const std::wstring& name, const std::wstring& text) const
{
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    check_registry(RegSetValueExW(key_.get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size));
}

void RegistryKey::remove(const std::wstring& name) const
{
    const LSTATUS status = RegDeleteValueW(key_.get(), name.c_str());
    if (!is_missing_entry(status))
        check_registry(status);
}

bool RegistryKey::is_empty() const
{
    DWORD keys = 0, values = 0;
    check_registry(RegQueryInfoKeyW(key_.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                                    nullptr, nullptr));
    return keys == 0 && values == 0;
}

void remove_registry_key(HKEY root, const std::wstring& path)
{
    const LSTATUS status = RegDeleteKeyW(root, path.c_str());
    if (!is_missing_entry(status))
        check_registry(status);
}

} // namespace automation
