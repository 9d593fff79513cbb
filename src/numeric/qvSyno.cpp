#include "numeric/qvSyno.h"

#include "numeric/focus.h"

using automation::referred;

HRESULT qvSyno::CalcFocus(VARIANT* Basis, VARIANT* FFT, VARIANT* Factors, VARIANT* Koeff, VARIANT_BOOL* fBasis,
                          unsigned char* Smooth, short* SmoothVal, VARIANT* result) noexcept
{
    return automation::answer(result, [&] {
        const numeric::FocusData data{referred(Basis), referred(FFT), referred(Factors), referred(Koeff)};
        return numeric::focus(data, referred(fBasis) != VARIANT_FALSE, referred(Smooth), referred(SmoothVal));
    });
}
