#include "support/dispatch_object.h"
#include "support/message_box.h"
#include "support/tables.h"

using client::expect_error;
using client::Object;
using client::Value;

namespace {

/// An object of the client with the members Item, Add, Count and Name.
class Thing final : public DispatchObject {
public:
    enum Member : DISPID { Value = DISPID_VALUE, Item, Add, Count, Name };

    explicit Thing(Answer answer) : DispatchObject{{L"Item", L"Add", L"Count", L"Name"}, std::move(answer)} {}
};

/// Gives this for one member, and fails for the others.
Thing::Answer giving(Thing::Member member, Value value)
{
    return [=](DISPID id, const DISPPARAMS&, VARIANT* result) mutable {
        return id == member ? VariantCopy(result, &value) : E_FAIL;
    };
}

/// A list of this type whose index starts at `low`.
Value array(VARTYPE type, LONG low, const std::vector<Value>& elements)
{
    return client::array(type, {{static_cast<ULONG>(elements.size()), low}}, elements);
}

/// What the platform writes for a value in the user's locale.
std::wstring in_locale(Value value)
{
    Value text;
    EXPECT_EQ(VariantChangeTypeEx(&text, &value, LOCALE_USER_DEFAULT, VARIANT_LOCALBOOL, VT_BSTR), S_OK);
    return text.text();
}

class Texts : public testing::Test {
protected:
    using Arguments = std::initializer_list<Value>;

    std::wstring text(const wchar_t* member, Arguments arguments) const { return common.call(member, arguments).text(); }
    bool flag(const wchar_t* member, Arguments arguments) const { return common.call(member, arguments).flag(); }
    std::wstring insert(Arguments arguments) const
    {
        std::wstring expanded = text(L"Insert", arguments);
        EXPECT_EQ(text(L"Ins", arguments), expanded);
        return expanded;
    }

    client::Apartment apartment;
    Object common = Object::create(L"qvObjects.qvCommon");
};

} // namespace

TEST_F(Texts, InsertTakesAnyValuesInTheUsersLocale)
{
    EXPECT_EQ(insert({L"Datei |a|1|a fehlt|N", L"abc"}), L"Datei \"abc\" fehlt\r\n");
    EXPECT_EQ(insert({L"|1"}) + insert({L"|1", Value::missing()}), L"|1|1");
    Thing thing{giving(Thing::Value, 2.5)};
    EXPECT_EQ(insert({L"|1 |2 |3 |4 |5", 1.5, true, Value{}, -7, &thing}),
              in_locale(1.5) + L" " + in_locale(true) + L"  -7 " + in_locale(2.5));
}

TEST_F(Texts, InsertTakesTheElementsOfTheOnlyArray)
{
    Value values = array(VT_VARIANT, 5, {L"a", 2});
    EXPECT_EQ(insert({L"|1 |2 |3", values}), L"a 2 |3");
    EXPECT_EQ(insert({L"|1 |2", Value::variable(values)}), L"a 2");
    EXPECT_EQ(insert({L"|1 |2", Value::reference(VT_ARRAY | VT_VARIANT, &values.parray)}), L"a 2");
    EXPECT_EQ(insert({L"|1", array(VT_VARIANT, 0, {})}), L"|1");

    EXPECT_EQ(insert({L"|1 |2", array(VT_I2, 1, {-1, 2})}), L"-1 2");
    EXPECT_EQ(insert({L"|1 |2", array(VT_UI1, -3, {0, 255})}), L"0 255");
    EXPECT_EQ(insert({L"|1 |2", array(VT_R8, 0, {.5, -2})}), in_locale(.5) + L" -2");
    EXPECT_EQ(insert({L"|1", array(VT_BOOL, 0, {true})}), in_locale(true));
    EXPECT_EQ(insert({L"|1|2", array(VT_BSTR, 0, {L"eins", L""})}), L"eins");
    EXPECT_EQ(insert({L"|1", array(VT_DECIMAL, 0, {3})}), L"3");
}

TEST_F(Texts, InsertRaisesWhatTheFirstValueFailsWith)
{
    Thing thing{giving(Thing::Name, L"no value")};
    expect_error(common.try_call(L"Insert", {L"|1", Value::null()}), 94, L"Invalid use of Null");
    expect_error(common.try_call(L"Ins", {L"|1", array(VT_VARIANT, 5, {Value::null()})}), 94, L"Invalid use of Null");
    expect_error(common.try_call(L"Insert", {L"|1", Value::of_type(VT_ERROR), L"b"}), 13, L"Type mismatch");
    EXPECT_EQ(common.try_call(L"Insert", {L"|1", &thing}).result, DISP_E_EXCEPTION);
    EXPECT_EQ(insert({L"|1 |2 |3 |4 |5", L"a", Value::null(), &thing, array(VT_I2, 0, {1}), L"e"}), L"a a a a e");

    Value bytes = array(VT_UI1, 0, {1, 2, 3, 4, 5, 6, 7, 8});
    bytes.vt = VT_ARRAY | VT_BSTR;
    expect_error(common.try_call(L"Insert", {L"|1", Value::reference(VT_ARRAY | VT_BSTR, &bytes.parray)}), 13, L"Type mismatch");
    bytes.vt = VT_ARRAY | VT_UI1;
    for (const Value& wrong : {Value::of_type(VT_ARRAY | VT_VARIANT), client::table(VT_VARIANT, 0, 0, {{L"a"}})})
        expect_error(common.try_call(L"Insert", {L"|1", wrong}), 9, L"Subscript out of range");
    std::wstring message;
    for (int i = 0; i < 0x8000; ++i)
        message += L"|1";
    expect_error(common.try_call(L"Insert", {message, std::wstring(0x10000, L'x')}), 7, L"Out of memory");
}

TEST_F(Texts, TextsGoInAndOut)
{
    EXPECT_EQ(text(L"StringCut", {L"Hello  World", L"o"}), L"HellWorld");
    EXPECT_EQ(text(L"StringCut", {L"Hello  World", L"o", 1}), L"Hell World");
    EXPECT_EQ(text(L"Anf\u00fc", {}), L"\"");
    EXPECT_EQ(text(L"ANF\u00dc", {L"x"}), L"\"x\"");
    EXPECT_EQ(text(L"qvTrimL", {L"\tx "}) + text(L"qvTrimR", {L"\tx "}) + text(L"qvTrim", {L" y\t"}), L"x \txy");
    EXPECT_EQ(text(L"qvTrim", {std::wstring{L" \0 ", 3}}), (std::wstring{L"\0", 1}));
    EXPECT_TRUE(flag(L"StrToBOOL", {L"WAHR"}));
    EXPECT_FALSE(flag(L"StrToBOOL", {L"yes"}));
    const Value number = common.call(L"StrToNum", {L"1,5"});
    EXPECT_EQ(number.vt, VT_R8);
    EXPECT_EQ(number.dblVal, 1.5);
    expect_error(common.try_call(L"StrToNum", {L"1E400"}), 6, L"Overflow");
    EXPECT_EQ(common.call(L"StrToNum", {L"1e400x"}).dblVal, 0);
}

TEST_F(Texts, NumbersGoIntoAnyCollection)
{
    std::wstring added;
    Thing list{[&](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
        if (member == Thing::Add)
            added.append(arguments.rgvarg[0].bstrVal).append(arguments.cArgs, L';');
        else
            *result = Value{static_cast<long>(added.size())};
        return member == Thing::Add || member == Thing::Count ? S_OK : E_FAIL;
    }};
    EXPECT_EQ(common.call(L"GetNumbersFromStringCol", {L"a12b3,45", &list}).number(), 8);
    EXPECT_EQ(common.call(L"GetNumbersFromStringCol", {L"", &list}).number(), 8) << "the collection's own count";
    EXPECT_EQ(added, L"12;3;45;");
    expect_error(common.try_call(L"GetNumbersFromStringCol", {L"", static_cast<IDispatch*>(nullptr)}), 91,
                 L"Object variable or With block variable not set");
    EXPECT_EQ(common.try_call(L"GetNumbersFromStringCol", {L"1", common}).number(), 438) << "no collection";
    expect_error(common.try_call(L"GetNumbersFromStringCol", {L"1", Object::create(L"Scripting.Dictionary")}), 450,
                 L"Wrong number of arguments or invalid property assignment");
}

TEST_F(Texts, WhatIsNotNumericIsToldWhenWanted)
{
    EXPECT_TRUE(flag(L"qvIsNumeric", {L" " + in_locale(-1.5) + L" ", true}));
    EXPECT_FALSE(flag(L"qvIsNumeric", {L"x"})) << "and shows nothing, or this test would not end";
    MessageBoxCatcher box;
    EXPECT_FALSE(flag(L"qvIsNumeric", {L"", true, L"Caption"}));
    ASSERT_TRUE(box.caught());
    EXPECT_EQ(box.caption, L"Caption");
    EXPECT_EQ(box.text, L"Bitte geben Sie einen numerischen Wert ein!");
    EXPECT_EQ(box.icon, 32515);
    EXPECT_EQ(box.buttons, 1);
}

TEST_F(Texts, ExistsInColReadsTheItem)
{
    Thing plain{giving(Thing::Name, L"x")}, valuable{giving(Thing::Value, 1)};
    const auto exists = [&](const Value& item, bool as_object) {
        Thing list{giving(Thing::Item, item)};
        return flag(L"ExistsInCol", {&list, L"key", as_object});
    };
    const Value nothing{static_cast<IDispatch*>(nullptr)};
    EXPECT_TRUE(exists(L"text", false));
    EXPECT_TRUE(exists(Value::null(), false));
    EXPECT_TRUE(exists(&valuable, false));
    EXPECT_FALSE(exists(&plain, false)) << "an object without a value";
    EXPECT_FALSE(exists(nothing, false));
    EXPECT_FALSE(exists(L"text", true)) << "no object";
    EXPECT_TRUE(exists(&plain, true));
    EXPECT_TRUE(exists(nothing, true));

    for (const Value& no_list : {Value{&plain}, Value{common}, nothing})
        EXPECT_FALSE(flag(L"ExistsInCol", {no_list, L"key"}));
    const Object dictionary = Object::create(L"Scripting.Dictionary");
    dictionary.call(L"Add", {L"key", 1});
    EXPECT_TRUE(flag(L"ExistsInCol", {dictionary, L"key"}));
}

TEST_F(Texts, ObjTestWantsAName)
{
    const auto passes = [&](Thing::Member member, const Value& value) {
        Thing thing{giving(member, value)};
        return flag(L"ObjTest", {&thing});
    };
    EXPECT_TRUE(passes(Thing::Name, L"x"));
    EXPECT_TRUE(passes(Thing::Name, 7));
    EXPECT_FALSE(passes(Thing::Name, L""));
    EXPECT_FALSE(passes(Thing::Name, Value::null()));
    EXPECT_FALSE(passes(Thing::Item, L"x")) << "its name fails";
    EXPECT_FALSE(flag(L"ObjTest", {common}));
    EXPECT_FALSE(flag(L"ObjTest", {static_cast<IDispatch*>(nullptr)}));
}

TEST_F(Texts, GetShortTextKeepsTheLength)
{
    const HDC context = CreateCompatibleDC(nullptr);
    const auto handle = static_cast<long>(reinterpret_cast<LONG_PTR>(context));
    const wchar_t* path = L"C:\\Folder\\Another folder\\file.txt";
    const std::wstring result = text(L"GetShortText", {handle, path, 120});
    EXPECT_EQ(result.size(), std::wcslen(path));
    EXPECT_TRUE(std::wstring{result.c_str()}.ends_with(L"...\\file.txt"));
    EXPECT_EQ(text(L"GetShortText", {handle, path, 120, DT_END_ELLIPSIS}), path);
    DeleteDC(context);
}
