#include "numeric/qvMath.h"

#include "numeric/appended_columns.h"
#include "numeric/decimal_cut.h"
#include "numeric/empty_rows.h"

long qvMath::CheckData(VARIANT& vSub, VARIANT* vObj)
{
    const bool with_objects = vObj && !automation::is_missing(*vObj);
    return numeric::remove_empty_rows(vSub, with_objects ? vObj : nullptr);
}

automation::Variant qvMath::AddVektor(const VARIANT* Matrix, const VARIANT* Vektor)
{
    if (Matrix && Vektor)
        numeric::append_columns(*Matrix, *Vektor);
    return {};
}

double qvMath::RoundDown(double x, long k)
{
    const automation::Text text = automation::to_text(automation::Variant{x});
    const auto cut = numeric::cut_decimals(text, k);
    return cut ? automation::converted(automation::Variant{*cut}, VT_R8).dblVal : x;
}
