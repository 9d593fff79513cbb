#pragma once

#include "messages/messages.h"

#include <cstdint>
#include <string>
#include <string_view>

/// The error and message services that every subsystem shares.
namespace MErrors {

/// The message with this number in the thread's language; empty for a number without one.
std::wstring LangStr(std::int32_t id);

/// The thread's language.
messages::Language current_language() noexcept;

/// Chooses the thread's language: 0 German, 1 English. Raises 7.
void set_language(std::int32_t language);

/// The number of an error of the library's own: `n` with the bits 0x80040000 set.
constexpr std::int32_t ToObjectError(std::int32_t n) noexcept
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(n) | 0x80040000u);
}

/// The system's text for one of its error codes; empty when it has none.
std::wstring GetSystemErrorText(std::int32_t code);

/// Raises 0x80047148 + `code` with the system's text and the source "<module>.Windows"; 6 when that sum overflows.
[[noreturn]] void RaiseWindowsError(std::int32_t code);

/// Tells the user of a fault in the library, in the thread's language, and waits until it is confirmed.
void ShowErrorBox(std::wstring_view sText);

/// Shows the user a text with an OK button and waits until it is confirmed. `icon` is one of the platform's MB_ICON flags.
void ShowMessage(const std::wstring& text, std::wstring_view caption, std::uint32_t icon);

/// The same with no icon and the library's name as caption.
void ShowMessage(const std::wstring& text);

} // namespace MErrors
