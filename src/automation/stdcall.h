#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace automation {

/// Calls a function of an interface with arguments that are known only now. `words` is what lies on the stack at the
/// call, the object first; every argument takes whole words.
HRESULT call_stdcall(const void* function, const std::uint32_t* words, std::size_t count) noexcept;

} // namespace automation
