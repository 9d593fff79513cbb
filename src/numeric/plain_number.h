#pragma once

#include <windows.h>

#include <oaidl.h>

namespace numeric {

/// The number in a value of the types Byte, Integer, Boolean, Long, Single, Double and Date; 0 for any other value.
inline double plain_number(const VARIANT& value) noexcept
{
    switch (value.vt) {
    case VT_UI1:
        return value.bVal;
    case VT_I2:
    case VT_BOOL:
        return value.iVal;
    case VT_I4:
        return value.lVal;
    case VT_R4:
        return value.fltVal;
    case VT_R8:
    case VT_DATE:
        return value.dblVal;
    default:
        return 0;
    }
}

} // namespace numeric
