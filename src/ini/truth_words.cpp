#include "ini/truth_words.h"

#include "automation/case_folding.h"

#include <algorithm>
#include <span>

namespace settings {
namespace {

struct Word {
    std::wstring_view word;
    bool truth;
};

constexpr Word words[]{{L"True", true}, {L"False", false}, {L"Wahr", true}, {L"Falsch", false}};
constexpr Word digits[]{{L"1", true}, {L"-1", true}, {L"0", false}};

std::optional<bool> truth_by(std::span<const Word> list, std::wstring_view text) noexcept
{
    const auto found = std::ranges::find_if(list, [&](const Word& entry) { return automation::find_folded(text, entry.word) != text.npos; });
    return found == list.end() ? std::nullopt : std::optional{found->truth};
}

} // namespace

std::optional<bool> truth_in_words(std::wstring_view text) noexcept
{
    return truth_by(words, text);
}

std::optional<bool> truth_in_words_or_digits(std::wstring_view text) noexcept
{
    const std::optional<bool> truth = truth_in_words(text);
    return truth ? truth : truth_by(digits, text);
}

} // namespace settings
