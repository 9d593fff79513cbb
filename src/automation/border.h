#pragma once

#include "automation/error.h"
#include "automation/floating_control.h"
#include "automation/values.h"

#include <type_traits>

/// Where the library's C++ meets its clients: exceptions become result codes with error information here and nowhere else.
namespace automation {

/// Turns the exception being handled into a result code, and sets its number, source and description as the thread's
/// error information. Only inside a catch block.
HRESULT answer_exception() noexcept;

/// The same for error 7, when there is no memory left to raise it in.
HRESULT answer_out_of_memory() noexcept;

/// The runtime error that a failed call stands for, of the platform or of a client's object (memory 7, bad index 9, type
/// mismatch 13, overflow 6, ...); a failure without one keeps its own code, with the system's text.
Error failure(HRESULT result);

/// The failure that a runtime error crosses a border as.
HRESULT runtime_failure(std::uint16_t number) noexcept;

/// Raises the error that a failed call stands for. Does nothing for success.
void check(HRESULT result);

/// What a by-reference argument refers to. Raises 5 for a null pointer.
template <class Value>
Value& referred(Value* argument)
{
    if (!argument)
        throw Error{Runtime::InvalidCall};
    return *argument;
}

inline void store(BSTR* result, Text value) noexcept { *result = value.release(); }
inline void store(BSTR* result, std::wstring_view value) { *result = Text{value}.release(); }
inline void store(VARIANT_BOOL* result, std::same_as<bool> auto value) noexcept { *result = value ? VARIANT_TRUE : VARIANT_FALSE; }
inline void store(VARIANT* result, Variant value) noexcept { *result = value.release(); }
template <class Number>
    requires(std::is_arithmetic_v<Number> || std::is_enum_v<Number>)
void store(Number* result, std::type_identity_t<Number> value) noexcept
{
    *result = value;
}
template <class Interface, class Object>
void store(Interface** result, Ref<Object> value) noexcept
{
    *result = Ref<Interface>{std::move(value)}.release();
}
/// An array.
inline void store(SAFEARRAY** result, Variant value) noexcept { *result = value.vt & VT_ARRAY ? value.release().parray : nullptr; }

/// The body of a function of an interface that chooses its result code itself: what `rule` returns, or its exception's. All
/// that can raise an exception or calculate runs inside of it, in the library's floating-point modes.
template <class Rule>
HRESULT answer_code(Rule&& rule) noexcept
{
    ThreadState* const thread = ThreadState::find_or_make();
    if (!thread)
        return answer_out_of_memory();
    const CalculatesQuietly quietly{*thread};
    try {
        return rule();
    } catch (...) {
        return answer_exception();
    }
}

/// What `answer` has in common for all members, once for all of them: calls `rule` with what it works on, within the border.
HRESULT answer_rule(void (*rule)(void* work), void* work) noexcept;

/// The body of a member that gives nothing.
template <class Rule>
HRESULT answer(Rule&& rule) noexcept
{
    using Work = std::remove_reference_t<Rule>;
    return answer_rule([](void* work) { (*static_cast<Work*>(work))(); }, const_cast<std::remove_const_t<Work>*>(&rule));
}

/// The body of a member that gives something: stores what `rule` returns, or answers its exception.
template <class Result, class Rule>
HRESULT answer(Result* result, Rule&& rule) noexcept
{
    if (!result)
        return E_POINTER;
    *result = Result{};
    return answer([&] { store(result, rule()); });
}

/// The body of a function that the platform calls back, a window procedure or an enumeration's: what `rule` returns, or
/// `otherwise` when it raises, or no memory is left to call it. `kept` stays alive meanwhile, whatever the client does.
template <class Object, class Result, class Rule>
Result answer_callback([[maybe_unused]] const Ref<Object> kept, Result otherwise, Rule&& rule) noexcept
{
    ThreadState* const thread = ThreadState::find_or_make();
    if (!thread)
        return otherwise;
    const CalculatesQuietly quietly{*thread};
    try {
        return rule();
    } catch (...) {
        return otherwise;
    }
}

/// For members that never raise: what `rule` returns, or nothing, false, 0, an empty text when it fails.
template <class Rule>
auto or_default(Rule&& rule) noexcept -> decltype(rule())
try {
    return rule();
} catch (...) {
    return decltype(rule())();
}

} // namespace automation
