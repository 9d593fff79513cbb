#include "text/message_template.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

using text::expand;

TEST(MessageTemplate, PlaceholdersBecomeTheirTexts)
{
    EXPECT_EQ(expand(L"|a|t|r|n|A|T|R|N"), L"\"\t\r\r\n\"\t\r\r\n");
    EXPECT_EQ(expand(L"x||ay|b|\u0100|"), L"x|\"y|b|\u0100|") << "two that are none, and a bar at the end";
    EXPECT_EQ(expand(L""), L"");
    EXPECT_EQ(expand(L"Datei |a|1|a fehlt|n", {L"abc"}), L"Datei \"abc\" fehlt\r\n");
    EXPECT_EQ(expand(L"|2-|1-|2-|3-|0", {L"a", L""}), L"-a--|3-|0") << "no value for them";
}

TEST(MessageTemplate, ValuesArePutInOneAfterAnother)
{
    EXPECT_EQ(expand(L"|1 and |2", {L"|2", L"y"}), L"y and y");
    EXPECT_EQ(expand(L"|1 and |2", {L"x", L"|1"}), L"x and |1") << "never back to an earlier value";
    EXPECT_EQ(expand(L"|12", {L"|", L"b", L"c"}), L"b") << "a bar at the value's end and a digit behind it";
    EXPECT_EQ(expand(L"||11", {L"1", L"b"}), L"|11") << "what is put in is not looked at again for the same value";
    EXPECT_EQ(expand(L"|1", {L"|n|a"}), L"|n|a");
    const std::vector<std::wstring_view> ten{L"a", L"|10", L"c", L"d", L"e", L"f", L"g", L"h", L"i", L"j"};
    EXPECT_EQ(expand(L"|10 |9 |11 |2", ten), L"a0 i a1 j") << "the last one was brought in behind the first value";
}

TEST(MessageTemplate, LongTemplatesTakeTimeInProportionToTheirLength)
{
    // Moving the rest of the text at each of a million placeholders would take minutes.
    constexpr std::size_t count = 1'000'000;
    std::wstring message;
    for (std::size_t i = 0; i < count; ++i)
        message += L"|1|n";
    EXPECT_EQ(expand(message, {L"value"}).size(), count * 7);

    // One is too long for a text, the other would no longer count in 32 bits.
    message.resize(0x10000);
    EXPECT_THROW(expand(message, {std::wstring(0x10000, L'x')}), std::bad_alloc);
    EXPECT_THROW(expand(message, {std::wstring(0x40000, L'x')}), std::bad_alloc);
}
