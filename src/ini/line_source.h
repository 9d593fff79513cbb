#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace ini {

/// Where a character stands first; npos if nowhere. Nearly all of a text is searched for the ends of its lines.
[[gnu::always_inline]] inline std::size_t find_character(std::wstring_view text, wchar_t character) noexcept
{
    constexpr std::size_t step = 16 / sizeof(wchar_t);
    const __m128i wanted = sizeof(wchar_t) == 2 ? _mm_set1_epi16(static_cast<short>(character)) : _mm_set1_epi32(character);
    std::size_t place = 0;
    for (; place + step <= text.size(); place += step) {
        const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + place));
        const __m128i equal = sizeof(wchar_t) == 2 ? _mm_cmpeq_epi16(part, wanted) : _mm_cmpeq_epi32(part, wanted);
        if (const int found = _mm_movemask_epi8(equal))
            return place + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(found))) / sizeof(wchar_t);
    }
    while (place < text.size() && text[place] != character)
        ++place;
    return place < text.size() ? place : text.npos;
}

/// The lines of a text that comes in pieces. They end at CR LF or CR; a lone LF is an ordinary character.
class LineSource {
public:
    explicit LineSource(const std::function<std::wstring_view()>& next_piece) : next_piece_{next_piece} {}

    /// The next line, there until the one after it is asked for; false when there is none.
    bool next(std::wstring_view& line)
    {
        if (const std::size_t end = find_character(piece_, L'\r'); end != piece_.npos) {
            line = piece_.substr(0, end);
            go_behind(end);
            return true;
        }
        return gather(line);
    }

private:
    /// A line in several pieces, and one that ends with the text.
    bool gather(std::wstring_view& line)
    {
        gathered_ = piece_;
        for (;;) {
            piece_ = next_piece_();
            if (piece_.empty()) {
                line = gathered_;
                return !line.empty();
            }
            if (std::exchange(after_return_, false) && piece_.front() == L'\n')
                piece_.remove_prefix(1);
            const std::size_t end = find_character(piece_, L'\r');
            gathered_ += piece_.substr(0, end);
            if (end != piece_.npos) {
                line = gathered_;
                go_behind(end);
                return true;
            }
        }
    }

    void go_behind(std::size_t carriage_return) noexcept
    {
        piece_.remove_prefix(carriage_return + 1);
        after_return_ = piece_.empty();
        if (piece_.starts_with(L'\n'))
            piece_.remove_prefix(1);
    }

    const std::function<std::wstring_view()>& next_piece_;
    std::wstring_view piece_;
    std::wstring gathered_;
    bool after_return_ = false; ///< the last piece ended with a CR
};

} // namespace ini
