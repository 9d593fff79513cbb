#pragma once

#include "automation/border.h"

#include <cstddef>
#include <optional>
#include <span>

/// Arrays of the platform, seen as typed memory in storage order.
namespace automation {

/// How many elements an array with dimensions has in memory. Raises 7 where its bounds speak of more than memory can hold,
/// as those of arrays do that a client or the platform made without a look at the product, and 9 where it has no memory.
std::size_t element_count(const SAFEARRAY& array);

/// The elements of an array, locked in memory while this lives.
template <class Element>
class LockedArray {
public:
    /// An array still to be dimensioned has no elements. Raises what element_count does, and 13 for elements of another size
    /// unless they are to be seen as bytes: there are as many of these then as the array has elements.
    explicit LockedArray(SAFEARRAY* array) : array_{array && array->cDims > 0 ? array : nullptr}
    {
        if (!array_)
            return;
        if (sizeof(Element) > 1 && array->cbElements != sizeof(Element))
            throw Error{Runtime::TypeMismatch};
        const std::size_t count = element_count(*array);
        void* data = nullptr;
        check(SafeArrayAccessData(array, &data));
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

/// The array that a value holds or refers to, fit to be read as elements of the type that the value names. Raises 13 for a
/// value that is no array, for records, and where the array itself knows of other elements; 9 for an array still to be
/// dimensioned; what element_count does.
SAFEARRAY& readable_array(const VARIANT& value);

/// The type of a value's elements when it is an array, VT_EMPTY otherwise.
VARTYPE element_type(const VARIANT& value) noexcept;

/// Gives a by-reference argument a new value. Where the caller passed a typed array, that array is replaced: raises 13 for
/// a value of another type, 10 when the array is fixed or locked, and then changes nothing.
void assign(VARIANT& target, Variant value);

/// The same for a typed array; 5 for a null pointer.
void assign(SAFEARRAY*& target, Variant value);
inline void assign(SAFEARRAY** target, Variant value) { assign(referred(target), std::move(value)); }

/// Raises 10 for an array that is fixed or locked, in whose place no other may come.
void require_replaceable(const SAFEARRAY* array);

/// A new array whose elements are zero, empty or nothing. Its bounds stand from the first dimension on. Raises 7 when it is
/// too large for memory. Every array that goes to a client is made here: the platform's own ways to make one let the number
/// of bytes wrap around, or make arrays that clients can't redimension.
Variant new_array(VARTYPE type, std::span<const SAFEARRAYBOUND> bounds);

/// The same with one dimension from 0.
Variant new_array(VARTYPE type, std::size_t count);

/// A copy of an array with its bounds, whose elements are converted to a type in the user's locale. Raises what a
/// conversion fails with: 6, 13, 94, and what element_count does. An array still to be dimensioned stays one.
Variant array_of_type(SAFEARRAY* array, VARTYPE type);

} // namespace automation
