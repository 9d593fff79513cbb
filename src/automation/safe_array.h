#pragma once

#include "automation/border.h"

#include <cstddef>
#include <optional>
#include <span>

/// Arrays of the platform, seen as typed memory in storage order.
namespace automation {

/// The elements of an array, locked in memory while this lives. The array must hold elements of this type.
template <class Element>
class LockedArray {
public:
    /// An array still to be dimensioned has no elements.
    explicit LockedArray(SAFEARRAY* array) : array_{array && array->cDims > 0 ? array : nullptr}
    {
        if (!array_)
            return;
        void* data = nullptr;
        check(SafeArrayAccessData(array, &data));
        std::size_t count = 1;
        for (USHORT i = 0; i < array->cDims; ++i)
            count *= array->rgsabound[i].cElements;
        elements_ = {static_cast<Element*>(data), count};
    }
    ~LockedArray()
    {
        if (array_)
            SafeArrayUnaccessData(array_);
    }
    LockedArray(const LockedArray&) = delete;
    LockedArray& operator=(const LockedArray&) = delete;

    Element& operator[](std::size_t index) const noexcept { return elements_[index]; }
    Element* begin() const noexcept { return elements_.data(); }
    Element* end() const noexcept { return elements_.data() + elements_.size(); }
    std::size_t size() const noexcept { return elements_.size(); }

private:
    SAFEARRAY* array_;
    std::span<Element> elements_;
};

/// The array that a value holds or refers to. None for any other value, null for an array still to be dimensioned.
std::optional<SAFEARRAY*> array_in(const VARIANT& value) noexcept;

/// The type of a value's elements when it is an array, VT_EMPTY otherwise.
VARTYPE element_type(const VARIANT& value) noexcept;

/// Gives a by-reference argument a new value. Where the caller passed a typed array, that array is replaced: raises 13 for
/// a value of another type, 10 when the array is fixed or locked, and then changes nothing.
void assign(VARIANT& target, Variant value);

/// The same for a typed array.
void assign(SAFEARRAY** target, Variant value);

/// A new one-dimensional array from 0 whose elements are zero, empty or nothing.
Variant new_array(VARTYPE type, std::size_t count);

/// A copy of an array with its bounds, whose elements are converted to a type in the user's locale. Raises what a
/// conversion fails with: 6, 13, 94. An array still to be dimensioned stays one.
Variant array_of_type(SAFEARRAY* array, VARTYPE type);

} // namespace automation
