#pragma once

#include "automation/cursor.h"
#include "automation/values.h"

#include <cstddef>

namespace automation {

/// A list as its enumerators see it.
class Sequence {
public:
    virtual std::size_t count() const noexcept = 0;
    /// The item at a position from 0.
    virtual Variant item(std::size_t position) = 0;
    virtual Cursors& cursors() noexcept = 0;

protected:
    ~Sequence() = default;
};

/// An enumerator (IEnumVARIANT) over a list from position `start`. It keeps `owner`, which the list belongs to, alive.
Ref<IUnknown> make_enumerator(IUnknown& owner, Sequence& sequence, std::size_t start = 0);

} // namespace automation
