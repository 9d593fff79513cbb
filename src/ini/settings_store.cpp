#include "ini/settings_store.h"

#include "automation/error.h"
#include "automation/registry.h"

namespace settings {

Place::Place(std::wstring_view application, std::wstring_view section, std::wstring_view key) : key{key}
{
    if (application.empty() || section.empty() || key.empty())
        throw automation::Error{automation::Runtime::InvalidCall};
    path = L"Software\\VB and VBA Program Settings\\";
    path.append(application).append(L"\\").append(section);
}

std::wstring read(const Place& place, std::wstring_view otherwise)
{
    const auto stored = automation::RegistryKey::open(HKEY_CURRENT_USER, place.path, KEY_QUERY_VALUE);
    return (stored ? stored->text(place.key) : std::nullopt).value_or(std::wstring{otherwise});
}

void write(const Place& place, std::wstring_view text)
{
    automation::RegistryKey::create(HKEY_CURRENT_USER, place.path).set_text(place.key, std::wstring{text});
}

} // namespace settings
