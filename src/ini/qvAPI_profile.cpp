#include "ini/qvAPI_profile.h"

#include "automation/ansi_call.h"
#include "automation/client_object.h"
#include "automation/safe_array.h"
#include "files/arguments.h"
#include "files/folder_search.h"
#include "files/text_file.h"
#include "ini/profile_text.h"

#include <optional>

using automation::AnsiText;
using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Text;
using automation::Variant;

namespace {

// What the system is given room for, in bytes, whatever a file holds.
constexpr std::size_t room_for_value = 255, room_for_section = 32767, room_for_names = 65000;

/// The text that a function of the system writes, with the NULs in it.
template <class Call>
std::wstring system_text(std::size_t room, Call&& call)
{
    std::string buffer(room, ' ');
    const std::size_t length = call(buffer.data(), static_cast<DWORD>(room));
    const std::string_view written = std::string_view{buffer}.substr(0, length);
    const bool may_be_cut = length + 2 >= room; // one NUL ends a text, and two a list
    return automation::decode(may_be_cut ? automation::without_cut_character(written) : written);
}

std::wstring section_text(std::wstring_view section, std::wstring_view file)
{
    return system_text(room_for_section, [section = AnsiText{section}, file = AnsiText{file}](char* buffer, DWORD room) {
        return GetPrivateProfileSectionA(section, buffer, room, file);
    });
}

std::wstring names_text(std::wstring_view file)
{
    return system_text(room_for_names, [file = AnsiText{file}](char* buffer, DWORD room) {
        return GetPrivateProfileSectionNamesA(buffer, room, file);
    });
}

/// None for a file that doesn't exist, as nothing has the name of a path that can't be one.
std::optional<files::TextInput> open_if_there(std::wstring_view path)
{
    try {
        return std::optional<files::TextInput>{std::in_place, path};
    } catch (const Error& error) {
        const auto reason = static_cast<Runtime>(error.number());
        if (reason == Runtime::FileNotFound || reason == Runtime::PathNotFound || reason == Runtime::BadFileNumber ||
            reason == Runtime::BadFileName || files::is_folder(std::wstring{path}))
            return std::nullopt;
        throw;
    }
}

/// Of two items with one key a collection keeps the first.
void add_unless_there(IDispatch* collection, std::wstring_view item, std::wstring_view key)
{
    try {
        automation::call(collection, L"Add", {Variant{item}, Variant{key}});
    } catch (const Error& error) {
        if (error.number() != static_cast<std::int32_t>(Runtime::KeyExists))
            throw;
    }
}

} // namespace

short qvAPI_profile::GetPrivateProfileString(std::wstring_view Section, std::wstring_view Key, BSTR& sValue, std::wstring_view sFile)
{
    const AnsiText section{Section}, key{Key}, file{sFile};
    const std::wstring value = system_text(room_for_value, [&](char* buffer, DWORD room) {
        return GetPrivateProfileStringA(section, key, "", buffer, room, file);
    });
    files::replace(sValue, value);
    return static_cast<short>(value.size());
}

std::wstring qvAPI_profile::GetPPs2(std::wstring_view sSection, std::wstring_view sKey, std::wstring_view sDefault, std::wstring_view sFile)
{
    std::wstring value;
    if (auto file = sFile.empty() ? std::nullopt : open_if_there(sFile))
        value = profile::find_value([&] { return file->next(); }, sSection, sKey);
    return value.empty() ? std::wstring{sDefault} : value;
}

long qvAPI_profile::WritePrivateProfileString(std::wstring_view Section, std::wstring_view Key, std::wstring_view sValue,
                                              std::wstring_view sFile)
{
    WritePrivateProfileStringA(AnsiText{Section}, AnsiText{Key}, AnsiText{sValue}, AnsiText{sFile});
    return 0;
}

long qvAPI_profile::GetPPSectionStr(std::wstring_view sSection, SAFEARRAY*& sItems, std::wstring_view sFile)
{
    const std::wstring lines = section_text(sSection, sFile);
    const std::vector<profile::Entry> entries = profile::entries(lines);
    const SAFEARRAYBOUND bounds[]{{2, 0}, {static_cast<ULONG>(entries.size() + 1), 0}};
    Variant items = automation::new_array(VT_BSTR, bounds);
    {
        const LockedArray<BSTR> texts{items.parray};
        BSTR* place = texts.begin() + 2; // column 0 stays empty
        for (const profile::Entry& entry : entries) {
            *place++ = Text{entry.key}.release();
            *place++ = Text{entry.value}.release();
        }
    }
    automation::assign(sItems, std::move(items));
    return static_cast<long>(entries.size());
}

long qvAPI_profile::GetPPSectionCol(std::wstring_view sSection, IDispatch* cItems, std::wstring_view sFile)
{
    const std::wstring lines = section_text(sSection, sFile); // before the collection's code runs, which may change the caller's
    const std::vector<profile::Entry> entries = profile::entries(lines);
    const automation::Ref held{cItems};
    automation::remove_all(cItems);
    for (const profile::Entry& entry : entries)
        add_unless_there(cItems, entry.value, entry.key);
    return static_cast<long>(entries.size());
}

long qvAPI_profile::GetPPSectionDic(std::wstring_view sSection, IDispatch* dicItems, std::wstring_view sFile)
{
    const std::wstring lines = section_text(sSection, sFile);
    const std::vector<profile::Entry> entries = profile::entries(lines);
    const automation::Ref held{dicItems};
    automation::call(dicItems, L"RemoveAll");
    for (const profile::Entry& entry : entries)
        automation::call(dicItems, L"Add", {Variant{entry.key}, Variant{entry.value}});
    return static_cast<long>(entries.size());
}

long qvAPI_profile::GetPPSectionNamesStr(SAFEARRAY*& sNames, std::wstring_view sFileName)
{
    const std::wstring list = names_text(sFileName);
    const std::vector<std::wstring_view> names = profile::section_names(list);
    Variant all = automation::new_array(VT_BSTR, names.size() + 1);
    {
        const LockedArray<BSTR> texts{all.parray};
        BSTR* place = texts.begin() + 1; // element 0 stays empty
        for (const std::wstring_view name : names)
            *place++ = Text{name}.release();
    }
    automation::assign(sNames, std::move(all));
    return static_cast<long>(names.size());
}

long qvAPI_profile::GetPPSectionNamesCol(IDispatch* cNames, std::wstring_view sFileName)
{
    const std::wstring list = names_text(sFileName);
    const automation::Ref held{cNames};
    automation::remove_all(cNames);
    for (const std::wstring_view name : profile::section_names(list))
        automation::call(cNames, L"Add", {Variant{name}});
    return automation::count(cNames);
}

long qvAPI_profile::GetPPSectionNamesDic(IDispatch* dNames, std::wstring_view sFileName)
{
    const std::wstring list = names_text(sFileName);
    const automation::Ref held{dNames};
    automation::call(dNames, L"RemoveAll");
    for (const std::wstring_view name : profile::section_names(list))
        automation::call(dNames, L"Add", {Variant{name}, Variant{name}});
    return automation::count(dNames);
}
