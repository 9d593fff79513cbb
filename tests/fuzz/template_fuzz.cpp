// Any bytes, as a template with its values and as a number: what comes of them is what the plainest way of doing it gives.
#include "fuzz/driver.h"

#include "text/leading_number.h"
#include "text/message_template.h"

#include <regex.h>

#include <cmath>
#include <cstdlib>
#include <cwctype>
#include <optional>

namespace {

constexpr std::size_t longest_text = 1'000'000;

bool is_at(std::wstring_view text, std::size_t place, std::wstring_view key)
{
    for (std::size_t i = 0; i < key.size(); ++i)
        if (place + i == text.size() || static_cast<wchar_t>(std::towlower(text[place + i])) != key[i])
            return false;
    return true;
}

/// A character at a time; nothing where the text would become too long for a test.
std::optional<std::wstring> replaced(std::wstring_view text, std::wstring_view key, std::wstring_view value)
{
    std::wstring result;
    for (std::size_t place = 0; place < text.size();) {
        const bool found = is_at(text, place, key);
        result += found ? value : text.substr(place, 1);
        place += found ? key.size() : 1;
        if (result.size() > longest_text)
            return std::nullopt;
    }
    return result;
}

std::optional<std::wstring> expanded_plainly(std::wstring_view message, const std::vector<std::wstring_view>& values)
{
    std::optional<std::wstring> text{message};
    text = replaced(*text, L"|a", L"\"");
    text = replaced(*text, L"|t", L"\t");
    text = replaced(*text, L"|r", L"\r");
    text = replaced(*text, L"|n", L"\r\n");
    for (std::size_t i = 0; text && i < values.size(); ++i)
        text = replaced(*text, L"|" + std::to_wstring(i + 1), values[i]);
    return text;
}

void check_template(const std::wstring& input)
{
    std::vector<std::wstring_view> parts;
    for (std::wstring_view rest = input; parts.size() < 20;) {
        const std::size_t end = rest.find(L'\0');
        parts.push_back(rest.substr(0, end));
        if (end == rest.npos)
            break;
        rest.remove_prefix(end + 1);
    }
    const std::vector<std::wstring_view> values(parts.begin() + 1, parts.end());
    const std::optional<std::wstring> expected = expanded_plainly(parts.front(), values);
    if (expected)
        fuzz_require(text::expand(parts.front(), values) == *expected, "the template was expanded in another way");
}

/// The start of a text that an extended regular expression takes.
std::string taken(const char* expression, const std::string& text)
{
    regex_t compiled;
    fuzz_require(regcomp(&compiled, expression, REG_EXTENDED) == 0, "a faulty expression");
    regmatch_t match{};
    const bool found = regexec(&compiled, text.c_str(), 1, &match, 0) == 0;
    regfree(&compiled);
    return found ? text.substr(0, static_cast<std::size_t>(match.rm_eo)) : std::string{};
}

/// What a text reads as: an infinite number where that is beyond the range and nothing follows, 0 where something does;
/// nothing for a number to another base than ten.
std::optional<double> read_plainly(std::string_view text)
{
    std::string plain{text};
    std::erase_if(plain, [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
    if (const std::size_t comma = plain.find(','); comma != plain.npos)
        plain[comma] = '.';

    if (plain.starts_with('&'))
        return std::nullopt;
    std::string number = taken("^[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([EeDd][+-]?[0-9]+)?", plain);
    std::ranges::replace_if(number, [](char c) { return c == 'D' || c == 'd'; }, 'E');
    const double value = std::strtod(number.c_str(), nullptr);
    return std::isinf(value) && number.size() < plain.size() ? 0 : value;
}

template <class Text>
double read(const Text& text)
{
    double value = HUGE_VAL;
    fuzz_succeeds({6}, [&] { value = text::leading_number(text); });
    return value;
}

void check_number(const std::string& input)
{
    const double value = read(input);
    fuzz_require(value == read(std::wstring(input.begin(), input.end())), "the wide text reads in another way");
    fuzz_require(value != 0 || !std::signbit(value), "a zero with a sign");
    const std::optional<double> expected = read_plainly(input);
    if (expected)
        fuzz_require(value == (std::isinf(*expected) ? HUGE_VAL : *expected), "the number reads in another way");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    check_template(std::wstring(data, data + size));
    check_number(std::string(data, data + size));
    return 0;
}

std::vector<std::string> fuzz_seeds()
{
    using namespace std::string_literals;
    return {"Datei |a|1|a fehlt|n\0abc"s, "|1 and |2\0|2\0y"s, "|10|1|2\0a\0|\0c\0d\0e\0f\0g\0h\0i\0j"s, "|A|T|R|N||a|"s, "\0"s,
            "|"s, "|1"s, "|2"s, "|3"s, "|n"s, "1.7976931348623157E308"s, "4.9406564584124654E-324"s, " - 1 2 , 5\t0 D\n+ 0 1x"s,
            "&HFFFF&"s, "& O 1 7 7 7 7 7"s, "9007199254740993"s, "12345678901234567890.5e-30"s, "."s, ","s, "E"s, "D-"s, "0000"s};
}
