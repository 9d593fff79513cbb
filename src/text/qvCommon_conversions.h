#pragma once

#include "automation/values.h"
#include "text/bits.h"

/// The members of qvCommon that convert numbers.
class qvCommon_conversions {
public:
    automation::Variant SetBit(long x, unsigned char Bit, bool Bool)
    {
        return automation::Variant{static_cast<long>(text::with_bit(x, Bit, Bool))};
    }
};
