#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Focus values of spectra.
class qvSyno final : public automation::Object<qvSyno, _qvSyno> {
public:
    HRESULT STDMETHODCALLTYPE CalcFocus(VARIANT* Basis, VARIANT* FFT, VARIANT* Factors, VARIANT* Koeff, VARIANT_BOOL* fBasis,
                                        unsigned char* Smooth, short* SmoothVal, VARIANT* result) noexcept override;
};
