// Texts and names where one byte is not one character: `check` runs these tests in processes of several code pages.
#include "support/tables.h"

using client::Folder;
using client::Object;
using client::Value;

namespace {

/// In the bytes of the process's code page; empty when it lacks a character.
std::string encoded(std::wstring_view text)
{
    const bool has_all = GetACP() == CP_UTF8;
    BOOL lacks = FALSE;
    std::string bytes(text.size() * 4, '\0');
    const int length = WideCharToMultiByte(CP_ACP, has_all ? 0 : WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                                           bytes.data(), static_cast<int>(bytes.size()), nullptr, has_all ? nullptr : &lacks);
    bytes.resize(lacks ? 0 : static_cast<std::size_t>(length));
    return bytes;
}

class CodePages : public testing::Test {
protected:
    /// What the code page has of a text in three scripts. In Japanese the second byte of each of the first seven characters
    /// is one that means something by itself in files: @ [ \ ] { | }
    static std::wstring text_of_this_page()
    {
        std::wstring text = L"x";
        for (const wchar_t letter : std::wstring{L"\u30A1\u30BC\u8868\u30BE\u30DC\u30DD\u30DE \u65E5\u672C\u8A9E Gr\u00F6\u00DFe \u0416"})
            if (!encoded({&letter, 1}).empty())
                text += letter;
        return text + L".";
    }

    client::Apartment apartment;
    const Folder folder;
    const std::wstring text = text_of_this_page();
};

} // namespace

TEST_F(CodePages, IniFilesKeepTheirTexts)
{
    std::wstring long_text = text;
    while (long_text.size() < 100000) // more than is decoded at once
        long_text += text;
    const std::wstring path = folder.file(text + L"ini");
    {
        const Object ini = Object::create(L"qvObjects.qvIniFile");
        const Object section = ini.object(L"Section", {text});
        section.object(L"Parameter", {text}).put(L"Value", {long_text});
        section.object(L"Section", {text}).object(L"Parameter", {L"p"}).put(L"Value", {text});
        ini.call(L"Save", {path});
    }
    EXPECT_TRUE(Folder::read(path).starts_with("[" + encoded(text) + "]\r\n"));
    const Object ini = Object::create(L"qvObjects.qvIniFile");
    ini.call(L"Load", {path});
    const Object section = ini.object(L"Section", {1});
    EXPECT_EQ(section.call(L"Name").text(), text);
    const Object parameter = section.object(L"Parameter", {1});
    EXPECT_EQ(parameter.call(L"Name").text(), text);
    EXPECT_TRUE(parameter.call(L"Value").text() == long_text);
    const Object inner = section.object(L"Section", {1});
    EXPECT_EQ(inner.call(L"Name").text(), text);
    EXPECT_EQ(inner.object(L"Parameter", {L"P"}).call(L"Value").text(), text);
}

TEST_F(CodePages, DataFilesKeepTheirNames)
{
    const std::wstring nif = folder.file(text + L"nif"), qvb = folder.file(text + L"qvb");
    {
        const Object table = Object::create(L"qvObjects.qvFile_Nif");
        table.call(L"SetSize", {1, 1});
        table.put(L"Name", {1, text});
        EXPECT_TRUE(table.call(L"Save", {nif}).flag());
        const Object matrix = Object::create(L"qvObjects.qvFile_qvb");
        matrix.put(L"File", {qvb});
        matrix.put(L"ObjNames", {client::list(0, {text, L"x"})});
        matrix.call(L"WriteFile", {client::table(VT_R8, 0, 0, {{1.5}, {2.5}})});
    }
    const Object table = Object::create(L"qvObjects.qvFile_Nif");
    EXPECT_TRUE(table.call(L"Load", {nif}).flag());
    EXPECT_EQ(table.call(L"Name", {1}).text(), text);
    const Object matrix = Object::create(L"qvObjects.qvFile_qvb");
    matrix.put(L"File", {qvb});
    Value read;
    matrix.call(L"ReadFile", {Value::variable(read)});
    EXPECT_EQ(client::told(read), L"Double 0,0: (1.5)(2.5)");
    EXPECT_EQ(client::told(matrix.call(L"ObjNames")), L"String 0: '" + text + L"' 'x'");
}

TEST_F(CodePages, ProfileFilesKeepTheirTexts)
{
    const Object api = Object::create(L"qvObjects.qvAPI");
    const std::wstring path = folder.file(text + L"ini");
    std::wstring long_text;
    while (encoded(long_text).size() < 240)
        long_text += text;
    api.call(L"WritePPs", {text, text, text, path});
    // Characters of several bytes are cut at each of their bytes.
    for (const wchar_t* shift : {L"", L"1", L"12", L"123"}) {
        const std::wstring value = shift + long_text + long_text;
        api.call(L"WritePPs", {L"Long", L"k", value, path});
        Value read;
        const long length = api.call(L"GetPPs", {L"Long", L"k", Value::variable(read), path}).number();
        std::wstring got = read.text();
        EXPECT_EQ(got.size(), static_cast<std::size_t>(length));
        got.resize(got.find_last_not_of(L' ') + 1); // the system may leave a blank where no character had room
        EXPECT_TRUE(value.starts_with(got) && encoded(got).size() > 240) << got;
    }
    Value items, names, value;
    EXPECT_EQ(api.call(L"GetPPSectionStr", {text, Value::variable(items), path}).number(), 1);
    EXPECT_EQ(client::told(items), L"String 0,0: ('' '" + text + L"')('' '" + text + L"')");
    EXPECT_EQ(api.call(L"GetPPSectionNamesStr", {Value::variable(names), path}).number(), 2);
    EXPECT_EQ(client::told(names), L"String 0: '' '" + text + L"' 'Long'");
    api.call(L"GetPPs", {text, text, Value::variable(value), path});
    EXPECT_EQ(value.text(), text);
    EXPECT_EQ(api.call(L"GetPPs2", {text, text, L"none", path}).text(), text);
}
