#include "text/numeric_text.h"

#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace text;

namespace {

std::wstring of_the_user(LCTYPE kind)
{
    wchar_t text[16] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, kind, text, 16);
    return text;
}

} // namespace

TEST(NumericText, WhatTheUsersLocaleWrites)
{
    const std::wstring point = of_the_user(LOCALE_SDECIMAL);
    using Texts = std::vector<std::wstring>;
    for (const auto& text : Texts{L"1" + point + L"5", L"1" + of_the_user(LOCALE_STHOUSAND) + L"234", L" +7" + point + L"\t",
                                  of_the_user(LOCALE_SCURRENCY) + L"5", L"(5)", L"&HFF", std::wstring(100'000, L'9')})
        EXPECT_TRUE(is_numeric(text)) << testing::PrintToString(text);
    for (const auto& text : Texts{L"", L" ", L"-", L"12x", L"1E", {L"1\0", 2}, L"&H" + std::wstring(100'000, L'1')})
        EXPECT_FALSE(is_numeric(text)) << text.size();
}

/// What is decided without asking the platform is what it would say.
TEST(NumericText, OneCharacterIsANumberWhenItIsADigit)
{
    for (wchar_t character = 0; character < 0x80; ++character)
        EXPECT_EQ(is_digit(character), is_numeric({&character, 1})) << static_cast<int>(character);
    EXPECT_FALSE(is_digit(0xD800));
}
