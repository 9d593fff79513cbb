#pragma once

#include <string>
#include <string_view>

namespace files {

/// Whether the platform can put the two together in its own buffers. It writes a backslash behind a `path` that just fills one.
bool can_combine(std::wstring_view path, std::wstring_view file) noexcept;

/// The path of `file` seen from the folder `path`, its . and .. parts resolved, as qvPathCombine gives it: an absolute `file`
/// stands for itself, and what the platform can't combine is empty.
std::wstring combined(std::wstring_view path, std::wstring_view file);

} // namespace files
