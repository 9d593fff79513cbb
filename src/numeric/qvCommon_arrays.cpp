#include "frame/qvCommon.h"

#include "automation/safe_array.h"
#include "numeric/array_extrema.h"
#include "numeric/array_sorting.h"

using automation::answer;
using automation::referred;
using automation::Variant;
using numeric::End;

namespace {

/// The number of dimensions of an array; 0 for any other value and for an array still to be dimensioned.
long dimensions(const VARIANT& value) noexcept
{
    const auto array = automation::array_in(value);
    return array && *array ? (*array)->cDims : 0;
}

} // namespace

HRESULT qvCommon::BoundTest(VARIANT* V, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return V && dimensions(*V) > 0; });
}

HRESULT qvCommon::ArrayDim(VARIANT* vArray, long* result) noexcept
{
    return answer(result, [&] { return vArray ? dimensions(*vArray) : 0L; });
}

HRESULT qvCommon::Sort(VARIANT* x, VARIANT* result) noexcept
{
    return answer(result, [&] {
        numeric::sort(referred(x));
        return Variant{};
    });
}

HRESULT qvCommon::SortSpecial(VARIANT* vData, long Col, VARIANT_BOOL fSortTranposed, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        numeric::sort_records(referred(vData), Col, fSortTranposed != VARIANT_FALSE);
        return false; // whatever came of it: callers know no other answer
    });
}

HRESULT qvCommon::MinMax(VARIANT V, VARIANT_BOOL fTrnsps, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::min_max(V, fTrnsps != VARIANT_FALSE); });
}

HRESULT qvCommon::Min(VARIANT V, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::extreme(V, End::Least); });
}

HRESULT qvCommon::max(VARIANT V, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::extreme(V, End::Greatest); });
}

HRESULT qvCommon::AbsMin(VARIANT V, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::absolute_extreme(V, End::Least); });
}

HRESULT qvCommon::AbsMax(VARIANT V, VARIANT* result) noexcept
{
    return answer(result, [&] { return numeric::absolute_extreme(V, End::Greatest); });
}
