#include "support/client.h"

#include <qvObjects.h>

#include <algorithm>

using client::expect_error;
using client::Object;
using client::Outcome;
using client::Value;

namespace {

const std::wstring wrong_call = L"Invalid procedure call or argument";

std::wstring repeated(std::wstring_view part, std::size_t length)
{
    std::wstring text;
    while (text.size() < length)
        text += part;
    text.resize(length);
    return text;
}

/// A path on drive C of this many characters.
std::wstring path_of(std::wstring_view part, std::size_t length)
{
    return L"C:\\" + repeated(part, length - 3);
}

/// A member of the shell family: its arguments are texts (t), a path that must fit into the buffer (p) and numbers (n).
struct Member {
    const wchar_t* name;
    std::string_view arguments;
    bool supported = true;
};

constexpr Member members[]{
    {L"qvPathAddBackslash", "p"}, {L"qvPathAddExtension", "pt"}, {L"qvPathAppend", "pt"}, {L"qvPathBuildRoot", "n"},
    {L"qvPathCanonicalize", "p"}, {L"qvPathCombine", "tt"}, {L"qvPathCompactPath", "npn"}, {L"qvPathCompactPathEx", "tnn"},
    {L"qvPathCommonPrefix", "tt"}, {L"qvPathFileExists", "t"}, {L"qvPathFindExtension", "t"}, {L"qvPathFindFileName", "t"},
    {L"qvPathFindNextComponent", "t"}, {L"qvPathGetArgs", "t"}, {L"qvPathGetCharType", "t", false},
    {L"qvPathGetDriveNumber", "t"}, {L"qvPathIsContentType", "tt", false}, {L"qvPathIsDirectory", "t"},
    {L"qvPathIsFileSpec", "t"}, {L"qvPathIsPrefix", "tt"}, {L"qvPathIsRelative", "t"}, {L"qvPathIsRoot", "t"},
    {L"qvPathIsSameRoot", "tt"}, {L"qvPathIsSystemFolder", "tn", false}, {L"qvPathIsSystemFolderRecurive", "tn", false},
    {L"qvPathIsUNC", "t"}, {L"qvPathIsUNCServer", "t", false}, {L"qvPathIsUNCServerShare", "t", false}, {L"qvPathIsURL", "t"},
    {L"qvPathMakePretty", "t"}, {L"qvPathMakeSystemFolder", "t", false}, {L"qvPathMatchSpec", "tt"},
    {L"qvPathParseIconLocation", "t"}, {L"qvPathQuoteSpaces", "p"}, {L"qvPathRelativePathTo", "ttnn"},
    {L"qvPathRemoveArgs", "p"}, {L"qvPathRemoveBackslash", "p"}, {L"qvPathRemoveBlanks", "p"}, {L"qvPathRemoveExtension", "p"},
    {L"qvPathRemoveFileSpec", "p"}, {L"qvPathRenameExtension", "pt"}, {L"qvPathSearchAndQualify", "tt"},
    {L"qvPathSetDlgItemPath", "nnt"}, {L"qvPathSkipRoot", "p"}, {L"qvPathStripPath", "p"}, {L"qvPathStripToRoot", "p"},
    {L"qvPathUnmakeSystemFolder", "t", false}, {L"qvPathUnquoteSpaces", "p"},
};

class Paths : public testing::Test {
protected:
    using Arguments = std::initializer_list<Value>;

    std::wstring text(const wchar_t* member, Arguments arguments) const { return file.call(member, arguments).text(); }
    bool flag(const wchar_t* member, Arguments arguments) const { return file.call(member, arguments).flag(); }
    long number(const wchar_t* member, Arguments arguments) const { return file.call(member, arguments).number(); }

    Outcome call(const Member& member, std::vector<Value>& variables) const
    {
        const auto at = [&](std::size_t i) { return Value::variable(variables[i]); };
        switch (variables.size()) {
        case 1:
            return file.try_call(member.name, {at(0)});
        case 2:
            return file.try_call(member.name, {at(0), at(1)});
        case 3:
            return file.try_call(member.name, {at(0), at(1), at(2)});
        default:
            return file.try_call(member.name, {at(0), at(1), at(2), at(3)});
        }
    }

    /// Gives the member the text in each argument in turn, at last in all of them.
    void take_everywhere(const Member& member, const std::wstring& given) const
    {
        for (std::size_t place = 0; place <= member.arguments.size(); ++place) {
            std::vector<Value> arguments;
            bool too_long = false;
            for (std::size_t i = 0; i < member.arguments.size(); ++i) {
                const char kind = member.arguments[i];
                const bool chosen = place == i || place == member.arguments.size();
                if (kind == 'n')
                    arguments.emplace_back(0);
                else
                    arguments.emplace_back(chosen ? given : L"C:\\dir\\file.txt");
                too_long = too_long || (kind == 'p' && chosen && given.size() > 260);
            }
            const std::vector<Value> before = arguments;
            const Outcome outcome = call(member, arguments);
            if (member.supported && !too_long) {
                EXPECT_EQ(outcome.result, S_OK);
                continue;
            }
            expect_error(outcome, member.supported ? 5 : 10001, member.supported ? wrong_call : L"Function not supported");
            for (std::size_t i = 0; i < arguments.size(); ++i) {
                EXPECT_TRUE(arguments[i].vt != VT_BSTR || arguments[i].text() == before[i].text()) << "an error changes nothing";
            }
        }
    }

    client::Apartment apartment;
    Object file = Object::create(L"qvObjects.qvFile");
};

void expect_sound_heaps()
{
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    ASSERT_GT(count, 0u);
    for (DWORD i = 0; i < std::min<DWORD>(count, 64); ++i)
        EXPECT_TRUE(HeapValidate(heaps[i], 0, nullptr)) << i;
}

} // namespace

TEST_F(Paths, TextsThatThePlatformMakes)
{
    EXPECT_EQ(text(L"qvPathAddBackslash", {L"C:\\dir"}), L"C:\\dir\\");
    EXPECT_EQ(text(L"qvPathAddBackslash", {L"C:\\dir\\"}), L"C:\\dir\\");
    EXPECT_EQ(text(L"qvPathAddExtension", {L"C:\\Öl", L".txt"}), L"C:\\Öl.txt");
    EXPECT_EQ(text(L"qvPathAddExtension", {L"C:\\a.doc", L"txt"}), L"C:\\a.doc");
    EXPECT_EQ(text(L"qvPathAppend", {L"C:\\a", L"..\\b"}), L"C:\\b");
    EXPECT_EQ(text(L"qvPathBuildRoot", {2}), L"C:\\");
    EXPECT_EQ(text(L"qvPathCanonicalize", {L"C:\\a\\..\\b\\.\\c"}), L"C:\\b\\c");
    EXPECT_EQ(text(L"qvPathCombine", {L"C:\\a", L"..\\b"}), L"C:\\b");
    EXPECT_EQ(text(L"qvPathCombine", {L"C:\\a", L"D:\\b"}), L"D:\\b");
    EXPECT_EQ(text(L"qvPathCompactPathEx", {L"C:\\some\\long\\path\\to\\file.txt", 20}), L"C:\\some...\\file.txt");
    EXPECT_EQ(text(L"qvPathCompactPathEx", {L"C:/some/long/path/to/file.txt", 20, 47}), L"C:/some.../file.txt");
    EXPECT_EQ(text(L"qvPathCommonPrefix", {L"C:\\a\\b", L"c:\\A\\c"}), L"C:\\a");
    EXPECT_EQ(text(L"qvPathCommonPrefix", {L"C:\\a", L"C:\\b"}), L"C:\\");
    EXPECT_EQ(text(L"qvPathFindExtension", {L"C:\\a.b\\c.txt"}), L".txt");
    EXPECT_EQ(text(L"qvPathFindExtension", {L"C:\\a.b\\c"}), L"");
    EXPECT_EQ(text(L"qvPathFindFileName", {L"C:\\dir\\file.txt"}), L"dir\\file.txt");
    EXPECT_EQ(text(L"qvPathFindNextComponent", {L"C:\\dir\\file.txt"}), L"dir\\file.txt");
    EXPECT_EQ(text(L"qvPathFindNextComponent", {L""}), L"") << "the platform points nowhere";
    EXPECT_EQ(text(L"qvPathGetArgs", {L"\"a b.exe\" c d"}), L"c d");
    EXPECT_EQ(text(L"qvPathMakePretty", {L"C:\\WINDOWS"}), L"C:\\windows");
    EXPECT_EQ(text(L"qvPathQuoteSpaces", {L"a b"}), L"\"a b\"");
    EXPECT_EQ(text(L"qvPathRelativePathTo", {L"C:\\a\\b", L"C:\\a\\c"}), L".\\c") << "a file and a folder if left out";
    EXPECT_EQ(text(L"qvPathRelativePathTo", {L"C:\\a\\b", L"C:\\a\\c\\d", 16, 0}), L"..\\c\\d");
    EXPECT_EQ(text(L"qvPathRelativePathTo", {L"C:\\a", L"D:\\a"}), L"");
    EXPECT_EQ(text(L"qvPathRemoveArgs", {L"a.exe b"}), L"a.exe");
    EXPECT_EQ(text(L"qvPathRemoveBackslash", {L"C:\\a\\"}), L"C:\\a");
    EXPECT_EQ(text(L"qvPathRemoveBackslash", {L"C:\\"}), L"C:\\");
    EXPECT_EQ(text(L"qvPathRemoveBlanks", {L"  a b "}), L"a b");
    EXPECT_EQ(text(L"qvPathRemoveExtension", {L"a.b\\c.d"}), L"a.b\\c");
    EXPECT_EQ(text(L"qvPathRemoveFileSpec", {L"C:\\a\\b"}), L"C:\\a");
    EXPECT_EQ(text(L"qvPathRenameExtension", {L"a.b", L".c"}), L"a.c");
    EXPECT_EQ(text(L"qvPathSkipRoot", {L"\\\\server\\share\\f"}), L"f");
    EXPECT_EQ(text(L"qvPathSkipRoot", {L"a\\b"}), L"");
    EXPECT_EQ(text(L"qvPathStripPath", {L"C:\\a\\b"}), L"b");
    EXPECT_EQ(text(L"qvPathUnquoteSpaces", {L"\"a b\""}), L"a b");

    const std::wstring with_nul{L"C:\\a\0.b", 8};
    EXPECT_EQ(text(L"qvPathAddBackslash", {with_nul}), L"C:\\a\\") << "a NUL ends a path";
}

TEST_F(Paths, TestsThatThePlatformMakes)
{
    const client::Folder folder;
    const std::wstring there = folder.write(L"Übung.txt", "");
    const struct {
        const wchar_t* member;
        Value path;
        bool expected;
    } of_one[]{
        {L"qvPathFileExists", there, true},           {L"qvPathFileExists", there + L"x", false},
        {L"qvPathIsDirectory", folder.file(L""), true}, {L"qvPathIsDirectory", there, false},
        {L"qvPathIsFileSpec", L"a.b", true},          {L"qvPathIsFileSpec", L"C:a.b", false},
        {L"qvPathIsRelative", L"a\\b", true},         {L"qvPathIsRelative", L"C:\\a", false},
        {L"qvPathIsRoot", L"C:\\", true},             {L"qvPathIsRoot", L"C:\\a", false},
        {L"qvPathIsUNC", L"\\\\server\\share", true}, {L"qvPathIsUNC", L"\\a", false},
        {L"qvPathIsURL", L"http://a.b/c", true},      {L"qvPathIsURL", L"C:\\a", false},
    };
    for (const auto& [member, path, expected] : of_one)
        EXPECT_EQ(flag(member, {path}), expected) << member << ' ' << path.text();

    EXPECT_TRUE(flag(L"qvPathIsPrefix", {L"C:\\dir", L"c:\\DIR\\x"}));
    EXPECT_FALSE(flag(L"qvPathIsPrefix", {L"C:\\dir", L"C:\\directory"}));
    EXPECT_TRUE(flag(L"qvPathIsSameRoot", {L"C:\\a", L"c:\\b"}));
    EXPECT_FALSE(flag(L"qvPathIsSameRoot", {L"C:\\a", L"D:\\a"}));
    EXPECT_TRUE(flag(L"qvPathMatchSpec", {L"b.TXT", L"*.doc;*.txt"}));
    EXPECT_FALSE(flag(L"qvPathMatchSpec", {L"b.txt", L"*.doc"}));
    EXPECT_TRUE(flag(L"qvPathMatchSpec", {L"b.txt", repeated(L"*.doc;", 600) + L"*.txt"})) << "a long list of short patterns";
    EXPECT_EQ(number(L"qvPathGetDriveNumber", {L"b:\\x"}), 1);
    EXPECT_EQ(number(L"qvPathGetDriveNumber", {L"\\\\server\\share"}), -1);
}

TEST_F(Paths, WhatChangesInTheCallersVariables)
{
    Value extension{L"txt"};
    EXPECT_EQ(text(L"qvPathAddExtension", {L"a", Value::variable(extension)}), L"a.txt");
    EXPECT_EQ(extension.text(), L".txt");
    BSTR typed = SysAllocString(L"c");
    EXPECT_EQ(text(L"qvPathAddExtension", {L"a", Value::reference(VT_BSTR, &typed)}), L"a.c");
    EXPECT_STREQ(typed, L".c");
    Value empty{L""};
    EXPECT_EQ(text(L"qvPathAddExtension", {L"a", Value::variable(empty)}), L"a");
    EXPECT_EQ(empty.text(), L"");
    Value both{L"x"};
    EXPECT_EQ(text(L"qvPathAddExtension", {Value::variable(both), Value::variable(both)}), L"x.x");

    Value path{L"C:\\a\\b"};
    EXPECT_TRUE(flag(L"qvPathStripToRoot", {Value::variable(path)}));
    EXPECT_EQ(path.text(), L"C:\\");

    Value icon{L"\"C:\\a b.dll\",-7"};
    const BSTR place = icon.bstrVal;
    EXPECT_EQ(number(L"qvPathParseIconLocation", {Value::variable(icon)}), -7);
    EXPECT_EQ(icon.bstrVal, place) << "cut in the text itself";
    EXPECT_EQ(icon.text().size(), 15u);
    EXPECT_STREQ(icon.bstrVal, L"C:\\a b.dll");
    EXPECT_EQ(SysReAllocString(&typed, L"C:\\a.dll,2"), TRUE);
    EXPECT_EQ(number(L"qvPathParseIconLocation", {Value::reference(VT_BSTR, &typed)}), 2);
    EXPECT_EQ((std::wstring{typed, SysStringLen(typed)}), (std::wstring{L"C:\\a.dll\0" L"2", 10}));
    SysFreeString(typed);
}

TEST_F(Paths, AQualifiedPathIsWrittenWhereItFits)
{
    for (std::size_t length = 0; length < 20; ++length) {
        Value room{std::wstring(length, L'.')};
        const bool fits = flag(L"qvPathSearchAndQualify", {L"C:\\x\\..\\ab.c", Value::variable(room)});
        EXPECT_EQ(fits, length > 7) << length;
        std::wstring expected(length, L'.');
        if (fits)
            expected.replace(0, 8, std::wstring{L"C:\\ab.c\0", 8});
        EXPECT_EQ(room.text(), expected);
    }
    Value itself{repeated(L".", 300)};
    EXPECT_TRUE(flag(L"qvPathSearchAndQualify", {Value::variable(itself), Value::variable(itself)})) << "the current folder";
    EXPECT_EQ(itself.text().size(), 300u);
}

TEST_F(Paths, OddNumbers)
{
    for (const long drive : {-1L, 26L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(text(L"qvPathBuildRoot", {drive}), L"") << drive;

    const wchar_t* const path = L"C:\\some\\long\\path\\to\\file.txt";
    for (const long most : {0L, 1L})
        EXPECT_EQ(text(L"qvPathCompactPathEx", {path, most}), L"") << most;
    for (long most = 2; most < 30; ++most)
        EXPECT_LT(text(L"qvPathCompactPathEx", {path, most}).size(), static_cast<std::size_t>(most));
    for (const long most : {260L, 100000L, LONG_MAX, LONG_MIN, -1L}) {
        EXPECT_EQ(text(L"qvPathCompactPathEx", {path, most}), path) << most;
        const std::wstring compact = text(L"qvPathCompactPathEx", {path_of(L"dir\\", 2000) + L"\\file.txt", most});
        EXPECT_EQ(compact.size(), 259u) << "the buffer ends here";
        EXPECT_TRUE(compact.ends_with(L"...\\file.txt"));
    }

    const HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
    const HBRUSH brush = CreateSolidBrush(0);
    for (const long context : {HandleToLong(screen), HandleToLong(memory), 0L}) {
        EXPECT_EQ(text(L"qvPathCompactPath", {context, path, 10000}), path);
        const std::wstring compact = text(L"qvPathCompactPath", {context, path, 100});
        EXPECT_LT(compact.size(), std::wcslen(path));
        EXPECT_TRUE(compact.ends_with(L"...\\file.txt")) << compact;
        for (const long width : {-1L, LONG_MAX, LONG_MIN})
            EXPECT_EQ(text(L"qvPathCompactPath", {context, path, width}), path) << width;
    }
    for (const long context : {HandleToLong(brush), 1L, -1L, 0x12345678L})
        EXPECT_EQ(text(L"qvPathCompactPath", {context, path, 10}), path) << "no device context: unchanged";
    DeleteObject(brush);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
}

TEST_F(Paths, APathIsShownInADialogsControl)
{
    const auto window = [](const wchar_t* caption, DWORD style, HWND parent, long id) {
        return CreateWindowW(L"STATIC", caption, style, 0, 0, 100, 20, parent, reinterpret_cast<HMENU>(id), nullptr, nullptr);
    };
    const HWND dialog = window(L"", WS_OVERLAPPEDWINDOW, nullptr, 0), control = window(L"before", WS_CHILD, dialog, 7);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    const auto shown = [&] {
        wchar_t caption[300]{};
        GetWindowTextW(control, caption, 300);
        return std::wstring{caption};
    };
    const long handle = HandleToLong(dialog);
    EXPECT_FALSE(flag(L"qvPathSetDlgItemPath", {handle, 8, L"C:\\a"}));
    EXPECT_FALSE(flag(L"qvPathSetDlgItemPath", {12345, 7, L"C:\\a"}));
    EXPECT_FALSE(flag(L"qvPathSetDlgItemPath", {handle, 7, path_of(L"dir\\", 260)})) << "it would be cut";
    EXPECT_EQ(shown(), L"before");
    EXPECT_TRUE(flag(L"qvPathSetDlgItemPath", {handle, 7, L"C:\\a"}));
    EXPECT_EQ(shown(), L"C:\\a");
    EXPECT_TRUE(flag(L"qvPathSetDlgItemPath", {handle, 7, path_of(L"dir\\", 250) + L"\\f.txt"}));
    EXPECT_TRUE(shown().ends_with(L"...\\f.txt")) << shown();
    DestroyWindow(dialog);
}

TEST_F(Paths, EveryMemberTakesTextsOfAnyLength)
{
    const std::wstring_view parts[]{L"C:\\dir\\", L"a\\", L"a ", L"\\\\s\\", L"..\\", L"\"", L"*", L",",
                                    L".x", L"\\", L"C:", L"ü"};
    for (const std::wstring_view part : parts)
        for (const std::size_t length : {1u, 2u, 258u, 259u, 260u, 261u, 32767u, 40000u})
            for (const Member& member : members) {
                SCOPED_TRACE(testing::Message() << member.name << ", " << length << " characters of " << std::wstring{part});
                take_everywhere(member, repeated(part, length));
                if (HasFailure())
                    return;
            }
    expect_sound_heaps();
}

TEST_F(Paths, ResultsBeyondThePlatformsPathsAreNone)
{
    const std::wstring deep = path_of(L"a\\", 259), full = path_of(L"dirs\\", 259), all = path_of(L"dirs\\", 260);
    for (const wchar_t* path : {L"C:\\b", L"C:\\"})
        EXPECT_EQ(text(L"qvPathRelativePathTo", {deep, path, 16, 0}), L"") << "so many steps up do not fit";
    EXPECT_EQ(text(L"qvPathRelativePathTo", {deep.substr(0, 163), L"C:\\b", 16, 0}), repeated(L"..\\", 240) + L"b");
    EXPECT_EQ(text(L"qvPathRelativePathTo", {L"C:\\b", all}), L"");
    EXPECT_EQ(text(L"qvPathCommonPrefix", {full + L"\\z", full + L"\\y"}), full);
    EXPECT_EQ(text(L"qvPathCommonPrefix", {all + L"\\z", all + L"\\y"}), L"");
    EXPECT_EQ(text(L"qvPathCommonPrefix", {L"C:\\a\\" + all, L"C:\\a\\b"}), L"C:\\a");
    EXPECT_EQ(text(L"qvPathCombine", {full.substr(0, 257), L"f"}), full.substr(0, 257) + L"\\f");
    EXPECT_EQ(text(L"qvPathCombine", {L"C:\\", full.substr(3)}), full);
    for (const std::wstring& path : {full, all, all + L"z"})
        EXPECT_EQ(text(L"qvPathCombine", {path, L"f"}), L"");
    for (const std::wstring& path : {all, all + L"z"})
        EXPECT_EQ(text(L"qvPathCombine", {L"C:\\", path}) + text(L"qvPathCombine", {L"C:\\", path.substr(3)}), L"") << "not cut";
    for (const std::wstring& path : {full, all}) {
        EXPECT_EQ(text(L"qvPathAddBackslash", {path}), path);
        EXPECT_EQ(text(L"qvPathAddExtension", {path, L"ext"}), path);
        EXPECT_EQ(text(L"qvPathAppend", {path, L"f"}), L"");
        EXPECT_EQ(text(L"qvPathAppend", {L"C:\\", all}), L"");
        EXPECT_EQ(text(L"qvPathRemoveFileSpec", {path}), path.substr(0, path.rfind(L'\\')));
    }
    EXPECT_EQ(text(L"qvPathSkipRoot", {all}), all.substr(3));
    EXPECT_EQ(text(L"qvPathMakePretty", {repeated(L"A", 70000)}), L"A" + repeated(L"a", 69999));
}

TEST_F(Paths, PointersToNothingAreWrongCalls)
{
    _qvFile* early = nullptr;
    ASSERT_EQ(file.dispatch()->QueryInterface(__uuidof(_qvFile), reinterpret_cast<void**>(&early)), S_OK);
    constexpr HRESULT wrong = static_cast<HRESULT>(0x800A0005), unsupported = static_cast<HRESULT>(0x800A2711);
    BSTR empty = nullptr, result = nullptr;
    VARIANT_BOOL flag = VARIANT_TRUE;
    long number = 0;
    qvGetCharType type{};
    for (const auto member : {&_qvFile::GetPath, &_qvFile::RemoveExtension, &_qvFile::qvPathStripPath, &_qvFile::qvPathGetArgs})
        EXPECT_EQ((early->*member)(nullptr, &result), wrong);
    EXPECT_EQ(early->GetPathV(nullptr, &result), wrong);
    EXPECT_EQ(early->qvPathFileExists(nullptr, &flag), wrong);
    EXPECT_EQ(early->qvPathParseIconLocation(nullptr, &number), wrong);
    EXPECT_EQ(early->qvPathSearchAndQualify(&empty, nullptr, &flag), wrong);
    EXPECT_EQ(early->qvPathGetCharType(nullptr, &type), unsupported);
    EXPECT_EQ(early->qvPathAddBackslash(&empty, nullptr), E_POINTER);

    // Without a text there is an empty one; what a member does not need may be missing.
    EXPECT_EQ(early->qvPathParseIconLocation(&empty, &number), S_OK);
    EXPECT_EQ(early->qvPathSearchAndQualify(&empty, &empty, &flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(early->qvPathIsDirectory(&empty, &flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    for (const auto member : {&_qvFile::GetPath, &_qvFile::GetExtension, &_qvFile::qvPathAddBackslash, &_qvFile::qvPathGetArgs}) {
        EXPECT_EQ((early->*member)(&empty, &result), S_OK);
        EXPECT_EQ(SysStringLen(result), 0u);
        SysFreeString(result);
    }
    EXPECT_EQ(early->GetExtension(nullptr, &result), S_OK) << "it never raises";
    SysFreeString(result);
    BSTR path = SysAllocString(L"C:\\a\\b.c");
    EXPECT_EQ(early->GetFile(&path, nullptr, &result), S_OK);
    EXPECT_STREQ(result, L"b.c");
    SysFreeString(result);
    EXPECT_EQ(early->qvPathStripToRoot(&path, &flag), S_OK);
    EXPECT_STREQ(path, L"C:\\");
    SysFreeString(path);
    early->Release();
}

TEST_F(Paths, NamesFromTextsAndVariants)
{
    EXPECT_EQ(text(L"GetRelPath", {L"C:\\App\\data\\x.txt", L"c:\\aPP"}), L"\\data\\x.txt");
    EXPECT_EQ(text(L"GetRelPath", {L"D: C:\\App  x", L"C:\\App"}), L"D:x");
    EXPECT_EQ(text(L"GetRelPath", {L"  x", L""}), L"x");
    EXPECT_EQ(text(L"GetFileV", {17}), L"17");
    for (const wchar_t* member : {L"GetPathV", L"GetFileV"}) {
        expect_error(file.try_call(member, {Value::null()}), 94, L"Invalid use of Null");
        expect_error(file.try_call(member, {Value::of_type(VT_ERROR)}), 13, L"Type mismatch");
    }
    for (const wchar_t* member : {L"qvDirV", L"GetRelPathV"}) {
        expect_error(file.try_call(member, {Value::null(), L"a"}), 94, L"Invalid use of Null");
        expect_error(file.try_call(member, {L"a", Value::null()}), 94, L"Invalid use of Null");
    }
}

TEST_F(Paths, FilesAreFoundWhereTheyAre)
{
    const client::Folder folder, elsewhere;
    const std::wstring app = folder.file(L"").substr(0, folder.file(L"").size() - 1);
    const std::wstring there = folder.write(L"x ü.txt", "");
    const std::wstring below = folder.file(L"sub"), server = folder.file(L"server");
    CreateDirectoryW(below.c_str(), nullptr);
    CreateDirectoryW(server.c_str(), nullptr);
    const auto found = [&](const Value& path) { return text(L"qvDir", {path, app}); };

    EXPECT_EQ(found(L"\\x ü.txt"), there);
    EXPECT_EQ(found(L"x ü.txt"), there);
    EXPECT_EQ(found(L"sub\\..\\.\\X Ü.TXT"), folder.file(L"X Ü.TXT")) << "the path asked for, not the file's own";
    EXPECT_EQ(found(L"\\*.t?t"), folder.file(L"*.t?t"));
    EXPECT_EQ(found(elsewhere.write(L"y.txt", "")), elsewhere.file(L"y.txt"));
    EXPECT_EQ(text(L"qvDirV", {L"\\x ü.txt", app}), there);
    EXPECT_EQ(text(L"qvDirV", {17, app}), L"");
    for (const std::wstring& none : {std::wstring{L"\\y.txt"}, std::wstring{L"\\none\\x"}, std::wstring{L"\\*.doc"},
                                     std::wstring{L"Q:\\x.txt"}, elsewhere.file(L"x.txt"), repeated(L"a\\", 259),
                                     repeated(L"a\\", 70000)})
        EXPECT_EQ(found(none), L"") << none.substr(0, 50);
    EXPECT_EQ(text(L"qvDir", {L"x ü.txt", repeated(app, 70000)}), L"");

    EXPECT_EQ(found(L"\\sub"), L"") << "a folder is no normal file";
    EXPECT_EQ(text(L"qvDir2", {L"\\sub", app, 16}), below);
    EXPECT_EQ(text(L"qvDir2", {L"\\\\server", app, 16}), L"") << "a server, not a folder of the application";
    EXPECT_EQ(text(L"qvDir2", {L"\\x ü.txt", app, 16}), there) << "normal files as well";
    EXPECT_EQ(text(L"qvDir2", {L"\\sub", app, 1 + 2 + 4 + 8}), L"");
    SetFileAttributesW(there.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(found(L"\\x ü.txt"), there);
    SetFileAttributesW(there.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(found(L"\\x ü.txt"), L"");
    EXPECT_EQ(text(L"qvDir2", {L"\\x ü.txt", app, 2}), L"");
    EXPECT_EQ(text(L"qvDir2", {L"\\x ü.txt", app, 6}), there);
    RemoveDirectoryW(below.c_str());
    RemoveDirectoryW(server.c_str());
}
