#include "automation/registration.h"

#include "automation/specimen.h"

#include <sddl.h>

namespace {

std::wstring value_of(const std::wstring& key, const wchar_t* name = nullptr)
{
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    return RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) == ERROR_SUCCESS ? text : L"(none)";
}

bool exists(const std::wstring& key)
{
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS)
        return false;
    RegCloseKey(opened);
    return true;
}

const std::wstring guid_rest = L"-6B1B-4F0B-8C76-0F6B7A3C9D10}";
const std::wstring library = L"TypeLib\\{7B1E0A52" + guid_rest;
const std::wstring interface_key = L"Interface\\{7B1E0A53" + guid_rest;
const std::wstring class_key = L"CLSID\\{7B1E0A55" + guid_rest;
const std::wstring alias_key = L"Interface\\{7B1E0A57" + guid_rest;
const std::wstring events_key = L"Interface\\{7B1E0A54" + guid_rest;
const std::wstring program_key = L"SpecimenLibrary.Specimen";

/// A key of the registry that can only be read for as long as this lives.
class WriteProtected {
public:
    explicit WriteProtected(const std::wstring& key)
    {
        RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, READ_CONTROL | WRITE_DAC, nullptr, &key_, nullptr);
        set_access(L"D:P(A;;KR;;;WD)");
    }
    ~WriteProtected()
    {
        set_access(L"D:(A;;KA;;;WD)");
        RegCloseKey(key_);
    }
    WriteProtected(const WriteProtected&) = delete;
    WriteProtected& operator=(const WriteProtected&) = delete;

private:
    void set_access(const wchar_t* rule) const
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        EXPECT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(rule, SDDL_REVISION_1, &descriptor, nullptr));
        EXPECT_EQ(RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
        LocalFree(descriptor);
    }

    HKEY key_ = nullptr;
};

class Registration : public testing::Test {
protected:
    void TearDown() override { automation::unregister_server(SpecimenLibrary_library); }
    static void expect_nothing_left()
    {
        for (const std::wstring& key : {library, interface_key, class_key, alias_key, events_key, program_key})
            EXPECT_FALSE(exists(key)) << std::string(key.begin(), key.end());
    }
};

} // namespace

TEST_F(Registration, GoesWithoutATrace)
{
    ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK);
    ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK) << "once more changes nothing";
    EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), S_OK);
    expect_nothing_left();
    EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), S_OK) << "when nothing is there";
}

TEST_F(Registration, GoesWhenOnlyHalfOfItIsThere)
{
    for (const std::wstring& gone : {library, interface_key, class_key, program_key, alias_key + L"\\Forward"}) {
        ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK);
        RegDeleteTreeW(HKEY_CLASSES_ROOT, gone.c_str());
        EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), S_OK);
        expect_nothing_left();
    }
}

TEST_F(Registration, IsTheSameWhenTheFileHasMoved)
{
    const std::wstring version = library + L"\\2.1f\\", server = class_key + L"\\InprocServer32";
    for (const bool registered_again : {true, false}) {
        ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK);
        for (const std::wstring& key : {version + L"0\\win32", version + L"409\\win32", server})
            RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, L"C:\\gone.dll", sizeof L"C:\\gone.dll");
        if (registered_again) {
            ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK);
            for (const std::wstring& key : {version + L"0\\win32", version + L"409\\win32", server})
                EXPECT_EQ(value_of(key), automation::module::path());
        }
        EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), S_OK);
        expect_nothing_left();
    }
}

TEST_F(Registration, FailsWithoutTheRightToWriteAndLeavesNothing)
{
    {
        const WriteProtected locked{class_key};
        EXPECT_EQ(automation::register_server(SpecimenLibrary_library), E_ACCESSDENIED);
        for (const std::wstring& key : {library, interface_key, program_key, alias_key, events_key})
            EXPECT_FALSE(exists(key)) << std::string(key.begin(), key.end());
    }
    RegDeleteKeyW(HKEY_CLASSES_ROOT, class_key.c_str());
}

TEST_F(Registration, TellsWhenItCannotGoAndRemovesTheRest)
{
    for (const std::wstring& key : {class_key, alias_key, library + L"\\2.1f\\0\\win32"}) {
        ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK);
        {
            const WriteProtected locked{key};
            EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), E_ACCESSDENIED);
            EXPECT_TRUE(exists(key));
            for (const std::wstring& other : {interface_key, program_key, events_key})
                EXPECT_FALSE(exists(other)) << std::string(other.begin(), other.end());
        }
        EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), S_OK);
        expect_nothing_left();
    }
}

TEST_F(Registration, LeavesWhatOthersWroteThere)
{
    ASSERT_EQ(automation::register_server(SpecimenLibrary_library), S_OK);
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CLASSES_ROOT, (class_key + L"\\Foreign").c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    RegCloseKey(key);
    EXPECT_EQ(automation::unregister_server(SpecimenLibrary_library), S_OK);
    EXPECT_TRUE(exists(class_key + L"\\Foreign"));
    EXPECT_FALSE(exists(class_key + L"\\InprocServer32"));
    RegDeleteTreeW(HKEY_CLASSES_ROOT, class_key.c_str());
}
