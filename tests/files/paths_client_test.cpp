#include "support/client.h"

#include <qvObjects.h>

#include <sstream>

using client::expect_error;
using client::Object;
using client::Outcome;
using client::Value;

namespace {

using Arguments = std::vector<Value>;

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

/// A member of the shell family: its arguments are texts (t), a path that must fit into the buffer (p) and numbers (n). Those
/// that are not supported have a minus in front of them.
struct Member {
    std::wstring name, arguments;
};

std::vector<Member> all_members()
{
    std::wistringstream list{
        L"AddBackslash p AddExtension pt Append pt BuildRoot n Canonicalize p Combine tt CompactPath npn CompactPathEx tnn "
        L"CommonPrefix tt FileExists t FindExtension t FindFileName t FindNextComponent t GetArgs t GetCharType -t "
        L"GetDriveNumber t IsContentType -tt IsDirectory t IsFileSpec t IsPrefix tt IsRelative t IsRoot t IsSameRoot tt "
        L"IsSystemFolder -tn IsSystemFolderRecurive -tn IsUNC t IsUNCServer -t IsUNCServerShare -t IsURL t MakePretty t "
        L"MakeSystemFolder -t MatchSpec tt ParseIconLocation t QuoteSpaces p RelativePathTo ttnn RemoveArgs p "
        L"RemoveBackslash p RemoveBlanks p RemoveExtension p RemoveFileSpec p RenameExtension pt SearchAndQualify tt "
        L"SetDlgItemPath nnt SkipRoot p StripPath p StripToRoot p UnmakeSystemFolder -t UnquoteSpaces p"};
    std::vector<Member> members;
    for (Member member; list >> member.name >> member.arguments;)
        members.push_back({L"qvPath" + member.name, member.arguments});
    return members;
}

class Paths : public testing::Test {
protected:
    std::wstring text(const wchar_t* member, const Arguments& arguments) const { return file.call(member, arguments).text(); }
    bool flag(const wchar_t* member, const Arguments& arguments) const { return file.call(member, arguments).flag(); }
    long number(const wchar_t* member, const Arguments& arguments) const { return file.call(member, arguments).number(); }

    struct TextCase {
        const wchar_t* member;
        Arguments arguments;
        std::wstring expected;
    };
    void expect_texts(const std::vector<TextCase>& cases) const
    {
        for (const auto& [member, arguments, expected] : cases)
            EXPECT_EQ(text(member, arguments), expected) << member;
    }

    /// Gives the member the text in the argument at this place, or in all of them if there is none.
    void take(const Member& member, const std::wstring& given, std::size_t place) const
    {
        const bool is_supported = !member.arguments.starts_with(L'-');
        const std::wstring kinds = member.arguments.substr(is_supported ? 0 : 1);
        Arguments variables, references;
        bool is_too_long = false;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            const bool chosen = place == i || place >= kinds.size();
            const Value path{chosen ? given : L"C:\\dir\\file.txt"};
            variables.push_back(kinds[i] == L'n' ? Value{0} : path);
            is_too_long = is_too_long || (kinds[i] == L'p' && chosen && given.size() > 260);
        }
        const Arguments before = variables;
        for (Value& variable : variables)
            references.push_back(Value::variable(variable));
        const Outcome outcome = file.try_call(member.name.c_str(), references);
        if (!is_supported)
            expect_error(outcome, 10001, L"Function not supported");
        else if (is_too_long)
            expect_error(outcome, 5, L"Invalid procedure call or argument");
        else
            EXPECT_EQ(outcome.result, S_OK);
        for (std::size_t i = 0; outcome.result != S_OK && i < kinds.size(); ++i)
            EXPECT_TRUE(kinds[i] == L'n' || variables[i].text() == before[i].text()) << "an error changes nothing";
    }

    client::Apartment apartment;
    const Object file = Object::create(L"qvObjects.qvFile");
};

void expect_sound_heaps()
{
    HANDLE heaps[64];
    const DWORD count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
    ASSERT_GT(count, 0u);
    for (DWORD i = 0; i < count; ++i)
        EXPECT_TRUE(HeapValidate(heaps[i], 0, nullptr)) << i;
}

} // namespace

TEST_F(Paths, TextsThatThePlatformMakes)
{
    const std::wstring with_nul{L"C:\\a\0.b", 8};
    expect_texts({
        {L"qvPathAddBackslash", {L"C:\\dir"}, L"C:\\dir\\"},  {L"qvPathAddBackslash", {with_nul}, L"C:\\a\\"},
        {L"qvPathAddExtension", {L"Öl", L".txt"}, L"Öl.txt"}, {L"qvPathAddExtension", {L"a.doc", L"txt"}, L"a.doc"},
        {L"qvPathAppend", {L"C:\\a", L"..\\b"}, L"C:\\b"},    {L"qvPathCombine", {L"C:\\a", L"..\\b"}, L"C:\\b"},
        {L"qvPathBuildRoot", {2}, L"C:\\"},                   {L"qvPathBuildRoot", {-1}, L""},
        {L"qvPathBuildRoot", {26}, L""},                      {L"qvPathBuildRoot", {LONG_MIN}, L""},
        {L"qvPathCanonicalize", {L"C:\\a\\..\\b\\.\\c"}, L"C:\\b\\c"},
        {L"qvPathCompactPathEx", {L"C:\\some\\long\\path\\to\\file.txt", 20}, L"C:\\some...\\file.txt"},
        {L"qvPathCompactPathEx", {L"C:/some/long/path/to/file.txt", 20, 47}, L"C:/some.../file.txt"},
        {L"qvPathCommonPrefix", {L"C:\\a\\b", L"c:\\A\\c"}, L"C:\\a"},
        {L"qvPathFindExtension", {L"C:\\a.b\\c.txt"}, L".txt"},
        {L"qvPathFindFileName", {L"C:\\dir\\file.txt"}, L"dir\\file.txt"},
        {L"qvPathFindNextComponent", {L"C:\\dir\\file.txt"}, L"dir\\file.txt"},
        {L"qvPathFindNextComponent", {L""}, L""}, // the platform points nowhere
        {L"qvPathGetArgs", {L"\"a b.exe\" c d"}, L"c d"},     {L"qvPathRemoveArgs", {L"a.exe b"}, L"a.exe"},
        {L"qvPathMakePretty", {repeated(L"A", 70000)}, L"A" + repeated(L"a", 69999)},
        {L"qvPathRelativePathTo", {L"C:\\a\\b", L"C:\\a\\c"}, L".\\c"}, // a file and a folder if left out
        {L"qvPathRelativePathTo", {L"C:\\a\\b", L"C:\\a\\c\\d", 16, 0}, L"..\\c\\d"},
        {L"qvPathQuoteSpaces", {L"a b"}, L"\"a b\""},         {L"qvPathUnquoteSpaces", {L"\"a b\""}, L"a b"},
        {L"qvPathRemoveBackslash", {L"C:\\a\\"}, L"C:\\a"},   {L"qvPathRemoveBlanks", {L"  a b "}, L"a b"},
        {L"qvPathRemoveExtension", {L"a.b\\c.d"}, L"a.b\\c"}, {L"qvPathRenameExtension", {L"a.b", L".c"}, L"a.c"},
        {L"qvPathSkipRoot", {L"\\\\server\\share\\f"}, L"f"}, {L"qvPathSkipRoot", {L"a\\b"}, L""},
        {L"qvPathRemoveFileSpec", {L"C:\\a\\b"}, L"C:\\a"},   {L"qvPathStripPath", {L"C:\\a\\b"}, L"b"},
    });
}

TEST_F(Paths, TestsThatThePlatformMakes)
{
    const client::Folder folder;
    const std::wstring there = folder.write(L"Übung.txt", "");
    const std::wstring many_patterns = repeated(L"*.doc;", 600) + L"*.txt";
    const struct {
        const wchar_t* member;
        Arguments that_hold, that_do_not;
    } cases[]{
        {L"qvPathFileExists", {there}, {there + L"x"}},
        {L"qvPathIsDirectory", {folder.path()}, {there}},
        {L"qvPathIsFileSpec", {L"a.b"}, {L"C:a.b"}},
        {L"qvPathIsPrefix", {L"C:\\dir", L"c:\\DIR\\x"}, {L"C:\\dir", L"C:\\directory"}},
        {L"qvPathIsRelative", {L"a\\b"}, {L"C:\\a"}},
        {L"qvPathIsRoot", {L"C:\\"}, {L"C:\\a"}},
        {L"qvPathIsSameRoot", {L"C:\\a", L"c:\\b"}, {L"C:\\a", L"D:\\a"}},
        {L"qvPathIsUNC", {L"\\\\server\\share"}, {L"\\a"}},
        {L"qvPathIsURL", {L"http://a.b/c"}, {L"C:\\a"}},
        {L"qvPathMatchSpec", {L"b.TXT", many_patterns}, {L"b.txt", L"*.doc;*.tx"}},
    };
    for (const auto& [member, that_hold, that_do_not] : cases) {
        EXPECT_TRUE(flag(member, that_hold)) << member;
        EXPECT_FALSE(flag(member, that_do_not)) << member;
    }
    EXPECT_EQ(number(L"qvPathGetDriveNumber", {L"b:\\x"}), 1);
    EXPECT_EQ(number(L"qvPathGetDriveNumber", {L"\\\\server\\share"}), -1);
}

TEST_F(Paths, WhatChangesInTheCallersVariables)
{
    Value extension{L"txt"}, empty{L""}, both{L"x"}, path{L"C:\\a\\b"}, icon{L"\"C:\\a b.dll\",-7"};
    EXPECT_EQ(text(L"qvPathAddExtension", {L"a", Value::reference(VT_BSTR, &extension.bstrVal)}), L"a.txt");
    EXPECT_EQ(extension.text(), L".txt");
    EXPECT_EQ(text(L"qvPathAddExtension", {L"a", Value::variable(empty)}), L"a");
    EXPECT_EQ(empty.text(), L"");
    EXPECT_EQ(text(L"qvPathAddExtension", {Value::variable(both), Value::variable(both)}), L"x.x");
    EXPECT_TRUE(flag(L"qvPathStripToRoot", {Value::variable(path)}));
    EXPECT_EQ(path.text(), L"C:\\");

    const BSTR place = icon.bstrVal;
    EXPECT_EQ(number(L"qvPathParseIconLocation", {Value::variable(icon)}), -7);
    EXPECT_EQ(icon.bstrVal, place) << "cut in the text itself";
    EXPECT_EQ(icon.text().size(), 15u);
    EXPECT_STREQ(icon.bstrVal, L"C:\\a b.dll");
    icon = L"C:\\a.dll,2";
    EXPECT_EQ(number(L"qvPathParseIconLocation", {Value::reference(VT_BSTR, &icon.bstrVal)}), 2);
    EXPECT_EQ(icon.text(), (std::wstring{L"C:\\a.dll\0" L"2", 10}));
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

TEST_F(Paths, PathsAreCompactedToAnyWidth)
{
    const std::wstring path = L"C:\\some\\long\\path\\to\\file.txt", too_long = path_of(L"dir\\", 2000) + L"\\file.txt";
    for (const long most : {0L, 1L})
        EXPECT_EQ(text(L"qvPathCompactPathEx", {path, most}), L"") << most;
    for (const long most : {260L, LONG_MAX, LONG_MIN, -1L}) {
        EXPECT_EQ(text(L"qvPathCompactPathEx", {path, most}), path) << most;
        const std::wstring compact = text(L"qvPathCompactPathEx", {too_long, most});
        EXPECT_TRUE(compact.size() == 259 && compact.ends_with(L"...\\file.txt")) << "the buffer ends here";
    }

    const HDC screen = GetDC(nullptr);
    const HBRUSH brush = CreateSolidBrush(0);
    for (const long context : {HandleToLong(screen), 0L}) {
        for (const long width : {10000L, -1L, LONG_MAX, LONG_MIN})
            EXPECT_EQ(text(L"qvPathCompactPath", {context, path, width}), path) << width;
        const std::wstring compact = text(L"qvPathCompactPath", {context, path, 100});
        EXPECT_TRUE(compact.size() < path.size() && compact.ends_with(L"...\\file.txt")) << compact;
    }
    for (const long context : {HandleToLong(brush), 1L, -1L})
        EXPECT_EQ(text(L"qvPathCompactPath", {context, path, 10}), path) << "no device context: unchanged";
    DeleteObject(brush);
    ReleaseDC(nullptr, screen);
}

TEST_F(Paths, APathIsShownInADialogsControl)
{
    const HWND dialog = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 100, 20, nullptr, nullptr, nullptr, nullptr);
    const HWND control = CreateWindowW(L"STATIC", L"before", WS_CHILD, 0, 0, 100, 20, dialog, reinterpret_cast<HMENU>(7),
                                       nullptr, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    const auto shown = [&](long window, long id, const std::wstring& path, bool expected) {
        EXPECT_EQ(flag(L"qvPathSetDlgItemPath", {window, id, path}), expected);
        wchar_t caption[300]{};
        GetWindowTextW(control, caption, 300);
        return std::wstring{caption};
    };
    const long handle = HandleToLong(dialog);
    EXPECT_EQ(shown(handle, 8, L"C:\\a", false), L"before");
    EXPECT_EQ(shown(12345, 7, L"C:\\a", false), L"before");
    EXPECT_EQ(shown(handle, 7, path_of(L"dir\\", 260), false), L"before") << "it would be cut";
    EXPECT_EQ(shown(handle, 7, L"C:\\a", true), L"C:\\a");
    EXPECT_TRUE(shown(handle, 7, path_of(L"dir\\", 250) + L"\\f.txt", true).ends_with(L"...\\f.txt"));
    DestroyWindow(dialog);
}

TEST_F(Paths, EveryMemberTakesTextsOfAnyLength)
{
    const std::vector<Member> members = all_members();
    ASSERT_EQ(members.size(), 48u);
    for (const std::wstring_view part :
         {L"C:\\dir\\", L"a\\", L"a ", L"\\\\s\\", L"..\\", L"\"", L"*", L",", L".x", L"\\", L"C:", L"ü"})
        for (const std::size_t length : {1u, 2u, 258u, 259u, 260u, 261u, 32767u, 40000u})
            for (const Member& member : members) {
                SCOPED_TRACE(testing::Message() << member.name << ", " << length << " characters of " << std::wstring{part});
                for (std::size_t place = 0; place <= member.arguments.size(); ++place)
                    take(member, repeated(part, length), place);
                if (HasFailure())
                    return;
            }
    expect_sound_heaps();
}

TEST_F(Paths, ResultsBeyondThePlatformsPathsAreNone)
{
    const std::wstring deep = path_of(L"a\\", 259), full = path_of(L"dirs\\", 259), all = path_of(L"dirs\\", 260);
    const std::wstring nearly = full.substr(0, 257);
    expect_texts({
        {L"qvPathRelativePathTo", {deep, L"C:\\b", 16, 0}, L""}, // so many steps up do not fit
        {L"qvPathRelativePathTo", {deep.substr(0, 163), L"C:\\b", 16, 0}, repeated(L"..\\", 240) + L"b"},
        {L"qvPathRelativePathTo", {L"C:\\b", all}, L""},
        {L"qvPathCommonPrefix", {full + L"\\z", full + L"\\y"}, full},
        {L"qvPathCommonPrefix", {all + L"\\z", all + L"\\y"}, L""},
        {L"qvPathCommonPrefix", {L"C:\\a\\" + all, L"C:\\a\\b"}, L"C:\\a"},
        {L"qvPathCombine", {nearly, L"f"}, nearly + L"\\f"},
        {L"qvPathCombine", {L"C:\\", full.substr(3)}, full},
        {L"qvPathCombine", {full, L"f"}, L""},
        {L"qvPathCombine", {full, L"\\f"}, L""},
        {L"qvPathCombine", {full + full, L"D:\\a\\..\\f"}, L"D:\\f"},
        {L"qvPathCombine", {full + full, L"\\\\server\\share\\f"}, L"\\\\server\\share\\f"},
        {L"qvPathCombine", {L"C:\\", all}, L""}, // not cut
        {L"qvPathCombine", {L"C:\\", all.substr(3)}, L""},
        {L"qvPathAppend", {L"C:\\", all}, L""},
        {L"qvPathSkipRoot", {all}, all.substr(3)},
    });
    for (const std::wstring& path : {full, all})
        expect_texts({{L"qvPathAddBackslash", {path}, path},
                      {L"qvPathAddExtension", {path, L"ext"}, path},
                      {L"qvPathAppend", {path, L"f"}, L""},
                      {L"qvPathRemoveFileSpec", {path}, path.substr(0, path.rfind(L'\\'))}});
}

TEST_F(Paths, PointersToNothingAreWrongCalls)
{
    _qvFile* early = nullptr;
    ASSERT_EQ(file.dispatch()->QueryInterface(__uuidof(_qvFile), reinterpret_cast<void**>(&early)), S_OK);
    Value path{L"C:\\a\\b.c"};
    BSTR empty = nullptr, result = nullptr;
    VARIANT_BOOL flag = VARIANT_TRUE;
    long number = 0;
    EXPECT_EQ(early->GetPath(nullptr, &result), static_cast<HRESULT>(0x800A0005));
    for (const auto member : {&_qvFile::GetPath, &_qvFile::RemoveExtension, &_qvFile::qvPathStripPath, &_qvFile::qvPathGetArgs}) {
        EXPECT_EQ((early->*member)(&empty, &result), S_OK) << "without a text there is an empty one";
        EXPECT_EQ(SysStringLen(result), 0u);
        SysFreeString(result);
    }
    EXPECT_EQ(early->qvPathParseIconLocation(&empty, &number), S_OK);
    EXPECT_EQ(early->qvPathSearchAndQualify(&empty, &empty, &flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(early->GetExtension(nullptr, &result), S_OK) << "it never raises";
    SysFreeString(result);
    EXPECT_EQ(early->GetFile(&path.bstrVal, nullptr, &result), S_OK) << "it need not be told";
    EXPECT_STREQ(result, L"b.c");
    SysFreeString(result);
    early->Release();
}

TEST_F(Paths, NamesFromTextsAndVariants)
{
    expect_texts({{L"GetRelPath", {L"C:\\App\\data\\x.txt", L"c:\\aPP"}, L"\\data\\x.txt"},
                  {L"GetRelPath", {L"D: C:\\App  x", L"C:\\App"}, L"D:x"},
                  {L"GetRelPathV", {L"C:\\a\\b", L"C:\\a"}, L"\\b"},
                  {L"GetPath", {L"C:\\Größe\\Maß.txt"}, L"C:\\Größe"},
                  {L"GetPathV", {L"C:\\a\\b"}, L"C:\\a"},
                  {L"GetFile", {L"C:\\Größe\\Maß.v2.txt"}, L"Maß.v2.txt"},
                  {L"GetFile", {L"C:\\Größe\\Maß.v2.txt", true}, L"Maß.v2"},
                  {L"GetFileV", {17}, L"17"},
                  {L"GetExtension", {L"C:\\a\\b.txt"}, L"txt"},
                  {L"RemoveExtension", {L"C:\\x.y\\z"}, L"C:\\x"}});
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
    const std::wstring app = folder.path(), there = folder.write(L"x ü.txt", ""), other = elsewhere.write(L"y.txt", "");
    for (const wchar_t* name : {L"sub", L"server"})
        CreateDirectoryW(folder.file(name).c_str(), nullptr);
    expect_texts({{L"qvDir", {L"\\x ü.txt", app}, there},
                  {L"qvDir", {L"x ü.txt", app}, there},
                  {L"qvDir", {L"sub\\..\\.\\X Ü.TXT", app}, folder.file(L"X Ü.TXT")}, // the path asked for, not the file's own
                  {L"qvDir", {L"\\*.t?t", app}, folder.file(L"*.t?t")},
                  {L"qvDir", {other, app}, other},
                  {L"qvDirV", {L"\\x ü.txt", app}, there},
                  {L"qvDirV", {17, app}, L""},
                  {L"qvDir", {L"x ü.txt", repeated(app, 70000)}, L""},
                  {L"qvDir2", {L"\\sub", app, 16}, folder.file(L"sub")},
                  {L"qvDir2", {L"\\\\server", app, 16}, L""}, // a server, not a folder of the application
                  {L"qvDir2", {L"\\x ü.txt", app, 16}, there}, // normal files as well
                  {L"qvDir2", {L"\\sub", app, 1 + 2 + 4 + 8}, L""}});
    for (const std::wstring& none : {std::wstring{L"\\y.txt"}, std::wstring{L"\\none\\x"}, std::wstring{L"\\*.doc"},
                                     std::wstring{L"Q:\\x.txt"}, elsewhere.file(L"x.txt"), repeated(L"a\\", 259),
                                     repeated(L"a\\", 70000), std::wstring{L"\\sub"}})
        EXPECT_EQ(text(L"qvDir", {none, app}), L"") << none.substr(0, 50);
    SetFileAttributesW(there.c_str(), FILE_ATTRIBUTE_READONLY);
    expect_texts({{L"qvDir", {L"\\x ü.txt", app}, there}});
    SetFileAttributesW(there.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    expect_texts({{L"qvDir", {L"\\x ü.txt", app}, L""},
                  {L"qvDir2", {L"\\x ü.txt", app, 2}, L""},
                  {L"qvDir2", {L"\\x ü.txt", app, 6}, there}});
}
