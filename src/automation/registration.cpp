#include "automation/registration.h"

#include "automation/border.h"
#include "automation/module.h"
#include "automation/registry.h"
#include "automation/type_library.h"

#include <array>
#include <ranges>
#include <string>
#include <vector>

namespace automation {
namespace {

constexpr wchar_t programmable[] = L"{40FC6ED5-2438-11CF-A3DB-080036F12502}"; // the category "Programmable"

/// A value under HKEY_CLASSES_ROOT; the key's own value when the name is empty.
struct Entry {
    std::wstring key;
    std::wstring name;
    std::wstring text;
};

std::wstring text_of(REFGUID guid)
{
    std::array<wchar_t, 39> text;
    StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
    return text.data();
}

/// The version as keys are named.
std::wstring hexadecimal_version(const Library& library)
{
    wchar_t version[16];
    wsprintfW(version, L"%x.%x", library.major, library.minor);
    return version;
}

std::wstring decimal_version(const Library& library)
{
    return std::to_wstring(library.major) + L"." + std::to_wstring(library.minor);
}

void add_class(std::vector<Entry>& entries, const Class& entry, const Library& library)
{
    const std::wstring id = text_of(entry.id);
    const std::wstring program = std::wstring{library.name} + L"." + std::wstring{entry.name};
    const std::wstring key = L"CLSID\\" + id;
    entries.push_back({key, {}, program});
    entries.push_back({key + L"\\InprocServer32", {}, module::path()});
    entries.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
    entries.push_back({key + L"\\ProgID", {}, program});
    entries.push_back({key + L"\\TypeLib", {}, text_of(library.id)});
    entries.push_back({key + L"\\VERSION", {}, decimal_version(library)});
    entries.push_back({key + L"\\Programmable", {}, {}});
    entries.push_back({key + L"\\Implemented Categories", {}, {}});
    entries.push_back({key + L"\\Implemented Categories\\" + programmable, {}, {}});
    entries.push_back({program, {}, program});
    entries.push_back({program + L"\\Clsid", {}, id});
}

void add_alias(std::vector<Entry>& entries, REFIID former, const Interface& current)
{
    const std::wstring key = L"Interface\\" + text_of(former);
    entries.push_back({key, {}, std::wstring{current.name}});
    entries.push_back({key + L"\\Forward", {}, text_of(current.id)});
}

std::wstring version_key(const Library& library)
{
    return L"TypeLib\\" + text_of(library.id) + L"\\" + hexadecimal_version(library);
}

/// What registration writes besides what the platform does.
std::vector<Entry> own_entries(const Library& library)
{
    std::vector<Entry> entries;
    // The platform writes the library for its language only, but its marshaller may ask for any.
    entries.push_back({version_key(library) + L"\\0\\win32", {}, module::path()});
    for (const Class& entry : library.classes)
        if (entry.creatable)
            add_class(entries, entry, library);
    for (const Interface* face : library.interfaces)
        for (const IID& former : face->former)
            add_alias(entries, former, *face);
    return entries;
}

void write(const Entry& entry)
{
    RegistryKey::create(HKEY_CLASSES_ROOT, entry.key).set_text(entry.name, entry.text);
}

/// Removes a value, and its key if nothing else is left there: what others wrote beside it stays. That it is not there is
/// no failure.
void remove(const Entry& entry)
{
    const auto key = RegistryKey::open(HKEY_CLASSES_ROOT, entry.key, KEY_SET_VALUE | KEY_QUERY_VALUE);
    if (!key)
        return;
    key->remove(entry.name);
    if (key->is_empty())
        remove_registry_key(HKEY_CLASSES_ROOT, entry.key);
}

/// What the platform writes for an interface that clients in other apartments call through the type library.
void add_interface(std::vector<Entry>& entries, REFIID iid)
{
    const std::wstring key = L"Interface\\" + text_of(iid);
    entries.push_back({key, {}, {}});
    entries.push_back({key + L"\\ProxyStubClsid", {}, {}});
    entries.push_back({key + L"\\ProxyStubClsid32", {}, {}});
    entries.push_back({key + L"\\TypeLib", {}, {}});
    entries.push_back({key + L"\\TypeLib", L"Version", {}});
}

/// What the platform writes for the type library. It does not remove all of that when the file has moved or a part is
/// missing, so the rest is removed here.
std::vector<Entry> library_entries(const Library& library)
{
    std::vector<Entry> entries;
    const std::wstring version = version_key(library);
    wchar_t locale[16];
    wsprintfW(locale, L"%x", library.locale);
    entries.push_back({L"TypeLib\\" + text_of(library.id), {}, {}});
    entries.push_back({version, {}, {}});
    entries.push_back({version + L"\\HELPDIR", {}, {}});
    entries.push_back({version + L"\\FLAGS", {}, {}});
    entries.push_back({version + L"\\0", {}, {}});
    entries.push_back({version + L"\\" + locale, {}, {}});
    entries.push_back({version + L"\\" + locale + L"\\win32", {}, {}});
    for (const Interface* face : library.interfaces)
        add_interface(entries, face->id);
    for (const IID& events : library.events)
        add_interface(entries, events);
    return entries;
}

/// Removes what can be removed; gives the first failure.
HRESULT remove_all(const std::vector<Entry>& entries) noexcept
{
    HRESULT first = S_OK;
    for (const Entry& entry : entries | std::views::reverse) {
        const HRESULT result = answer([&] { remove(entry); });
        if (SUCCEEDED(first))
            first = result;
    }
    return first;
}

HRESULT unregister(const Library& library)
{
    // It fails for a library that is not there as it does without the right; what it leaves is met below.
    UnRegisterTypeLib(library.id, library.major, library.minor, library.locale, SYS_WIN32);
    const HRESULT own = remove_all(own_entries(library));
    const HRESULT rest = remove_all(library_entries(library));
    return FAILED(own) ? own : rest;
}

} // namespace

HRESULT register_server(const Library& library) noexcept
{
    return answer([&] {
        try {
            std::wstring path = module::path();
            std::wstring folder = path.substr(0, path.find_last_of(L"\\/"));
            check(RegisterTypeLib(&type_library(), path.data(), folder.data()));
            for (const Entry& entry : own_entries(library))
                write(entry);
        } catch (...) {
            unregister(library);
            throw;
        }
    });
}

HRESULT unregister_server(const Library& library) noexcept
{
    return answer_code([&] { return unregister(library); });
}

} // namespace automation
