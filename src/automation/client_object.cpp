#include "automation/client_object.h"

#include "automation/border.h"

#include <array>
#include <algorithm>
#include <optional>

namespace automation {
namespace {

/// What a client's object raises: by the number of its own, or by the code of a failure.
Error standard_error(const EXCEPINFO& exception)
{
    if (exception.wCode)
        return failure(runtime_failure(exception.wCode));
    return FAILED(exception.scode) ? failure(exception.scode) : Error{Runtime::Automation};
}

[[noreturn]] void raise(EXCEPINFO& exception)
{
    if (exception.pfnDeferredFillIn)
        exception.pfnDeferredFillIn(&exception);
    SysFreeString(exception.bstrHelpFile);
    const Text source = Text::adopt(exception.bstrSource);
    const Text description = Text::adopt(exception.bstrDescription);
    const Error standard = standard_error(exception);
    const std::wstring_view text = SysStringLen(description.get()) > 0 ? std::wstring_view{description} : standard.description();
    throw Error{standard.number(), std::wstring{text}, std::wstring{source}};
}

std::optional<DISPID> find(IDispatch* object, const wchar_t* member)
{
    if (!object)
        throw Error{Runtime::ObjectNotSet};
    DISPID id = DISPID_UNKNOWN;
    auto name = const_cast<LPOLESTR>(member);
    const CalculatesAsClient as_client;
    if (FAILED(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id)))
        return std::nullopt;
    return id;
}

Variant invoke(IDispatch* object, DISPID id, WORD flags, DISPPARAMS& arguments, bool wants_result)
{
    Variant result;
    EXCEPINFO exception{};
    const auto try_as = [&](WORD use) {
        const CalculatesAsClient as_client;
        return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, use, &arguments, wants_result ? &result : nullptr, &exception, nullptr);
    };
    HRESULT outcome = try_as(flags);
    // Some script engines take a plain value's property for no method, and refuse to be asked for either.
    if (FAILED(outcome) && outcome != DISP_E_EXCEPTION && (flags & DISPATCH_PROPERTYGET) && arguments.cArgs == 0)
        outcome = try_as(DISPATCH_PROPERTYGET);
    if (outcome == DISP_E_EXCEPTION)
        raise(exception);
    check(outcome);
    return result;
}

Variant invoke(IDispatch* object, const wchar_t* member, WORD flags, DISPPARAMS& arguments, bool wants_result)
{
    const Ref held{object}; // its own code may let go of it
    const auto id = find(object, member);
    if (!id)
        throw Error{Runtime::MemberNotSupported};
    return invoke(object, *id, flags, arguments, wants_result);
}

Variant invoke(IDispatch* object, const wchar_t* member, WORD flags, std::initializer_list<Variant> arguments, bool wants_result)
{
    constexpr std::size_t most = 8;
    if (arguments.size() > most)
        throw Error{Runtime::InvalidCall};
    // Arguments go from the last to the first; they are lent, not given.
    std::array<VARIANTARG, most> reversed;
    std::ranges::copy(arguments, reversed.rend() - static_cast<std::ptrdiff_t>(arguments.size()));
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    return invoke(object, member, flags, parameters, wants_result);
}

} // namespace

Variant get(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments)
{
    return invoke(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, true);
}

void call(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments)
{
    invoke(object, member, DISPATCH_METHOD, arguments, false);
}

Variant item(IDispatch* collection, const Variant& key)
{
    const Ref held{collection};
    VARIANTARG argument = key;
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    const DISPID id = find(collection, L"Item").value_or(DISPID_VALUE);
    return invoke(collection, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, true);
}

long count(IDispatch* collection)
{
    return converted(get(collection, L"Count"), VT_I4).lVal;
}

void remove_all(IDispatch* collection)
{
    const Ref held{collection};
    for (long rest = count(collection); rest > 0; --rest)
        call(collection, L"Remove", {Variant{1L}});
}

void put(IDispatch* object, const wchar_t* member, const Variant& value)
{
    VARIANTARG argument = value;
    DISPID name = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&argument, &name, 1, 1};
    const bool is_object = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
    invoke(object, member, is_object ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, parameters, false);
}

HRESULT ask_default_value(IUnknown* object, VARIANT& value) noexcept
{
    const CalculatesAsClient as_client;
    const auto dispatch = query<IDispatch>(object); // held, as its code may take it from the place where it stands
    DISPPARAMS none{};
    value.vt = VT_EMPTY;
    if (!dispatch)
        return DISP_E_TYPEMISMATCH;
    const HRESULT result = dispatch->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                            &value, nullptr, nullptr);
    return FAILED(result) ? DISP_E_TYPEMISMATCH : S_OK;
}

Variant default_value(IUnknown* object)
{
    Variant value;
    check(ask_default_value(object, value));
    return value;
}

} // namespace automation
