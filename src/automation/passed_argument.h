#pragma once

#include "automation/contract.h"
#include "automation/record.h"
#include "automation/values.h"

#include <array>
#include <cstring>

/// One argument of a call by name, on its way in and back.
namespace automation::late_bound {

constexpr std::size_t most_parameters = 32;

/// What a reference to a value of a type leads to; see flat.
VARIANT behind(const VARIANT& reference) noexcept;

/// A value without its by-reference wrapping; it shares what it points to with the caller. A reference to nothing is
/// Empty; one to a record, or to itself, stays what it is.
inline VARIANT flat(const VARIANT& given) noexcept
{
    const VARIANT& value = followed(given);
    return value.vt & VT_BYREF ? behind(value) : value;
}

/// What lies on the stack at the call.
class Frame {
public:
    explicit Frame(void* object) noexcept { push(object); }

    void push(const void* pointer) noexcept { words_[count_++] = reinterpret_cast<std::uintptr_t>(pointer); }
    void push(const VARIANT& value, VARTYPE type) noexcept;
    HRESULT call(std::size_t slot) const noexcept;

private:
    std::array<std::uint32_t, 2 + most_parameters * sizeof(VARIANT) / sizeof(std::uint32_t)> words_;
    std::size_t count_ = 0;
};

/// How arguments are passed: lent where that is safe, or owned by the call. As soon as code of the client may run in the
/// middle, its variables may change or go at any time.
enum class Passing { Lent, Owned };

class PassedArgument {
public:
    PassedArgument() noexcept = default;
    PassedArgument(const PassedArgument&) = delete;
    PassedArgument& operator=(const PassedArgument&) = delete;

    /// Passes what the caller gave. DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, ... for what has no value of the parameter's type.
    HRESULT pass(VARIANT& given, const Parameter& parameter, Passing passing, Frame& frame) noexcept;
    HRESULT pass_omitted(const Parameter& parameter, Frame& frame) noexcept;
    /// Passes an array of values that the call owns.
    void pass_list(Variant values, Frame& frame) noexcept;

    /// Gives the caller what a by-reference argument has become. After a failed call, or where the variable has another
    /// type, only what changed goes back. An outcome that can't is an error: 6, 7, 10, 13.
    HRESULT give_back(bool failed) noexcept;

private:
    HRESULT pass_by_value(const VARIANT& given, const Parameter& parameter, Passing passing, Frame& frame) noexcept;
    HRESULT pass_by_reference(VARIANT& given, const Parameter& parameter, Passing passing, Frame& frame) noexcept;
    HRESULT pass_temporary(VARIANT& inner, const Parameter& parameter, bool is_variable, Frame& frame) noexcept;
    HRESULT pass_record(VARIANT& given, const Parameter& parameter, Frame& frame) noexcept;
    HRESULT convert(const VARIANT& value, const Parameter& parameter) noexcept;
    bool is_unchanged() const noexcept;

    Record record_;           ///< the record that is passed when the caller's own is not
    Variant content_;         ///< what is passed when the caller's own storage is not
    VARIANT* back_ = nullptr; ///< where the outcome goes: the caller's variable or by-reference argument
    Variant before_;          ///< what was passed
    bool fills_ = false;      ///< what was there is replaced whatever it was: an empty variable, or an array
    VARIANT lent_;            ///< what is passed by reference but does not change
};

/// The arguments of one call.
class PassedArguments {
public:
    PassedArguments() noexcept = default;
    PassedArguments(const PassedArguments&) = delete;
    PassedArguments& operator=(const PassedArguments&) = delete;
    ~PassedArguments()
    {
        while (count_ > 0)
            (*this)[--count_].~PassedArgument();
    }

    PassedArgument& add() noexcept { return *new (&place(count_++)) PassedArgument; }
    std::size_t size() const noexcept { return count_; }
    PassedArgument& operator[](std::size_t index) noexcept { return *std::launder(&place(index)); }

private:
    PassedArgument& place(std::size_t index) noexcept { return reinterpret_cast<PassedArgument*>(memory_)[index]; }

    alignas(PassedArgument) std::byte memory_[most_parameters * sizeof(PassedArgument)];
    std::size_t count_ = 0;
};

} // namespace automation::late_bound
