#include "support/client.h"
#include "support/dispatch_object.h"
#include "support/message_box.h"

#include <shlobj.h>

#include <cwctype>
#include <filesystem>

using client::expect_error;
using client::Object;
using client::Value;
using std::filesystem::exists;

namespace {

class Shell : public testing::Test {
protected:
    using Arguments = std::initializer_list<Value>;

    std::wstring text(const wchar_t* member, Arguments arguments) const { return file.call(member, arguments).text(); }
    bool is_moved(Arguments arguments) const { return file.call(L"qvMoveToRecycle", arguments).flag(); }

    client::Apartment apartment;
    const Object file = Object::create(L"qvObjects.qvFile");
    const client::Folder folder;
};

TEST_F(Shell, GivesShortAndLongPaths)
{
    const std::wstring name = L"Ein langer N\u00e4me mit Blanks.text", path = folder.write(name, "");
    const std::wstring short_path = text(L"GetShortFileName", {path});
    EXPECT_TRUE(exists(short_path)) << "of the same file";
    EXPECT_EQ(text(L"GetShortFileName", {short_path}), short_path);
    for (const std::wstring& none : {path + L"x", std::wstring{}, std::wstring(40000, L'a')})
        EXPECT_EQ(text(L"GetShortFileName", {none}), L"");

    const std::wstring long_folder = text(L"GetLongFilename", {folder.file(L"")});
    EXPECT_EQ(long_folder.back(), L'\\') << "as it was given";
    std::wstring upper = path;
    std::ranges::transform(upper, upper.begin(), std::towupper);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    for (const std::wstring& given : {short_path, upper})
        EXPECT_EQ(text(L"GetLongFilename", {given}), long_folder + name) << "the names as they are on disk";
    for (const wchar_t* root : {L"C:\\", L"C:"})
        EXPECT_EQ(text(L"GetLongFilename", {root}), root);
    for (const std::wstring& none : {path + L"x", L"C:\\" + std::wstring(40000, L'a')})
        EXPECT_EQ(text(L"GetLongFilename", {none}), L"");
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
    EXPECT_FALSE(is_moved({L""}));
    EXPECT_FALSE(is_moved({std::wstring(70'000, L'x')})) << "which the system has no room for";
    const std::wstring path = folder.write(L"Abf\u00e4lle.txt", "x");
    MessageBoxCatcher silence{1000, {IDNO, IDOK}}; // the answer to the system's question, and to what the member has to say
    EXPECT_FALSE(is_moved({path}));
    EXPECT_FALSE(silence.caught());

    MessageBoxCatcher boxes{10000, {IDNO, IDOK}};
    EXPECT_FALSE(is_moved({path, true}));
    ASSERT_TRUE(boxes.caught());
    EXPECT_EQ(boxes.caption, L"qvObjects");
    EXPECT_EQ(boxes.text, L"Operation Failed");
    EXPECT_EQ(boxes.icon, 0);
    EXPECT_TRUE(exists(path));

    MessageBoxCatcher confirmation{10000, {IDYES}};
    EXPECT_TRUE(is_moved({path}));
    EXPECT_FALSE(exists(path));

    MessageBoxCatcher number{10000, {IDYES, IDYES, IDOK}};
    EXPECT_FALSE(is_moved({path, true}));
    ASSERT_TRUE(number.caught());
    EXPECT_NE(std::wcstol(number.text.c_str(), nullptr, 10), 0) << "the system's number";
}

TEST_F(Shell, MovesToTheRecycleBinWhatIsNamedFromTheCurrentFolder)
{
    wchar_t before[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, before);
    folder.write(L"one", "");
    folder.write(L"two", "");
    SetCurrentDirectoryW(folder.path().c_str());
    MessageBoxCatcher confirmation{10000, {IDYES}};
    EXPECT_TRUE(is_moved({std::wstring_view{L"one\0two", 7}}));
    EXPECT_EQ(folder.size(), 0);
    SetCurrentDirectoryW(before);
}

TEST_F(Shell, LetsTheUserPickAFolder)
{
    DispatchObject owner{{L"hwnd"}, [](DISPID, const DISPPARAMS&, VARIANT* result) {
                             *result = Value{0}; // no window
                             return S_OK;
                         }};
    const std::wstring title = L"W\u00e4hlen Sie";
    for (const int answer : {IDOK, IDCANCEL}) {
        MessageBoxCatcher dialog{10000, {answer}};
        const std::wstring picked = text(L"SelectFolder95", {0, &owner, title, BIF_RETURNONLYFSDIRS});
        ASSERT_TRUE(dialog.caught());
        EXPECT_EQ(dialog.text, title);
        EXPECT_EQ(exists(picked), answer == IDOK) << "the desktop is selected";
        EXPECT_EQ(picked.empty(), answer == IDCANCEL);
    }
    expect_error(file.try_call(L"SelectFolder95", {0, static_cast<IDispatch*>(nullptr), title, 0}), 91,
                 L"Object variable or With block variable not set");
    DispatchObject no_window{{}, {}};
    expect_error(file.try_call(L"SelectFolder95", {0, &no_window, title, 0}), 438,
                 L"Object doesn't support this property or method");
}

} // namespace
