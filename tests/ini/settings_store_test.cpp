#include "ini/settings_store.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <tuple>

using settings::Place;

namespace {

const std::wstring application = L"qvObjects tests";
const std::wstring all_settings = L"Software\\VB and VBA Program Settings\\";

class SettingsStore : public testing::Test {
protected:
    ~SettingsStore() override { RegDeleteTreeW(HKEY_CURRENT_USER, (all_settings + application).c_str()); }

    /// The key of a section, made by somebody else.
    static HKEY key_of(const std::wstring& section, DWORD options = 0)
    {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, (all_settings + application + section).c_str(), 0, nullptr, options, KEY_WRITE,
                                  nullptr, &key, nullptr), ERROR_SUCCESS);
        return key;
    }
    /// What a plain look into the registry finds.
    static std::wstring in_registry(const std::wstring& path, const wchar_t* key)
    {
        std::wstring text(1000, L'\0');
        auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        if (RegGetValueW(HKEY_CURRENT_USER, (all_settings + path).c_str(), key, RRF_RT_REG_SZ, nullptr, text.data(), &size))
            return L"(nothing)";
        return text.c_str();
    }
};

} // namespace

TEST_F(SettingsStore, KeepsTextsByApplicationSectionAndKey)
{
    const std::wstring umlauts = L"Gr\u00F6\u00DFe \u65E5", long_text(100'000, L'\u00E4');
    settings::write({application, L"S", L"K"}, L"first");
    settings::write({application, L"S", L"k"}, L"second");
    settings::write({application, L"T", L"K"}, L"of another section");
    settings::write({application + L"\\Sub", L"S", L"K"}, L"of another application");
    settings::write({application, umlauts, umlauts}, umlauts);
    settings::write({application, L"S", L"Long"}, long_text);
    settings::write({application, L"S", L"Empty"}, L"");

    EXPECT_EQ(settings::read({application, L"s", L"K"}, L"other"), L"second") << "in any case";
    EXPECT_EQ(settings::read({application, umlauts, umlauts}, L"other"), umlauts);
    EXPECT_TRUE(settings::read({application, L"S", L"Long"}, L"other") == long_text);
    EXPECT_EQ(settings::read({application, L"S", L"Empty"}, L"other"), L"") << "which is there";
    EXPECT_EQ(in_registry(application + L"\\S", L"K"), L"second");
    EXPECT_EQ(in_registry(application + L"\\T", L"K"), L"of another section");
    EXPECT_EQ(in_registry(application + L"\\Sub\\S", L"K"), L"of another application");
    EXPECT_EQ(in_registry(application + L"\\" + umlauts, umlauts.c_str()), umlauts);
}

TEST_F(SettingsStore, WhatIsNoTextIsNotThere)
{
    EXPECT_EQ(settings::read({application, L"S", L"K"}, L"other"), L"other") << "no application";
    const HKEY key = key_of(L"\\S");
    const DWORD number = 5;
    RegSetValueExW(key, L"Number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    RegCloseKey(key);
    EXPECT_EQ(settings::read({application, L"S", L"K"}, L"other"), L"other") << "no key";
    EXPECT_EQ(settings::read({application, L"S", L"Number"}, L"other"), L"other");
    settings::write({application, L"S", L"Number"}, L"a text now");
    EXPECT_EQ(settings::read({application, L"S", L"Number"}, L"other"), L"a text now");
}

TEST_F(SettingsStore, EveryNameIsNeeded)
{
    for (const auto& [of_application, section, key] :
         {std::tuple{L"", L"S", L"K"}, std::tuple{L"A", L"", L"K"}, std::tuple{L"A", L"S", L""}})
        EXPECT_EQ(error_of([&] { Place(of_application, section, key); }), 5) << of_application << section << key;
}

TEST_F(SettingsStore, TellsWhyTheSystemRefuses)
{
    RegCloseKey(key_of(L"", REG_OPTION_VOLATILE)); // in which nothing that stays can be created
    EXPECT_EQ(error_of([] { settings::write({application, L"S", L"K"}, L"x"); }), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(settings::read({application, L"S", L"K"}, L"other"), L"other");
}
