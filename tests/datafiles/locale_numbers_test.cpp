#include "datafiles/locale_numbers.h"

#include "automation/code_page.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <oleauto.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

namespace {

std::string automation_text(double number)
{
    BSTR text = nullptr;
    EXPECT_EQ(VarBstrFromR8(number, LOCALE_USER_DEFAULT, 0, &text), S_OK);
    std::string bytes;
    automation::append_encoded(bytes, {text, SysStringLen(text)});
    SysFreeString(text);
    return bytes;
}

void check_texts(unsigned seed)
{
    const nif::LocaleNumbers numbers;
    const auto check = [&](double number) {
        std::string text;
        numbers.append(text, number);
        ASSERT_EQ(text, automation_text(number)) << std::hexfloat << number;
    };
    for (const double number : {0.0, -0.0, HUGE_VAL, -HUGE_VAL, std::nan(""), 5e-324, 1.7976931348623157e308, 999999999999999.5, 1e15})
        check(number);
    for (int places = 0; places < 18; ++places) // halfway at the last digit, which is left to the platform
        for (double number = 0.5 + std::pow(2, 53 - 3 * places); number < 3e15; number *= 7.3)
            check(number);
    std::mt19937_64 random{seed};
    for (int i = 0; i < 20'000; ++i)
        check(std::bit_cast<double>(random() & ~(std::uint64_t{1} << 62) >> i % 12));
}

/// The user's decimal separator, as it was again at the end.
class DecimalSeparator {
public:
    explicit DecimalSeparator(const wchar_t* separator)
    {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_, static_cast<int>(std::size(before_)));
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator);
    }
    ~DecimalSeparator() { SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_); }
    DecimalSeparator(const DecimalSeparator&) = delete;
    DecimalSeparator& operator=(const DecimalSeparator&) = delete;

private:
    wchar_t before_[8];
};

} // namespace

TEST(LocaleNumbers, AreTheAutomationTexts)
{
    check_texts(1);
    const DecimalSeparator comma{L","};
    EXPECT_EQ(automation_text(0.5), "0,5");
    check_texts(2);
}
