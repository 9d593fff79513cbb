#pragma once

#include "automation/code_page.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

/// Texts on their way to the platform's A-functions and back.
namespace automation {

/// A text in the system's code page with a closing NUL. A null text stays a null pointer, as some functions tell the two apart.
class AnsiText {
public:
    explicit AnsiText(std::wstring_view text) : is_null_{text.data() == nullptr} { append_encoded(bytes_, text); }

    operator const char*() const noexcept { return is_null_ ? nullptr : bytes_.c_str(); }

private:
    std::string bytes_;
    bool is_null_;
};

/// The text that a function writes into a buffer of `size` blanks: `call` gets the buffer and its size and gives the number of
/// bytes written, which is held against the size.
template <std::size_t size, class Call>
std::wstring ansi_result(Call&& call)
{
    std::array<char, size> buffer;
    buffer.fill(' ');
    const auto written = static_cast<std::size_t>(call(buffer.data(), static_cast<unsigned long>(size)));
    return decode({buffer.data(), std::min(written, size)});
}

} // namespace automation
