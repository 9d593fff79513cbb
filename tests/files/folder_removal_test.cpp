#include "files/folder_removal.h"

#include "automation/error.h"
#include "support/client.h"

using files::folder_to_clear;

namespace {

bool is_refused(std::wstring_view name)
{
    try {
        folder_to_clear(name);
        return false;
    } catch (const automation::Error& error) {
        return error.number() == 52;
    }
}

} // namespace

// What is to be cleared is told apart from the clearing itself: a test that went wrong here would clear a drive.
TEST(FolderToClear, IsOnlyWhatTheNameMeans)
{
    wchar_t current[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, current);
    const std::wstring here = std::wstring{L"\\\\?\\"} + current, drive = std::wstring{current}.substr(0, 2);

    for (const wchar_t* blank : {L"", L"  ", L"\t \r\n"})
        EXPECT_EQ(folder_to_clear(blank), L"");
    EXPECT_TRUE(is_refused(drive)) << "its root, or the current folder there?";
    EXPECT_TRUE(is_refused({L"C:\\x\0y", 6}));

    EXPECT_EQ(folder_to_clear(drive + L"\\"), L"\\\\?\\" + drive + L"\\");
    EXPECT_EQ(folder_to_clear(L"\\"), L"\\\\?\\" + drive + L"\\");
    EXPECT_EQ(folder_to_clear(L"x"), here + L"\\x\\");
    EXPECT_EQ(folder_to_clear(drive + L"x\\y/"), here + L"\\x\\y\\");
    EXPECT_EQ(folder_to_clear(L"."), here + L"\\");
    EXPECT_EQ(folder_to_clear(L"C:\\a\\..\\b\\\\"), L"\\\\?\\C:\\b\\");
    EXPECT_EQ(folder_to_clear(L"C:\\*"), L"\\\\?\\C:\\*\\") << "which holds nothing";
    EXPECT_EQ(folder_to_clear(L"\\\\server\\share\\x"), L"\\\\?\\UNC\\server\\share\\x\\");
    EXPECT_EQ(folder_to_clear(L"\\\\?\\C:\\x."), L"\\\\?\\C:\\x.\\");
    const std::wstring long_name(300, L'n');
    EXPECT_EQ(folder_to_clear(L"C:\\" + long_name), L"\\\\?\\C:\\" + long_name + L"\\");
}
