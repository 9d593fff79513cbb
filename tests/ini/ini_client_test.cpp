#include "support/client.h"
#include "support/dispatch_object.h"

#include <qvObjects.h>

using client::expect_error;
using client::Folder;
using client::Object;
using client::Value;

namespace {

class IniFile : public testing::Test {
protected:
    client::Apartment apartment;
    Folder folder;
    Object ini = Object::create(L"qvObjects.qvIniFile");

    Object sections() const { return ini.object(L"Section"); }
    Object section(const wchar_t* name) const { return ini.object(L"Section", {name}); }
    Object parameters(const wchar_t* section_name) const { return section(section_name).object(L"Parameter"); }
    std::wstring value(const wchar_t* section_name, const wchar_t* name) const
    {
        return section(section_name).object(L"Parameter", {name}).call(L"Value").text();
    }
    void load(std::string_view bytes) const { ini.call(L"Load", {folder.write(L"loaded.ini", bytes)}); }
    std::string saved() const
    {
        ini.call(L"Save", {folder.file(L"saved.ini")});
        return Folder::read(folder.file(L"saved.ini"));
    }
};

/// Whether two references are to the same object.
bool same(const Object& one, const Object& other)
{
    return one.dispatch() == other.dispatch();
}

std::wstring names(const Object& list)
{
    std::wstring all;
    for (const Value& item : client::items(list))
        all += Object{item.pdispVal}.call(L"Name").text() + L" ";
    return all;
}

/// An object that has the interface of the library's lists and is none of them.
class ForeignList final : public DispatchObject {
public:
    ForeignList() : DispatchObject{{}, {}} {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        return DispatchObject::QueryInterface(iid == __uuidof(_qvIniSections) ? IID_IDispatch : iid, object);
    }
};

const Value nothing{static_cast<IDispatch*>(nullptr)};

} // namespace

TEST_F(IniFile, AskingTwiceGivesTheSameObject)
{
    const Object main = section(L"Main");
    EXPECT_TRUE(same(main, section(L"MAIN")));
    EXPECT_TRUE(same(main, sections().object(L"Add", {L"main"})));
    EXPECT_TRUE(same(main, Object{client::items(sections())[0].pdispVal}));
    EXPECT_TRUE(same(main.object(L"Section"), main.object(L"Section")));
    const Object parameter = main.object(L"Parameter", {L"p"});
    EXPECT_TRUE(same(parameter, main.object(L"Parameter", {1})));
    EXPECT_TRUE(same(ini.object(L"qvIniSection_Parameter"), ini.object(L"qvIniSection_Parameter")));
}

TEST_F(IniFile, ItemsAreFoundByKeyAndByPosition)
{
    const Object list = sections();
    for (const wchar_t* name : {L"a", L"b", L"c"})
        list.call(L"Add", {name});
    const auto item = [&](const Value& index) { return list.object(L"Item", {index}).call(L"Name").text(); };
    EXPECT_EQ(item(L"B"), L"b");
    EXPECT_EQ(item(2), L"b");
    EXPECT_EQ(item(2.5), L"b") << "rounded to even";
    BSTR key = SysAllocString(L"c");
    EXPECT_EQ(item(Value::reference(VT_BSTR, &key)), L"c");
    SysFreeString(key);
    Value variable{L"a"};
    EXPECT_EQ(item(Value::variable(variable)), L"a");
    EXPECT_EQ(item(L"1"), L"1") << "a text is a key, and a missing one is created";
    EXPECT_EQ(list.call(L"Count").number(), 4);

    for (const Value& outside : {Value{0}, Value{5}, Value{-1}, Value{true}, Value{}})
        expect_error(list.try_call(L"Item", {outside}), 9, L"Subscript out of range");
    expect_error(list.try_call(L"Item", {Value{1e300}}), 6, L"Overflow");
    expect_error(list.try_call(L"Item", {Value::null()}), 94, L"Invalid use of Null");
    expect_error(list.try_call(L"Remove", {L"missing"}), 5, L"Invalid procedure call or argument");
    expect_error(list.try_call(L"Remove", {5}), 9, L"Subscript out of range");
    list.call(L"Remove", {L"A"});
    list.call(L"Remove", {2});
    EXPECT_EQ(names(list), L"b 1 ");
}

TEST_F(IniFile, RenamedItems)
{
    const Object list = parameters(L"Main"), renamed = list.object(L"Add", {L"p"});
    renamed.put(L"Name", {L"other"});
    EXPECT_TRUE(list.call(L"Exists", {L"OTHER"}).flag());
    EXPECT_FALSE(list.call(L"Exists", {L"p"}).flag());
    EXPECT_TRUE(same(list.object(L"Item", {L"p"}), renamed)) << "by key";
    EXPECT_TRUE(same(list.object(L"Add", {L"Other"}), renamed)) << "by name";
    EXPECT_FALSE(same(list.object(L"Add", {L"p"}), renamed));
    EXPECT_FALSE(same(list.object(L"Item", {L"p"}), renamed)) << "the new one has taken the key";
}

TEST_F(IniFile, WalkingWhileTheListChanges)
{
    const Object list = sections();
    const auto walked = [&](const wchar_t* at, const Value& removed) {
        for (const wchar_t* name : {L"a", L"b", L"c", L"d"})
            list.call(L"Add", {name});
        std::wstring seen;
        const client::Outcome all = list.invoke(DISPID_NEWENUM, DISPATCH_METHOD, {});
        IEnumVARIANT* enumerator = nullptr;
        all.value.punkVal->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&enumerator));
        for (Value item; enumerator->Next(1, &item, nullptr) == S_OK; item = Value{}) {
            const std::wstring name = Object{item.pdispVal}.call(L"Name").text();
            seen += name;
            if (name == at) {
                list.call(L"Remove", {removed});
                list.call(L"Add", {L"e"});
            }
        }
        enumerator->Release();
        while (list.call(L"Count").number() > 0)
            list.call(L"Remove", {1});
        return seen;
    };
    EXPECT_EQ(walked(L"b", L"b"), L"abcde") << "the current one";
    EXPECT_EQ(walked(L"b", L"a"), L"abcde") << "an earlier one";
    EXPECT_EQ(walked(L"b", L"c"), L"abde") << "the next one";
    EXPECT_EQ(walked(L"d", 4), L"abcde") << "the last one";
}

TEST_F(IniFile, CollectionsCanBeReplaced)
{
    const Object a = section(L"A"), b = section(L"B");
    EXPECT_EQ(a.try_set(L"Section", {b.object(L"Section")}).result, S_OK);
    EXPECT_TRUE(same(a.object(L"Section"), b.object(L"Section")));
    EXPECT_EQ(a.try_set(L"Section", {nothing}).result, S_OK);
    const Value none = a.call(L"Section");
    EXPECT_EQ(none.vt, VT_DISPATCH);
    EXPECT_EQ(none.pdispVal, nullptr);

    const Object former = a.object(L"Parameter");
    former.call(L"Add", {L"p"});
    EXPECT_EQ(a.try_set(L"Parameter", {nothing}).result, S_OK);
    EXPECT_EQ(a.object(L"Parameter").call(L"Count").number(), 0) << "created anew";
    EXPECT_EQ(ini.try_set(L"qvIniSection_Parameter", {former}).result, S_OK);
    EXPECT_EQ(saved(), "p=\r\n\r\n[A]\r\n\r\n\r\n[B]\r\n\r\n\r\n");
    load("[A] {\r\n[Sub]\r\n}\r\n");
    EXPECT_EQ(names(a.object(L"Section")), L"Sub ") << "a load creates what was set to nothing";

    ForeignList foreign;
    expect_error(a.try_set(L"Section", {Value{&foreign}}), 13, L"Type mismatch");
    EXPECT_EQ(names(a.object(L"Section")), L"Sub ");
}

TEST_F(IniFile, IsLoadedAndSavedWhole)
{
    load("Oben=1\r\n[Stra\xDF" "e] {\r\n L\xE4nge = 5 km\r\n[Ende]\r\nx\r\n}\r[Zwei]\r\n;Notiz\r\nPreis=3 \x80;rund\r\n");
    EXPECT_EQ(ini.call(L"FileName").text(), folder.file(L"loaded.ini"));
    const std::string expected = "Oben=1\r\n\r\n[Stra\xDF" "e]\r\n{\r\n\tL\xE4nge=5 km\r\n\r\n\t[Ende]\r\n\tx=\r\n\r\n\r\n}\r\n\r\n"
                                 "[Zwei]\r\n;Notiz=\r\nPreis=3 \x80;rund\r\n\r\n\r\n";
    if (GetACP() == 1252) {
        EXPECT_EQ(value(L"STRASSE", L"x"), L"") << "no such section";
        sections().call(L"Remove", {L"strasse"});
        EXPECT_EQ(value(L"stra\u00dfe", L"L\u00c4NGE"), L"5 km");
        EXPECT_EQ(value(L"Zwei", L"Preis"), L"3 \u20ac;rund");
        EXPECT_EQ(saved(), expected);
        parameters(L"Zwei").object(L"Item", {L"Preis"}).put(L"Value", {L"\u0100\u03a9"});
        ini.call(L"Save");
        EXPECT_NE(Folder::read(folder.file(L"saved.ini")).find("Preis=??\r\n"), std::string::npos);
    }

    const Object hidden = Object::create(L"qvObjects.qvIniFile");
    hidden.call(L"Load2", {folder.file(L"loaded.ini"), true, true});
    hidden.call(L"Save", {folder.file(L"hidden.ini")});
    EXPECT_EQ(Folder::read(folder.file(L"hidden.ini")).find(';'), std::string::npos);
}

TEST_F(IniFile, FailuresKeepTreeAndFile)
{
    load("[A]\r\nx=1\r\n");
    section(L"A").object(L"Parameter", {L"y"}).put(L"Value", {L"2"});
    const std::string before = saved();
    expect_error(ini.try_call(L"Load", {folder.file(L"missing.ini")}), 53, L"File not found");
    EXPECT_EQ(ini.call(L"FileName").text(), folder.file(L"missing.ini"));
    expect_error(ini.try_call(L"Save", {folder.file(L"no\\folder.ini")}), 76, L"Path not found");
    expect_error(ini.try_call(L"Load", {folder.file(L"*.ini")}), 52, L"Bad file name or number");
    std::string deep = "[A]\r\nx=changed\r\n";
    for (int level = 0; level < 100'000; ++level)
        deep += "[s] {\r\n";
    expect_error(ini.try_call(L"Load", {folder.write(L"deep.ini", deep)}), 28, L"Out of stack space");
    EXPECT_EQ(saved(), before);

    const Object a = section(L"A");
    EXPECT_EQ(a.try_set(L"Section", {sections()}).result, S_OK);
    expect_error(ini.try_call(L"Save"), 28, L"Out of stack space");
    EXPECT_EQ(Folder::read(folder.file(L"saved.ini")), before) << "the old file is kept";
    EXPECT_EQ(a.try_set(L"Section", {nothing}).result, S_OK);
}

TEST_F(IniFile, LoadsByItselfOnlyWhenSectionsAreUsed)
{
    const std::wstring path = folder.write(L"file.ini", "top=1\r\n[A]\r\nx=1\r\n");
    ini.put(L"FileName", {path});
    EXPECT_EQ(sections().call(L"Count").number(), 0);
    ini.put(L"AutoLoad", {true});
    EXPECT_EQ(ini.object(L"qvIniSection_Parameter").call(L"Count").number(), 0);
    EXPECT_EQ(ini.call(L"qvIniSection_Name").text(), L"");
    EXPECT_TRUE(ini.call(L"qvIniSection_FoundInFile").flag());
    EXPECT_EQ(value(L"A", L"x"), L"1");
    section(L"A").object(L"Parameter", {L"x"}).put(L"Value", {L"2"});
    EXPECT_EQ(value(L"A", L"x"), L"2") << "once only";

    const Object failing = Object::create(L"qvObjects.qvIniFile");
    failing.put(L"AutoLoad", {true});
    EXPECT_EQ(failing.object(L"Section").call(L"Count").number(), 0) << "nothing to load without a name";
    failing.put(L"FileName", {folder.file(L"missing.ini")});
    expect_error(failing.try_call(L"Section"), 53, L"File not found");
    expect_error(failing.try_call(L"qvIniSection_Section"), 53, L"File not found");
    expect_error(failing.try_set(L"Section", {sections()}), 53, L"File not found");
}

TEST_F(IniFile, IsASectionToo)
{
    load("top=1\r\n[A]\r\n[B]\r\n");
    _qvIniSection* root = nullptr;
    ASSERT_EQ(ini.dispatch()->QueryInterface(__uuidof(_qvIniSection), reinterpret_cast<void**>(&root)), S_OK);
    _qvIniSections* list = nullptr;
    ASSERT_EQ(root->get_Section(&list), S_OK);
    EXPECT_TRUE(same(Object{list}, sections()));
    long count = 0;
    EXPECT_EQ(list->get_Count(&count), S_OK);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(list->get_Count(nullptr), E_POINTER);
    EXPECT_EQ(root->get_Section(nullptr), E_POINTER);
    _qvIniSection* unchanged = root;
    EXPECT_EQ(list->get_Item(Value{9}, &unchanged), static_cast<HRESULT>(0x800A0009));
    EXPECT_EQ(unchanged, nullptr);
    EXPECT_EQ(root->put_Name(nullptr), S_OK);
    list->Release();
    root->Release();
}

TEST_F(IniFile, ObjectsOutliveWhatTheyWerePartOf)
{
    load("[A] {\r\n[B]\r\nx=1\r\n}\r\n");
    const Object b = section(L"A").object(L"Section", {L"B"});
    sections().call(L"Remove", {L"A"});
    EXPECT_EQ(b.object(L"Parameter", {L"x"}).call(L"Value").text(), L"1");
    ini = Object{};
    b.put(L"Name", {L"alone"});
    EXPECT_EQ(b.call(L"Name").text(), L"alone");

    Object deep = b;
    for (int level = 0; level < 20'000; ++level)
        deep = deep.object(L"Section", {L"s"});
    deep.object(L"Parameter").call(L"Add", {L"p"});
}

TEST_F(IniFile, AnyFileIsReadAndWritten)
{
    const auto resaved = [&](const std::string& bytes) {
        ini = Object::create(L"qvObjects.qvIniFile");
        load(bytes);
        return saved();
    };
    const std::string nuls(1'000'000, '\0');
    EXPECT_EQ(resaved(nuls), nuls + "=\r\n\r\n");
    EXPECT_EQ(resaved("\x1A[A]\r\nx=\x1A"), "\x1A[A]=\r\nx=\x1A\r\n\r\n");
    std::string noise;
    for (unsigned i = 0; i < 300'000; ++i)
        noise += static_cast<char>(i * 2654435761u >> 24);
    EXPECT_EQ(resaved(noise), resaved(noise));
}
