#pragma once

#include "automation/safe_array.h"

#include <cmath>
#include <cstddef>
#include <span>

namespace numeric {

/// The elements of a client's array with their bounds, locked while this lives.
class Elements {
public:
    /// Raises 13 for a value that is no array, holds records or other elements than it says, 9 for an array still to be
    /// dimensioned, 7 for bounds beyond memory.
    explicit Elements(const VARIANT& value);

    VARTYPE type() const noexcept { return type_; }
    std::size_t size() const noexcept { return data_.size(); }
    USHORT dimensions() const noexcept { return array_->cDims; }

    /// The bounds of a dimension, counted from 1.
    std::size_t count(USHORT dimension) const noexcept { return bounds(dimension).cElements; }
    long long lower(USHORT dimension) const noexcept { return bounds(dimension).lLbound; }
    long long upper(USHORT dimension) const noexcept { return lower(dimension) + count(dimension) - 1; }

    /// An element as a variant that shares it with the array.
    VARIANT operator[](std::size_t index) const noexcept;
    /// Gives an element of the array's type a new value.
    void replace(std::size_t index, automation::Variant value) const noexcept;

    std::byte* place(std::size_t index) const noexcept { return data_.begin() + index * element_size_; }
    std::size_t element_size() const noexcept { return element_size_; }
    template <class Element>
    std::span<Element> as() const noexcept
    {
        return {reinterpret_cast<Element*>(data_.begin()), size()};
    }

private:
    const SAFEARRAYBOUND& bounds(USHORT dimension) const noexcept { return array_->rgsabound[array_->cDims - dimension]; }

    SAFEARRAY* array_;
    VARTYPE type_;
    std::size_t element_size_;
    automation::LockedArray<std::byte> data_;
};

/// What `work` gives for the elements as a span of their own number type, if they have one in whose natural order they
/// compare; what `otherwise` gives for all others. A NaN has no place in an order: arrays with one are among the others.
template <class Work, class Otherwise>
auto for_numbers(const Elements& elements, const Work& work, const Otherwise& otherwise)
{
    const auto without_nan = [&](auto numbers) {
        for (const auto number : numbers)
            if (std::isnan(number))
                return otherwise();
        return work(numbers);
    };
    switch (elements.type()) {
    case VT_UI1:
        return work(elements.as<BYTE>());
    case VT_I2:
    case VT_BOOL:
        return work(elements.as<SHORT>());
    case VT_I4:
        return work(elements.as<LONG>());
    case VT_I8:
    case VT_CY:
        return work(elements.as<LONGLONG>());
    case VT_R4:
        return without_nan(elements.as<float>());
    case VT_R8:
    case VT_DATE:
        return without_nan(elements.as<double>());
    default:
        return otherwise();
    }
}

} // namespace numeric
