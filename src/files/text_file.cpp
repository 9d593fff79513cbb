#include "files/text_file.h"

#include "automation/code_page.h"

namespace files {
namespace {

constexpr std::size_t piece = 1 << 16;

} // namespace

TextInput::TextInput(std::wstring_view path) : file_{path}, bytes_(piece, '\0') {}

std::wstring_view TextInput::next()
{
    for (;;) {
        const std::size_t got = file_.read(bytes_.data() + held_, bytes_.size() - held_);
        const std::string_view bytes{bytes_.data(), held_ + got};
        const std::size_t whole = got == 0 ? bytes.size() : automation::whole_characters(bytes);
        if (whole == 0 && got != 0) {
            held_ = bytes.size();
            bytes_.resize(bytes_.size() * 2);
            continue;
        }
        if (text_.size() < whole)
            text_.resize(bytes_.size());
        const std::size_t length = automation::decode(bytes.substr(0, whole), text_.data());
        held_ = bytes.size() - whole;
        bytes.copy(bytes_.data(), held_, whole);
        return {text_.data(), length};
    }
}

void TextOutput::write(std::wstring_view text)
{
    bytes_.clear();
    automation::append_encoded(bytes_, text);
    file_.write(bytes_);
}

} // namespace files
