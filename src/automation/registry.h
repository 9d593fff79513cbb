#pragma once

#include "automation/handle.h"

#include <optional>
#include <string>

/// Texts in the registry.
namespace automation {

/// An open key. What the system refuses is raised with its code and text.
class RegistryKey {
public:
    /// Opens a key to write to it, with all keys above it created.
    static RegistryKey create(HKEY root, const std::wstring& path);
    /// None when there is no such key.
    static std::optional<RegistryKey> open(HKEY root, const std::wstring& path, REGSAM access);

    /// The value of this name, the key's own when the name is empty; none when there is none, or it is no text.
    std::optional<std::wstring> text(const std::wstring& name) const;
    void set_text(const std::wstring& name, const std::wstring& text) const;
    /// Removes a value, if it is there.
    void remove(const std::wstring& name) const;
    /// Whether neither values nor keys are in it.
    bool is_empty() const;

private:
    explicit RegistryKey(RegistryHandle key) noexcept : key_{std::move(key)} {}

    RegistryHandle key_;
};

/// Removes a key that has no keys in it, if it is there.
void remove_registry_key(HKEY root, const std::wstring& path);

} // namespace automation
