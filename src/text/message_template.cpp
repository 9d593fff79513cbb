#include "text/message_template.h"

#include "automation/case_folding.h"

#include <cstdint>
#include <new>
#include <utility>

namespace text {
namespace {

/// A text's length is kept in 32 bits, in bytes.
constexpr std::uint64_t longest_text = 0x7FFFFFFF / 2;

/// What a bar and this letter stand for; empty for none.
std::wstring_view fixed_text(wchar_t letter) noexcept
{
    switch (automation::folded(letter)) {
    case L'A':
        return L"\"";
    case L'T':
        return L"\t";
    case L'R':
        return L"\r";
    case L'N':
        return L"\r\n";
    default:
        return {};
    }
}

std::wstring with_fixed_texts(std::wstring_view message)
{
    std::wstring expanded;
    expanded.reserve(message.size());
    std::size_t copied = 0;
    for (std::size_t bar = message.find(L'|'); bar != message.npos; bar = message.find(L'|', bar + 1)) {
        const std::wstring_view replacement = bar + 1 < message.size() ? fixed_text(message[bar + 1]) : std::wstring_view{};
        if (replacement.empty())
            continue;
        expanded.append(message, copied, bar - copied).append(replacement);
        copied = bar + 2;
    }
    return expanded.append(message, copied);
}

std::size_t occurrences(std::wstring_view text, std::wstring_view key) noexcept
{
    std::size_t count = 0;
    for (std::size_t at = text.find(key); at != text.npos; at = text.find(key, at + key.size()))
        ++count;
    return count;
}

void replace_all(std::wstring& text, std::wstring_view key, std::wstring_view value)
{
    const std::size_t count = occurrences(text, key);
    if (count == 0)
        return;
    const std::uint64_t length = text.size() - count * key.size() + std::uint64_t{count} * value.size();
    if (length > longest_text)
        throw std::bad_alloc{};

    std::wstring replaced;
    replaced.reserve(static_cast<std::size_t>(length));
    std::size_t copied = 0;
    for (std::size_t at = text.find(key); at != text.npos; at = text.find(key, copied)) {
        replaced.append(text, copied, at - copied).append(value);
        copied = at + key.size();
    }
    text = std::move(replaced.append(text, copied));
}

} // namespace

std::wstring expand(std::wstring_view message, std::span<const std::wstring_view> values)
{
    std::wstring text = with_fixed_texts(message);
    for (std::size_t i = 0; i < values.size(); ++i) {
        // Where no bar is left, no later value has a place.
        if (text.find(L'|') == text.npos)
            break;
        replace_all(text, L'|' + std::to_wstring(i + 1), values[i]);
    }
    return text;
}

std::wstring expand(std::wstring_view message, std::initializer_list<std::wstring_view> values)
{
    return expand(message, std::span{values.begin(), values.size()});
}

} // namespace text
