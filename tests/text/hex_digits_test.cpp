#include "text/hex_digits.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <string>

namespace {

int code(wchar_t character)
{
    return character;
}

} // namespace

TEST(HexDigits, AreNumbersOrCodesLess55)
{
    constexpr std::pair<const wchar_t*, int> cases[]{{L"", 0},     {L"7", 7},    {L"F", 15},   {L"a", 42},      {L"FF", 255},
                                                     {L"0a", 42},  {L"a0", 672}, {L"F ", 217}, {L" ", 32 - 55}, {L"G", 16},
                                                     {L"1-", 6}};
    for (const auto& [digits, value] : cases)
        EXPECT_EQ(text::hex_value(digits, code), value) << std::string{digits, digits + std::wstring_view{digits}.size()};
}

TEST(HexDigits, OfAGuidStandInTheOrderOfItsBytes)
{
    const std::wstring text = L"03020100-0504-0706-0809-0A0B0C0D0E0F";
    for (const std::wstring& written : {text, L"{" + text + L"}", L"{" + text, text + L" and more"}) {
        const auto digits = text::guid_digits(written);
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(text::hex_value(digits.at(static_cast<std::size_t>(i)), code), i);
    }
    for (const std::wstring& short_one : {text.substr(1), L"{" + text.substr(1), std::wstring{}})
        EXPECT_EQ(error_of([&] { text::guid_digits(short_one); }), 5);
}
