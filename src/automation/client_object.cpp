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

/// Arguments as a call passes them, from the last to the first, behind the new value of a property. They are lent, not given.
class Arguments {
public:
    explicit Arguments(std::initializer_list<Variant> arguments = {}, const VARIANT* value = nullptr)
    {
        if (arguments.size() >= reversed_.size())
            throw Error{Runtime::InvalidCall};
        if (value) {
            reversed_[0] = *value;
            parameters_.rgdispidNamedArgs = &name_of_value_;
            parameters_.cNamedArgs = parameters_.cArgs = 1;
        }
        parameters_.cArgs += static_cast<UINT>(arguments.size());
        std::ranges::copy(arguments, std::reverse_iterator{reversed_.begin() + parameters_.cArgs});
    }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    operator DISPPARAMS&() noexcept { return parameters_; }

private:
    std::array<VARIANTARG, 9> reversed_;
    DISPID name_of_value_ = DISPID_PROPERTYPUT;
    DISPPARAMS parameters_{reversed_.data(), nullptr, 0, 0};
};

} // namespace

Variant get(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments)
{
    return invoke(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, Arguments{arguments}, true);
}

void call(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments)
{
    invoke(object, member, DISPATCH_METHOD, Arguments{arguments}, false);
}

Variant item(IDispatch* collection, const Variant& key)
{
    const Ref held{collection};
    const DISPID id = find(collection, L"Item").value_or(DISPID_VALUE);
    return invoke(collection, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, Arguments{{key}}, true);
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
    put(object, member, {}, value);
}

void put(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments, const Variant& value)
{
    const bool is_object = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
    invoke(object, member, is_object ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, Arguments{arguments, &value}, false);
}

Ref<IDispatch> object_in(const Variant& value)
{
    if (value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN)
        throw Error{Runtime::TypeMismatch};
    return query<IDispatch>(value.punkVal);
}

Items::Items(IDispatch* collection)
{
    const Ref held{collection};
    if (!collection)
        throw Error{Runtime::ObjectNotSet};
    const Variant made = invoke(collection, DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, Arguments{}, true);
    if (made.vt == VT_UNKNOWN || made.vt == VT_DISPATCH)
        enumerator_ = query<IEnumVARIANT>(made.punkVal);
    if (!enumerator_)
        throw Error{Runtime::MemberNotSupported};
}

bool Items::next(Variant& item)
{
    item = Variant{};
    const CalculatesAsClient as_client;
    const HRESULT result = enumerator_->Next(1, &item, nullptr);
    check(result);
    return result == S_OK;
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
