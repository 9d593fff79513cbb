#include "automation/safe_array.h"

#include <cstring>
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

Variant array_with_bounds_of(SAFEARRAY& model, VARTYPE type)
{
    std::vector<SAFEARRAYBOUND> bounds(model.cDims);
    // The array keeps its bounds from the last dimension to the first.
    for (USHORT i = 0; i < model.cDims; ++i)
        bounds[i] = model.rgsabound[model.cDims - 1 - i];
    SAFEARRAY* array = SafeArrayCreate(type, model.cDims, bounds.data());
    if (!array)
        throw Error{Runtime::OutOfMemory};
    return owner_of(array, type);
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

void assign(SAFEARRAY** target, Variant value)
{
    if (!target)
        throw Error{Runtime::InvalidCall};
    if (*target) {
        if ((*target)->fFeatures & (FADF_STATIC | FADF_FIXEDSIZE))
            throw Error{Runtime::ArrayLocked};
        check(SafeArrayDestroy(*target));
    }
    *target = value.release().parray;
}

Variant new_array(VARTYPE type, std::size_t count)
{
    SAFEARRAY* array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(count));
    if (!array)
        throw Error{Runtime::OutOfMemory};
    return owner_of(array, type);
}

Variant array_of_type(SAFEARRAY* array, VARTYPE type)
{
    if (!array)
        return owner_of(nullptr, type);
    VARTYPE source_type = VT_EMPTY;
    check(SafeArrayGetVartype(array, &source_type));
    if (source_type == type) {
        SAFEARRAY* copy = nullptr;
        check(SafeArrayCopy(array, &copy));
        return owner_of(copy, type);
    }
    if (array->cDims == 0)
        return owner_of(nullptr, type);
    const bool known = source_type <= VT_UINT && source_type != VT_RECORD;
    if (!known)
        throw Error{Runtime::TypeMismatch};

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
