#pragma once

#include "automation/contract.h"

namespace automation {

/// Writes what clients look for: the type library with its interfaces and, for every creatable class of the contract, its
/// CLSID and programmatic identifier; for every alias of an interface where it leads. Nothing stays when it fails.
HRESULT register_server(const Library& library) noexcept;

/// Removes exactly that, also when only part of it is there. Where something can't be removed the rest goes, and the first
/// failure is the answer.
HRESULT unregister_server(const Library& library) noexcept;

} // namespace automation
