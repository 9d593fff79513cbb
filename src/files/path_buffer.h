#pragma once

#include <windows.h>

#include <array>
#include <string_view>

namespace files {

/// The buffer that the platform's path functions work in. To the client it has 260 characters, the platform's MAX_PATH. The
/// platform is given more room, for some of its functions write behind the end without a check.
class PathBuffer {
public:
    PathBuffer() = default;
    /// Holds `text`, which must stay as long as the buffer. Raises 5 for more than 260 characters.
    explicit PathBuffer(std::wstring_view text);

    wchar_t* get() noexcept { return characters_.data(); }

    /// The text up to the first NUL. A platform function that wrote more than the client's buffer would hold has failed: then
    /// it is the text from before.
    std::wstring_view text() const noexcept;

private:
    /// The longest that a function makes of its paths is a way out of one of 259 characters, of three for every two of them,
    /// and back into another one.
    std::array<wchar_t, 4 * MAX_PATH> characters_{};
    std::wstring_view before_;
};

/// Whether a text with its closing NUL fits into a path buffer of the platform's own. It cuts off longer ones without a word.
constexpr bool fits_platform(std::wstring_view path) noexcept
{
    return path.size() < MAX_PATH;
}

} // namespace files
