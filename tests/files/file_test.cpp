#include "automation/code_page.h"
#include "files/file.h"
#include "files/text_file.h"

#include "support/client.h"
#include "support/error_of.h"

#include <sddl.h>

#include <algorithm>
#include <random>

using client::Folder;
using automation::append_encoded;
using automation::decode;
using files::read_whole;
using files::write_whole;

namespace {

int read_error(const std::wstring& path)
{
    return error_of([&] { read_whole(path); });
}

int write_error(const std::wstring& path)
{
    return error_of([&] { write_whole(path, "new"); });
}

files::Handle opened(const std::wstring& path, DWORD sharing)
{
    return files::Handle{CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr)};
}

/// Who may do what with it.
std::wstring rights_of(const std::wstring& path)
{
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> descriptor(size);
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size);
    wchar_t* text = nullptr;
    ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor.data(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr);
    const std::wstring rights = text ? text : L"";
    LocalFree(text);
    return rights;
}

std::string encoded(std::wstring_view text)
{
    std::string bytes = "before ";
    append_encoded(bytes, text);
    return bytes.substr(7);
}

} // namespace

TEST(File, IsWrittenAndReadAsAWhole)
{
    const Folder folder;
    const std::wstring path = folder.file(L"Gr\u00f6\u00dfe \u20ac.ini");
    for (const std::string& content : {std::string{"first"}, std::string{}, std::string(200'000, 'x'), std::string("\0\r\n\x1A\xFF", 5)}) {
        write_whole(path, content);
        EXPECT_EQ(read_whole(path), content);
    }
    EXPECT_EQ(folder.size(), 1) << "nothing else is left behind";
}

TEST(File, ErrorsOfNamesAndFolders)
{
    const Folder folder;
    EXPECT_EQ(read_error(folder.file(L"missing")), 53);
    for (const auto& [name, number] : std::vector<std::pair<std::wstring_view, int>>{
             {L"missing\\file", 76}, {L"*.ini", 52}, {L"?.ini", 52}, {L"a<b", 52}, {{L"a\0b", 3}, 52}, {L".", 75}}) {
        EXPECT_EQ(read_error(folder.file(name)), number);
        EXPECT_EQ(write_error(folder.file(name)), number);
    }
    EXPECT_EQ(folder.size(), 0);
}

TEST(File, WhatMustNotBeTouchedStaysAsItIs)
{
    const Folder folder;
    const std::wstring path = folder.write(L"file", "old");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(write_error(path), 75);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    {
        const auto locked = opened(path, 0);
        EXPECT_EQ(read_error(path), 70);
        EXPECT_EQ(write_error(path), 70);
    }
    {
        const auto read_elsewhere = opened(path, FILE_SHARE_READ);
        EXPECT_EQ(read_error(path), 0);
        EXPECT_EQ(write_error(path), 70);
    }
    EXPECT_EQ(read_whole(path), "old");
    EXPECT_EQ(folder.size(), 1);
}

TEST(File, KeepsItsAttributes)
{
    const Folder folder;
    const std::wstring path = folder.write(L"file", "old");
    for (const DWORD attributes : {DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE}, DWORD{FILE_ATTRIBUTE_ARCHIVE}}) {
        SetFileAttributesW(path.c_str(), attributes);
        const DWORD before = GetFileAttributesW(path.c_str());
        write_whole(path, "new");
        EXPECT_EQ(GetFileAttributesW(path.c_str()), before);
    }
}

TEST(File, OpensItsNewContentToNobodyElse)
{
    const Folder folder;
    const std::wstring path = folder.write(L"file", "old");
    std::wstring rights = rights_of(path);
    const std::size_t everyone = rights.find(L";;;WD)"), entry = rights.rfind(L'(', everyone);
    ASSERT_NE(everyone, rights.npos) << rights << ": as the folder gives it";
    rights.erase(entry, rights.find(L')', entry) + 1 - entry).insert(2, L"P");
    PSECURITY_DESCRIPTOR restricted = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &restricted, nullptr);
    ASSERT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, restricted)) << rights;
    LocalFree(restricted);

    files::Output output{path};
    int seen = 0;
    for (const auto& found : std::filesystem::directory_iterator{folder.path()}) {
        EXPECT_EQ(rights_of(found.path()).find(L";;;WD)"), rights.npos) << found.path() << rights_of(found.path());
        ++seen;
    }
    EXPECT_EQ(seen, 2);
    output.commit();
    EXPECT_EQ(rights_of(path).find(L";;;WD)"), rights.npos);
}

TEST(File, IsWrittenInPlaceWhereItCannotBeReplaced)
{
    const Folder folder;
    const std::wstring path = folder.write(L"file", "a longer old content");
    const auto kept_open = opened(path, FILE_SHARE_READ | FILE_SHARE_WRITE);
    write_whole(path, "short");
    char seen[8] = {};
    DWORD got = 0;
    ReadFile(kept_open.get(), seen, sizeof seen, &got, nullptr);
    EXPECT_EQ(std::string(seen, got), "short");
    EXPECT_EQ(folder.size(), 1);
}

TEST(File, OutputThatIsNotCommittedLeavesNoTrace)
{
    const Folder folder;
    const std::wstring path = folder.write(L"file", "old");
    {
        files::Output given_up{path};
        given_up.write("new");
        files::Output never_there{folder.file(L"other")};
        never_there.write("new");
        EXPECT_EQ(folder.size(), 3) << "the new contents lie beside";
    }
    EXPECT_EQ(read_whole(path), "old");
    EXPECT_EQ(folder.size(), 1);
}

TEST(File, Devices)
{
    write_whole(L"NUL", "gone");
    EXPECT_EQ(read_whole(L"NUL"), "");
    if (!opened(L"Z:\\dev\\full", FILE_SHARE_READ | FILE_SHARE_WRITE))
        GTEST_SKIP() << "no device that is always full";
    EXPECT_EQ(write_error(L"Z:\\dev\\full"), 61);
}

TEST(File, ErrorNumbers)
{
    for (const auto& [code, number] : std::vector<std::pair<DWORD, int>>{
             {ERROR_DISK_FULL, 61}, {ERROR_HANDLE_DISK_FULL, 61}, {ERROR_NOT_ENOUGH_MEMORY, 7}, {ERROR_WRITE_PROTECT, 70},
             {ERROR_CRC, 57}, {ERROR_BAD_NETPATH, 76}, {0xFFFFFFFF, 75}})
        EXPECT_EQ(error_of([&] { files::raise_file_error(code); }), number) << code;
}

TEST(CodePage, CharactersOutsideOfItBecomeItsDefaultCharacter)
{
    if (GetACP() != 1252)
        GTEST_SKIP() << "for code page 1252";
    EXPECT_EQ(encoded(L"Gr\u00f6\u00dfe 5 \u20ac"), "Gr\xF6\xDF" "e 5 \x80");
    EXPECT_EQ(encoded(L"\u0100\u03b1\u2032=\u0141"), "??\?=?") << "never a similar character";
    EXPECT_EQ(encoded(L"\xD83D\xDE00!"), "?\?!");
    EXPECT_EQ(decode("Gr\xF6\xDF" "e 5 \x80"), L"Gr\u00f6\u00dfe 5 \u20ac");
    EXPECT_EQ(encoded({L"a\0\u00e4", 3}), std::string("a\0\xE4", 3));
}

TEST(CodePage, LongTextsAreWhatThePlatformMakesOfThem)
{
    std::mt19937 random{1};
    for (const unsigned often : {2u, 20u, 2000u}) {
        std::string bytes;
        for (std::size_t size = 1 + random() % 4000; size > 0; --size)
            bytes += static_cast<char>(random() % often == 0 ? 0x80 + random() % 0x80 : ' ' + random() % 0x5F);
        std::wstring expected(bytes.size(), L'\0');
        const int size = static_cast<int>(bytes.size());
        expected.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, expected.data(), size)));
        EXPECT_EQ(decode(bytes), expected);
        std::string back(bytes.size() * 4, '\0');
        back.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, expected.data(), static_cast<int>(expected.size()),
                                                                 back.data(), static_cast<int>(back.size()), nullptr, nullptr)));
        EXPECT_EQ(encoded(expected), back);
    }
}

TEST(CodePage, ACutTextLosesNoMoreThanItsLastCharacter)
{
    for (const std::wstring text : {L"a\u8868\u30BD\uFF71b\u65E5\u672C\u8A9E\u30DC", L"\u65E5\u672C", L"Gr\u00F6\u00DFe", L""}) {
        std::string bytes;
        std::vector<std::size_t> ends{0}; // of its characters
        for (const wchar_t letter : text) {
            bytes += encoded({&letter, 1});
            ends.push_back(bytes.size());
        }
        for (std::size_t size = 0; size <= bytes.size(); ++size)
            EXPECT_EQ(automation::without_cut_character(std::string_view{bytes}.substr(0, size)).size(),
                      *(std::ranges::upper_bound(ends, size) - 1)) << size;
    }
}

TEST(TextFile, ComesInPieces)
{
    const Folder folder;
    std::string content;
    for (int line = 0; line < 20'000; ++line)
        content += "L\xE4nge " + std::to_string(line) + "\r\n";
    const std::wstring path = folder.write(L"file", content);
    files::TextInput input{path};
    std::wstring text;
    std::size_t pieces = 0;
    for (std::wstring_view piece = input.next(); !piece.empty(); piece = input.next(), ++pieces)
        text += piece;
    EXPECT_EQ(text, decode(content));
    EXPECT_GT(pieces, 1u);
    EXPECT_TRUE(input.next().empty());

    files::TextOutput output{path};
    output.write(L"\u00e4");
    output.write(L"\u0100\r\n");
    output.commit();
    EXPECT_EQ(read_whole(path), GetACP() == 1252 ? "\xE4?\r\n" : encoded(L"\u00e4\u0100\r\n"));
}
