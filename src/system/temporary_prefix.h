#pragma once

#include <string>
#include <string_view>

namespace processes {

/// The three characters with which the names of a module's temporary files begin: those of its name up to a dot, with "$" in
/// front of a name that has fewer.
std::wstring temporary_prefix(std::wstring_view module);

} // namespace processes
