#include "automation/case_folding.h"

#include <atomic>

#ifdef _WIN32
#include <windows.h>

#include <ntsecapi.h>
#else
#include <cwctype>
#include <random>
#endif

namespace automation {
namespace {

std::uint32_t random_number() noexcept
{
    std::uint32_t number = 0;
#ifdef _WIN32
    if (!RtlGenRandom(&number, sizeof number))
        number = GetTickCount() * 0x9E3779B9u ^ GetCurrentProcessId();
#else
    number = std::random_device{}();
#endif
    return number;
}

/// The first caller chooses it, or one of several at once.
std::uint32_t secret(std::atomic<std::uint32_t>& number) noexcept
{
    std::uint32_t chosen = number.load(std::memory_order_relaxed);
    if (chosen != 0)
        return chosen;
    const std::uint32_t offered = random_number() >> 3 | 1; // less than 2^29, see below
    return number.compare_exchange_strong(chosen, offered) ? offered : chosen;
}

constinit std::atomic<std::uint32_t> secret_of_even, secret_of_odd;

/// (hash + character) * factor modulo the prime 2^31 - 1, not fully reduced: with a factor below 2^29 it stays in 32 bits.
std::uint32_t step(std::uint32_t hash, wchar_t character, std::uint32_t factor) noexcept
{
    const std::uint64_t product = std::uint64_t{hash + static_cast<std::uint32_t>(folded(character))} * factor;
    return static_cast<std::uint32_t>(product & 0x7FFFFFFF) + static_cast<std::uint32_t>(product >> 31);
}

} // namespace

/// Two polynomials at secret places, one of every other character: two different texts meet at few places, whatever they are.
/// They are reckoned side by side, since each of their steps waits for the one before.
std::uint32_t table_hash(std::wstring_view text) noexcept
{
    const std::uint32_t even_factor = secret(secret_of_even), odd_factor = secret(secret_of_odd);
    std::uint32_t even = 1, odd = 1;
    std::size_t place = 0;
    for (; place + 2 <= text.size(); place += 2) {
        even = step(even, text[place], even_factor);
        odd = step(odd, text[place + 1], odd_factor);
    }
    if (place < text.size())
        even = step(even, text[place], even_factor);
    return even + odd;
}

wchar_t folded_beyond_latin(wchar_t character) noexcept
{
#ifdef _WIN32
    wchar_t upper = character;
    LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, &character, 1, &upper, 1);
    return upper;
#else
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(character)));
#endif
}

bool equal_folded(std::wstring_view one, std::wstring_view other) noexcept
{
    if (one.size() != other.size())
        return false;
    for (std::size_t i = 0; i < one.size(); ++i)
        if (one[i] != other[i] && folded(one[i]) != folded(other[i]))
            return false;
    return true;
}

std::size_t find_folded(std::wstring_view text, std::wstring_view part, std::size_t from) noexcept
{
    if (from > text.size() || part.size() > text.size() - from)
        return std::wstring_view::npos;
    if (part.empty())
        return from;
    const wchar_t first = folded(part.front());
    const std::size_t last = text.size() - part.size();
    for (std::size_t i = from; i <= last; ++i)
        if (folded(text[i]) == first && equal_folded(text.substr(i, part.size()), part))
            return i;
    return std::wstring_view::npos;
}

} // namespace automation
