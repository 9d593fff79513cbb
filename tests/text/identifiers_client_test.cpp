// Hexadecimal digits and GUIDs as clients meet them.
#include "support/client.h"

#include <qvObjects.h>

#include <cstring>
#include <iterator>

using client::expect_error;
using client::Object;
using client::Value;

namespace {

constexpr GUID some_guid{0x03020100, 0x0504, 0x0706, {0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0xFF}};
constexpr const wchar_t* invalid_call = L"Invalid procedure call or argument";
constexpr const wchar_t* some_text = L"{03020100-0504-0706-0809-0A0B0C0D0EFF}";

class Identifiers : public testing::Test {
protected:
    client::Apartment apartment;
    const Object api = Object::create(L"qvObjects.qvAPI");
};

} // namespace

TEST_F(Identifiers, HexToByte)
{
    constexpr std::pair<const wchar_t*, int> cases[]{{L"", 0}, {L"7", 7}, {L"FF", 255}, {L"0a", 42}, {L"\u00E9", 233 - 55}};
    for (const auto& [digits, value] : cases) {
        const Value byte = api.call(L"HexToByte", {digits});
        EXPECT_EQ(byte.vt, VT_UI1);
        EXPECT_EQ(byte.bVal, value);
    }
    const Object common = Object::create(L"qvObjects.qvCommon");
    for (const wchar_t* text : {L"\u00DC" L"berlauf", L"Overflow"}) {
        for (const wchar_t* digits : {L"a0", L" ", L"F\u20AC" L""})
            expect_error(api.try_call(L"HexToByte", {digits}), 6, text);
        expect_error(api.try_call(L"HexToByte", {L"000"}), 101, text);
        common.call(L"qvObjectsInit", {L"Language", text[0] == L'O' ? 0 : 1});
    }
}

TEST_F(Identifiers, ANewGuidEveryTime)
{
    const std::wstring plain = api.call(L"CreateGUID").text(), braced = api.call(L"CreateGUID", {true}).text();
    EXPECT_EQ(plain.size(), 36u);
    GUID one, other;
    EXPECT_EQ(CLSIDFromString((L"{" + plain + L"}").c_str(), &one), S_OK);
    EXPECT_EQ(CLSIDFromString(braced.c_str(), &other), S_OK);
    EXPECT_NE(one, other);
}

TEST_F(Identifiers, GuidsOfScriptsKeepTheirText)
{
    const std::wstring braced = some_text, plain = braced.substr(1, 36);
    for (const std::wstring& text : {braced, plain}) {
        Value guid;
        api.call(L"GUIDFromString", {text, Value::variable(guid)});
        ASSERT_EQ(guid.vt, VT_RECORD);
        EXPECT_EQ(std::memcmp(guid.pvRecord, &some_guid, sizeof some_guid), 0);
        EXPECT_EQ(api.call(L"StringFromGUID", {Value::variable(guid), true}).text(), braced);
        EXPECT_EQ(api.call(L"StringFromGUID", {Value::variable(guid)}).text(), plain);

        expect_error(api.try_call(L"GUIDFromString", {plain.substr(1), Value::variable(guid)}), 5, invalid_call);
        const std::wstring wrong = plain.substr(0, 34) + L"x0";
        expect_error(api.try_call(L"GUIDFromString", {wrong, Value::variable(guid)}), 6, L"\u00DC" L"berlauf");
        EXPECT_EQ(api.call(L"StringFromGUID", {Value::variable(guid), true}).text(), braced) << "it is what it was";
    }
    Value none;
    expect_error(api.try_call(L"GUIDFromString", {L"", Value::variable(none)}), 5, invalid_call);
    EXPECT_EQ(none.vt, VT_EMPTY);
    EXPECT_EQ(api.try_call(L"StringFromGUID", {Value::variable(none)}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(Identifiers, GuidsOfCompiledClients)
{
    _qvAPI* early = nullptr;
    ASSERT_EQ(api.dispatch()->QueryInterface(__uuidof(_qvAPI), reinterpret_cast<void**>(&early)), S_OK);
    tGUID guid{};
    const Value text = some_text;
    Value result;
    EXPECT_EQ(early->GUIDFromString(text.bstrVal, &guid), S_OK);
    EXPECT_EQ(std::memcmp(&guid, &some_guid, sizeof guid), 0);
    EXPECT_EQ(early->StringFromGUID(&guid, VARIANT_TRUE, &result.bstrVal), S_OK);
    result.vt = VT_BSTR;
    EXPECT_EQ(result.text(), some_text);
    EXPECT_EQ(early->GUIDFromString(text.bstrVal, nullptr), static_cast<HRESULT>(0x800A0005));
    EXPECT_EQ(early->GUIDFromString(nullptr, &guid), static_cast<HRESULT>(0x800A0005));
    early->Release();

    // A record that a client keeps and describes itself, as compilers of forms clients do.
    ITypeLib* library = nullptr;
    IRecordInfo* description = nullptr;
    const GUID own{0xB713A6BC, 0xB922, 0x11D1, {0xB8, 0x17, 0x00, 0x20, 0x18, 0x2C, 0x2F, 0x2F}};
    const GUID identity{0xF3A86D10, 0x5B2C, 0x4E91, {0x9C, 0x47, 0xB0, 0xE5, 0x72, 0x1D, 0x8A, 0x34}};
    ASSERT_EQ(LoadRegTypeLib(own, 1, 79, 0, &library), S_OK);
    ITypeInfo* type = nullptr;
    ASSERT_EQ(library->GetTypeInfoOfGuid(identity, &type), S_OK);
    ASSERT_EQ(GetRecordInfoFromTypeInfo(type, &description), S_OK);
    ULONG size = 0;
    EXPECT_EQ(description->GetSize(&size), S_OK);
    EXPECT_EQ(size, sizeof guid);
    guid = {};
    VARIANTARG arguments[2]{};
    arguments[0].vt = VT_BYREF | VT_RECORD;
    arguments[0].pvRecord = &guid;
    arguments[0].pRecInfo = description;
    arguments[1] = text;
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    const DISPID member = api.id(L"GUIDFromString");
    EXPECT_EQ(api.dispatch()->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(std::memcmp(&guid, &some_guid, sizeof guid), 0);
    description->Release();
    type->Release();
    library->Release();
}
