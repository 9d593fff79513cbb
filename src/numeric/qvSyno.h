#pragma once

#include "automation/object.h"
#include "numeric/focus.h"

#include <qvObjects_contract.h>

/// Focus values of spectra.
class qvSyno final : public automation::Object<qvSyno, faces::qvSyno> {
public:
    automation::Variant CalcFocus(const VARIANT& Basis, const VARIANT& FFT, const VARIANT& Factors, const VARIANT& Koeff,
                                  VARIANT_BOOL fBasis, unsigned char Smooth, short SmoothVal)
    {
        return numeric::focus({Basis, FFT, Factors, Koeff}, fBasis != VARIANT_FALSE, Smooth, SmoothVal);
    }
};
