#pragma once

#include "automation/object.h"

#include <span>

namespace automation {

/// How clients create objects of a class.
struct Creator {
    const CLSID* id;
    Ref<IUnknown> (*create)();
};

template <class Derived>
Creator creator_of() noexcept
{
    return {&__uuidof(Derived), [] { return Ref<IUnknown>::adopt(make<Derived>().release()->unknown()); }};
}

/// Gives the factory of a class; CLASS_E_CLASSNOTAVAILABLE for one that is not in the table.
HRESULT get_class_object(std::span<const Creator> table, REFCLSID id, REFIID iid, void** object) noexcept;

} // namespace automation
