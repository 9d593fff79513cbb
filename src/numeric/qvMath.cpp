#include "numeric/qvMath.h"

#include "numeric/appended_columns.h"
#include "numeric/decimal_cut.h"
#include "numeric/digit_tables.h"
#include "numeric/empty_rows.h"
#include "numeric/table_products.h"
#include "numeric/table_smoothing.h"
#include "numeric/transposition.h"

using automation::answer;
using automation::referred;

HRESULT qvMath::AvgDyn(VARIANT* r, unsigned char AVG, short x, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::smoothed(referred(r), AVG, x); });
}

HRESULT qvMath::MMult(VARIANT* M1, VARIANT* M2, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::multiplied(referred(M1), referred(M2)); });
}

HRESULT qvMath::CheckData(VARIANT* vSub, VARIANT* vObj, long* result) noexcept
{
    return answer(result, [&] {
        const bool with_objects = vObj && !automation::is_missing(*vObj);
        return numeric::remove_empty_rows(referred(vSub), with_objects ? vObj : nullptr);
    });
}

HRESULT qvMath::Transpose(VARIANT* x, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::transposed(referred(x)); });
}

HRESULT qvMath::AddVektor(VARIANT* Matrix, VARIANT* Vektor, VARIANT* result) noexcept
{
    return answer(result, [&] {
        if (Matrix && Vektor)
            numeric::append_columns(*Matrix, *Vektor);
        return automation::Variant{};
    });
}

HRESULT qvMath::RoundDown(double x, long k, double* result) noexcept
{
    return answer(result, [&] {
        const automation::Text text = automation::to_text(automation::Variant{x});
        const auto cut = numeric::cut_decimals(text, k);
        return cut ? automation::converted(automation::Variant{*cut}, VT_R8).dblVal : x;
    });
}

HRESULT qvMath::NumbersToBase(long lBasis, long lDigits, VARIANT_BOOL fDigitArray, VARIANT* result) noexcept
{
    return answer(result, [&] {
        const bool as_digits = fDigitArray != VARIANT_FALSE;
        return as_digits ? numeric::digits_of_all(lBasis, lDigits) : numeric::numbers_of_all(lBasis, lDigits);
    });
}
