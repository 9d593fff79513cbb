#include "files/folder_removal.h"

#include "automation/error.h"
#include "support/client.h"

using files::folder_to_clear;

// What is to be cleared is told apart from the clearing itself: a test that went wrong here would clear a drive.
TEST(FolderToClear, IsOnlyWhatTheNameMeans)
{
    wchar_t current[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, current);
    const std::wstring start = L"\\\\?\\", here = start + current, drive = std::wstring{current}.substr(0, 2);
    const std::wstring long_name(300, L'n');
    const std::pair<std::wstring, std::wstring> cases[]{
        {L"", L""},
        {L" \t \r\n", L""},
        {drive + L"\\", start + drive + L"\\"},
        {L"\\", start + drive + L"\\"},
        {L"x", here + L"\\x\\"},
        {drive + L"x\\y/", here + L"\\x\\y\\"},
        {L".", here + L"\\"},
        {L"C:\\a\\..\\b\\\\", start + L"C:\\b\\"},
        {L"C:\\*", start + L"C:\\*\\"}, // which holds nothing
        {L"\\\\server\\share\\x", start + L"UNC\\server\\share\\x\\"},
        {L"\\\\?\\C:\\x.", L"\\\\?\\C:\\x.\\"},
        {L"C:\\" + long_name, start + L"C:\\" + long_name + L"\\"}};
    for (const auto& [given, folder] : cases)
        EXPECT_EQ(folder_to_clear(given), folder) << given;
    // A drive may mean its root or its current folder.
    for (const std::wstring& refused : {drive, std::wstring{L"C:\\x\0y", 6}})
        try {
            folder_to_clear(refused);
            ADD_FAILURE() << refused;
        } catch (const automation::Error& error) {
            EXPECT_EQ(error.number(), 52);
        }
}
