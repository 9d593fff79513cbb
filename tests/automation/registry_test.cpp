#include "automation/registry.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

using automation::RegistryKey;

namespace {

const std::wstring path = L"Software\\qvObjects tests\\Registry";

class Registry : public testing::Test {
protected:
    ~Registry() override { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\qvObjects tests"); }
};

} // namespace

TEST_F(Registry, KeepsTextsOfAnyLength)
{
    const RegistryKey written = RegistryKey::create(HKEY_CURRENT_USER, path);
    const std::wstring long_text(5000, L'\u00fc');
    written.set_text(L"", L"the key's own");
    written.set_text(L"Long", long_text);
    written.set_text(L"Empty", L"");

    const auto read = RegistryKey::open(HKEY_CURRENT_USER, path, KEY_READ | KEY_SET_VALUE);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text(L""), L"the key's own");
    EXPECT_EQ(read->text(L"long"), long_text);
    EXPECT_EQ(read->text(L"Empty"), L"");
    EXPECT_EQ(read->text(L"Nobody"), std::nullopt);
    read->remove(L"Long");
    read->remove(L"Long"); // which is no failure
    EXPECT_EQ(read->text(L"Long"), std::nullopt);
    EXPECT_FALSE(read->is_empty());
}

TEST_F(Registry, ReadsWhatOthersWrote)
{
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr), ERROR_SUCCESS);
    const DWORD number = 5;
    RegSetValueExW(key, L"Number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    RegSetValueExW(key, L"Unended", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"abc"), 3 * sizeof(wchar_t));
    RegSetValueExW(key, L"Odd", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"abc"), 5);
    RegCloseKey(key);
    const auto read = RegistryKey::open(HKEY_CURRENT_USER, path, KEY_READ);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text(L"Number"), std::nullopt);
    EXPECT_EQ(read->text(L"Unended"), L"abc");
    EXPECT_EQ(read->text(L"Odd"), L"ab");
}

TEST_F(Registry, TellsAbsenceFromRefusal)
{
    EXPECT_FALSE(RegistryKey::open(HKEY_CURRENT_USER, L"Software\\qvObjects tests\\Nobody", KEY_READ));
    automation::remove_registry_key(HKEY_CURRENT_USER, L"Software\\qvObjects tests\\Nobody"); // no failure either
    RegistryKey::create(HKEY_CURRENT_USER, path);
    const auto only_read = RegistryKey::open(HKEY_CURRENT_USER, path, KEY_READ);
    EXPECT_EQ(error_of([&] { only_read->set_text(L"x", L"y"); }), static_cast<std::int32_t>(0x80070005)) << "access denied";
}
