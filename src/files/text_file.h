#pragma once

#include "files/file.h"

#include <memory>
#include <string>
#include <string_view>

/// Files of text in the system's code page, read and written piece by piece.
namespace files {

class TextInput {
public:
    explicit TextInput(std::wstring_view path);

    /// The next piece, there until the one after it is asked for; empty at the end.
    std::wstring_view next();

private:
    Input file_;
    std::string bytes_;
    std::size_t held_ = 0; ///< bytes at the start that are not decoded yet: part of a character, perhaps
    std::wstring text_;
};

/// Characters outside the code page become its default character.
class TextOutput {
public:
    explicit TextOutput(std::wstring_view path) : file_{path} {}

    /// Writes a piece, which must not end within a character.
    void write(std::wstring_view text);
    void commit() { file_.commit(); }

private:
    Output file_;
    std::string bytes_;
};

} // namespace files
