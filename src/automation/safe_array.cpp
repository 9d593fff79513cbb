#include "automation/safe_array.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace automation {
namespace {

Variant owner_of(SAFEARRAY* array, VARTYPE type) noexcept
{
    Variant owner;
    owner.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    owner.parray = array;
    return owner;
}

/// How many elements there are within these bounds. Raises 7 when they take more than so many bytes.
std::size_t count_within(std::span<const SAFEARRAYBOUND> bounds, std::size_t element_size, std::uint64_t most_bytes)
{
    if (std::ranges::any_of(bounds, [](const SAFEARRAYBOUND& bound) { return bound.cElements == 0; }))
        return 0;
    std::uint64_t bytes = element_size;
    for (const SAFEARRAYBOUND& bound : bounds) {
        bytes *= bound.cElements; // neither factor has more than 32 bits
        if (bytes > most_bytes)
            throw Error{Runtime::OutOfMemory};
    }
    return static_cast<std::size_t>(bytes / element_size);
}

Variant array_with_bounds_of(const SAFEARRAY& model, VARTYPE type)
{
    // The array keeps its bounds from the last dimension to the first.
    const std::vector<SAFEARRAYBOUND> bounds(std::reverse_iterator{model.rgsabound + model.cDims},
                                             std::reverse_iterator{model.rgsabound});
    return new_array(type, bounds);
}

/// The type of an array's elements as the array itself knows it; VT_EMPTY where it says nothing.
VARTYPE own_type(const SAFEARRAY& array) noexcept
{
    VARTYPE type = VT_EMPTY;
    if (SUCCEEDED(SafeArrayGetVartype(const_cast<SAFEARRAY*>(&array), &type))) // which reads it only
        return type;
    // Not every array was made by the platform: those say no more than how their elements are let go.
    constexpr std::pair<USHORT, VARTYPE> owners[]{
        {FADF_BSTR, VT_BSTR}, {FADF_DISPATCH, VT_DISPATCH}, {FADF_UNKNOWN, VT_UNKNOWN}, {FADF_VARIANT, VT_VARIANT}, {FADF_RECORD, VT_RECORD}};
    for (const auto& [feature, owner] : owners)
        if (array.fFeatures & feature)
            return owner;
    return VT_EMPTY;
}

/// Whether elements of the first type may be read as elements of the second.
bool is_readable_as(VARTYPE own, VARTYPE labelled) noexcept
{
    switch (labelled) {
    case VT_I4:
    case VT_INT:
        return own == VT_I4 || own == VT_INT;
    case VT_UI4:
    case VT_UINT:
        return own == VT_UI4 || own == VT_UINT;
    case VT_UNKNOWN:
        return own == VT_UNKNOWN || own == VT_DISPATCH;
    default:
        return own == labelled;
    }
}

/// The element of an array as a variant that shares it.
VARIANT element_at(const std::byte* place, VARTYPE type, std::size_t size) noexcept
{
    VARIANT element;
    if (type == VT_VARIANT) {
        std::memcpy(&element, place, sizeof element);
        return element;
    }
    if (type == VT_DECIMAL)
        std::memcpy(&element, place, sizeof element);
    else
        std::memcpy(&element.lVal, place, size);
    element.vt = type;
    return element;
}

} // namespace

std::optional<SAFEARRAY*> array_in(const VARIANT& value) noexcept
{
    const VARIANT& inner = followed(value);
    if (!(inner.vt & VT_ARRAY))
        return std::nullopt;
    if (!(inner.vt & VT_BYREF))
        return inner.parray;
    return inner.pparray ? *inner.pparray : nullptr;
}

std::size_t element_count(const SAFEARRAY& array)
{
    const std::size_t element_size = std::max<std::size_t>(array.cbElements, 1);
    const std::size_t count = count_within({array.rgsabound, array.cDims}, element_size, std::numeric_limits<std::uint32_t>::max());
    if (count > 0 && !array.pvData)
        throw Error{Runtime::SubscriptOutOfRange};
    return count;
}

SAFEARRAY& readable_array(const VARIANT& value)
{
    const auto array = array_in(value);
    if (!array)
        throw Error{Runtime::TypeMismatch};
    if (!*array || (*array)->cDims == 0)
        throw Error{Runtime::SubscriptOutOfRange};
    const VARTYPE labelled = element_type(value), own = own_type(**array);
    const bool is_labelled_rightly = own == VT_EMPTY || is_readable_as(own, labelled);
    if (size_of_value(labelled) == 0 || size_of_value(labelled) != (*array)->cbElements || !is_labelled_rightly)
        throw Error{Runtime::TypeMismatch};
    element_count(**array);
    return **array;
}

VARTYPE element_type(const VARIANT& value) noexcept
{
    const VARTYPE type = followed(value).vt;
    return type & VT_ARRAY ? static_cast<VARTYPE>(type & VT_TYPEMASK) : static_cast<VARTYPE>(VT_EMPTY);
}

void assign(VARIANT& target, Variant value)
{
    auto& inner = const_cast<VARIANT&>(followed(target));
    if (!(inner.vt & VT_BYREF)) {
        if (inner.vt & VT_ARRAY) { // a locked array must not go, nor be lost
            check(SafeArrayDestroy(inner.parray));
            inner.vt = VT_EMPTY;
        }
        std::swap(inner, static_cast<VARIANT&>(value));
        return;
    }
    if (inner.vt != (VT_BYREF | value.vt))
        throw Error{Runtime::TypeMismatch};
    assign(inner.pparray, std::move(value));
}

void assign(SAFEARRAY*& target, Variant value)
{
    require_replaceable(target);
    // The former array goes last: letting go of its objects may run code that looks at the variable.
    SafeArrayDestroy(std::exchange(target, value.release().parray));
}

void require_replaceable(const SAFEARRAY* array)
{
    if (array && (array->cLocks > 0 || (array->fFeatures & (FADF_STATIC | FADF_FIXEDSIZE))))
        throw Error{Runtime::ArrayLocked};
}

Variant new_array(VARTYPE type, std::span<const SAFEARRAYBOUND> bounds)
{
    constexpr auto most_bytes = static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
    count_within(bounds, std::max<std::size_t>(size_of_value(type), 1), most_bytes);
    auto* const first = const_cast<SAFEARRAYBOUND*>(bounds.data()); // which the platform reads only
    SAFEARRAY* const array = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), first);
    if (!array)
        throw Error{Runtime::OutOfMemory};
    return owner_of(array, type);
}

Variant new_array(VARTYPE type, std::size_t count)
{
    const SAFEARRAYBOUND bounds[]{{static_cast<ULONG>(count), 0}};
    return new_array(type, bounds);
}

Variant array_of_type(SAFEARRAY* array, VARTYPE type)
{
    if (!array || array->cDims == 0)
        return owner_of(nullptr, type);
    element_count(*array);
    const VARTYPE source_type = own_type(*array);
    if (size_of_value(source_type) == 0 || size_of_value(source_type) != array->cbElements)
        throw Error{Runtime::TypeMismatch};
    if (source_type == type) {
        SAFEARRAY* copy = nullptr;
        check(SafeArrayCopy(array, &copy));
        return owner_of(copy, type);
    }

    Variant target = array_with_bounds_of(*array, type);
    const std::size_t source_size = SafeArrayGetElemsize(array);
    const std::size_t target_size = SafeArrayGetElemsize(target.parray);
    const LockedArray<std::byte> source{array};
    const LockedArray<std::byte> destination{target.parray};
    for (std::size_t i = 0; i < source.size(); ++i) {
        Variant value = type == VT_VARIANT ? Variant{element_at(source.begin() + i * source_size, source_type, source_size)}
                                           : converted(element_at(source.begin() + i * source_size, source_type, source_size), type);
        const bool whole = type == VT_VARIANT || type == VT_DECIMAL;
        std::memcpy(destination.begin() + i * target_size, whole ? static_cast<void*>(&value) : &value.lVal, target_size);
        value.release();
    }
    return target;
}

} // namespace automation
