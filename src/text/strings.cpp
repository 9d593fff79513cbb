#include "text/strings.h"

#include "automation/case_folding.h"

#include <algorithm>
#include <array>

namespace text {
namespace {

constexpr std::wstring_view blanks_and_tabs = L" \t";

std::wstring_view without_leading_blanks(std::wstring_view text) noexcept
{
    return text.substr(std::min(text.find_first_not_of(L' '), text.size()));
}

std::wstring_view without_trailing_blanks(std::wstring_view text) noexcept
{
    return text.substr(0, text.find_last_not_of(L' ') + 1);
}

} // namespace

std::wstring StringCut(std::wstring_view s, std::wstring_view CutString, int intSpace)
{
    const std::size_t at = automation::find_folded(s, CutString);
    if (at == s.npos || s.empty())
        return std::wstring{s};
    std::wstring_view left = s.substr(0, at);
    std::wstring_view right = s.substr(at + CutString.size());
    std::size_t blanks = 0;
    if (intSpace >= 0) {
        left = without_trailing_blanks(left);
        right = without_leading_blanks(right);
        blanks = static_cast<std::size_t>(intSpace);
    }
    return std::wstring{left}.append(blanks, L' ').append(right);
}

std::wstring in_quotation_marks(std::wstring_view text)
{
    std::wstring quoted{L'"'};
    if (!text.empty())
        quoted.append(text).push_back(L'"');
    return quoted;
}

std::wstring_view qvTrimL(std::wstring_view s) noexcept
{
    const std::size_t first = s.find_first_not_of(blanks_and_tabs);
    return first == s.npos ? s : s.substr(first);
}

std::wstring_view qvTrimR(std::wstring_view s) noexcept
{
    const std::size_t last = s.find_last_not_of(blanks_and_tabs);
    return last == s.npos ? s : s.substr(0, last + 1);
}

std::wstring_view qvTrim(std::wstring_view s) noexcept
{
    return qvTrimL(qvTrimR(s));
}

bool StrToBOOL(std::wstring_view sStr) noexcept
{
    constexpr std::array<std::wstring_view, 4> truths{L"true", L"wahr", L"1", L"-1"};
    return std::ranges::any_of(truths, [&](std::wstring_view truth) { return automation::equal_folded(sStr, truth); });
}

std::vector<std::wstring_view> digit_runs(std::wstring_view text, bool (*is_digit)(wchar_t))
{
    std::vector<std::wstring_view> runs;
    for (auto place = text.begin(); place != text.end();) {
        const auto start = std::find_if(place, text.end(), is_digit);
        place = std::find_if_not(start, text.end(), is_digit);
        if (start != place)
            runs.emplace_back(start, place);
    }
    return runs;
}

} // namespace text
