#include "files/path_buffer.h"

#include "automation/error.h"

namespace files {

PathBuffer::PathBuffer(std::wstring_view text) : before_{text}
{
    if (text.size() > MAX_PATH)
        throw automation::Error{automation::Runtime::InvalidCall};
    text.copy(characters_.data(), text.size());
}

std::wstring_view PathBuffer::text() const noexcept
{
    const std::wstring_view shown{characters_.data(), MAX_PATH};
    const std::size_t end = shown.find(L'\0');
    return end == shown.npos ? before_ : shown.substr(0, end);
}

} // namespace files
