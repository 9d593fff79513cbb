#pragma once

#include <string_view>

/// The hook that checkpoints call; it does nothing in this build.
namespace MDebug {

inline void DebugTrace(bool, std::wstring_view) noexcept {}

} // namespace MDebug
