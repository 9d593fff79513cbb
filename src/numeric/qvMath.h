#pragma once

#include "automation/object.h"
#include "numeric/digit_tables.h"
#include "numeric/table_products.h"
#include "numeric/table_smoothing.h"
#include "numeric/transposition.h"

#include <qvObjects_contract.h>

/// Mathematics on tables: arrays of two dimensions with any bounds, the first index the row.
class qvMath final : public automation::Object<qvMath, faces::qvMath> {
public:
    automation::Variant AvgDyn(const VARIANT& r, unsigned char AVG, short x) { return numeric::smoothed(r, AVG, x); }
    automation::Variant MMult(const VARIANT& M1, const VARIANT& M2) { return numeric::multiplied(M1, M2); }
    long CheckData(VARIANT& vSub, VARIANT* vObj);
    automation::Variant Transpose(const VARIANT& x) { return numeric::transposed(x); }
    /// Does nothing where one of them is missing.
    automation::Variant AddVektor(const VARIANT* Matrix, const VARIANT* Vektor);
    double RoundDown(double x, long k);
    automation::Variant NumbersToBase(long lBasis, long lDigits, bool fDigitArray)
    {
        return fDigitArray ? numeric::digits_of_all(lBasis, lDigits) : numeric::numbers_of_all(lBasis, lDigits);
    }
};
