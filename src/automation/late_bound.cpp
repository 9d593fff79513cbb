#include "automation/late_bound.h"

#include "automation/border.h"
#include "automation/case_folding.h"
#include "automation/safe_array.h"
#include "automation/stdcall.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace automation::late_bound {
namespace {

constexpr std::size_t most_parameters = 32;

// ---- What a call gives ------------------------------------------------------------------------------------------------

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

    UINT index_of(const VARIANTARG& argument) const noexcept { return static_cast<UINT>(&argument - given_.rgvarg); }

private:
    const DISPPARAMS& given_;
    std::size_t named_ = 0;
    bool value_is_named_ = false;
};

/// A value without its by-reference wrapping; it shares what it points to with the caller.
VARIANT flat(const VARIANT& given) noexcept
{
    const VARIANT& value = followed(given);
    if (!(value.vt & VT_BYREF))
        return value;
    VARIANT content;
    content.vt = value.vt & ~VT_BYREF;
    if (!value.byref) {
        content.vt = VT_EMPTY;
        return content;
    }
    switch (content.vt) {
    case VT_VARIANT:
        return *value.pvarVal;
    case VT_DECIMAL:
        content.decVal = *value.pdecVal;
        content.vt = VT_DECIMAL;
        return content;
    case VT_I1:
    case VT_UI1:
        content.bVal = *value.pbVal;
        return content;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        content.iVal = *value.piVal;
        return content;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        content.cyVal = *value.pcyVal;
        return content;
    case VT_RECORD:
        return value;
    default: // numbers of one word, and pointers
        content.lVal = *value.plVal;
        return content;
    }
}

// ---- One argument -----------------------------------------------------------------------------------------------------

/// An argument on its way in and, by reference, back.
struct Passed {
    Variant content;         ///< what is passed when the caller's own storage does not fit
    VARIANT* back = nullptr; ///< where the outcome goes: the caller's variant or by-reference argument
    Variant before;          ///< a number or text as it was passed; what has not changed does not go back
    VARIANT lent;            ///< what is passed by reference but not changed
};

HRESULT copy(Variant& target, const VARIANT& value) noexcept
{
    return answer([&] { target = Variant{value}; });
}

HRESULT convert(Variant& target, const VARIANT& value, VARTYPE type) noexcept
{
    if (value.vt == VT_NULL && type == VT_BSTR)
        return answer([] { throw Error{Runtime::InvalidNull}; });
    return change_type(target, value, type);
}

/// The object that a value holds, as the interface that a parameter wants. Nothing is an object too.
HRESULT convert_object(Variant& target, const VARIANT& value, const Parameter& parameter) noexcept
{
    if (value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN)
        return DISP_E_TYPEMISMATCH;
    void* object = nullptr;
    if (value.punkVal) {
        const IID& wanted = parameter.type == VT_UNKNOWN ? IID_IUnknown : parameter.identity.value_or(IID_IDispatch);
        if (FAILED(value.punkVal->QueryInterface(wanted, &object)))
            return DISP_E_TYPEMISMATCH;
    }
    target = Variant{};
    target.vt = parameter.type;
    target.byref = object;
    return S_OK;
}

HRESULT convert_array(Variant& target, const VARIANT& value, const Parameter& parameter) noexcept
{
    if (value.vt == VT_EMPTY) { // an array still to be dimensioned
        target = Variant{};
        target.vt = parameter.type;
        target.parray = nullptr;
        return S_OK;
    }
    if (!(value.vt & VT_ARRAY))
        return DISP_E_TYPEMISMATCH;
    return answer([&] { target = array_of_type(value.parray, static_cast<VARTYPE>(parameter.type & ~VT_ARRAY)); });
}

/// Makes `passed.content` a value of the parameter's type, owned by the call.
HRESULT convert_to_parameter(Passed& passed, const VARIANT& value, const Parameter& parameter) noexcept
{
    if (parameter.type == VT_VARIANT)
        return copy(passed.content, value);
    if (parameter.type & VT_ARRAY)
        return convert_array(passed.content, value, parameter);
    if (parameter.type == VT_DISPATCH || parameter.type == VT_UNKNOWN)
        return convert_object(passed.content, value, parameter);
    return convert(passed.content, value, parameter.type);
}

/// How many words an argument takes on the stack.
std::size_t words_of(const Parameter& parameter) noexcept
{
    if (parameter.by_reference || (parameter.type & VT_ARRAY))
        return 1;
    switch (parameter.type) {
    case VT_VARIANT:
        return sizeof(VARIANT) / sizeof(std::uint32_t);
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_I8:
    case VT_UI8:
        return 2;
    default:
        return 1;
    }
}

/// What lies on the stack at the call.
class Frame {
public:
    explicit Frame(void* object) noexcept { push(object); }

    void push(const void* pointer) noexcept { words_[count_++] = reinterpret_cast<std::uintptr_t>(pointer); }
    void push(const VARIANT& value, const Parameter& parameter) noexcept
    {
        const std::size_t words = words_of(parameter);
        const bool whole = parameter.type == VT_VARIANT;
        std::memcpy(&words_[count_], whole ? static_cast<const void*>(&value) : &value.lVal, words * sizeof(std::uint32_t));
        count_ += words;
    }
    HRESULT call(const void* function) const noexcept { return call_stdcall(function, words_.data(), count_); }

private:
    std::array<std::uint32_t, 2 + most_parameters * sizeof(VARIANT) / sizeof(std::uint32_t)> words_;
    std::size_t count_ = 0;
};

bool is_number_or_text(VARTYPE type) noexcept
{
    return type != VT_VARIANT && type != VT_DISPATCH && type != VT_UNKNOWN && !(type & VT_ARRAY);
}

HRESULT pass_by_value(const VARIANT& given, const Parameter& parameter, Passed& passed, Frame& frame) noexcept
{
    const VARIANT value = flat(given);
    const bool as_it_is = parameter.type == VT_VARIANT
                       || (value.vt == parameter.type && !parameter.identity);
    if (as_it_is) {
        frame.push(value, parameter);
        return S_OK;
    }
    if (const HRESULT result = convert_to_parameter(passed, value, parameter); FAILED(result))
        return result;
    frame.push(passed.content, parameter);
    return S_OK;
}

HRESULT pass_record(const VARIANT& given, const Parameter& parameter, Frame& frame) noexcept
{
    const VARIANT& value = followed(given);
    GUID identity{};
    if ((value.vt & ~VT_BYREF) != VT_RECORD || !value.pRecInfo || !value.pvRecord
        || FAILED(value.pRecInfo->GetGuid(&identity)) || identity != parameter.identity)
        return DISP_E_TYPEMISMATCH;
    frame.push(value.pvRecord);
    return S_OK;
}

HRESULT pass_by_reference(VARIANT& given, const Parameter& parameter, Passed& passed, Frame& frame) noexcept
{
    if (parameter.type == VT_RECORD)
        return pass_record(given, parameter, frame);

    auto& inner = const_cast<VARIANT&>(followed(given));
    const bool callers_variable = &inner != &given; // reached through a by-reference variant
    if (inner.vt == (VT_BYREF | parameter.type) && inner.byref && !parameter.identity) {
        frame.push(inner.byref);
        return S_OK;
    }
    // A reference to an array is passed as it is, so that no table is copied only to be changed.
    const bool whole_array = (inner.vt & VT_BYREF) && (inner.vt & VT_ARRAY);
    if (parameter.type == VT_VARIANT && (whole_array || (callers_variable && !(inner.vt & VT_BYREF)))) {
        frame.push(&inner);
        return S_OK;
    }
    if (callers_variable && inner.vt == parameter.type && !parameter.identity) {
        frame.push(&inner.lVal);
        return S_OK;
    }
    if (!parameter.changes) {
        passed.lent = flat(inner);
        if (parameter.type == VT_VARIANT || (passed.lent.vt == parameter.type && !parameter.identity)) {
            frame.push(parameter.type == VT_VARIANT ? static_cast<void*>(&passed.lent) : &passed.lent.lVal);
            return S_OK;
        }
    }
    if (const HRESULT result = convert_to_parameter(passed, flat(inner), parameter); FAILED(result))
        return result;
    if (parameter.changes && (callers_variable || (inner.vt & VT_BYREF))) {
        passed.back = &inner;
        if (is_number_or_text(parameter.type) && flat(inner).vt != VT_EMPTY) // an empty variable is there to be filled
            if (const HRESULT result = copy(passed.before, passed.content); FAILED(result))
                return result;
    }
    frame.push(parameter.type == VT_VARIANT ? static_cast<void*>(&passed.content) : &passed.content.lVal);
    return S_OK;
}

/// Puts an outcome into storage of a type of its own.
HRESULT store_by_reference(VARIANT& storage, Variant& outcome) noexcept
{
    const auto type = static_cast<VARTYPE>(storage.vt & ~VT_BYREF);
    if (type == VT_VARIANT) {
        *storage.pvarVal = outcome.release();
        return S_OK;
    }
    Variant value;
    if (type & VT_ARRAY) {
        if (const HRESULT result = answer([&] { value = array_of_type(flat(outcome).parray, type & ~VT_ARRAY); }); FAILED(result))
            return result;
        SafeArrayDestroy(*storage.pparray);
        *storage.pparray = value.release().parray;
        return S_OK;
    }
    if (const HRESULT result = convert(value, outcome, type); FAILED(result))
        return result;
    Variant former;
    former.vt = type;
    const std::size_t size = type == VT_R8 || type == VT_CY || type == VT_DATE || type == VT_I8 || type == VT_UI8 ? 8
                           : type == VT_I2 || type == VT_UI2 || type == VT_BOOL                                   ? 2
                           : type == VT_I1 || type == VT_UI1                                                      ? 1
                                                                                                                  : 4;
    if (type == VT_DECIMAL) {
        *storage.pdecVal = value.decVal;
        storage.pdecVal->wReserved = 0;
        return S_OK;
    }
    std::memcpy(&former.lVal, storage.byref, size);
    std::memcpy(storage.byref, &value.lVal, size);
    value.release();
    return S_OK;
}

bool is_unchanged(const Passed& passed) noexcept
{
    if (passed.before.vt == VT_BSTR)
        return view(passed.before.bstrVal) == view(passed.content.bstrVal);
    return passed.before.vt != VT_EMPTY && passed.before.llVal == passed.content.llVal;
}

/// Gives the caller what a by-reference argument has become. A variable of another type keeps that as long as nothing changed.
void give_back(Passed& passed) noexcept
{
    if (!passed.back || is_unchanged(passed))
        return;
    if (passed.back->vt & VT_BYREF)
        store_by_reference(*passed.back, passed.content);
    else
        std::swap(*passed.back, static_cast<VARIANT&>(passed.content));
}

// ---- One call ---------------------------------------------------------------------------------------------------------

/// What a failed call tells its caller.
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

/// The arguments of a call, each at the place of its parameter.
class Call {
public:
    Call(void* object, const Function& function, const Arguments& arguments, bool sets_property, UINT* bad_argument) noexcept
        : object_{object}, function_{function}, arguments_{arguments}, sets_property_{sets_property},
          bad_argument_{bad_argument}, frame_{object}
    {
    }
    ~Call()
    {
        while (passed_count_ > 0)
            passed(--passed_count_).~Passed();
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    HRESULT run(VARIANT* result, EXCEPINFO* exception) noexcept
    {
        if (const HRESULT failure = place_arguments(); FAILED(failure))
            return failure;
        if (const HRESULT failure = pass_arguments(exception); FAILED(failure))
            return failure;
        Variant answer;
        if (function_.result)
            push_result(answer);
        const auto* functions = *static_cast<const void* const* const*>(object_);
        const HRESULT outcome = frame_.call(functions[function_.slot]);
        for (std::size_t i = 0; i < passed_count_; ++i)
            give_back(passed(i));
        if (FAILED(outcome))
            return exception_of(outcome, exception);
        if (result) {
            VariantInit(result);
            *result = answer.release();
        }
        return S_OK;
    }

private:
    Passed& passed(std::size_t index) noexcept { return *std::launder(reinterpret_cast<Passed*>(passed_) + index); }

    HRESULT place_arguments() noexcept
    {
        const auto& parameters = function_.parameters;
        const bool any_number = !parameters.empty() && parameters.back().any_number;
        const std::size_t fixed = parameters.size() - (any_number ? 1 : 0);
        const std::size_t given = arguments_.positional();
        if (parameters.size() > most_parameters || (given > fixed && !any_number))
            return DISP_E_BADPARAMCOUNT;
        for (std::size_t i = 0; i < std::min(given, fixed); ++i)
            placed_[i] = &arguments_.at(i);
        // The new value of a property comes last, whatever optional arguments are left out before it.
        if (sets_property_ && given > 0 && given < fixed)
            std::swap(placed_[given - 1], placed_[fixed - 1]);
        for (std::size_t i = arguments_.first_named(); i < arguments_.end_of_named(); ++i) {
            const auto place = static_cast<std::size_t>(arguments_.name(i));
            if (place >= fixed)
                return DISP_E_PARAMNOTFOUND;
            if (placed_[place])
                return DISP_E_BADPARAMCOUNT;
            placed_[place] = &arguments_.named(i);
        }
        for (std::size_t i = 0; i < fixed; ++i)
            if (!placed_[i] && !parameters[i].optional)
                return DISP_E_BADPARAMCOUNT;
        return S_OK;
    }

    HRESULT pass_arguments(EXCEPINFO* exception) noexcept
    {
        for (std::size_t i = 0; i < function_.parameters.size(); ++i) {
            const Parameter& parameter = function_.parameters[i];
            Passed& place = *new (&reinterpret_cast<Passed*>(passed_)[passed_count_]) Passed;
            ++passed_count_;
            const HRESULT failure = parameter.any_number ? pass_the_rest(place) : pass(placed_[i], parameter, place);
            if (SUCCEEDED(failure))
                continue;
            if (placed_[i] && bad_argument_)
                *bad_argument_ = arguments_.index_of(*placed_[i]);
            // A value that can't be had is no matter of its type: the error says what it was.
            return HRESULT_FACILITY(failure) == FACILITY_CONTROL ? conversion_failure(failure, exception) : failure;
        }
        return S_OK;
    }

    static HRESULT conversion_failure(HRESULT failure, EXCEPINFO* exception) noexcept
    {
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

    HRESULT pass(VARIANTARG* given, const Parameter& parameter, Passed& place) noexcept
    {
        if (!given || is_missing(*given)) {
            if (!parameter.optional)
                return DISP_E_PARAMNOTOPTIONAL;
            return pass_default(parameter, place);
        }
        return parameter.by_reference ? pass_by_reference(*given, parameter, place, frame_)
                                      : pass_by_value(*given, parameter, place, frame_);
    }

    HRESULT pass_default(const Parameter& parameter, Passed& place) noexcept
    {
        const Variant& value = parameter.value_if_omitted;
        if (!parameter.by_reference) {
            frame_.push(value, parameter);
            return S_OK;
        }
        if (const HRESULT failure = copy(place.content, value); FAILED(failure))
            return failure;
        frame_.push(parameter.type == VT_VARIANT ? static_cast<void*>(&place.content) : &place.content.lVal);
        return S_OK;
    }

    /// The arguments behind the fixed ones, as an array of values.
    HRESULT pass_the_rest(Passed& place) noexcept
    {
        const std::size_t fixed = function_.parameters.size() - 1;
        const std::size_t count = arguments_.positional() > fixed ? arguments_.positional() - fixed : 0;
        return answer([&] {
            place.content = new_array(VT_VARIANT, count);
            const LockedArray<VARIANT> values{place.content.parray};
            for (std::size_t i = 0; i < count; ++i)
                values[i] = Variant{flat(arguments_.at(fixed + i))}.release();
            frame_.push(place.content.parray);
        });
    }

    void push_result(Variant& answer) noexcept
    {
        const Parameter& result = *function_.result;
        if (result.type == VT_VARIANT) {
            frame_.push(static_cast<VARIANT*>(&answer));
            return;
        }
        answer.llVal = 0;
        answer.vt = result.type;
        frame_.push(&answer.lVal);
    }

    void* object_;
    const Function& function_;
    const Arguments& arguments_;
    bool sets_property_;
    UINT* bad_argument_;
    Frame frame_;
    std::array<VARIANTARG*, most_parameters> placed_{};
    alignas(Passed) std::byte passed_[most_parameters * sizeof(Passed)];
    std::size_t passed_count_ = 0;
};

// ---- Choosing what to call ----------------------------------------------------------------------------------------------

bool holds_object(const VARIANT& value) noexcept
{
    const VARIANT content = flat(value);
    return content.vt == VT_DISPATCH || content.vt == VT_UNKNOWN;
}

/// The function that sets the property: by reference where the caller says so or the property knows nothing else.
const Function* setter(const Member& member, WORD flags, const Arguments& arguments) noexcept
{
    const bool object = arguments.positional() > 0 && holds_object(arguments.at(arguments.positional() - 1));
    const bool reference = (flags & DISPATCH_PROPERTYPUTREF) && (object || !(flags & DISPATCH_PROPERTYPUT));
    const Function* first = reference ? member.put_reference.get() : member.put.get();
    const Function* second = reference ? member.put.get() : member.put_reference.get();
    return first ? first : second;
}

const Function* getter(const Member& member, WORD flags) noexcept
{
    const bool call_first = (flags & DISPATCH_METHOD) != 0;
    const Function* first = call_first ? member.method.get() : member.get.get();
    const Function* second = call_first ? member.get.get() : member.method.get();
    return first ? first : second;
}

/// Whether arguments that a property does not take itself are meant for the object that it gives.
bool gives_object(const Function* get) noexcept
{
    return get && get->parameters.empty() && get->result && get->result->type == VT_DISPATCH;
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
    return target.pdispVal->Invoke(DISPID_VALUE, IID_NULL, locale, flags, &rest, result, exception, bad_argument);
}

constexpr WORD sets = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

HRESULT set(void* object, const Member& member, LCID locale, WORD flags, DISPPARAMS& given, EXCEPINFO* exception,
            UINT* bad_argument) noexcept
{
    const Arguments arguments{given, true};
    const Function* function = setter(member, flags, arguments);
    const std::size_t takes = function ? function->parameters.size() : 0;
    const Function* get = member.get.get();
    if (get && given.cNamedArgs <= 1 && arguments.positional() > takes) {
        const bool item_of_object = gives_object(get);
        const bool value_of_item = !function && get->result && get->result->type == VT_DISPATCH
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
    if (function == member.get.get() && gives_object(function) && given.cArgs > 0 && given.cNamedArgs == 0)
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
