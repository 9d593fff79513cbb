#pragma once

#include "automation/border.h"

#include <string_view>
#include <utility>

/// What by-reference arguments refer to.
namespace files {

/// The text in the client's variable. Raises 5 for a null pointer.
inline std::wstring_view text_of(const BSTR* argument)
{
    return automation::view(automation::referred(argument));
}

/// Puts a text in place of the one in the client's variable.
inline void replace(BSTR& variable, std::wstring_view text)
{
    automation::Text replacement{text};
    SysFreeString(std::exchange(variable, replacement.release()));
}

} // namespace files
