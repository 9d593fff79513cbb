#pragma once

#include "automation/values.h"

#include <oaidl.h>

/// The type library in this module: what object browsers, registration and class information show. No call needs it; it is
/// read when it is first asked for.
namespace automation {

/// Raises what the platform fails with when this module has none.
ITypeLib& type_library();

/// What the type library says of a class or an interface. Raises 0x8002802B (element not found) when it knows none.
Ref<ITypeInfo> type_info(REFGUID id);

} // namespace automation
