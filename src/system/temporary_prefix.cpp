#include "system/temporary_prefix.h"

namespace processes {

std::wstring temporary_prefix(std::wstring_view module)
{
    constexpr std::size_t length = 3;
    std::wstring prefix{module.substr(0, module.find(L'.')).substr(0, length)};
    prefix.insert(0, length - prefix.size(), L'$');
    return prefix;
}

} // namespace processes
