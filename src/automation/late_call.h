#pragma once

#include "automation/contract.h"
#include "automation/passed_argument.h"

/// One call by name of one function.
namespace automation::late_bound {

/// The arguments of a call in the order in which they are written.
class Arguments {
public:
    Arguments(const DISPPARAMS& given, bool sets_property) noexcept : given_{given}
    {
        named_ = given.cNamedArgs;
        // The new value of a property is marked by a name of its own; whoever forgot that gives it last.
        if (sets_property && named_ > 0 && given.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT)
            value_is_named_ = true;
    }

    /// Those without a name, the new value of a property included.
    std::size_t positional() const noexcept { return given_.cArgs - named_ + (value_is_named_ ? 1 : 0); }
    VARIANTARG& at(std::size_t position) const noexcept
    {
        if (value_is_named_ && position + 1 == positional())
            return given_.rgvarg[0];
        return given_.rgvarg[given_.cArgs - 1 - position];
    }

    std::size_t first_named() const noexcept { return value_is_named_ ? 1 : 0; }
    std::size_t end_of_named() const noexcept { return named_; }
    DISPID name(std::size_t index) const noexcept { return given_.rgdispidNamedArgs[index]; }
    VARIANTARG& named(std::size_t index) const noexcept { return given_.rgvarg[index]; }

    /// All of them, in any order.
    std::size_t count() const noexcept { return given_.cArgs; }
    const VARIANTARG& any(std::size_t index) const noexcept { return given_.rgvarg[index]; }

    UINT index_of(const VARIANTARG& argument) const noexcept { return static_cast<UINT>(&argument - given_.rgvarg); }

private:
    const DISPPARAMS& given_;
    std::size_t named_ = 0;
    bool value_is_named_ = false;
};

/// What a failed call tells its caller: the thread's error information, as the exception that a call by name raises.
HRESULT exception_of(HRESULT failure, EXCEPINFO* exception) noexcept;

/// A call of a function of `object`, each argument at the place of its parameter.
class Call {
public:
    Call(void* object, const Function& function, const Arguments& arguments, bool sets_property, UINT* bad_argument) noexcept
        : object_{static_cast<IUnknown*>(object)}, function_{function}, arguments_{arguments}, sets_property_{sets_property},
          bad_argument_{bad_argument}, frame_{object}
    {
    }

    HRESULT run(VARIANT* result, EXCEPINFO* exception) noexcept;

private:
    HRESULT place_arguments() noexcept;
    Passing passing() const noexcept;
    HRESULT pass_arguments(EXCEPINFO* exception) noexcept;
    HRESULT pass_the_rest(PassedArgument& place) noexcept;
    void push_result(Variant& answer) noexcept;
    HRESULT give_back(bool failed) noexcept;

    IUnknown* const object_;
    Ref<IUnknown> kept_; ///< the same where code of the client runs before the member keeps its object itself
    const Function& function_;
    const Arguments& arguments_;
    bool sets_property_;
    UINT* bad_argument_;
    Frame frame_;
    std::array<VARIANTARG*, most_parameters> placed_; ///< for each parameter; null for what was left out
    PassedArguments passed_;
};

} // namespace automation::late_bound
