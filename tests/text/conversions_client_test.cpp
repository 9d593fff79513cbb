#include "support/dispatch_object.h"
#include "support/tables.h"

using client::expect_error;
using client::list;
using client::Object;
using client::told;
using client::Value;

namespace {

class Conversions : public testing::Test {
protected:
    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
};

} // namespace

TEST_F(Conversions, BitsOfANumber)
{
    const Value result = common.call(L"SetBit", {0, 3, true});
    EXPECT_EQ(result.vt, VT_I4);
    EXPECT_EQ(result.lVal, 8);
    EXPECT_EQ(common.call(L"SetBit", {L"15", 0.0, Value{}}).number(), 14) << "Empty is False";
    expect_error(common.try_call(L"SetBit", {1, 31, true}), 6, L"Overflow");
    EXPECT_EQ(common.try_call(L"SetBit", {1, 256, true}).result, DISP_E_OVERFLOW) << "no Byte";
    EXPECT_EQ(common.try_call(L"SetBit", {1, L"x", true}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(common.try_call(L"SetBit", {1, 3}).result, DISP_E_BADPARAMCOUNT);
}

TEST_F(Conversions, BitsOfAVariable)
{
    Value variable = L"0"; // a script's, which gets the number
    EXPECT_EQ(common.call(L"SetBit2", {Value::variable(variable), 3, true}).number(), 8);
    EXPECT_EQ(told(variable), L"8&");
    long number = 15;
    EXPECT_EQ(common.call(L"SetBit2", {Value::reference(VT_I4, &number), 0, false}).vt, VT_I4);
    EXPECT_EQ(number, 14);
    expect_error(common.try_call(L"SetBit2", {Value::reference(VT_I4, &number), 31, false}), 6, L"Overflow");
    EXPECT_EQ(number, 14);
    EXPECT_TRUE(common.call(L"GetBit", {8, 3}).flag());
    expect_error(common.try_call(L"GetBit", {8, 31}), 6, L"Overflow");
}

TEST_F(Conversions, ChannelsOfAColour)
{
    int channel = 1;
    for (const wchar_t* member : {L"GetRed", L"GetGreen", L"GetBlue"}) {
        const Value value = common.call(member, {0x030201});
        EXPECT_EQ(value.vt, VT_UI1);
        EXPECT_EQ(value.bVal, channel++);
        expect_error(common.try_call(member, {-0x7FFFFFF0}), 6, L"Overflow");
    }
}

TEST_F(Conversions, TextToBytesKeepsTheElementBehindIt)
{
    Value bytes;
    EXPECT_EQ(common.call(L"BstrToByte", {L"AB", Value::variable(bytes)}).vt, VT_EMPTY);
    EXPECT_EQ(told(bytes), L"Byte 0: 65 66 0");
    common.call(L"BstrToByte", {L"\u20AC", Value::variable(bytes)});
    EXPECT_EQ(told(bytes), L"Byte 0: 172 66") << "the low byte, and what was there";
    common.call(L"BstrToByte", {L"", Value::reference(VT_ARRAY | VT_UI1, &bytes.parray)});
    EXPECT_EQ(told(bytes), L"Byte 0: 172");
    Value variants = list(1, {1, L"x"});
    common.call(L"BstrToByte", {L"A", Value::variable(variants)});
    EXPECT_EQ(told(variants), L"Byte 0: 65 0") << "an array of another type is replaced";

    for (Value other : {list(1, {7, 8}, VT_UI1), client::array(VT_UI1, {{1, 0}, {1, 0}}, {7})}) {
        const std::wstring before = told(other);
        expect_error(common.try_call(L"BstrToByte", {L"A", Value::variable(other)}), 9, L"Subscript out of range");
        EXPECT_EQ(told(other), before);
    }
    SafeArrayLock(bytes.parray);
    const client::Outcome locked = common.try_call(L"BstrToByte", {L"A", Value::variable(bytes)});
    expect_error(locked, 10, L"This array is fixed or temporarily locked");
    SafeArrayUnlock(bytes.parray);
    EXPECT_EQ(told(bytes), L"Byte 0: 172");
    Value number = 5;
    EXPECT_EQ(common.try_call(L"BstrToByte", {L"A", Value::variable(number)}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(Conversions, BytesToTextLeaveTheLastOneOut)
{
    const std::pair<Value, std::wstring> cases[]{
        {list(0, {65, 66, 0}, VT_UI1), L"AB"},
        {list(0, {0x80, 0xFC, 65}, VT_UI1), L"\u20AC\u00FC"},
        {list(0, {65, 0, 66, 1}, VT_UI1), {L"A\0B", 3}},
        {list(1, {65, 66, 67, 68}, VT_UI1), L" ABC"},
        {list(-1, {64, 65, 66, 67}, VT_UI1), L"AB"},
        {list(-5, {64, 65}, VT_UI1), L""},
        {list(0, {65}, VT_UI1), L""},
        {list(0, {}, VT_UI1), L""},
        {Value{}, L""},
        {client::array(VT_UI1, {{3, 0}, {1, 0}}, {65, 66, 67}), L"  "},
        {list(0, {65, 66.4, 0}), L"AB"}, // a script's
    };
    for (const auto& [array, text] : cases) {
        Value filled = L"before";
        EXPECT_EQ(common.call(L"ByteToStr", {array}).text(), text);
        EXPECT_EQ(common.call(L"ByteToStrV", {array}).text(), text);
        EXPECT_EQ(common.call(L"ByteToBstr", {array, Value::variable(filled)}).vt, VT_EMPTY);
        EXPECT_EQ(filled.text(), text);
        filled = 12;
        EXPECT_EQ(common.call(L"ByteToBstrV", {array, Value::variable(filled)}).vt, VT_EMPTY);
        EXPECT_EQ(filled.text(), text);
    }
    EXPECT_EQ(common.try_call(L"ByteToStr", {list(0, {256, 0})}).result, DISP_E_OVERFLOW) << "no Byte";
}

TEST_F(Conversions, WhatIsNoCodeIsABlank)
{
    Value codes = list(0, {65, L"66", 300, Value::null(), L"x", -1, 67.5, Value{}, 0});
    EXPECT_EQ(common.call(L"ByteToStrV", {codes}).text(), std::wstring(L"AB    D\0", 8));
    EXPECT_EQ(common.call(L"ByteToStrV", {list(0, {70000, 66, 0}, VT_I4)}).text(), L" B");
    EXPECT_EQ(common.call(L"ByteToStrV", {5}).text(), L"");

    // An object whose code lets go of the array.
    Value variable;
    DispatchObject object{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) {
                              variable = Value{};
                              *result = Value{70};
                              return S_OK;
                          }};
    variable = list(0, {Value{&object}, 65, 0});
    EXPECT_EQ(common.call(L"ByteToStrV", {Value::variable(variable)}).text(), L"FA");
    EXPECT_EQ(variable.vt, VT_EMPTY);
}
