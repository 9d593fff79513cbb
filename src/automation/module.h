#pragma once

#include <windows.h>

#include <string>

/// The file that this code was loaded from, and what keeps it loaded.
namespace automation::module {

/// The module is loaded, for as long as the process lives: window procedures and threads that end may come back to it at any
/// time. False when it can't serve: nothing has been kept then.
bool attach() noexcept;

HINSTANCE handle() noexcept;

/// Its full path, as the system reports it.
std::wstring path();

/// Its file name without extension: the default source of errors.
std::wstring name();

/// Objects and locks that are alive.
void hold() noexcept;
void let_go() noexcept;
long held() noexcept;

} // namespace automation::module
