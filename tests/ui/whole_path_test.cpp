#include "ui/whole_path.h"

#include <gtest/gtest.h>

using ui::whole_path;

namespace {

TEST(WholePath, IsWhatWasTyped)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[]{
        {L"C:\\Data", L"C:\\Data"},
        {L"c:\\", L"c:\\"},
        {L" \t C:\\Data \t", L"C:\\Data"},
        {L"\"C:\\Eigene Dateien\"", L"C:\\Eigene Dateien"},
        {L" \" C:\\Data \" ", L"C:\\Data"},
        {L"C:/Data/x/", L"C:\\Data\\x"},
        {L"C:\\\\Data\\\\\\x\\\\", L"C:\\Data\\x"},
        {L"C:\\.\\Data\\a\\..\\.\\b", L"C:\\Data\\b"},
        {L"C:\\..\\..\\Data\\..", L"C:\\"},
        {L"C:\\Data. .\\x ", L"C:\\Data\\x"},
        {L"C:\\ .x", L"C:\\ .x"},
        {L"C:\\\u00c4\u4e2d 100% & Co", L"C:\\\u00c4\u4e2d 100% & Co"},
        {L"\\\\server\\share", L"\\\\server\\share"},
        {L"\\\\server\\share\\", L"\\\\server\\share"},
        {L"//server/share/a/../b/", L"\\\\server\\share\\b"},
        {L"\\\\server\\share\\..\\..", L"\\\\server\\share"},
    };
    for (const auto& [typed, path] : cases) {
        const auto found = whole_path(typed);
        ASSERT_TRUE(found) << testing::PrintToString(typed);
        EXPECT_EQ(found->text, path);
    }
}

TEST(WholePath, IsNothingElse)
{
    for (const std::wstring_view typed :
         {L"", L"  ", L"\"", L"\"\"", L"C", L"C:", L"C:Data", L"Data", L"..\\x", L"\\Data", L"1:\\x", L"\u00e4:\\x", L"CD:\\x",
          L"C:\\a*b", L"C:\\a?", L"C:\\<a", L"C:\\a>", L"C:\\a|b", L"C:\\a\"b", L"C:\\a:b", L"C:\\a\tb", L"C:\\...", L"\"C:\\x",
          L"C:\\a\\ . \\b", L"\\\\", L"\\\\server", L"\\\\server\\", L"\\\\.\\C:\\", L"\\\\?\\C:\\x", L"\\\\..\\share",
          L"\\\\ser:ver\\share"})
        EXPECT_FALSE(whole_path(typed)) << testing::PrintToString(std::wstring{typed});
    EXPECT_FALSE(whole_path(std::wstring_view{L"C:\\a\0b", 6}));
}

TEST(WholePath, KnowsItsRootAndItsParents)
{
    struct Case {
        const wchar_t *typed, *root, *parent;
    };
    for (const auto& [typed, root, parent] : {Case{L"C:\\a\\b", L"C:\\", L"C:\\a"}, Case{L"C:\\a", L"C:\\", L"C:\\"},
                                              Case{L"\\\\s\\h\\a\\b", L"\\\\s\\h\\", L"\\\\s\\h\\a"},
                                              Case{L"\\\\s\\h\\a", L"\\\\s\\h\\", L"\\\\s\\h"}}) {
        const auto path = whole_path(typed);
        EXPECT_EQ(path->root(), root);
        EXPECT_EQ(path->parent().text, parent);
        EXPECT_FALSE(path->is_root());
    }
    for (const wchar_t* const root : {L"C:\\", L"\\\\s\\h"}) {
        EXPECT_TRUE(whole_path(root)->is_root());
        EXPECT_EQ(whole_path(root)->root().back(), L'\\');
    }
}

TEST(WholePath, HasAPrefixForThePlatformWhenItIsLong)
{
    const std::wstring name(244, L'a');
    EXPECT_EQ(ui::for_platform(*whole_path(L"C:\\" + name)), L"C:\\" + name);
    EXPECT_EQ(ui::for_platform(*whole_path(L"C:\\" + name + L"a")), L"\\\\?\\C:\\" + name + L"a");
    EXPECT_EQ(ui::for_platform(*whole_path(L"\\\\s\\h\\" + name)), L"\\\\?\\UNC\\s\\h\\" + name);
}

} // namespace
