#include "messages/MErrors.h"

#include "automation/ansi_call.h"
#include "automation/error.h"
#include "automation/floating_control.h"
#include "automation/module.h"
#include "automation/thread_state.h"
#include "messages/messages.h"

#include <limits>

namespace MErrors {
namespace {

const automation::PerThread<messages::Language> language; // German until it is chosen
static_assert(messages::Language{} == messages::Language::German);

constexpr std::int32_t windows_base = ToObjectError(29000);

/// While the box waits, the client's windows get their messages.
void show_box(HWND owner, const std::wstring& text, const std::wstring& caption, std::uint32_t icon)
{
    const automation::CalculatesAsClient as_client;
    MessageBoxW(owner, text.c_str(), caption.c_str(), MB_OK | icon);
}

} // namespace

std::wstring LangStr(std::int32_t id)
{
    return std::wstring{messages::text(id, language.get())};
}

messages::Language current_language() noexcept
{
    return language.get();
}

void set_language(std::int32_t chosen)
{
    language.here() = static_cast<messages::Language>(chosen);
}

std::wstring GetSystemErrorText(std::int32_t code)
{
    return automation::ansi_result<256>([&](char* buffer, DWORD size) {
        return FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(code), 0,
                              buffer, size, nullptr);
    });
}

void RaiseWindowsError(std::int32_t code)
{
    if (code < std::numeric_limits<std::int32_t>::min() - windows_base)
        throw automation::Error{automation::Runtime::Overflow};
    throw automation::Error{windows_base + code, GetSystemErrorText(code), automation::module::name() + L".Windows"};
}

void ShowErrorBox(std::wstring_view sText)
{
    show_box(nullptr, LangStr(10002) + std::wstring{sText} + LangStr(10003), LangStr(10001), MB_ICONSTOP);
}

void ShowMessage(const std::wstring& text, std::wstring_view caption, std::uint32_t icon)
{
    show_box(GetActiveWindow(), text, std::wstring{caption}, icon);
}

void ShowMessage(const std::wstring& text)
{
    ShowMessage(text, automation::module::name(), 0);
}

} // namespace MErrors
