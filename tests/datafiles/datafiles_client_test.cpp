// The data-file classes as a client meets them: by name, with whole files as bytes.
#include "support/tables.h"

using client::Apartment;
using client::expect_error;
using client::Folder;
using client::Object;
using client::Outcome;
using client::Value;
using namespace std::string_literals;

namespace {

constexpr long own_errors = static_cast<long>(0x80040000);

/// A table that counts from 0 and whose element (i, j) is 10 * i + j.
Value numbers(VARTYPE type, int rows, int columns)
{
    std::vector<std::vector<Value>> all(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j < columns; ++j)
            all[static_cast<std::size_t>(i)].push_back(10 * i + j);
    return client::table(type, 0, 0, all);
}

Value variants(const std::vector<std::vector<Value>>& rows)
{
    return client::table(VT_VARIANT, 1, 1, rows);
}

template <class Number>
std::string bytes(std::initializer_list<Number> numbers)
{
    return {reinterpret_cast<const char*>(numbers.begin()), numbers.size() * sizeof(Number)};
}

/// An element type: of automation, in the file, of its own reader and writer; and the numbers 0, 10, 1, 11.
struct Element {
    VARTYPE type;
    int number;
    const wchar_t *reader, *writer;
    std::string data;
};

const Element elements[]{
    {VT_UI1, 0, L"ReadFile_Byte", L"WriteFile_Byte", bytes<char>({0, 10, 1, 11})},
    {VT_I2, 1, L"ReadFile_Int", L"WriteFile_Int", bytes<short>({0, 10, 1, 11})},
    {VT_I4, 2, L"ReadFile_Lng", L"WriteFile_Lng", bytes<long>({0, 10, 1, 11})},
    {VT_R4, 3, L"ReadFile_Sng", L"WriteFile_Sng", bytes<float>({0, 10, 1, 11})},
    {VT_R8, 4, L"ReadFile_Dbl", L"WriteFile_Dbl", bytes<double>({0, 10, 1, 11})},
};

std::string header(int rows, int x, int y, int planes, int type, bool names = false)
{
    return bytes<int>({rows, x, y, planes, type}) + "\0\0"s + (names ? "\xFF\xFF"s : "\0\0"s) + "\0\0\0\0\0\0"s;
}

std::string text(std::string_view characters)
{
    return bytes<int>({static_cast<int>(characters.size())}) + std::string{characters};
}

/// An information header that is another's than this library's.
const std::string foreign = bytes<int>({7}) + text("other kind") + bytes<int>({1}) + text(" k ") + text("");

class QvbFile : public testing::Test {
protected:
    void use(const std::wstring& path) { file.put(L"File", {path}); }
    void use(std::string_view content) { use(folder.write(L"a.qvb", content)); }
    std::string content() const { return Folder::read(file.call(L"File").text()); }
    /// What stands behind an information header of this library, whose sizes and constants are checked here.
    std::string behind_information() const
    {
        const std::string all = content();
        const std::string start = bytes<int>({1}) + text("6CDF9090-DB73-11d2-9970-E08431000000") + bytes<int>({3}) + text("Authors");
        EXPECT_EQ(all.substr(0, start.size()), start);
        std::size_t place = start.size();
        for (int texts = 0; texts < 5; ++texts) {
            if (place + 4 > all.size())
                return "(no information header)";
            place += 4 + static_cast<unsigned char>(all[place]); // none is longer than a byte can tell
        }
        return place <= all.size() ? all.substr(place) : "(no information header)";
    }
    /// By a script's variable.
    Value read(const wchar_t* member)
    {
        Value variable;
        file.call(member, {Value::variable(variable)});
        return variable;
    }

    Apartment apartment;
    Folder folder;
    Object file = Object::create(L"qvObjects.qvFile_qvb");
};

} // namespace

TEST_F(QvbFile, WritesTheLayoutByteForByte)
{
    use(folder.file(L"a.qvb"));
    for (const Element& element : elements) {
        file.call(L"WriteFile_Dbl", {numbers(VT_R8, 3, 4)});
        EXPECT_EQ(behind_information(), header(3, 4, 1, 1, 4) + bytes<double>({0, 10, 20, 1, 11, 21, 2, 12, 22, 3, 13, 23}));
        const Value matrix = client::table(element.type, -2, 5, {{0, 1}, {10, 11}});
        file.call(element.writer, {matrix});
        EXPECT_EQ(behind_information(), header(2, 2, 1, 1, element.number) + element.data) << "the longer file is gone";
        // The general writer takes the type from the array, the typed ones convert what a script has.
        file.call(L"WriteFile", {matrix});
        EXPECT_EQ(behind_information(), header(2, 2, 1, 1, element.number) + element.data);
        file.call(L"WriteFile_Int", {matrix});
        EXPECT_EQ(behind_information(), header(2, 2, 1, 1, 1) + bytes<short>({0, 10, 1, 11}));
    }
}

TEST_F(QvbFile, ReadsWhatIsInTheFile)
{
    for (const Element& element : elements) {
        use(foreign + header(2, 2, 1, 1, element.number) + element.data + "rest");
        for (const wchar_t* reader : {L"ReadFile", element.reader}) {
            const Value matrix = read(reader);
            EXPECT_EQ(told(matrix), told(client::table(element.type, 0, 0, {{0, 1}, {10, 11}})));
        }
    }
    EXPECT_EQ(file.object(L"FileInfoHeader").call(L"FileType").text(), L"other kind");
    EXPECT_EQ(file.object(L"FileInfoHeader").call(L"Version").number(), 7);

    file.put(L"LBoundAll", {-1});
    file.put(L"LBound2", {5});
    EXPECT_EQ(file.call(L"LBound1").number(), -1);
    const std::string whole = foreign + header(2, 2, 1, 2, 4) + bytes<double>({1, 2, 3, 4, 5, 6, 7, 8});
    use(whole);
    EXPECT_EQ(told(read(L"ReadFile_Dbl")), L"Double -1,5: (1 3 5 7)(2 4 6 8)");
    EXPECT_EQ(told(read(L"ReadFile_Sng")), L"Single -1,5: (0 0 0 0)(1.875 2 2.125 2.25)") << "the bytes as they are";
    EXPECT_EQ(content(), whole) << "reading writes nothing";

    use(foreign + header(2, 2, 1, 2, 5) + std::string(64, 'x'));
    Value kept = 7;
    file.call(L"ReadFile", {Value::variable(kept)});
    EXPECT_EQ(kept.number(), 7) << "of a type that is not known nothing is read";
    file.call(L"ReadHeader", {Value::variable(kept)});
    EXPECT_EQ(kept.number(), 7);
    EXPECT_EQ(file.object(L"FileQVBHeader").call(L"DataType").number(), 5);
}

TEST_F(QvbFile, AFileThatIsLoadedAndSavedAgainIsTheSame)
{
    const std::string whole = foreign + header(2, 1, 3, 1, 4, true) + bytes<double>({1, 2, 3, 4, 5, 6}) + bytes<int>({2})
                            + text("x") + text("");
    use(whole);
    const Value matrix = read(L"ReadFile");
    use(folder.file(L"b.qvb"));
    file.call(L"WriteFile", {matrix});
    EXPECT_EQ(content(), whole);
    EXPECT_EQ(told(file.call(L"ObjNames")), L"String 0: 'x' ''");
}

TEST_F(QvbFile, SizesThatCannotBeAreErrors)
{
    const std::string whole = foreign + header(1, 2, 1, 1, 1, true) + bytes<short>({1, 2}) + bytes<int>({1}) + text("nm");
    const std::string zeros(64, '\0');
    std::vector<std::pair<long, std::string>> cases{{9, foreign + header(0, 1, 1, 1, 4) + zeros},
                                                    {6, foreign + header(1, 65536, 65536, 1, 4) + zeros},
                                                    {62, foreign + header(0x7FFFFFFF, 1, 1, 1, 4) + zeros}};
    for (std::size_t size = 0; size < whole.size(); ++size)
        cases.emplace_back(62, whole.substr(0, size));
    for (const auto& [number, all] : cases) {
        use(all);
        for (const wchar_t* member : {L"ReadFile", L"ReadFile_Dbl"}) {
            Value variable = numbers(VT_R8, 1, 2);
            EXPECT_EQ(file.try_call(member, {Value::variable(variable)}).number(), number);
            EXPECT_EQ(told(variable), L"Double 0,0: (0 1)") << "the variable stays as it was";
        }
    }
    use(folder.file(L"new.qvb"));
    expect_error(file.try_call(L"ReadFile", {Value{}}), 62, L"Input past end of file");
    EXPECT_EQ(content(), "") << "opening creates it";

    // So much is in the file, but no array takes it. The bytes of these come to none at all with 32 bits.
    for (const auto& [rows, type] : std::vector<std::pair<int, int>>{{65536, 0}, {32768, 1}, {8192, 4}, {8193, 4}}) {
        use(folder.write_large(L"large.qvb", foreign + header(rows, 65536, 1, 1, type), 0x100200000));
        for (const wchar_t* member : {L"ReadFile", elements[type].reader}) {
            Value variable;
            expect_error(file.try_call(member, {Value::variable(variable)}), 7, L"Out of memory");
        }
    }
}

TEST_F(QvbFile, HeightsAreFittedToTheColumns)
{
    use(folder.file(L"a.qvb"));
    const Object sizes = file.object(L"FileQVBHeader");
    sizes.put(L"y", {2});
    file.call(L"WriteFile_Byte", {numbers(VT_UI1, 1, 6)});
    EXPECT_EQ(behind_information(), header(1, 3, 2, 1, 0) + bytes<char>({0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(sizes.call(L"x").number(), 3);
    sizes.put(L"x", {65536});
    sizes.put(L"y", {65536});
    EXPECT_EQ(file.try_call(L"WriteFile_Byte", {numbers(VT_UI1, 1, 6)}).number(), 6);
}

TEST_F(QvbFile, VariantsAreConverted)
{
    use(folder.file(L"a.qvb"));
    const Value mixed = variants({{2.5, 3}, {L"4", Value{}}});
    const std::pair<int, std::string> outputs[]{{17, bytes<char>({2, 4, 3, 0})}, {2, bytes<short>({2, 4, 3, 0})},
                                                {3, bytes<long>({2, 4, 3, 0})}, {4, bytes<float>({2.5, 4, 3, 0})},
                                                {5, bytes<double>({2.5, 4, 3, 0})}};
    for (int number = 0; const auto& [output, data] : outputs) {
        file.call(L"WriteFile", {mixed, output});
        EXPECT_EQ(behind_information(), header(2, 2, 1, 1, number++) + data);
    }
    file.call(L"WriteFile", {mixed});
    EXPECT_EQ(behind_information(), header(2, 2, 1, 1, 4) + outputs[4].second) << "Double unless told otherwise";
    file.call(L"WriteFile", {variants({{true, short{7}}}), 3});
    EXPECT_EQ(behind_information(), header(1, 2, 1, 1, 2) + bytes<long>({-1, 7}));

    // The first row with an error says which one it is.
    expect_error(file.try_call(L"WriteFile", {variants({{1, L"x"}, {1e10, 1}}), 3}), 13, L"Type mismatch");
    EXPECT_EQ(behind_information(), header(2, 2, 1, 1, 2)) << "no data";
    expect_error(file.try_call(L"WriteFile", {variants({{1, 2147483647.5}, {L"x", 1}}), 3}), 6, L"Overflow");
    expect_error(file.try_call(L"WriteFile", {variants({{255.5, L"x"}}), 17}), 6, L"Overflow");
    expect_error(file.try_call(L"WriteFile", {variants({{1, Value::null()}})}), 94, L"Invalid use of Null");
}

TEST_F(QvbFile, WhatCannotBeWrittenIsSaidInTheLanguageOfTheThread)
{
    use(folder.file(L"a.qvb"));
    const Object common = Object::create(L"qvObjects.qvCommon");
    const std::wstring unknown[]{L"Der Datentyp der Variable \"V\" wird nicht unterstützt.",
                                 L"The datatype of the variable \"V\" is not supported."};
    const std::wstring hint[]{L"\r\n\r\nHinweis: Ändern Sie den Datentyp in \"Variant/x\" wobei für \"x\" die Datentypen \"Byte\", "
                              L"\"Integer\", \"Long\", \"Single\" und \"Double\" verwendet werden können!",
                              L"\r\n\r\nInformation: Change the Datatype to \"Variant/x\", with \"Byte\", \"Integer\", \"Long\", "
                              L"\"Single\" or \"Double\" as datatype for \"x\"."};
    const std::wstring no_array[]{L"\"V\" ist kein Array!", L"\"V\" isn't an array!"};
    const Value strings = numbers(VT_BSTR, 2, 3);
    for (const int language : {0, 1}) {
        common.call(L"qvObjectsInit", {L"Language", language});
        const Object sizes = file.object(L"FileQVBHeader");
        sizes.put(L"MCount", {9});
        expect_error(file.try_call(L"WriteFile", {12}), own_errors + 105, no_array[language]);
        EXPECT_EQ(behind_information().substr(0, 4), bytes<int>({9})) << "both headers, nothing fitted";
        EXPECT_EQ(behind_information().size(), 30u);
        sizes.put(L"DataType", {3});
        expect_error(file.try_call(L"WriteFile", {strings}), own_errors + 106, unknown[language] + hint[language]);
        EXPECT_EQ(behind_information(), header(2, 3, 1, 1, 3)) << "fitted, of the type before";
        expect_error(file.try_call(L"WriteFile", {variants({{1}}), 8}), own_errors + 107, unknown[language]);
        EXPECT_EQ(behind_information(), header(1, 1, 1, 1, 0));
    }
    common.call(L"qvObjectsInit", {L"Language", 0});

    expect_error(file.try_call(L"WriteFile", {client::list(0, {L"a"}, VT_BSTR)}), 9, L"Subscript out of range");
    EXPECT_EQ(behind_information(), "") << "the information header is there";
    Value none = Value::of_type(VT_ARRAY | VT_R8);
    EXPECT_EQ(file.try_call(L"WriteFile_Dbl", {Value::reference(VT_ARRAY | VT_R8, &none.parray)}).number(), 9);
    EXPECT_EQ(file.try_call(L"WriteFile_Dbl", {Value{}}).number(), 9);
    EXPECT_EQ(content(), "");
    EXPECT_EQ(file.try_call(L"WriteFile_Dbl", {7}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(QvbFile, NamesOfObjects)
{
    use(folder.file(L"a.qvb"));
    const Value none = file.call(L"ObjNames");
    EXPECT_TRUE(none.vt == (VT_ARRAY | VT_BSTR) && !none.parray) << "still to be dimensioned";
    const Object sizes = file.object(L"FileQVBHeader");
    EXPECT_FALSE(sizes.call(L"ObjNames").flag());
    file.put(L"ObjNames", {client::list(5, {L" a ", L"b\u00E4"}, VT_BSTR)});
    EXPECT_TRUE(sizes.call(L"ObjNames").flag());
    EXPECT_EQ(told(file.call(L"ObjNames")), L"String 5: ' a ' 'b\u00E4'");
    const Value small = numbers(VT_UI1, 1, 1);
    file.call(L"WriteFile", {small});
    EXPECT_EQ(behind_information(), header(1, 1, 1, 1, 0, true) + "\0"s + bytes<int>({2}) + text(" a ") + text("b\xE4"));
    read(L"ReadFile");
    EXPECT_EQ(told(file.call(L"ObjNames")), L"String 0: 'a' 'b\u00E4'");

    file.put(L"ObjNames", {variants({{1, 2}})});
    EXPECT_EQ(file.try_call(L"WriteFile", {small}).number(), 9) << "names have one dimension";
    const Object fresh = Object::create(L"qvObjects.qvFile_qvb");
    fresh.put(L"File", {folder.file(L"a.qvb")});
    fresh.object(L"FileQVBHeader").put(L"ObjNames", {true});
    EXPECT_EQ(fresh.try_call(L"WriteFile", {small}).number(), 13) << "no names at all";
}

TEST_F(QvbFile, ArraysThatMustStayStay)
{
    use(foreign + header(1, 1, 1, 1, 4) + bytes<double>({5}));
    Value array = client::array(VT_R8, {{1, 0}}, {7});
    SAFEARRAY* const& held = array.parray;
    const Value typed = Value::reference(VT_ARRAY | VT_R8, &array.parray);
    SafeArrayLock(held);
    for (const wchar_t* member : {L"ReadFile_Dbl", L"ReadFile"})
        expect_error(file.try_call(member, {typed}), 10, L"This array is fixed or temporarily locked");
    SafeArrayUnlock(held);
    held->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(file.try_call(L"ReadFile_Dbl", {typed}).number(), 10);
    held->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    file.call(L"ReadFile_Dbl", {typed});
    EXPECT_EQ(told(array), L"Double 0,0: (5)");

    // One that has the shape already is filled where it is.
    const SAFEARRAY* const before = held;
    use(foreign + header(1, 1, 1, 1, 4) + "short");
    EXPECT_EQ(file.try_call(L"ReadFile_Dbl", {typed}).number(), 62);
    EXPECT_EQ(told(array), L"Double 0,0: (5)") << "a failure changes nothing";
    use(foreign + header(1, 1, 1, 1, 4) + bytes<double>({6}));
    file.call(L"ReadFile_Dbl", {typed});
    EXPECT_EQ(held, before);
    EXPECT_EQ(told(array), L"Double 0,0: (6)");

    Value longs = client::array(VT_I4, {{1, 0}}, {7});
    EXPECT_EQ(file.try_call(L"ReadFile", {Value::reference(VT_ARRAY | VT_I4, &longs.parray)}).number(), 13);
    EXPECT_EQ(longs.parray->cDims, 1);

    // A names block that is cut costs only the names.
    for (const int columns : {1, 4}) {
        use(foreign + header(1, columns, 1, 1, 4, true) + std::string(8 * static_cast<std::size_t>(columns), '\0') + "cut");
        EXPECT_EQ(file.try_call(L"ReadFile_Dbl", {typed}).number(), 62);
        EXPECT_EQ(told(array), columns == 1 ? L"Double 0,0: (0)" : L"Double 0,0: (0 0 0 0)");
    }
}

TEST_F(QvbFile, PathsAreNeverPatternsAndFilesAreClosed)
{
    const std::wstring bystander = folder.write(L"other.qvb", "content");
    const Value small = numbers(VT_UI1, 1, 1);
    for (const auto& [path, number, description] : std::vector<std::tuple<std::wstring, long, const wchar_t*>>{
             {folder.file(L"*.qvb"), 52, L"Bad file name or number"}, {L"", 76, L"Path not found"}}) {
        use(path);
        for (const wchar_t* member : {L"WriteFile", L"ReadHeader"})
            expect_error(file.try_call(member, {small}), number, description);
    }
    EXPECT_EQ(Folder::read(bystander), "content");

    const std::wstring path = folder.write(L"protected.qvb", foreign + header(1, 1, 1, 1, 0) + "x");
    use(path);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(told(read(L"ReadFile")), L"Byte 0,0: (120)");
    expect_error(file.try_call(L"WriteFile", {small}), 75, L"Path/File access error");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    const HANDLE other = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    expect_error(file.try_call(L"ReadHeader", {small}), 70, L"Permission denied");
    CloseHandle(other);
    for (const long number : {0L, own_errors + 105}) {
        EXPECT_EQ(file.try_call(L"WriteFile", {number == 0 ? small : Value{1}}).number(), number);
        EXPECT_TRUE(DeleteFileW(path.c_str())) << "it is closed, after an error as well";
    }
}

TEST_F(QvbFile, AFileThatOthersHoldIsReplacedOrStays)
{
    const Value small = numbers(VT_UI1, 1, 1);
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const struct {
        DWORD access, sharing;
        bool mapped;
        long number; ///< of the error; below 0 where that is the system's affair
    } cases[]{{GENERIC_READ, all, false, 0},          {FILE_READ_ATTRIBUTES, 0, false, 0},
              {GENERIC_READ, FILE_SHARE_READ, false, 70}, {GENERIC_WRITE, FILE_SHARE_WRITE | FILE_SHARE_READ, false, 70},
              {GENERIC_READ, all, true, -1}};
    for (const auto& one : cases) {
        const std::wstring path = folder.write(L"held.qvb", "old");
        const HANDLE held = CreateFileW(path.c_str(), one.access, one.sharing, nullptr, OPEN_EXISTING, 0, nullptr);
        const HANDLE mapping = one.mapped ? CreateFileMappingW(held, nullptr, PAGE_READONLY, 0, 0, nullptr) : nullptr;
        const void* const view = one.mapped ? MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0) : nullptr;
        use(path);
        const long number = file.try_call(L"WriteFile", {small}).number();
        EXPECT_EQ(number, one.number < 0 ? number : one.number);
        if (view)
            UnmapViewOfFile(view);
        for (const HANDLE handle : {mapping, held})
            if (handle)
                CloseHandle(handle);
        const bool is_new = number == 0;
        EXPECT_EQ(content().substr(0, 4), is_new ? "\1\0\0\0"s : "old") << one.access << ' ' << one.sharing;
        EXPECT_EQ(folder.size(), 1) << "nothing lies beside";
    }
}

TEST_F(QvbFile, PartsAreTheLibrarysOwn)
{
    const Object information = file.object(L"FileInfoHeader");
    EXPECT_EQ(information.call(L"Version").number(), 1);
    EXPECT_EQ(information.call(L"FileType").text(), L"6CDF9090-DB73-11d2-9970-E08431000000");
    EXPECT_EQ(information.call(L"ID_NIF").text(), L"9582B510-DB73-11d2-9970-E08431000000");
    EXPECT_EQ(information.call(L"ID_QVD").text(), L"893E82C0-DB73-11d2-9970-E08431000000");
    EXPECT_EQ(information.call(L"ID_QVB").text(), L"6CDF9090-DB73-11d2-9970-E08431000000");
    for (const auto& part : {information, file.object(L"FileQVBHeader")})
        for (const wchar_t* member : {L"Load", L"Save"})
            expect_error(part.try_call(member, {1}), 52, L"Bad file name or number");

    information.put(L"Version", {5});
    const Object other = Object::create(L"qvObjects.qvFile_qvb");
    EXPECT_EQ(other.try_set(L"FileInfoHeader", {information}).result, S_OK);
    EXPECT_EQ(other.object(L"FileInfoHeader").call(L"Version").number(), 5) << "shared";
    EXPECT_EQ(other.try_set(L"FileInfoHeader", {static_cast<IDispatch*>(nullptr)}).result, S_OK);
    EXPECT_EQ(other.object(L"FileInfoHeader").call(L"Version").number(), 1) << "made anew";
    EXPECT_EQ(other.try_set(L"FileInfoHeader", {file.object(L"FileQVBHeader")}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(other.try_set(L"FileQVBHeader", {file.object(L"FileQVBHeader")}).result, S_OK);

    const Object sizes = other.object(L"FileQVBHeader");
    for (const auto& [member, number] : std::vector<std::pair<const wchar_t*, int>>{
             {L"y", 1}, {L"Planes", 1}, {L"DataType", 4}, {L"Transpose", 0}}) {
        EXPECT_EQ(sizes.call(member).number(), number);
        sizes.put(member, {-1});
        EXPECT_EQ(file.object(L"FileQVBHeader").call(member).number(), -1);
    }
    for (const wchar_t* member : {L"FeatNames", L"ExtHeader"}) {
        EXPECT_EQ(sizes.call(member).number(), 0);
        EXPECT_EQ(sizes.try_put(member, {1}).result, DISP_E_MEMBERNOTFOUND) << "only a file sets it";
    }
}

namespace {

std::string decimal_separator()
{
    char separator[8];
    const int size = GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, sizeof separator);
    return {separator, static_cast<std::size_t>(size > 0 ? size - 1 : 0)};
}

const std::string point = decimal_separator();
const std::string nif_2x3 = "3,2\r\n6,-2" + point + "5\r\nDescription, free\r\nASCII\r\n\r\n0\r\none\r\n1\r\n2\r\n-2" + point
                          + "5\r\nt\xF6w\r\n4\r\n0" + point + "125\r\n6\r\n";
constexpr const wchar_t* bad_format = L"Fehler beim einlesen. Datei entspricht nicht dem NIF-Format.";

class NifFile : public testing::Test {
protected:
    void expect_bad_format(std::string_view content)
    {
        expect_error(file.try_call(L"Load", {folder.write(L"bad.nif", content)}), own_errors + 1, bad_format, L"Nif-File");
    }
    double value(long m, long n) const { return file.call(L"Value", {m, n}).dblVal; }
    std::wstring values() const
    {
        Value all;
        file.call(L"GetValues", {Value::variable(all)});
        return told(all);
    }
    void fill()
    {
        file.call(L"SetSize", {2, 3});
        file.call(L"SetValues", {client::table(VT_R8, 1, 1, {{1, 2, -2.5}, {4, 0.125, 6}})});
        file.call(L"SetNames", {client::list(1, {L"one", L"t\u00F6w"}, VT_BSTR)});
        file.put(L"Description", {L"Description, free"});
    }

    Apartment apartment;
    Folder folder;
    Object file = Object::create(L"qvObjects.qvFile_Nif");
};

} // namespace

TEST_F(NifFile, IsSavedByteForByteAndLoadedAgain)
{
    fill();
    const std::wstring path = folder.file(L"a.nif");
    EXPECT_TRUE(file.call(L"Save", {path}).flag());
    EXPECT_EQ(Folder::read(path), nif_2x3);
    EXPECT_EQ(file.call(L"FileName").text(), path);

    const Object other = Object::create(L"qvObjects.qvFile_Nif");
    other.put(L"FileName", {path});
    Value given;
    EXPECT_TRUE(other.call(L"Load", {Value::variable(given)}).flag());
    EXPECT_EQ(given.text(), path) << "the caller's variable gets the path";
    EXPECT_EQ(other.call(L"Description").text(), L"Description, free");
    EXPECT_EQ(other.call(L"Name", {2}).text(), L"t\u00F6w");
    EXPECT_TRUE(other.call(L"Save").flag());
    EXPECT_EQ(Folder::read(path), nif_2x3);
}

TEST_F(NifFile, SizesAreAsUsersWriteThem)
{
    file.call(L"Load", {folder.write(L"a.nif", "1E0, &H1 \r\n\r\n\r\n\r\n\r\n1\r\nskipped\r\nname\r\n1,5E1x\r\n")});
    EXPECT_EQ(value(1, 1), 15);
    EXPECT_EQ(file.call(L"Name", {1}).text(), L"name");
}

TEST_F(NifFile, WhatIsNotThereIsFalse)
{
    fill();
    for (const wchar_t* const name : {L"missing.nif", L"missing\\a.nif", L"*.nif", L"."})
        EXPECT_FALSE(file.call(L"Load", {folder.file(name)}).flag()) << name;
    EXPECT_EQ(value(2, 3), 6) << "nothing changes";
    file.put(L"FileName", {L""});
    EXPECT_FALSE(file.call(L"Load").flag());
    EXPECT_FALSE(file.call(L"Save").flag());
    EXPECT_FALSE(file.call(L"Save", {L""}).flag());
}

TEST_F(NifFile, WhatIsNoNifFileIsAnErrorInEveryLanguage)
{
    const Object common = Object::create(L"qvObjects.qvCommon");
    for (const int language : {0, 1}) {
        common.call(L"qvObjectsInit", {L"Language", language});
        for (const char* const content : {"", "1;1\r", "x,1\r", "1,1\r\r\r\r\rx\r", "0,1\r\r\r\r\r0\rn\r1\r", "1,1\r\r\r\r\r0\rn\r1E400\r"})
            expect_bad_format(content);
    }
    common.call(L"qvObjectsInit", {L"Language", 0});

    fill();
    expect_bad_format(std::string_view{nif_2x3}.substr(0, nif_2x3.size() - 3));
    EXPECT_EQ(values(), L"Double 1,1: (1 2 -2.5)(4 0.125 0)") << "what was read stays";
    expect_bad_format("70000,80000\r\nx\r\nnew\r\n\r\n\r\n0\r\nname\r\n1\r\n");
    EXPECT_EQ(file.call(L"m").number(), 80000);
    EXPECT_EQ(file.call(L"n").number(), 70000);
    EXPECT_EQ(file.call(L"Description").text(), L"new");
    EXPECT_EQ(file.try_call(L"Value", {1, 1}).number(), 9) << "a table that the file cannot hold";
    EXPECT_TRUE(DeleteFileW(folder.file(L"bad.nif").c_str())) << "it is closed";

    const std::wstring large = folder.write_large(L"large.nif", "65536,8192\r\n\r\n\r\n\r\n\r\n0\r\n", 0x30000000);
    EXPECT_EQ(file.try_call(L"Load", {large}).number(), own_errors + 1) << "one that memory cannot hold";
    EXPECT_EQ(file.try_call(L"Value", {1, 1}).number(), 9);

    const std::wstring locked = folder.write(L"locked.nif", nif_2x3);
    const HANDLE other = CreateFileW(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(file.try_call(L"Load", {locked}).number(), 70);
    CloseHandle(other);
}

TEST_F(NifFile, IndicesAreThoseOfTheArrays)
{
    EXPECT_EQ(file.try_call(L"Value", {1, 1}).number(), 9) << "no arrays yet";
    EXPECT_EQ(file.try_call(L"Name", {1}).number(), 9);
    fill();
    for (const auto& [m, n] : std::vector<std::pair<int, int>>{{0, 1}, {1, 0}, {3, 1}, {1, 4}, {-2147483647, 1}, {1, 2147483647}}) {
        expect_error(file.try_call(L"Value", {m, n}), 9, L"Subscript out of range");
        EXPECT_EQ(file.try_put(L"Value", {m, n, 1.0}).number(), 9);
    }
    EXPECT_EQ(file.try_call(L"Name", {3}).number(), 9);
    EXPECT_EQ(file.try_put(L"Name", {0, L"x"}).number(), 9);
    for (const auto& [m, n] : std::vector<std::pair<int, int>>{{0, 1}, {1, 0}, {-1, -1}})
        EXPECT_EQ(file.try_call(L"SetSize", {m, n}).number(), 9);
    file.put(L"Value", {2, 3, 7.0});
    file.put(L"Name", {2, L"x"});
    EXPECT_EQ(values(), L"Double 1,1: (1 2 -2.5)(4 0.125 7)");
    EXPECT_EQ(file.call(L"Name", {2}).text(), L"x");
    for (const auto& [m, n] : std::vector<std::pair<int, int>>{{2147483647, 2147483647}, {65536, 65536}, {65536, 8192}, {16385, 16384}}) {
        expect_error(file.try_call(L"SetSize", {m, n}), 7, L"Out of memory");
        EXPECT_EQ(value(2, 3), 7) << "the table before stays";
    }
    file.call(L"SetSize", {1, 1});
    EXPECT_EQ(value(1, 1), 0);
    EXPECT_EQ(file.call(L"Name", {1}).text(), L"");
}

TEST_F(NifFile, ArraysAreCopiedInAndOut)
{
    Value copy, names;
    file.call(L"GetValues", {Value::variable(copy)});
    EXPECT_EQ(copy.vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(copy.parray, nullptr) << "still to be dimensioned";
    fill();
    file.call(L"GetValues", {Value::variable(copy)});
    file.call(L"GetNames", {Value::variable(names)});
    EXPECT_EQ(copy.vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(told(copy), L"Double 1,1: (1 2 -2.5)(4 0.125 6)");
    EXPECT_EQ(told(names), L"String 1: 'one' 't\u00F6w'");
    static_cast<double*>(copy.parray->pvData)[0] = 99;
    EXPECT_EQ(value(1, 1), 1);

    const std::wstring path = folder.file(L"a.nif");
    file.call(L"SetValues", {copy});
    EXPECT_EQ(value(1, 1), 99);
    EXPECT_TRUE(file.call(L"Save", {path}).flag());
    const std::string before = Folder::read(path);
    EXPECT_EQ(before.substr(0, 12), "3,2\r\n99,-2" + point + "5");

    file.call(L"SetValues", {numbers(VT_R8, 2, 3)});
    EXPECT_EQ(file.call(L"m").number(), 2);
    EXPECT_EQ(values(), L"Double 0,0: (0 1 2)(10 11 12)");
    expect_error(file.try_call(L"Save", {path}), 9, L"Subscript out of range");
    file.call(L"SetValues", {variants({{1, L"2", 3}, {4, 5, 6}})});
    EXPECT_EQ(values(), L"Double 1,1: (1 2 3)(4 5 6)");
    file.call(L"SetNames", {client::list(1, {L"x"}, VT_BSTR)});
    EXPECT_EQ(file.try_call(L"Save", {path}).number(), 9);
    file.call(L"SetNames", {client::list(1, {L"x", L"y"}, VT_BSTR)});
    EXPECT_EQ(Folder::read(path), before) << "a failure keeps the file";
    EXPECT_TRUE(file.call(L"Save").flag());
    EXPECT_EQ(file.try_call(L"Save", {folder.file(L"missing\\a.nif")}).number(), 76);
    EXPECT_EQ(Object::create(L"qvObjects.qvFile_Nif").try_call(L"Save", {path}).number(), 9) << "no table at all";
}
