#include "files/path_names.h"

#include <gtest/gtest.h>

using namespace files;

TEST(PathNames, EveryPartOfAPath)
{
    const struct {
        std::wstring_view path, folder, file, without_extension, extension, rest;
    } cases[]{
        {L"C:\\a\\b.c.txt", L"C:\\a", L"b.c.txt", L"b.c", L"txt", L"C:\\a\\b.c"},
        {L"C:\\dir.d\\file", L"C:\\dir.d", L"file", L"file", L"d\\file", L"C:\\dir"}, // the last dot anywhere
        {L"C:\\dir\\", L"C:\\dir", L"", L"", L"C:\\dir\\", L"C:\\dir\\"},
        {L"C:\\", L"C:", L"", L"", L"C:\\", L"C:\\"},
        {L"C:file.", L"", L"C:file.", L"C:file", L"", L"C:file"},
        {L"README", L"", L"README", L"README", L"README", L"README"},
        {L"\\file.txt", L"", L"file.txt", L"file", L"txt", L"\\file"},
        {L"\\\\server", L"\\", L"server", L"server", L"\\\\server", L"\\\\server"},
        {L".\\..", L".", L"..", L".", L"", L".\\."},
        {L".profile", L"", L".profile", L"", L"profile", L""},
        {L"dir/file.txt", L"", L"dir/file.txt", L"dir/file", L"txt", L"dir/file"},
        {L" C:\\Öl \\ß .ü ", L" C:\\Öl ", L"ß .ü ", L"ß ", L"ü ", L" C:\\Öl \\ß "},
        {L"", L"", L"", L"", L"", L""},
    };
    for (const auto& [path, folder, file, without_extension, extension, rest] : cases) {
        EXPECT_EQ(GetPath(path), folder) << std::wstring{path}.c_str();
        EXPECT_EQ(GetFile(path), file);
        EXPECT_EQ(GetFile(path, true), without_extension);
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
