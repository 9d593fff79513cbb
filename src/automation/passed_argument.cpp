#include "automation/passed_argument.h"

#include "automation/border.h"
#include "automation/safe_array.h"
#include "automation/stdcall.h"

namespace automation::late_bound {
namespace {

constexpr VARTYPE reference_to_variant = VT_BYREF | VT_VARIANT;

HRESULT copy(Variant& target, const VARIANT& value) noexcept
{
    return answer([&] { target = Variant{value}; });
}

HRESULT convert_value(Variant& target, const VARIANT& value, VARTYPE type) noexcept
{
    if (value.vt == VT_NULL && type == VT_BSTR)
        return answer([] { throw Error{Runtime::InvalidNull}; });
    const bool nothing = (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) && !value.punkVal;
    return nothing ? DISP_E_TYPEMISMATCH : change_type(target, value, type);
}

/// The object that a value holds, as the interface that a parameter wants. Nothing is an object too.
HRESULT convert_object(Variant& target, const VARIANT& value, const Parameter& parameter) noexcept
{
    if (value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN)
        return DISP_E_TYPEMISMATCH;
    void* object = nullptr;
    if (value.punkVal) {
        const IID& wanted = parameter.identity ? *parameter.identity : parameter.type == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch;
        if (FAILED(value.punkVal->QueryInterface(wanted, &object)))
            return DISP_E_TYPEMISMATCH;
    }
    target = Variant{};
    target.vt = parameter.type;
    target.byref = object;
    return S_OK;
}

/// An array still to be dimensioned.
Variant no_array(VARTYPE type) noexcept
{
    Variant none;
    none.vt = type;
    none.parray = nullptr;
    return none;
}

HRESULT convert_array(Variant& target, const VARIANT& value, const Parameter& parameter) noexcept
{
    if (value.vt == VT_EMPTY || is_missing(value)) {
        target = no_array(parameter.type);
        return S_OK;
    }
    if (!(value.vt & VT_ARRAY))
        return DISP_E_TYPEMISMATCH;
    return answer([&] { target = array_of_type(value.parray, static_cast<VARTYPE>(parameter.type & ~VT_ARRAY)); });
}

/// DISP_E_TYPEMISMATCH for an array whose elements are not what its label says, whatever a parameter makes of the label.
HRESULT check_elements(const VARIANT& value) noexcept
{
    const auto array = array_in(value);
    if (!array || !*array || (*array)->cDims == 0) // no array, or one still to be dimensioned
        return S_OK;
    return answer([&] { readable_array(value); });
}

/// Where a by-reference parameter of this type finds its value in a variant.
void* storage_in(VARIANT& value, VARTYPE type) noexcept
{
    return type == VT_VARIANT ? static_cast<void*>(&value) : &value.lVal;
}

/// Raises 13 for storage of another kind of record.
void store_record(const VARIANT& storage, const VARIANT& outcome)
{
    if (outcome.vt != VT_RECORD || outcome.pRecInfo != storage.pRecInfo)
        throw Error{Runtime::TypeMismatch};
    check(storage.pRecInfo->RecordCopy(outcome.pvRecord, storage.pvRecord));
}

/// Puts an outcome into storage of a type of its own.
void store_by_reference(VARIANT& storage, const VARIANT& outcome)
{
    const auto type = static_cast<VARTYPE>(storage.vt & ~VT_BYREF);
    if (type == VT_RECORD) {
        store_record(storage, outcome);
        return;
    }
    if (type & VT_ARRAY) {
        if (!(outcome.vt & VT_ARRAY))
            throw Error{Runtime::TypeMismatch};
        assign(storage.pparray, array_of_type(outcome.parray, static_cast<VARTYPE>(type & ~VT_ARRAY)));
        return;
    }
    Variant value;
    check(convert_value(value, outcome, type));
    if (type == VT_DECIMAL) {
        *storage.pdecVal = value.decVal;
        storage.pdecVal->wReserved = 0;
        return;
    }
    Variant former; // which the storage held
    former.vt = type;
    const std::size_t size = size_of_value(type);
    std::memcpy(&former.lVal, storage.byref, size);
    std::memcpy(storage.byref, &value.lVal, size);
    value.release();
}

/// Whether storage that a reference leads to can take an outcome at all.
bool can_take(const VARIANT& storage) noexcept
{
    if ((storage.vt & ~VT_BYREF) == VT_RECORD)
        return storage.pRecInfo && storage.pvRecord;
    const auto type = static_cast<VARTYPE>(storage.vt & ~VT_BYREF);
    return storage.byref && ((type & VT_ARRAY) || size_of_value(type) > 0);
}

bool is_same(const VARIANT& one, const VARIANT& other) noexcept
{
    if (one.vt != other.vt || one.vt == VT_RECORD)
        return false;
    if (one.vt == VT_BSTR)
        return view(one.bstrVal) == view(other.bstrVal);
    if (one.vt == VT_DECIMAL)
        return std::memcmp(&one.decVal.scale, &other.decVal.scale, sizeof(DECIMAL) - sizeof(WORD)) == 0;
    return std::memcmp(&one.lVal, &other.lVal, size_of_value(one.vt)) == 0;
}

} // namespace

VARIANT behind(const VARIANT& value) noexcept
{
    const auto type = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
    if (type == VT_RECORD || type == VT_VARIANT)
        return value;
    VARIANT content;
    content.vt = type;
    if (type == VT_NULL)
        return content;
    const std::size_t size = size_of_value(type);
    if (!value.byref || size == 0) {
        content.vt = VT_EMPTY;
        return content;
    }
    if (type == VT_DECIMAL) {
        content.decVal = *value.pdecVal;
        content.vt = VT_DECIMAL;
    } else {
        content.llVal = 0;
        std::memcpy(&content.lVal, value.byref, size);
    }
    return content;
}

void Frame::push(const VARIANT& value, VARTYPE type) noexcept
{
    if (type == VT_VARIANT) {
        std::memcpy(&words_[count_], &value, sizeof value);
        count_ += sizeof value / sizeof words_[0];
        return;
    }
    std::memcpy(&words_[count_], &value.lVal, sizeof value.llVal); // a second word that is none is written over
    count_ += size_of_value(type) > sizeof words_[0] ? 2 : 1;
}

HRESULT Frame::call(std::size_t slot) const noexcept
{
    const auto* const functions = *reinterpret_cast<const void* const* const*>(words_[0]);
    return call_stdcall(functions[slot], words_.data(), count_);
}

HRESULT PassedArgument::pass(VARIANT& given, const Parameter& parameter, Passing passing, Frame& frame) noexcept
{
    const VARIANT& value = followed(given);
    if (value.vt == reference_to_variant) // it leads nowhere, or in a circle
        return DISP_E_TYPEMISMATCH;
    if (parameter.type & VT_ARRAY)
        if (const HRESULT failure = check_elements(value); FAILED(failure))
            return failure;
    if (is_missing(value)) {
        if (parameter.optional())
            return pass_omitted(parameter, frame);
        // What a member gets by reference it may fill, whatever is there.
        const bool may_be_filled = parameter.by_reference() && (parameter.type == VT_VARIANT || (parameter.type & VT_ARRAY));
        if (!may_be_filled)
            return DISP_E_PARAMNOTOPTIONAL;
    }
    return parameter.by_reference() ? pass_by_reference(given, parameter, passing, frame)
                                    : pass_by_value(given, parameter, passing, frame);
}

HRESULT PassedArgument::pass_omitted(const Parameter& parameter, Frame& frame) noexcept
{
    const VARIANT value = parameter.value_if_omitted();
    if (!parameter.by_reference()) {
        frame.push(value, parameter.type);
        return S_OK;
    }
    if (const HRESULT failure = copy(content_, value); FAILED(failure))
        return failure;
    frame.push(storage_in(content_, parameter.type));
    return S_OK;
}

void PassedArgument::pass_list(Variant values, Frame& frame) noexcept
{
    content_ = std::move(values);
    frame.push(content_.parray);
}

/// Makes `content_` a value of the parameter's type.
HRESULT PassedArgument::convert(const VARIANT& value, const Parameter& parameter) noexcept
{
    if (parameter.type == VT_VARIANT)
        return copy(content_, value);
    if (parameter.type & VT_ARRAY)
        return convert_array(content_, value, parameter);
    if (parameter.type == VT_DISPATCH || parameter.type == VT_UNKNOWN)
        return convert_object(content_, value, parameter);
    return convert_value(content_, value, parameter.type);
}

HRESULT PassedArgument::pass_by_value(const VARIANT& given, const Parameter& parameter, Passing passing, Frame& frame) noexcept
{
    const VARIANT value = flat(given);
    const bool as_it_is = parameter.type == VT_VARIANT || (value.vt == parameter.type && !parameter.identity);
    if (as_it_is && passing == Passing::Lent) {
        frame.push(value, parameter.type);
        return S_OK;
    }
    if (const HRESULT failure = convert(value, parameter); FAILED(failure))
        return failure;
    frame.push(content_, parameter.type);
    return S_OK;
}

HRESULT PassedArgument::pass_by_reference(VARIANT& given, const Parameter& parameter, Passing passing, Frame& frame) noexcept
{
    if (parameter.type == VT_RECORD)
        return pass_record(given, parameter, frame);
    auto& inner = const_cast<VARIANT&>(followed(given));
    const bool is_variable = &inner != &given; // reached through a by-reference variant
    const bool is_reference = inner.vt & VT_BYREF;
    if (is_reference && parameter.changes() && !can_take(inner))
        return DISP_E_TYPEMISMATCH;
    // A reference to an array is passed as it is, so that no table is copied only to be changed.
    const bool whole_array = is_reference && (inner.vt & VT_ARRAY);
    if (parameter.type == VT_VARIANT && (whole_array || (is_variable && !is_reference))) {
        frame.push(&inner);
        return S_OK;
    }
    if (passing == Passing::Lent && !parameter.identity) {
        if (inner.vt == (VT_BYREF | parameter.type) && inner.byref) {
            frame.push(inner.byref);
            return S_OK;
        }
        if (is_variable && inner.vt == parameter.type) {
            frame.push(&inner.lVal);
            return S_OK;
        }
    }
    if (passing == Passing::Lent && !parameter.changes()) {
        lent_ = flat(inner);
        if (parameter.type == VT_VARIANT || (lent_.vt == parameter.type && !parameter.identity)) {
            frame.push(storage_in(lent_, parameter.type));
            return S_OK;
        }
    }
    return pass_temporary(inner, parameter, is_variable, frame);
}

HRESULT PassedArgument::pass_temporary(VARIANT& inner, const Parameter& parameter, bool is_variable, Frame& frame) noexcept
{
    const VARIANT value = flat(inner);
    // The elements of an array that will be replaced need not have the type of the new ones.
    const bool replaces_array = parameter.changes() && (parameter.type & VT_ARRAY) && (value.vt & VT_ARRAY);
    if (replaces_array)
        content_ = no_array(parameter.type);
    else if (const HRESULT failure = convert(value, parameter); FAILED(failure))
        return failure;
    if (parameter.changes() && (is_variable || (inner.vt & VT_BYREF))) {
        back_ = &inner;
        fills_ = replaces_array || value.vt == VT_EMPTY || is_missing(value);
        if (parameter.type & VT_ARRAY)
            before_ = no_array(parameter.type);
        else if (const HRESULT failure = copy(before_, content_); FAILED(failure))
            return failure;
    }
    frame.push(storage_in(content_, parameter.type));
    return S_OK;
}

/// A variable's record may go while the call runs, when the client's code gives the variable another value: it gets a copy.
HRESULT PassedArgument::pass_record(VARIANT& given, const Parameter& parameter, Frame& frame) noexcept
{
    auto& inner = const_cast<VARIANT&>(followed(given));
    IRecordInfo* const description = record_of(inner, *parameter.identity);
    if (description && (inner.vt & VT_BYREF)) {
        frame.push(inner.pvRecord);
        return S_OK;
    }
    const bool may_be_filled = inner.vt == VT_EMPTY && parameter.changes();
    if (!description && !may_be_filled)
        return DISP_E_TYPEMISMATCH;
    return answer([&] {
        record_.make(description ? Ref{description} : record_info(*parameter.identity), description ? inner.pvRecord : nullptr);
        frame.push(record_.get());
        if (parameter.changes() && &inner != &given)
            back_ = &inner;
    });
}

bool PassedArgument::is_unchanged() const noexcept
{
    return is_same(before_, content_);
}

HRESULT PassedArgument::give_back(bool failed) noexcept
{
    if (record_)
        return back_ && !failed ? answer([&] { record_.store(*back_); }) : S_OK;
    if (!back_ || (is_unchanged() && (failed || !fills_)))
        return S_OK;
    return answer([&] {
        if (back_->vt & VT_BYREF)
            store_by_reference(*back_, content_);
        else
            assign(*back_, std::move(content_));
    });
}

} // namespace automation::late_bound
