#include "automation/late_bound.h"

#include "automation/border.h"
#include "automation/floating_control.h"
#include "automation/late_call.h"

#include <algorithm>

namespace automation::late_bound {
namespace {

/// The function that sets the property: by reference where the caller says so or the property knows nothing else.
const Function* setter(const Member& member, WORD flags, const Arguments& arguments) noexcept
{
    const bool object = arguments.positional() > 0 && holds_object(arguments.at(arguments.positional() - 1));
    const bool reference = (flags & DISPATCH_PROPERTYPUTREF) && (object || !(flags & DISPATCH_PROPERTYPUT));
    const Function* first = reference ? member.put_reference : member.put;
    const Function* second = reference ? member.put : member.put_reference;
    return first ? first : second;
}

const Function* getter(const Member& member, WORD flags) noexcept
{
    const bool call_first = (flags & DISPATCH_METHOD) != 0;
    const Function* first = call_first ? member.method : member.get;
    const Function* second = call_first ? member.get : member.method;
    return first ? first : second;
}

/// Whether arguments that a property does not take itself are meant for the object that it gives.
bool gives_object(const Function* get) noexcept
{
    return get && get->parameters.empty() && get->result == VT_DISPATCH;
}

/// `property(arguments)` and `property(arguments) = value` of a property that gives an object, and `item(key) = value` of
/// one that can't be set: the object's default member takes what is left.
HRESULT invoke_default(void* object, const Function& get, DISPPARAMS& given, LCID locale, WORD flags, VARIANT* result,
                       EXCEPINFO* exception, UINT* bad_argument) noexcept
{
    const auto taken = static_cast<UINT>(get.parameters.size());
    DISPPARAMS own{given.rgvarg + (given.cArgs - taken), nullptr, taken, 0};
    Variant target;
    if (const HRESULT failure = Call{object, get, Arguments{own, false}, false, bad_argument}.run(&target, exception); FAILED(failure))
        return failure;
    if (!target.pdispVal)
        return exception_of(answer([] { throw Error{Runtime::ObjectNotSet}; }), exception);
    DISPPARAMS rest = given;
    rest.cArgs -= taken;
    const CalculatesAsClient as_client; // the object may be one of the client's
    return target.pdispVal->Invoke(DISPID_VALUE, IID_NULL, locale, flags, &rest, result, exception, bad_argument);
}

constexpr WORD sets = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

HRESULT set(void* object, const Member& member, LCID locale, WORD flags, DISPPARAMS& given, EXCEPINFO* exception,
            UINT* bad_argument) noexcept
{
    const Arguments arguments{given, true};
    const Function* function = setter(member, flags, arguments);
    const std::size_t takes = function ? function->parameters.size() : 0;
    const Function* get = member.get;
    if (get && given.cNamedArgs <= 1 && arguments.positional() > takes) {
        const bool item_of_object = gives_object(get);
        const bool value_of_item = !function && get->result == VT_DISPATCH
                                && arguments.positional() == get->parameters.size() + 1;
        if (item_of_object || value_of_item)
            return invoke_default(object, *get, given, locale, flags, nullptr, exception, bad_argument);
    }
    if (!function)
        return DISP_E_MEMBERNOTFOUND;
    return Call{object, *function, arguments, true, bad_argument}.run(nullptr, exception);
}

HRESULT get(void* object, const Member& member, LCID locale, WORD flags, DISPPARAMS& given, VARIANT* result,
            EXCEPINFO* exception, UINT* bad_argument) noexcept
{
    const Function* function = getter(member, flags);
    if (!function)
        return DISP_E_MEMBERNOTFOUND;
    const Arguments arguments{given, false};
    if (function == member.get && gives_object(function) && given.cArgs > 0 && given.cNamedArgs == 0)
        return invoke_default(object, *function, given, locale, flags, result, exception, bad_argument);
    return Call{object, *function, arguments, false, bad_argument}.run(result, exception);
}

} // namespace

HRESULT find_names(const Interface& contract, LPOLESTR* names, UINT count, DISPID* ids) noexcept
{
    if (!names || !ids || count == 0)
        return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const Member* member = names[0] ? contract.find(std::wstring_view{names[0]}) : nullptr;
    if (!member)
        return DISP_E_UNKNOWNNAME;
    ids[0] = member->id;
    HRESULT result = S_OK;
    for (UINT i = 1; i < count; ++i) {
        ids[i] = member->parameter(names[i] ? names[i] : L"");
        if (ids[i] == DISPID_UNKNOWN)
            result = DISP_E_UNKNOWNNAME;
    }
    return result;
}

HRESULT invoke(void* object, const Interface& contract, DISPID id, REFIID reserved, LCID locale, WORD flags,
               DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept
{
    if (reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!arguments || (arguments->cArgs > 0 && !arguments->rgvarg)
        || (arguments->cNamedArgs > 0 && !arguments->rgdispidNamedArgs) || arguments->cNamedArgs > arguments->cArgs)
        return E_INVALIDARG;
    const Member* member = contract.find(id);
    if (!member)
        return DISP_E_MEMBERNOTFOUND;
    if (flags & sets)
        return set(object, *member, locale, flags, *arguments, exception, bad_argument);
    return get(object, *member, locale, flags, *arguments, result, exception, bad_argument);
}

} // namespace automation::late_bound
