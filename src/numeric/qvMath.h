#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Mathematics on tables: arrays of two dimensions with any bounds, the first index the row.
class qvMath final : public automation::Object<qvMath, _qvMath> {
public:
    HRESULT STDMETHODCALLTYPE AvgDyn(VARIANT* r, unsigned char AVG, short x, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE MMult(VARIANT* M1, VARIANT* M2, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckData(VARIANT* vSub, VARIANT* vObj, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Transpose(VARIANT* x, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE AddVektor(VARIANT* Matrix, VARIANT* Vektor, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE RoundDown(double x, long k, double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE NumbersToBase(long lBasis, long lDigits, VARIANT_BOOL fDigitArray,
                                            VARIANT* result) noexcept override;
};
