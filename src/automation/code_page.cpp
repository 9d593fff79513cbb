#include "automation/code_page.h"

#include "automation/border.h"

#include <emmintrin.h>

#include <algorithm>

namespace automation {
namespace {

// Most of a text is ASCII, which is the same in every code page. What is not goes through the platform in slices that are
// long enough for the call not to matter.
constexpr std::size_t slice = 256;

/// The number of ASCII characters at the start.
std::size_t ascii_run(std::wstring_view text) noexcept
{
    const __m128i beyond = _mm_set1_epi16(static_cast<short>(0xFF80));
    std::size_t run = 0;
    for (; run + 8 <= text.size(); run += 8) {
        const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + run));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(eight, beyond), _mm_setzero_si128())) != 0xFFFF)
            break;
    }
    while (run < text.size() && text[run] < 0x80)
        ++run;
    return run;
}

void narrow(std::wstring_view ascii, char* to) noexcept
{
    std::size_t done = 0;
    for (; done + 16 <= ascii.size(); done += 16) {
        const auto* const from = reinterpret_cast<const __m128i*>(ascii.data() + done);
        const __m128i sixteen = _mm_packus_epi16(_mm_loadu_si128(from), _mm_loadu_si128(from + 1));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + done), sixteen);
    }
    for (; done < ascii.size(); ++done)
        to[done] = static_cast<char>(ascii[done]);
}

/// Widens the ASCII characters at the start; gives their number.
std::size_t widen(std::string_view bytes, wchar_t* to) noexcept
{
    std::size_t done = 0;
    for (; done + 16 <= bytes.size(); done += 16) {
        const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + done));
        if (_mm_movemask_epi8(sixteen) != 0)
            break;
        auto* const place = reinterpret_cast<__m128i*>(to + done);
        _mm_storeu_si128(place, _mm_unpacklo_epi8(sixteen, _mm_setzero_si128()));
        _mm_storeu_si128(place + 1, _mm_unpackhi_epi8(sixteen, _mm_setzero_si128()));
    }
    for (; done < bytes.size() && static_cast<unsigned char>(bytes[done]) < 0x80; ++done)
        to[done] = static_cast<wchar_t>(bytes[done]);
    return done;
}

/// No byte below '0' is part of a longer character in any code page.
bool is_single(char byte) noexcept
{
    return static_cast<unsigned char>(byte) < '0';
}

/// A start of the bytes that does not end within a character: behind a byte that begins none, as the platform may take the
/// half of a character before such a byte and the byte together for one.
std::string_view slice_of(std::string_view bytes) noexcept
{
    std::size_t size = std::min(slice, bytes.size());
    while (size < bytes.size() && !is_single(bytes[size - 1]))
        ++size;
    return bytes.substr(0, size);
}

/// Never cut inside a pair of surrogates.
std::wstring_view slice_of(std::wstring_view text) noexcept
{
    std::size_t size = std::min(slice, text.size());
    if (size < text.size() && (text[size] & 0xFC00) == 0xDC00)
        ++size;
    return text.substr(0, size);
}

/// How many bytes a character has that begins with this one; 1 for a byte that begins none.
std::size_t size_by_first_byte(char byte) noexcept
{
    const auto first = static_cast<unsigned char>(byte);
    if (GetACP() == CP_UTF8)
        return first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
    return IsDBCSLeadByte(first) ? 2 : 1;
}

/// UTF-8 has every character and takes no flags.
DWORD encoding_flags() noexcept
{
    return GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
}

} // namespace

std::size_t decode(std::string_view bytes, wchar_t* text)
{
    wchar_t* end = text;
    while (!bytes.empty()) {
        const std::size_t run = widen(bytes, end);
        bytes.remove_prefix(run);
        end += run;
        if (bytes.empty())
            break;
        const std::string_view part = slice_of(bytes);
        const int size = static_cast<int>(part.size());
        const int length = MultiByteToWideChar(CP_ACP, 0, part.data(), size, end, size);
        if (length == 0)
            check(HRESULT_FROM_WIN32(GetLastError()));
        bytes.remove_prefix(part.size());
        end += length;
    }
    return static_cast<std::size_t>(end - text);
}

std::wstring decode(std::string_view bytes)
{
    std::wstring text(bytes.size(), L'\0');
    text.resize(decode(bytes, text.data()));
    return text;
}

std::size_t whole_characters(std::string_view bytes) noexcept
{
    CPINFO page;
    if (GetCPInfo(CP_ACP, &page) && page.MaxCharSize == 1)
        return bytes.size();
    std::size_t whole = bytes.size();
    while (whole > 0 && !is_single(bytes[whole - 1]))
        --whole;
    return whole;
}

std::string_view without_cut_character(std::string_view bytes) noexcept
{
    std::size_t place = whole_characters(bytes);
    while (place < bytes.size()) {
        const std::size_t size = size_by_first_byte(bytes[place]);
        if (size > bytes.size() - place)
            return bytes.substr(0, place);
        place += size;
    }
    return bytes;
}

void append_encoded(std::string& bytes, std::wstring_view text)
{
    constexpr std::size_t longest_character = 4;
    while (!text.empty()) {
        const std::size_t size = bytes.size();
        const std::size_t run = ascii_run(text);
        bytes.resize(size + run);
        narrow(text.substr(0, run), bytes.data() + size);
        text.remove_prefix(run);
        if (text.empty())
            break;
        const std::wstring_view part = slice_of(text);
        const std::size_t room = part.size() * longest_character;
        bytes.resize(size + run + room);
        const int length = WideCharToMultiByte(CP_ACP, encoding_flags(), part.data(), static_cast<int>(part.size()),
                                               bytes.data() + size + run, static_cast<int>(room), nullptr, nullptr);
        if (length == 0)
            check(HRESULT_FROM_WIN32(GetLastError()));
        bytes.resize(size + run + static_cast<std::size_t>(length));
        text.remove_prefix(part.size());
    }
}

} // namespace automation
