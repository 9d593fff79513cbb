#pragma once

#include <string>
#include <string_view>

/// The user's settings: texts by application, section and key. They lie in the registry where the settings functions of forms
/// clients keep theirs, so that both see the same values.
namespace settings {

/// Where a setting lies. Raises 5 when the application, the section or the key is empty.
struct Place {
    Place(std::wstring_view application, std::wstring_view section, std::wstring_view key);

    std::wstring path; ///< of the registry key
    std::wstring key;
};

/// The text that is stored; `otherwise` when there is none.
std::wstring read(const Place& place, std::wstring_view otherwise);

/// Stores a text. Raises what the system refuses it with.
void write(const Place& place, std::wstring_view text);

} // namespace settings
