#include "automation/specimen.h"
#include "support/dispatch_object.h"

using client::expect_error;
using client::Object;
using client::Value;

namespace {

class Collections : public testing::Test {
protected:
    static std::wstring joined(const Object& list)
    {
        std::wstring all;
        for (const Value& item : client::items(list))
            all += item.text() + L" ";
        return all;
    }

    client::Apartment apartment;
    Object specimen = Specimen::create();
    Object list = specimen.object(L"Items");
};

} // namespace

TEST_F(Collections, KeepTheirOrderAndFindKeysInAnyCase)
{
    list.call(L"Add", {L"b", L"Key"});
    list.call(L"Add", {L"a", Value::missing(), 1});
    list.call(L"Add", {L"c", L"", Value::missing(), L"KEY"});
    EXPECT_EQ(joined(list), L"a b c ");
    EXPECT_EQ(list.call(L"Item", {L"kEY"}).text(), L"b");
    EXPECT_EQ(list.call(L"Item", {3.0}).text(), L"c");
    list.call(L"Remove", {L"key"});
    list.call(L"Remove", {1});
    EXPECT_EQ(joined(list), L"c ");
    EXPECT_EQ(list.call(L"Count").number(), 1);
}

TEST_F(Collections, TellWhatIsWrong)
{
    const wchar_t* source = L"class_tests";
    list.call(L"Add", {1, L"k"});
    expect_error(list.try_call(L"Add", {2, L"K"}), 457, L"This key is already associated with an element of this collection",
                 source);
    for (const wchar_t* member : {L"Item", L"Remove"}) {
        expect_error(list.try_call(member, {L"none"}), 5, L"Invalid procedure call or argument", source);
        for (const int position : {0, 2, -1})
            EXPECT_EQ(list.try_call(member, {position}).number(), 9);
    }
    EXPECT_EQ(list.try_call(L"Add", {2, L"m", 1, 1}).number(), 5);
    EXPECT_EQ(list.try_call(L"Add", {2, 5}).number(), 13);
    EXPECT_EQ(list.call(L"Count").number(), 1) << "a wrong call changes nothing";
}

TEST_F(Collections, MayChangeWhileAnObjectTellsThePosition)
{
    DispatchObject position{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) {
                                for (const wchar_t* key : {L"a", L"b"})
                                    list.call(L"Remove", {key});
                                *result = VARIANT{Value{2}};
                                return S_OK;
                            }};
    const auto filled = [&] {
        for (const wchar_t* text : {L"a", L"b"})
            list.call(L"Add", {text, text});
    };
    for (const wchar_t* member : {L"Item", L"Remove"}) {
        filled();
        EXPECT_EQ(list.try_call(member, {&position}).number(), 9) << "there is no second one any more";
    }
    filled();
    EXPECT_EQ(list.try_call(L"Add", {L"c", L"c", &position}).number(), 9);
    EXPECT_EQ(list.call(L"Count").number(), 0);
}

TEST_F(Collections, MayChangeWhileTheyAreWalked)
{
    for (const wchar_t* text : {L"a", L"b", L"c", L"d", L"e"})
        list.call(L"Add", {text, text});
    const auto outcome = list.invoke(DISPID_NEWENUM, DISPATCH_PROPERTYGET, {});
    automation::Ref<IEnumVARIANT> walk = automation::query<IEnumVARIANT>(outcome.value.punkVal);
    std::wstring seen;
    for (Value item; walk->Next(1, &item, nullptr) == S_OK; item = Value{}) {
        seen += item.text();
        if (item.text() == L"b") {
            list.call(L"Remove", {L"a"});      // behind the place that was reached
            list.call(L"Remove", {L"d"});      // before it
            list.call(L"Add", {L"0", L"0", 1}); // behind it
            list.call(L"Add", {L"f"});
        }
    }
    EXPECT_EQ(seen, L"abcef");
    Value item;
    list = Object{};
    specimen = Object{};
    walk->Reset();
    EXPECT_EQ(walk->Next(1, &item, nullptr), S_OK) << "a walk keeps its list alive";
}
