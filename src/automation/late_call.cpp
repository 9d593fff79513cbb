#include "automation/late_call.h"

#include "automation/border.h"
#include "automation/safe_array.h"

#include <algorithm>

namespace automation::late_bound {
namespace {

/// How an argument that could not be passed fails the call. A value that can't be had is no matter of its type: the error
/// says what it was.
HRESULT conversion_failure(HRESULT failure, EXCEPINFO* exception) noexcept
{
    if (HRESULT_FACILITY(failure) != FACILITY_CONTROL)
        return failure;
    switch (static_cast<Runtime>(HRESULT_CODE(failure))) {
    case Runtime::TypeMismatch:
        return DISP_E_TYPEMISMATCH;
    case Runtime::Overflow:
        return DISP_E_OVERFLOW;
    case Runtime::OutOfMemory:
        return E_OUTOFMEMORY;
    default:
        return exception_of(failure, exception);
    }
}

/// Whether a parameter takes an array whose elements are converted, objects among them to the value that they stand for.
bool converts_objects(const VARIANT& value, const Parameter& parameter) noexcept
{
    if (!(parameter.type & VT_ARRAY))
        return false;
    const VARTYPE element = element_type(value);
    const bool may_hold_objects = element == VT_VARIANT || element == VT_DISPATCH || element == VT_UNKNOWN;
    return may_hold_objects && parameter.type != (VT_ARRAY | element);
}

} // namespace

HRESULT exception_of(HRESULT failure, EXCEPINFO* exception) noexcept
{
    Ref<IErrorInfo> information;
    GetErrorInfo(0, information.put());
    if (!exception)
        return DISP_E_EXCEPTION;
    *exception = {};
    exception->scode = failure;
    if (information) {
        information->GetSource(&exception->bstrSource);
        information->GetDescription(&exception->bstrDescription);
        information->GetHelpFile(&exception->bstrHelpFile);
        information->GetHelpContext(&exception->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}


HRESULT Call::run(VARIANT* result, EXCEPINFO* exception) noexcept
{
    if (const HRESULT failure = place_arguments(); FAILED(failure))
        return failure;
    if (const HRESULT failure = pass_arguments(exception); FAILED(failure))
        return failure;
    Variant answer;
    if (function_.result != VT_EMPTY)
        push_result(answer);
    const HRESULT outcome = frame_.call(function_.slot);
    if (FAILED(outcome)) {
        const HRESULT failure = exception_of(outcome, exception); // before letting go of anything can change it
        give_back(true);
        return failure;
    }
    if (const HRESULT failure = give_back(false); FAILED(failure))
        return exception_of(failure, exception);
    if (result)
        *result = answer.release();
    return S_OK;
}

HRESULT Call::place_arguments() noexcept
{
    const auto& parameters = function_.parameters;
    const bool any_number = !parameters.empty() && parameters.back().any_number();
    const std::size_t fixed = parameters.size() - (any_number ? 1 : 0);
    const std::size_t given = arguments_.positional();
    if (parameters.size() > most_parameters || (given > fixed && !any_number))
        return DISP_E_BADPARAMCOUNT;
    for (std::size_t i = 0; i < parameters.size(); ++i)
        placed_[i] = i < std::min(given, fixed) ? &arguments_.at(i) : nullptr;
    // The new value of a property comes last, whatever optional arguments are left out before it.
    if (sets_property_ && given > 0 && given < fixed)
        std::swap(placed_[given - 1], placed_[fixed - 1]);
    for (std::size_t i = arguments_.first_named(); i < arguments_.end_of_named(); ++i) {
        const auto place = static_cast<std::size_t>(arguments_.name(i));
        if (place >= fixed) {
            if (bad_argument_)
                *bad_argument_ = arguments_.index_of(arguments_.named(i));
            return DISP_E_PARAMNOTFOUND;
        }
        if (placed_[place])
            return DISP_E_BADPARAMCOUNT;
        placed_[place] = &arguments_.named(i);
    }
    for (std::size_t i = 0; i < fixed; ++i)
        if (!placed_[i] && !parameters[i].optional())
            return DISP_E_BADPARAMCOUNT;
    return S_OK;
}

Passing Call::passing() const noexcept
{
    if (function_.runs_client_code)
        return Passing::Owned;
    for (std::size_t i = 0; i < arguments_.count(); ++i)
        if (holds_object(arguments_.any(i)))
            return Passing::Owned;
    for (std::size_t i = 0; i < function_.parameters.size(); ++i)
        if (placed_[i] && converts_objects(*placed_[i], function_.parameters[i]))
            return Passing::Owned;
    return Passing::Lent;
}

HRESULT Call::pass_arguments(EXCEPINFO* exception) noexcept
{
    const Passing how = passing();
    if (how == Passing::Owned)
        kept_ = Ref{object_};
    for (std::size_t i = 0; i < function_.parameters.size(); ++i) {
        const Parameter& parameter = function_.parameters[i];
        PassedArgument& argument = passed_.add();
        const HRESULT failure = parameter.any_number() ? pass_the_rest(argument)
                              : placed_[i]             ? argument.pass(*placed_[i], parameter, how, frame_)
                                                       : argument.pass_omitted(parameter, frame_);
        if (SUCCEEDED(failure))
            continue;
        if (placed_[i] && bad_argument_)
            *bad_argument_ = arguments_.index_of(*placed_[i]);
        return conversion_failure(failure, exception);
    }
    return S_OK;
}

/// The arguments behind the fixed ones, as an array of values.
HRESULT Call::pass_the_rest(PassedArgument& place) noexcept
{
    const std::size_t fixed = function_.parameters.size() - 1;
    const std::size_t count = arguments_.positional() > fixed ? arguments_.positional() - fixed : 0;
    return answer([&] {
        Variant list = new_array(VT_VARIANT, count);
        {
            const LockedArray<VARIANT> values{list.parray};
            for (std::size_t i = 0; i < count; ++i)
                values[i] = Variant{flat(arguments_.at(fixed + i))}.release();
        }
        place.pass_list(std::move(list), frame_);
    });
}

void Call::push_result(Variant& answer) noexcept
{
    if (function_.result == VT_VARIANT) {
        frame_.push(static_cast<VARIANT*>(&answer));
        return;
    }
    answer.llVal = 0;
    answer.vt = function_.result;
    frame_.push(&answer.lVal);
}

/// All of them, also when one can't be given back; the first failure counts.
HRESULT Call::give_back(bool failed) noexcept
{
    HRESULT first = S_OK;
    for (std::size_t i = 0; i < passed_.size(); ++i)
        if (const HRESULT failure = passed_[i].give_back(failed); FAILED(failure) && SUCCEEDED(first))
            first = failure;
    return first;
}

} // namespace automation::late_bound
