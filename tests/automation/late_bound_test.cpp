#include "automation/specimen.h"
#include "support/dispatch_object.h"
#include "support/tables.h"

using client::expect_error;
using client::list;
using client::Object;
using client::Value;

namespace {

class LateBound : public testing::Test {
protected:
    client::Apartment apartment;
    Object specimen = Specimen::create();
};

/// Calls with arguments by name, given in any order.
HRESULT call_named(const Object& object, const wchar_t* member, const std::vector<std::pair<const wchar_t*, Value>>& arguments,
                   Value& result)
{
    std::vector<LPOLESTR> names{const_cast<LPOLESTR>(member)};
    std::vector<VARIANTARG> values;
    for (const auto& [name, value] : arguments) {
        names.push_back(const_cast<LPOLESTR>(name));
        values.push_back(value);
    }
    std::vector<DISPID> ids(names.size());
    const HRESULT found = object.dispatch()->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), 0, ids.data());
    if (FAILED(found))
        return found;
    const auto count = static_cast<UINT>(values.size());
    DISPPARAMS parameters{values.data(), ids.data() + 1, count, count};
    return object.dispatch()->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
}

} // namespace

TEST_F(LateBound, NamesAreFoundInAnyCaseAndWrongOnesAreNot)
{
    EXPECT_EQ(specimen.id(L"tWICE"), specimen.id(L"Twice"));
    EXPECT_EQ(specimen.id(L"Twic"), DISPID_UNKNOWN);
    EXPECT_EQ(specimen.id(L""), DISPID_UNKNOWN);
    Value result;
    EXPECT_EQ(call_named(specimen, L"OPTIONS", {{L"B", 2}, {L"a", 1}}, result), S_OK);
    EXPECT_EQ(result.number(), 120);
    EXPECT_EQ(call_named(specimen, L"Options", {{L"nobody", 2}}, result), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(call_named(specimen, L"Options", {{L"b", 2}}, result), DISP_E_BADPARAMCOUNT) << "a is needed";
}

TEST_F(LateBound, AWrongCountFailsBeforeAnythingRuns)
{
    Value reached = 0;
    EXPECT_EQ(specimen.try_call(L"Fail", {5}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(specimen.try_call(L"Fail", {5, Value::variable(reached), 1}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(reached.number(), 0);
    EXPECT_EQ(specimen.try_call(L"Twice", {Value::missing()}).result, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(specimen.invoke(4711, DISPATCH_METHOD, {}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(specimen.invoke(-3, DISPATCH_METHOD, {}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(specimen.try_put(L"Twice", {1}).result, DISP_E_MEMBERNOTFOUND) << "a method can't be set";
    EXPECT_EQ(specimen.try_call(L"Only").result, DISP_E_MEMBERNOTFOUND) << "a property that is only set can't be read";
}

TEST_F(LateBound, OmittedArgumentsTakeTheirDefaults)
{
    EXPECT_EQ(specimen.call(L"Options", {1}).number(), 170);
    EXPECT_EQ(specimen.call(L"Options", {1, Value::missing(), 5}).number(), 175);
    EXPECT_EQ(specimen.call(L"Options", {1, 2, Value::missing()}).number(), 120);
    EXPECT_EQ(specimen.call(L"Value").text(), L"none");
    EXPECT_EQ(specimen.call(L"Value", {L"other"}).text(), L"other");
}

TEST_F(LateBound, ValuesAreConvertedAndOnesThatCannotBeAreNamed)
{
    EXPECT_EQ(specimen.call(L"Twice", {L" 21 "}).number(), 42);
    EXPECT_EQ(specimen.call(L"Twice", {2.5}).number(), 4) << "halves go to the even number";
    EXPECT_EQ(specimen.call(L"Twice", {true}).number(), -2);
    Value text = L"7";
    EXPECT_EQ(specimen.call(L"Twice", {Value::variable(text)}).number(), 14);

    for (const Value& wrong : {Value{L"no number"}, Value{static_cast<IDispatch*>(nullptr)}}) {
        const auto mismatch = specimen.try_call(L"Options", {1, wrong, 3});
        EXPECT_EQ(mismatch.result, DISP_E_TYPEMISMATCH);
        EXPECT_EQ(mismatch.bad_argument, 1u);
    }
    EXPECT_EQ(specimen.try_call(L"Twice", {40000}).result, DISP_E_OVERFLOW);
    expect_error(specimen.try_call(L"Value", {Value::null()}), 94, L"Invalid use of Null", L"class_tests");
}

TEST_F(LateBound, EveryTypeArrivesInItsPlace)
{
    Value currency = Value::of_type(VT_CY);
    currency.cyVal.int64 = 20000;
    Value date = Value::of_type(VT_DATE);
    date.date = 3.0;
    EXPECT_EQ(specimen.call(L"Mixed", {L"5", 2, true, 1.5, currency, date, 1}).dblVal, 5 + 20 + 100 + 1500 + 20000 + 3e6 + 1e8);
    EXPECT_EQ(specimen.try_call(L"Mixed", {256, 2, true, 1.5, currency, date, 1}).result, DISP_E_OVERFLOW);
}

TEST_F(LateBound, AVariantByValueIsSeenWithoutItsReferences)
{
    short number = 7;
    Value text = L"x", array = list(0, {1});
    EXPECT_EQ(specimen.call(L"TypeOf", {Value::reference(VT_I2, &number)}).number(), VT_I2);
    EXPECT_EQ(specimen.call(L"TypeOf", {Value::variable(text)}).number(), VT_BSTR);
    EXPECT_EQ(specimen.call(L"TypeOf", {Value::reference(VT_ARRAY | VT_VARIANT, &array.parray)}).number(), VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(specimen.call(L"TypeOf", {Value::null()}).number(), VT_NULL);
}

TEST_F(LateBound, ByReferenceTheCallersVariableChangesWhateverItsType)
{
    const auto doubled = [&](Value variable) {
        specimen.call(L"Double", {Value::variable(variable)});
        return variable;
    };
    const auto appended = [&](Value variable, const wchar_t* tail) {
        specimen.call(L"Append", {Value::variable(variable), tail});
        return variable;
    };
    EXPECT_EQ(doubled(21).number(), 42);
    EXPECT_EQ(doubled(L"21").vt, VT_I4);
    EXPECT_EQ(doubled(Value{}).vt, VT_I4);
    EXPECT_EQ(doubled(L"0").text(), L"0") << "what has not changed keeps its type";
    EXPECT_EQ(appended(1.5, L"").vt, VT_R8);
    EXPECT_EQ(appended(L"a", L"z").text(), L"az");
    EXPECT_EQ(appended(1, L"z").text(), L"1z");

    long typed = 21;
    short narrow = 21;
    Value literal = 21, text = L"b", any = L"before";
    specimen.call(L"Double", {Value::reference(VT_I4, &typed)});
    specimen.call(L"Double", {Value::reference(VT_I2, &narrow)});
    specimen.call(L"Double", {literal});
    specimen.call(L"Append", {Value::reference(VT_BSTR, &text.bstrVal), L"z"});
    specimen.call(L"Replace", {Value::variable(any), 5});
    EXPECT_EQ(typed, 42);
    EXPECT_EQ(narrow, 42);
    EXPECT_EQ(literal.number(), 21) << "a value is no variable";
    EXPECT_EQ(text.text(), L"bz");
    EXPECT_EQ(any.number(), 5);
    double real = 1.5;
    specimen.call(L"Replace", {Value::reference(VT_R8, &real), L"2"});
    EXPECT_EQ(real, 2.0);
}

TEST_F(LateBound, TypedArraysComeAsTheyAreAsVariantsOrEmpty)
{
    Value empty;
    specimen.call(L"Fill", {Value::variable(empty), 3});
    EXPECT_EQ(empty.vt, VT_ARRAY | VT_R8);
    EXPECT_EQ(specimen.call(L"Sum", {Value::variable(empty)}).dblVal, 4.5);

    Value variants = list(5, {1, L"2", 3.5});
    EXPECT_EQ(specimen.call(L"Sum", {Value::variable(variants)}).dblVal, 6.5);
    EXPECT_EQ(variants.vt, VT_ARRAY | VT_VARIANT) << "by value the caller's array stays";
    specimen.call(L"Fill", {Value::variable(variants), 2});
    EXPECT_EQ(variants.vt, VT_ARRAY | VT_R8);

    Value own = Value::of_type(VT_ARRAY | VT_R8);
    specimen.call(L"Fill", {Value::reference(VT_ARRAY | VT_R8, &own.parray), 4});
    ASSERT_TRUE(own.parray);
    EXPECT_EQ(own.parray->rgsabound[0].cElements, 4u);

    EXPECT_EQ(specimen.try_call(L"Sum", {list(0, {1, L"x"})}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(specimen.try_call(L"Sum", {7}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(LateBound, AnArrayIsWhatItsElementsAre)
{
    for (const VARTYPE label : {VT_R8, VT_BSTR}) {
        Value bytes = list(0, {1, 2}, VT_UI1);
        bytes.vt = static_cast<VARTYPE>(VT_ARRAY | label);
        for (const Value& given : {Value::variable(bytes), Value::reference(bytes.vt, &bytes.parray)})
            for (const wchar_t* member : {L"Sum", L"Total", L"Fill"})
                EXPECT_EQ(specimen.try_call(member, member[0] == L'F' ? std::vector<Value>{given, 1} : std::vector<Value>{given}).result,
                          DISP_E_TYPEMISMATCH);
        bytes.vt = VT_ARRAY | VT_UI1;
    }
}

TEST_F(LateBound, ArraysThatDoNotChangeAreNotCopied)
{
    Value typed, variants = list(0, {1, 2});
    specimen.call(L"Fill", {Value::variable(typed), 2});
    for (const Value& array : {Value::variable(typed), typed, Value::reference(VT_ARRAY | VT_R8, &typed.parray)})
        EXPECT_EQ(specimen.call(L"Total", {array}).dblVal, 2.0);
    EXPECT_EQ(specimen.call(L"Total", {Value::variable(variants)}).dblVal, 3.0);
    EXPECT_EQ(variants.vt, VT_ARRAY | VT_VARIANT) << "a script could not read a typed one";
}

TEST_F(LateBound, AByReferenceVariantTakesAnArrayInPlaceOfAnother)
{
    Value first, second, variable = L"text";
    specimen.call(L"Fill", {Value::variable(first), 2});
    specimen.call(L"Fill", {Value::variable(second), 5});
    const Value by_reference = Value::reference(VT_ARRAY | VT_R8, &first.parray);
    specimen.call(L"Assign", {by_reference, second});
    EXPECT_EQ(first.parray->rgsabound[0].cElements, 5u);
    expect_error(specimen.try_call(L"Assign", {by_reference, list(0, {1})}), 13, L"Type mismatch", L"class_tests");
    SafeArrayLock(first.parray);
    EXPECT_EQ(specimen.try_call(L"Assign", {by_reference, second}).number(), 10) << "locked";
    SafeArrayUnlock(first.parray);
    specimen.call(L"Assign", {Value::variable(variable), second});
    EXPECT_EQ(variable.vt, VT_ARRAY | VT_R8);
}

TEST_F(LateBound, AnyNumberOfArgumentsBecomesAList)
{
    Value variable = 1.5;
    EXPECT_EQ(specimen.call(L"Types", {L","}).text(), L"");
    EXPECT_EQ(specimen.call(L"Types", {L",", L"a", Value::variable(variable), list(0, {1}), Value::null()}).text(), L"8,5,8204,1,");
    EXPECT_EQ(specimen.try_call(L"Types", {}).result, DISP_E_BADPARAMCOUNT);
}

TEST_F(LateBound, PropertiesAreSetTheWayTheirClientsDo)
{
    const Object other = Specimen::create();
    specimen.put(L"Value", {L"x"});
    EXPECT_EQ(specimen.call(L"Value").text(), L"x");
    specimen.put(L"Value", {L"ignored", L"y"});
    EXPECT_EQ(specimen.call(L"Value").text(), L"y");
    specimen.put(L"Only", {5});
    EXPECT_EQ(specimen.invoke(DISPID_VALUE, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}).value.text(), L"5");

    EXPECT_EQ(specimen.try_set(L"Partner", {other}).result, S_OK);
    EXPECT_EQ(specimen.object(L"Partner").dispatch(), other.dispatch());
    EXPECT_EQ(specimen.try_set(L"Partner", {Value{static_cast<IDispatch*>(nullptr)}}).result, S_OK);
    EXPECT_EQ(specimen.call(L"Partner").pdispVal, nullptr);
    specimen.put(L"Partner", {other}); // a plain put to a property that is only set by reference
    EXPECT_EQ(specimen.object(L"Partner").dispatch(), other.dispatch());
    EXPECT_EQ(specimen.try_put(L"Partner", {5}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(specimen.try_put(L"Twice", {L"x"}).result, DISP_E_MEMBERNOTFOUND);
}

TEST_F(LateBound, ArgumentsOfAPropertyThatTakesNoneAreForItsObject)
{
    specimen.object(L"Items").call(L"Add", {L"first", L"Key"});
    EXPECT_EQ(specimen.call(L"Items", {L"KEY"}).text(), L"first");
    EXPECT_EQ(specimen.call(L"Items", {1}).text(), L"first");
    expect_error(specimen.try_call(L"Items", {2}), 9, L"Subscript out of range", L"class_tests");

    specimen.put(L"Child", {L"a", L"value of a"}); // an item that can't be set itself takes the value
    EXPECT_EQ(specimen.object(L"Child", {L"a"}).call(L"Value").text(), L"value of a");
    expect_error(specimen.try_call(L"Partner", {L"x"}), 91, L"Object variable or With block variable not set", L"class_tests");
    specimen.try_set(L"Partner", {Specimen::create()});
    EXPECT_EQ(specimen.call(L"Partner", {L"default of its Value"}).text(), L"default of its Value");
    specimen.put(L"Partner", {L"", L"set through"});
    EXPECT_EQ(specimen.object(L"Partner").call(L"Value").text(), L"set through");
}

TEST_F(LateBound, ErrorsArriveWithNumberSourceAndDescription)
{
    Value reached = 0;
    expect_error(specimen.try_call(L"Fail", {13, Value::variable(reached)}), 13, L"Beschreibung \u00fc", L"class_tests");
    EXPECT_EQ(reached.number(), 1) << "what was done before the error stays done";
    expect_error(specimen.try_call(L"Fail", {3, 0}), 3, L"Beschreibung \u00fc", L"Specimen.Source");
    constexpr auto own = static_cast<long>(0x80040001);
    expect_error(specimen.try_call(L"Fail", {own, 0}), own, L"Beschreibung \u00fc", L"class_tests");
    expect_error(specimen.try_call(L"Fail", {1, 0}), 7, L"Out of memory", L"class_tests");
    EXPECT_EQ(specimen.try_call(L"Fail", {2, 0}).code, E_UNEXPECTED);
}

TEST_F(LateBound, ClientCodeThatRunsInTheMiddleTakesNothingAway)
{
    Value text, typed, number;
    Value value_of_object;
    std::function<void()> meddle;
    DispatchObject object{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) { // its value is asked for in the middle of calls
                              meddle();
                              return VariantCopy(result, &value_of_object);
                          }};
    const Value late{&object};

    // what was passed before is what the call works with, whatever its variable holds by then
    meddle = [&] { text = L"another text that takes the place of the first"; };
    text = L"first";
    value_of_object = 2;
    EXPECT_EQ(specimen.call(L"Repeat", {Value::variable(text), late}).text(), L"firstfirst");
    text = L"first";
    EXPECT_EQ(specimen.call(L"Repeat", {Value::reference(VT_BSTR, &text.bstrVal), late}).text(), L"firstfirst");

    // a variable that changes may have another type by then
    meddle = [&] { text = 7, typed = L"no array any more"; };
    text = L"a";
    value_of_object = L"z";
    specimen.call(L"Append", {Value::variable(text), late});
    EXPECT_EQ(text.text(), L"az");
    typed = list(0, {1, 2}, VT_R8);
    value_of_object = 3;
    specimen.call(L"Fill", {Value::variable(typed), late});
    EXPECT_EQ(typed.vt, VT_ARRAY | VT_R8);

    // the object itself may be let go of
    auto* const alone = automation::make<Specimen>().release();
    meddle = [&] { alone->Release(); };
    value_of_object = 3;
    VARIANT arguments[]{late};
    DISPPARAMS parameters{arguments, nullptr, 1, 0};
    Value twice;
    EXPECT_EQ(alone->face<IDispatch>()->Invoke(specimen.id(L"Twice"), IID_NULL, 0, DISPATCH_METHOD, &parameters, &twice, nullptr, nullptr), S_OK);
    EXPECT_EQ(twice.number(), 6);

    // elements are converted too
    meddle = [&] { number = L"gone"; };
    value_of_object = 1.5;
    number = 21;
    EXPECT_EQ(specimen.call(L"Sum", {list(0, {late, late})}).dblVal, 3.0);
}

TEST_F(LateBound, ReferencesThatLeadNowhereAreRefused)
{
    Value circle = Value::of_type(VT_BYREF | VT_VARIANT);
    circle.pvarVal = &circle;
    long unused = 0;
    // As a client's own call has it: copying would lose what is wrong.
    const auto result_of = [&](const wchar_t* member, VARTYPE type, void* place) {
        VARIANT arguments[]{Value{1}, Value{}};
        arguments[1].vt = static_cast<VARTYPE>(VT_BYREF | type);
        arguments[1].byref = place;
        DISPPARAMS parameters{arguments, nullptr, 2, 0};
        return specimen.dispatch()->Invoke(specimen.id(member), IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
    };
    for (const int type : std::initializer_list<int>{VT_I4, VT_BSTR, VT_R8, VT_DECIMAL, VT_DISPATCH, VT_RECORD, VT_EMPTY, VT_NULL,
                                                    VT_ARRAY | VT_I4, VT_VARIANT})
        EXPECT_EQ(result_of(L"Assign", static_cast<VARTYPE>(type), nullptr), DISP_E_TYPEMISMATCH) << type;
    EXPECT_EQ(result_of(L"Assign", VT_EMPTY, &unused), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(result_of(L"Fill", VT_ARRAY | VT_R8, nullptr), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(result_of(L"Assign", VT_VARIANT, &circle), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(specimen.try_call(L"Types", {L",", Value::variable(circle)}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(specimen.try_call(L"Twice", {Value::variable(circle)}).result, DISP_E_TYPEMISMATCH);
    circle.vt = VT_EMPTY;
    EXPECT_EQ(specimen.call(L"TypeOf", {Value::reference(VT_I4, nullptr)}).number(), VT_EMPTY);
}

TEST_F(LateBound, ARecordIsNeverOverwritten)
{
    automation::Ref<IRecordInfo> information;
    constexpr GUID id{0x7B1E0A59, 0x6B1B, 0x4F0B, {0x8C, 0x76, 0x0F, 0x6B, 0x7A, 0x3C, 0x9D, 0x10}};
    ASSERT_EQ(GetRecordInfoFromTypeInfo(automation::type_info(id).get(), information.put()), S_OK);
    Pair pair{3, 10};
    VARIANT record;
    record.vt = VT_BYREF | VT_RECORD;
    record.pvRecord = &pair;
    record.pRecInfo = information.get();
    const auto call = [&](const wchar_t* member, VARIANT last) {
        VARIANT arguments[]{last, record};
        DISPPARAMS parameters{arguments + (last.vt == VT_ERROR ? 1 : 0), nullptr, last.vt == VT_ERROR ? 1u : 2u, 0};
        Value result;
        return specimen.dispatch()->Invoke(specimen.id(member), IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
    };
    EXPECT_EQ(call(L"Difference", Value::missing()), S_OK);
    EXPECT_EQ(call(L"Replace", Value{5}), DISP_E_EXCEPTION) << "a number does not fit";
    EXPECT_EQ(pair.first, 3);
    Pair other{1, 2};
    VARIANT another = record;
    another.pvRecord = &other;
    EXPECT_EQ(call(L"Replace", another), S_OK);
    EXPECT_EQ(pair.second, 2) << "another record of the kind does";
}

TEST_F(LateBound, ARecordComesFromWhereverAClientKeepsIt)
{
    constexpr GUID id{0x7B1E0A5A, 0x6B1B, 0x4F0B, {0x8C, 0x76, 0x0F, 0x6B, 0x7A, 0x3C, 0x9D, 0x10}};
    automation::Ref<IRecordInfo> information;
    ASSERT_EQ(GetRecordInfoFromTypeInfo(automation::type_info(id).get(), information.put()), S_OK);

    Value empty; // a script's: it holds the record afterwards
    EXPECT_EQ(specimen.call(L"Raise", {Value::variable(empty), 2}).number(), 6);
    ASSERT_EQ(empty.vt, VT_RECORD);
    EXPECT_EQ(specimen.call(L"Raise", {Value::variable(empty), 1}).number(), 9);
    EXPECT_EQ(specimen.try_call(L"Raise", {Value::variable(empty), -1}).number(), 6);
    EXPECT_EQ(std::memcmp(empty.pvRecord, "\3\3\3", 3), 0);
    Value still_empty;
    EXPECT_EQ(specimen.try_call(L"Raise", {Value::variable(still_empty), -1}).number(), 6);
    EXPECT_EQ(still_empty.vt, VT_EMPTY);

    // the client lets go of it in the middle of the call
    DispatchObject object{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) {
                              empty = 7;
                              *result = Value{1};
                              return S_OK;
                          }};
    EXPECT_EQ(specimen.try_call(L"Raise", {Value::variable(empty), Value{&object}}).number(), 13);
    EXPECT_EQ(empty.number(), 7) << "a number does not become a record";

    unsigned char bytes[3]{1, 2, 3};
    Value typed = Value::reference(VT_RECORD, bytes);
    VARIANT arguments[]{Value{1}, typed};
    arguments[1].pRecInfo = information.get();
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    Value sum;
    EXPECT_EQ(specimen.dispatch()->Invoke(specimen.id(L"Raise"), IID_NULL, 0, DISPATCH_METHOD, &parameters, &sum, nullptr, nullptr), S_OK);
    EXPECT_EQ(sum.number(), 9);
    EXPECT_EQ(bytes[2], 4);
    for (Value other : {Value{5}, Value::null(), Value{L"x"}})
        EXPECT_EQ(specimen.try_call(L"Raise", {other, 1}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(LateBound, AfterAnErrorVariablesAreWhatTheyWere)
{
    Value empty, variants = list(3, {L"x", 2});
    for (Value* variable : {&empty, &variants})
        EXPECT_EQ(specimen.try_call(L"Fill", {Value::variable(*variable), -1}).number(), 7);
    EXPECT_EQ(empty.vt, VT_EMPTY);
    EXPECT_EQ(client::told(variants), L"Variant 3: 'x' 2&");
}

TEST_F(LateBound, WhatWillBeReplacedIsNotConvertedFirst)
{
    for (Value former : {list(0, {L"no number"}), list(0, {1e300}, VT_R8), list(0, {L"text"}, VT_BSTR), Value::missing()}) {
        EXPECT_EQ(specimen.try_call(L"Fill", {Value::variable(former), 2}).result, S_OK);
        EXPECT_EQ(client::told(former), L"Double 0: 0.5 1.5");
    }
    Value text = L"no array";
    EXPECT_EQ(specimen.try_call(L"Fill", {Value::variable(text), 2}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(text.text(), L"no array");
    EXPECT_EQ(specimen.try_call(L"Fill", {Value::missing(), 2}).result, S_OK);
    Value missing = Value::missing();
    specimen.call(L"Replace", {Value::variable(missing), 5});
    EXPECT_EQ(missing.number(), 5) << "a variable that holds the marker is a variable";
}

TEST_F(LateBound, AnOutcomeThatCannotBePutBackIsAnError)
{
    Value bytes = list(0, {7}, VT_UI1), locked = list(0, {7}), small = Value{short{20000}};
    expect_error(specimen.try_call(L"Fill", {Value::reference(VT_ARRAY | VT_UI1, &bytes.parray), 300}), 6, L"Overflow", L"class_tests");
    EXPECT_EQ(client::told(bytes), L"Byte 0: 7");
    expect_error(specimen.try_call(L"Double", {Value::reference(VT_I2, &small.iVal)}), 6, L"Overflow", L"class_tests");
    EXPECT_EQ(small.iVal, 20000);
    for (const Value& reference : {Value::variable(locked), Value::reference(VT_ARRAY | VT_VARIANT, &locked.parray)}) {
        SafeArrayLock(locked.parray);
        expect_error(specimen.try_call(L"Fill", {reference, 2}), 10, L"This array is fixed or temporarily locked", L"class_tests");
        SafeArrayUnlock(locked.parray);
        EXPECT_EQ(client::told(locked), L"Variant 0: 7&");
    }
}

TEST_F(LateBound, ANameThatNoParameterHasIsTold)
{
    VARIANT arguments[]{Value{1}, Value{2}};
    DISPID names[]{0, 40};
    DISPPARAMS parameters{arguments, names, 2, 2};
    UINT bad = ~0u;
    EXPECT_EQ(specimen.dispatch()->Invoke(specimen.id(L"Options"), IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, &bad),
              DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(bad, 1u);
}

namespace {

/// An object of somebody else that claims to have every interface.
struct KnowsEverything : DispatchObject {
    KnowsEverything() : DispatchObject{{}, [](DISPID, const DISPPARAMS&, VARIANT*) { return E_FAIL; }} {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        *object = this;
        AddRef();
        return S_OK;
    }
};

} // namespace

TEST_F(LateBound, AForeignObjectDoesNotPassForOurs)
{
    KnowsEverything foreign;
    EXPECT_TRUE(specimen.call(L"IsOwn", {specimen}).flag());
    EXPECT_FALSE(specimen.call(L"IsOwn", {Value{&foreign}}).flag());
    EXPECT_FALSE(specimen.call(L"IsOwn", {Value{static_cast<IDispatch*>(nullptr)}}).flag());
    EXPECT_FALSE(automation::own<Specimen>(automation::make<automation::Collection>()->unknown())) << "another class of ours";
    void* raw = nullptr;
    EXPECT_EQ(specimen.dispatch()->QueryInterface(__uuidof(Specimen), &raw), E_NOINTERFACE) << "a class is no interface";
}

namespace {

/// Calls a member while the stack is off the alignment that the compiler expects, as clients' stacks are.
__attribute__((naked)) HRESULT call_off_by(unsigned, void*, void*, void*)
{
    asm("push %ebp\n\t"
        "mov %esp, %ebp\n\t"
        "and $-16, %esp\n\t"
        "sub 8(%ebp), %esp\n\t"
        "pushl 20(%ebp)\n\t"
        "pushl 16(%ebp)\n\t"
        "call *12(%ebp)\n\t"
        "mov %ebp, %esp\n\t"
        "pop %ebp\n\t"
        "ret");
}

} // namespace

TEST_F(LateBound, MembersStandAStackOfAnyAlignment)
{
    auto* object = static_cast<_Specimen*>(specimen.dispatch());
    void* const member = (*reinterpret_cast<void***>(object))[7 + 17]; // behind IDispatch and the seventeen before it
    for (unsigned off : {0u, 4u, 8u, 12u}) {
        long misalignment = -1;
        EXPECT_EQ(call_off_by(off, member, object, &misalignment), S_OK);
        EXPECT_EQ(misalignment, 0) << "off by " << off;
    }
}
