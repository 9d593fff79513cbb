#include "support/client.h"
#include "support/dispatch_object.h"
#include "support/message_box.h"

#include <shlobj.h>

#include <cwctype>

using client::expect_error;
using client::Object;
using client::Value;

namespace {

class Shell : public testing::Test {
protected:
    std::wstring text(const wchar_t* member, std::initializer_list<Value> arguments) const
    {
        return file.call(member, arguments).text();
    }

    client::Apartment apartment;
    const Object file = Object::create(L"qvObjects.qvFile");
    const client::Folder folder;
};

bool exists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

TEST_F(Shell, GivesShortAndLongPaths)
{
    const std::wstring path = folder.write(L"Ein langer N\u00e4me mit Blanks.text", "");
    const std::wstring short_path = text(L"GetShortFileName", {path});
    EXPECT_TRUE(exists(short_path)) << "of the same file";
    EXPECT_EQ(text(L"GetShortFileName", {short_path}), short_path);
    EXPECT_EQ(text(L"GetShortFileName", {path + L"x"}), L"");
    EXPECT_EQ(text(L"GetShortFileName", {L""}), L"");
    EXPECT_EQ(text(L"GetShortFileName", {std::wstring(40000, L'a')}), L"");

    std::wstring expected = text(L"GetLongFilename", {folder.file(L"")});
    EXPECT_EQ(expected.back(), L'\\') << "as it was given";
    expected += L"Ein langer N\u00e4me mit Blanks.text";
    EXPECT_EQ(text(L"GetLongFilename", {short_path}), expected);
    std::wstring upper = path;
    std::ranges::transform(upper, upper.begin(), std::towupper);
    EXPECT_EQ(text(L"GetLongFilename", {upper}), expected) << "the names as they are on disk";
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(text(L"GetLongFilename", {path}), expected);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(text(L"GetLongFilename", {path + L"x"}), L"");
    EXPECT_EQ(text(L"GetLongFilename", {L"C:\\"}), L"C:\\");
    EXPECT_EQ(text(L"GetLongFilename", {L"C:"}), L"C:");
    EXPECT_EQ(text(L"GetLongFilename", {L"C:\\" + std::wstring(40000, L'a')}), L"");
}

TEST_F(Shell, KnowsTheSpecialFolders)
{
    wchar_t desktop[MAX_PATH];
    ASSERT_EQ(SHGetFolderPathW(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, 0, desktop), S_OK);
    EXPECT_EQ(text(L"qvGetSpecialFolderPath", {CSIDL_DESKTOPDIRECTORY}), desktop);
    EXPECT_EQ(text(L"qvGetSpecialFolderPath", {CSIDL_DESKTOPDIRECTORY, true}), std::wstring{desktop} + L"\\");
    EXPECT_EQ(text(L"qvGetSpecialFolderPath", {CSIDL_DRIVES}), L"") << "no folder of the file system";
    EXPECT_EQ(file.try_call(L"qvGetSpecialFolderPath", {4711}).result, DISP_E_EXCEPTION);
}

TEST_F(Shell, MovesFilesToTheRecycleBin)
{
    EXPECT_FALSE(file.call(L"qvMoveToRecycle", {L""}).flag());

    const std::wstring path = folder.write(L"Abf\u00e4lle.txt", "x");
    MessageBoxCatcher confirmation{10000, {IDYES}};
    EXPECT_TRUE(file.call(L"qvMoveToRecycle", {path}).flag());
    EXPECT_FALSE(exists(path));
}

TEST_F(Shell, TellsThatNothingWasMovedIfWanted)
{
    const std::wstring path = folder.write(L"kept.txt", "x");
    MessageBoxCatcher boxes{10000, {IDNO, IDOK}}; // the system's question, and what the member has to say
    EXPECT_FALSE(file.call(L"qvMoveToRecycle", {path, true}).flag());
    ASSERT_TRUE(boxes.caught());
    EXPECT_EQ(boxes.caption, L"qvObjects");
    EXPECT_EQ(boxes.text, L"Operation Failed");
    EXPECT_EQ(boxes.icon, 0);

    MessageBoxCatcher silence{1000, {IDNO, IDOK}};
    EXPECT_FALSE(file.call(L"qvMoveToRecycle", {path}).flag());
    EXPECT_FALSE(silence.caught());
    EXPECT_TRUE(exists(path));

    MessageBoxCatcher number{10000, {IDYES, IDYES, IDOK}};
    EXPECT_FALSE(file.call(L"qvMoveToRecycle", {folder.file(L"missing.txt"), true}).flag());
    ASSERT_TRUE(number.caught());
    EXPECT_NE(std::wcstol(number.text.c_str(), nullptr, 10), 0) << "the system's number";
}

TEST_F(Shell, LetsTheUserPickAFolder)
{
    DispatchObject owner{{L"hwnd"}, [](DISPID, const DISPPARAMS&, VARIANT* result) {
                             *result = Value{0}; // no window
                             return S_OK;
                         }};
    MessageBoxCatcher picks;
    const std::wstring title = L"W\u00e4hlen Sie", picked = text(L"SelectFolder95", {0, &owner, title, BIF_RETURNONLYFSDIRS});
    ASSERT_TRUE(picks.caught());
    EXPECT_TRUE(exists(picked)) << "the desktop, which is selected";
    EXPECT_EQ(picks.text, title);

    MessageBoxCatcher cancels{10000, {IDCANCEL}};
    EXPECT_EQ(text(L"SelectFolder95", {0, &owner, title, BIF_RETURNONLYFSDIRS}), L"");
    EXPECT_TRUE(cancels.caught());

    expect_error(file.try_call(L"SelectFolder95", {0, static_cast<IDispatch*>(nullptr), title, 0}), 91,
                 L"Object variable or With block variable not set");
    DispatchObject no_window{{}, {}};
    expect_error(file.try_call(L"SelectFolder95", {0, &no_window, title, 0}), 438, L"Object doesn't support this property or method");
}

} // namespace
