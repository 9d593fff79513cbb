#pragma once

#include "automation/values.h"
#include "text/bits.h"
#include "text/colours.h"

/// The members of qvCommon that convert numbers, colours and bytes.
class qvCommon_conversions {
public:
    automation::Variant SetBit(long x, unsigned char Bit, bool Bool)
    {
        return automation::Variant{static_cast<long>(text::with_bit(x, Bit, Bool))};
    }
    long SetBit2(long& x, unsigned char Bit, bool Bool) { return x = text::with_bit(x, Bit, Bool); }
    bool GetBit(long x, unsigned char Bit) { return text::has_bit(x, Bit); }
    unsigned char GetRed(long Color) { return text::red(Color); }
    unsigned char GetGreen(long Color) { return text::green(Color); }
    unsigned char GetBlue(long Color) { return text::blue(Color); }
    automation::Variant BstrToByte(std::wstring_view s, SAFEARRAY*& b);
    automation::Variant ByteToBstr(SAFEARRAY* b, BSTR& s);
    automation::Variant ByteToBstrV(const VARIANT& V, BSTR& s);
    std::wstring ByteToStr(SAFEARRAY* b);
    std::wstring ByteToStrV(const VARIANT& V);
};
