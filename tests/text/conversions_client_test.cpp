#include "support/client.h"

using client::expect_error;
using client::Object;
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
