// Profile files and the user's settings, as clients meet them.
#include "support/dispatch_object.h"
#include "support/tables.h"

using client::expect_error;
using client::Folder;
using client::Object;
using client::told;
using client::Value;

namespace {

constexpr HRESULT key_exists = static_cast<HRESULT>(0x800A01C9);

/// A null text. The platform makes an empty one of it when it copies it, so it is passed by reference.
Value null_text()
{
    static BSTR null = nullptr;
    return Value::reference(VT_BSTR, &null);
}

class Profile : public testing::Test {
protected:
    client::Apartment apartment;
    const Object api = Object::create(L"qvObjects.qvAPI");
    const Folder folder;
    const std::wstring path = folder.write(L"a.ini", "[Main]\r\na=1\r\nGr\xF6\xDF" "e=gro\xDF\r\n[ Two ]\r\n[Empty]\r\nlast=\r\n");
};

/// A client's collection that notes what is done to it.
class Collection : public DispatchObject {
public:
    explicit Collection(long count = 0)
        : DispatchObject{{L"Count", L"Remove", L"Add"},
                         [this](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
                             return answer(member, arguments, result);
                         }},
          count_{count}
    {
    }

    std::wstring calls;
    HRESULT result_of_add = S_OK;
    WORD number_of_add = 0; ///< of an error that Add raises
    std::function<void()> in_the_middle = [] {};

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO* exception, UINT* bad) override
    {
        const HRESULT outcome = DispatchObject::Invoke(id, iid, locale, flags, arguments, result, exception, bad);
        if (outcome == DISP_E_EXCEPTION) {
            exception->wCode = number_of_add;
            exception->bstrDescription = SysAllocString(L"the collection's own");
        }
        return outcome;
    }

private:
    HRESULT answer(DISPID member, const DISPPARAMS& arguments, VARIANT* result)
    {
        in_the_middle();
        if (member == 1) {
            if (result)
                static_cast<Value&>(*result) = Value{count_};
            return S_OK;
        }
        calls += member == 2 ? L"Remove" : L"Add";
        for (UINT i = arguments.cArgs; i-- > 0;)
            calls += L" " + client::told_value(static_cast<const Value&>(arguments.rgvarg[i]));
        calls += L"; ";
        count_ += member == 2 ? -1 : 1;
        return member == 3 ? result_of_add : S_OK;
    }

    long count_;
};

} // namespace

TEST_F(Profile, ValuesThroughTheSystem)
{
    Value variable;
    const auto read = [&](const wchar_t* section, const Value& key) {
        const Value length = api.call(L"GetPrivateProfileString", {section, key, Value::variable(variable), path});
        EXPECT_EQ(length.vt, VT_I2);
        EXPECT_EQ(static_cast<std::size_t>(length.iVal), variable.text().size());
        return variable.text();
    };
    EXPECT_EQ(read(L"main", L"A"), L"1");
    EXPECT_EQ(read(L"Main", L"Gr\u00F6\u00DFe"), L"gro\u00DF");
    EXPECT_EQ(read(L"Main", L"Nobody"), L"") << "what was there is gone";
    EXPECT_TRUE(read(L"Main", null_text()).starts_with(std::wstring_view{L"a\0Gr\u00F6\u00DFe", 7})) << "a null text: all keys";
    EXPECT_FALSE(read(L"Main", Value{}).starts_with(L"a")) << "Empty is an empty text";

    EXPECT_EQ(api.call(L"WritePPs", {L"Main", L"number", 1.5, path}).vt, VT_I4);
    EXPECT_EQ(api.call(L"GetPPs2", {L"Main", L"number", L"", path}).text(), read(L"Main", L"number"));
    EXPECT_EQ(read(L"Main", L"number").size(), 3u) << "in the user's locale";
    EXPECT_EQ(api.call(L"WritePrivateProfileString", {L"Main", L"long", std::wstring(300, L'\u00E4'), path}).number(), 0);
    EXPECT_EQ(read(L"Main", L"long"), std::wstring(254, L'\u00E4'));
    EXPECT_EQ(api.call(L"WritePPs", {L"Main", L"long", null_text(), path}).number(), 0);
    EXPECT_EQ(read(L"Main", L"long"), L"");
    EXPECT_EQ(Folder::read(path).find("long"), std::string::npos) << "a null text deletes the key";
    EXPECT_EQ(api.call(L"WritePPs", {L"Main", L"a", L"2", folder.file(L"no folder\\a.ini")}).number(), 0) << "a failure is not told";

    BSTR typed = SysAllocString(L"before");
    const Value length = api.call(L"GetPPs", {L"Main", L"a", Value::reference(VT_BSTR, &typed), path});
    EXPECT_EQ(length.vt, VT_I4);
    EXPECT_EQ(length.lVal, 1);
    EXPECT_STREQ(typed, L"1");
    SysFreeString(typed);
}

TEST_F(Profile, ValuesReadFromTheFileItself)
{
    const auto read = [&](const Value& section, const wchar_t* key, const Value& file) {
        return api.call(L"GetPPs2", {section, key, L"default", file}).text();
    };
    EXPECT_EQ(read(L"MAIN", L" gr\u00D6\u00DFe ", path), L"gro\u00DF");
    EXPECT_EQ(read(L"Two", L"x", path), L"default");
    EXPECT_EQ(read(L"Empty", L"last", path), L"default");
    const std::wstring long_value(100'000, L'x');
    folder.write(L"long.ini", "[k]\r\nv= " + std::string(100'000, 'x') + " ");
    EXPECT_TRUE(read(L"k", L"V", folder.file(L"long.ini")) == long_value);
    for (const std::wstring& file : {std::wstring{}, folder.path(), folder.file(L"missing.ini"), folder.file(L"no folder\\a.ini"),
                                     folder.file(L"*.ini"), folder.file(L"a.ini:?"), path + std::wstring(1, L'\0') + L"x"})
        EXPECT_EQ(read(L"Main", L"a", file), L"default") << file;
    EXPECT_EQ(read(L"Main", L"a", Value{}), L"default");

    const HANDLE held = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    expect_error(api.try_call(L"GetPPs2", {L"Main", L"a", L"default", path}), 70, L"Permission denied");
    CloseHandle(held);
}

TEST_F(Profile, SectionsAndNamesIntoArraysOfAnyState)
{
    const std::wstring entries = L"String 0,0: ('' 'a' 'Gr\u00F6\u00DFe')('' '1' 'gro\u00DF')", names = L"String 0: '' 'Main' 'Two' 'Empty'";
    for (const Value& before : {Value{}, client::list(0, {}), client::list(5, {1, L"x"}), client::list(1, {L"x"}, VT_BSTR),
                                client::table(VT_BSTR, 1, 1, {{L"x", L"y"}})}) {
        Value items = before, sections = before;
        EXPECT_EQ(api.call(L"GetPPSectionStr", {L"main", Value::variable(items), path}).number(), 2);
        EXPECT_EQ(told(items), entries) << told(before);
        EXPECT_EQ(api.call(L"GetPPSectionNamesStr", {Value::variable(sections), path}).number(), 3);
        EXPECT_EQ(told(sections), names) << told(before);
    }
    Value typed = Value::of_type(VT_ARRAY | VT_BSTR);
    typed.parray = nullptr;
    EXPECT_EQ(api.call(L"GetPPSectionStr", {L"main", Value::reference(VT_ARRAY | VT_BSTR, &typed.parray), path}).number(), 2);
    EXPECT_EQ(told(typed), entries);
    EXPECT_EQ(api.call(L"GetPPSectionStr", {L"Nobody", Value::reference(VT_ARRAY | VT_BSTR, &typed.parray), path}).number(), 0);
    EXPECT_EQ(told(typed), L"String 0,0: ('')('')");
    EXPECT_EQ(api.call(L"GetPPSectionNamesStr", {Value::reference(VT_ARRAY | VT_BSTR, &typed.parray), folder.file(L"none")}).number(), 0);
    EXPECT_EQ(told(typed), L"String 0: ''");

    SafeArrayLock(typed.parray);
    expect_error(api.try_call(L"GetPPSectionStr", {L"main", Value::reference(VT_ARRAY | VT_BSTR, &typed.parray), path}), 10,
                 L"This array is fixed or temporarily locked");
    EXPECT_EQ(told(typed), L"String 0: ''");
    SafeArrayUnlock(typed.parray);
}

TEST_F(Profile, MoreThanTheSystemHasRoomForIsCut)
{
    std::string section = "[Large]\r\n", names;
    for (int i = 10000; i < 15000; ++i) {
        section += "key" + std::to_string(i) + "=value" + std::to_string(i) + "\r\n";
        names += "[Section with a long name " + std::to_string(i) + "]\r\n";
    }
    Value items, sections;
    const long count = api.call(L"GetPPSectionStr", {L"Large", Value::variable(items), folder.write(L"large.ini", section)}).number();
    EXPECT_TRUE(count > 1600 && count < 1725) << count; // each takes 20 bytes
    EXPECT_TRUE(told(items).starts_with(L"String 0,0: ('' 'key10000' 'key10001'"));
    const long name_count = api.call(L"GetPPSectionNamesStr", {Value::variable(sections), folder.write(L"names.ini", names)}).number();
    EXPECT_TRUE(name_count > 2000 && name_count < 2100) << name_count; // each takes 32
    EXPECT_EQ(sections.parray->rgsabound[0].cElements, static_cast<ULONG>(name_count) + 1);
}

TEST_F(Profile, SectionsAndNamesIntoACollection)
{
    Collection entries{2}, names{1};
    EXPECT_EQ(api.call(L"GetPPSectionCol", {L"Main", Value{&entries}, path}).number(), 2);
    EXPECT_EQ(entries.calls, L"Remove 1&; Remove 1&; Add '1' 'a'; Add 'gro\u00DF' 'Gr\u00F6\u00DFe'; ");
    EXPECT_EQ(api.call(L"GetPPSectionNamesCol", {Value{&names}, path}).number(), 3);
    EXPECT_EQ(names.calls, L"Remove 1&; Add 'Main'; Add 'Two'; Add 'Empty'; ");
    expect_error(api.try_call(L"GetPPSectionCol", {L"Main", Value{static_cast<IDispatch*>(nullptr)}, path}), 91,
                 L"Object variable or With block variable not set");
}

TEST_F(Profile, ACollectionMayRefuseAKeyThatItHas)
{
    struct Case {
        HRESULT result;
        WORD number;
        long error;
    };
    for (const auto& [result, number, error] :
         {Case{key_exists, 0, 0}, Case{DISP_E_EXCEPTION, 457, 0}, Case{DISP_E_EXCEPTION, 5, 5}, Case{E_OUTOFMEMORY, 0, 7},
          Case{E_ACCESSDENIED, 0, E_ACCESSDENIED}}) {
        Collection collection;
        collection.result_of_add = result;
        collection.number_of_add = number;
        const client::Outcome outcome = api.try_call(L"GetPPSectionCol", {L"Main", Value{&collection}, path});
        EXPECT_EQ(outcome.number(), error);
        if (error == 0) {
            EXPECT_EQ(outcome.value.number(), 2) << "both count";
        }
        Collection for_names;
        for_names.result_of_add = result;
        for_names.number_of_add = number;
        EXPECT_EQ(api.try_call(L"GetPPSectionNamesCol", {Value{&for_names}, path}).number(), error == 0 ? 457 : error)
            << "names have no keys";
    }
}

TEST_F(Profile, SectionsAndNamesIntoADictionary)
{
    const Object dictionary = Object::create(L"Scripting.Dictionary");
    dictionary.call(L"Add", {L"former", 1});
    EXPECT_EQ(api.call(L"GetPPSectionDic", {L"Main", dictionary, path}).number(), 2);
    EXPECT_EQ(dictionary.call(L"Count").number(), 2);
    EXPECT_EQ(dictionary.call(L"Item", {L"a"}).text(), L"1");
    EXPECT_EQ(dictionary.call(L"Item", {L"Gr\u00F6\u00DFe"}).text(), L"gro\u00DF");
    EXPECT_EQ(api.call(L"GetPPSectionNamesDic", {dictionary, path}).number(), 3);
    EXPECT_EQ(dictionary.call(L"Item", {L"Two"}).text(), L"Two");
    EXPECT_FALSE(dictionary.call(L"Exists", {L"a"}).flag());

    const std::wstring twice = folder.write(L"twice.ini", "[Main]\r\na=1\r\na=2\r\n");
    EXPECT_EQ(api.try_call(L"GetPPSectionDic", {L"Main", dictionary, twice}).number(), 457) << "a dictionary has each key once";

    DispatchObject refuses{{L"RemoveAll", L"Add"}, [](DISPID member, const DISPPARAMS&, VARIANT*) {
                               return member == 2 ? key_exists : S_OK;
                           }};
    EXPECT_EQ(api.try_call(L"GetPPSectionDic", {L"Main", Value{&refuses}, path}).number(), 457) << "a dictionary's error is told";
    EXPECT_EQ(api.try_call(L"GetPPSectionDic", {L"Main", api, path}).number(), 438) << "no dictionary";
}

TEST_F(Profile, AClientsCodeMayChangeTheCallersVariables)
{
    Collection collection{1};
    Value section = L"Main", file = path, list = Value{&collection};
    collection.in_the_middle = [&] { section = file = list = Value{}; };
    EXPECT_EQ(api.call(L"GetPPSectionCol", {Value::variable(section), Value::variable(list), Value::variable(file)}).number(), 2);
    EXPECT_EQ(collection.calls, L"Remove 1&; Add '1' 'a'; Add 'gro\u00DF' 'Gr\u00F6\u00DFe'; ");
    EXPECT_EQ(section.vt, VT_EMPTY);
}

namespace {

class UserSettings : public testing::Test {
protected:
    ~UserSettings() override { RegDeleteTreeW(HKEY_CURRENT_USER, application_key); }

    static constexpr const wchar_t* application = L"qvObjects settings test";
    static constexpr const wchar_t* application_key = L"Software\\VB and VBA Program Settings\\qvObjects settings test";

    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
};

} // namespace

TEST_F(UserSettings, AreReadAndWritten)
{
    const std::wstring value = L"Gr\u00F6\u00DFe \u65E5\u672C";
    EXPECT_EQ(common.call(L"ReadKey", {application, L"Path"}).text(), L"");
    EXPECT_EQ(common.call(L"ReadKey", {application, L"Path", L"default"}).text(), L"default");
    EXPECT_EQ(common.call(L"WriteKey", {application, L"Path", value}).vt, VT_EMPTY);
    EXPECT_EQ(common.call(L"ReadKey", {application, L"path", L"default"}).text(), value);
    wchar_t stored[100] = L"";
    DWORD size = sizeof stored;
    const std::wstring key = std::wstring{application_key} + L"\\Settings";
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, key.c_str(), L"Path", RRF_RT_REG_SZ, nullptr, stored, &size), ERROR_SUCCESS);
    EXPECT_EQ(stored, value);
    common.call(L"WriteKey", {application, L"Path", L""});
    EXPECT_EQ(common.call(L"ReadKey", {application, L"Path", L"default"}).text(), L"default") << "an empty text is none";
    common.call(L"WriteKey", {application, 12, true});
    EXPECT_TRUE(common.call(L"ReadKeyF", {application, L"12"}).flag());
    for (const std::vector<Value>& names : {std::vector<Value>{L"", L"k", L"x"}, std::vector<Value>{application, Value{}, L"x"}}) {
        expect_error(common.try_call(L"WriteKey", names), 5, L"Invalid procedure call or argument");
        expect_error(common.try_call(L"ReadKey", names), 5, L"Invalid procedure call or argument");
    }
    expect_error(common.try_call(L"ReadKeyF", {application, L""}), 5, L"Invalid procedure call or argument");
}

TEST_F(UserSettings, AreTruthValuesInEitherLanguage)
{
    EXPECT_FALSE(common.call(L"ReadKeyF", {application, L"k"}).flag());
    EXPECT_TRUE(common.call(L"ReadKeyF", {application, L"k", true}).flag());
    struct Case {
        const wchar_t* stored;
        bool truth, else_true;
    };
    for (const auto& [stored, truth, else_true] : {Case{L"Falsch", false, false}, Case{L"wahr", true, true}, Case{L"0", false, false},
                                                   Case{L"10", true, true}, Case{L"yes", false, true}, Case{L"", false, true}}) {
        common.call(L"WriteKey", {application, L"k", stored});
        EXPECT_EQ(common.call(L"ReadKeyF", {application, L"k"}).flag(), truth) << stored;
        EXPECT_EQ(common.call(L"ReadKeyF", {application, L"k", true}).flag(), else_true) << stored;
    }
}
