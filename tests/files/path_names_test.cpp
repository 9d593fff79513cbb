#include "files/path_names.h"

#include <gtest/gtest.h>

using namespace files;

TEST(PathNames, EveryPartOfAPath)
{
    const struct {
        std::wstring_view path, folder, file, without_extension;
    } cases[]{
        {L"C:\\dir\\file.txt", L"C:\\dir", L"file.txt", L"file"},
        {L"C:\\a\\b.c.txt", L"C:\\a", L"b.c.txt", L"b.c"},
        {L"C:\\dir.d\\file", L"C:\\dir.d", L"file", L"file"},
        {L"C:\\dir\\", L"C:\\dir", L"", L""},
        {L"C:\\", L"C:", L"", L""},
        {L"C:file.txt", L"", L"C:file.txt", L"C:file"},
        {L"file.txt", L"", L"file.txt", L"file"},
        {L"\\file.txt", L"", L"file.txt", L"file"},
        {L"\\", L"", L"", L""},
        {L"\\\\server\\share\\f.x", L"\\\\server\\share", L"f.x", L"f"},
        {L"\\\\server", L"\\", L"server", L"server"},
        {L".\\..", L".", L"..", L"."},
        {L".profile", L"", L".profile", L""},
        {L"dir/file.txt", L"", L"dir/file.txt", L"dir/file"},
        {L" C:\\Öl \\ß .ü ", L" C:\\Öl ", L"ß .ü ", L"ß "},
        {L"\"C:\\a b\\c.txt\"", L"\"C:\\a b", L"c.txt\"", L"c"},
        {L"", L"", L"", L""},
    };
    for (const auto& [path, folder, file, without_extension] : cases) {
        EXPECT_EQ(GetPath(path), folder) << std::wstring{path}.c_str();
        EXPECT_EQ(GetFile(path), file);
        EXPECT_EQ(GetFile(path, true), without_extension);
    }
}

TEST(PathNames, TheLastDotAnywhereStartsTheExtension)
{
    const struct {
        std::wstring_view path, extension, rest;
    } cases[]{
        {L"C:\\a\\b.txt", L"txt", L"C:\\a\\b"}, {L"C:\\x.y\\z", L"y\\z", L"C:\\x"}, {L"README", L"README", L"README"},
        {L"a.b.c", L"c", L"a.b"},              {L"a.", L"", L"a"},                  {L".ü", L"ü", L""},
        {L".", L"", L""},                      {L"", L"", L""},
    };
    for (const auto& [path, extension, rest] : cases) {
        EXPECT_EQ(GetExtension(path), extension);
        EXPECT_EQ(RemoveExtension(path), rest);
    }
}

TEST(PathNames, OneBackslashInFrontIsBelowTheApplication)
{
    for (const wchar_t* path : {L"\\x.txt", L"\\", L"\\.\\\\x"})
        EXPECT_TRUE(is_below_application(path));
    for (const wchar_t* path : {L"", L"x", L"C:\\x", L"\\\\server\\share", L"\\\\", L"/x", L" \\x"})
        EXPECT_FALSE(is_below_application(path));
}
