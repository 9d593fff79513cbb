#pragma once

#include "automation/border.h"

#include <string_view>

/// What by-reference arguments refer to.
namespace files {

/// The text in the client's variable. Raises 5 for a null pointer.
inline std::wstring_view text_of(const BSTR* argument)
{
    return automation::view(automation::referred(argument));
}

using automation::replace;

} // namespace files
