#include "support/client.h"
#include "support/message_box.h"

using client::Object;
using client::Value;

namespace {

/// The text that a member shows its user in the thread's language.
std::wstring shown(const Object& common)
{
    MessageBoxCatcher box;
    EXPECT_FALSE(common.call(L"qvIsNumeric", {L"x", true, L"Caption"}).flag());
    EXPECT_TRUE(box.caught());
    return box.text;
}

const std::wstring german = L"Bitte geben Sie einen numerischen Wert ein!";
const std::wstring english = L"Please insert a numerical value!";

class Options : public testing::Test {
protected:
    ~Options() override { common.call(L"qvObjectsInit", {L"Language", 0}); }

    bool init(const Value& key, const Value& value) const { return common.call(L"qvObjectsInit", {key, value}).flag(); }

    client::Apartment apartment;
    Object common = Object::create(L"qvObjects.qvCommon");
};

} // namespace

TEST_F(Options, TheLanguageIsTakenFromZeroToOne)
{
    EXPECT_EQ(shown(common), german);
    EXPECT_TRUE(init(L"LANGUAGE", 1));
    EXPECT_EQ(shown(common), english);
    EXPECT_TRUE(init(L"language", 0.5)) << "a half goes to the even number";
    EXPECT_EQ(shown(common), german);
    EXPECT_TRUE(init(L"Language", 0.51));
    EXPECT_EQ(shown(common), english);
}

TEST_F(Options, WhatIsNoOptionChangesNothing)
{
    EXPECT_TRUE(init(L"Language", L"1"));
    Value array = Value::of_type(VT_ARRAY | VT_VARIANT);
    for (const Value& value : std::vector<Value>{2, -0.01, 1.01, true, L"de", Value::null(), array, common})
        EXPECT_FALSE(init(L"Language", value)) << "type " << value.vt;
    for (const wchar_t* key : {L"Lang", L"", L"Language "})
        EXPECT_FALSE(init(key, 0));
    EXPECT_EQ(shown(common), english);
}
