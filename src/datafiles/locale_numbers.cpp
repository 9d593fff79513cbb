#include "datafiles/locale_numbers.h"

#include "automation/border.h"
#include "automation/code_page.h"

#include <algorithm>
#include <iterator>

namespace nif {
namespace {

automation::Text text_of(double number)
{
    BSTR text = nullptr;
    automation::check(VarBstrFromR8(number, LOCALE_USER_DEFAULT, 0, &text));
    return automation::Text::adopt(text);
}

std::string encoded(std::wstring_view text)
{
    std::string bytes;
    automation::append_encoded(bytes, text);
    return bytes;
}

/// What stands between the 0 and the 5 of a half; nothing where it is written in another way.
std::string decimal_point()
{
    const automation::Text half = text_of(0.5);
    const std::wstring_view text = half;
    const bool known = text.size() > 2 && text.front() == L'0' && text.back() == L'5';
    return known ? encoded(text.substr(1, text.size() - 2)) : std::string{};
}

bool is_plain(const DecimalDigits& digits) noexcept
{
    return digits.exponent >= -1 && digits.exponent < DecimalDigits::most;
}

constexpr std::size_t longest_point = 16;

std::string written(const DecimalDigits& digits, std::string_view point)
{
    char text[longest_number + longest_point];
    return {text, write(digits, point, text)};
}

/// Whether the platform writes these numbers as we do.
template <std::size_t count>
bool agree(const double (&numbers)[count], std::string_view point)
{
    return std::ranges::all_of(numbers, [&](double number) {
        DecimalDigits digits;
        return round_to_digits(number, digits) && written(digits, point) == encoded(text_of(number));
    });
}

constexpr double plain_numbers[]{0, -0.0, 1, -1, 0.1, -0.25, 2.0 / 3, 1.5, 1234567.875, 123456789012345, 999999999999999, 100000000000000,
                                 -98765432.1, 99999.99999999999, 1234567890.12345};
constexpr double other_numbers[]{0.01, 1.0 / 30, -0.0123456789012345, 0.001, 0.00012345, 0.00001, 0.000015, 1.0 / 30000,
                                 1e15, -1e15,
                                 999999999999999.9, 1.5e16, 1234567890123456789.0, 1e100, 1.7976931348623157e308,
                                 2.2250738585072014e-308,
                                 5e-324, -1.23e-310};

} // namespace

LocaleNumbers::LocaleNumbers() : point_{decimal_point()}
{
    if (point_.empty() || point_.size() > longest_point)
        return;
    knows_plain_ = agree(plain_numbers, point_);
    knows_all_ = knows_plain_ && agree(other_numbers, point_);
}

bool LocaleNumbers::is_known(const DecimalDigits& digits) const noexcept
{
    return is_plain(digits) ? knows_plain_ : knows_all_;
}

void LocaleNumbers::append(std::string& bytes, double number) const
{
    DecimalDigits digits;
    if (!knows_plain_ || !round_to_digits(number, digits) || !is_known(digits)) {
        automation::append_encoded(bytes, text_of(number));
        return;
    }
    char text[longest_number + longest_point];
    bytes.append(text, write(digits, point_, text));
}

} // namespace nif
