#pragma once

#include "automation/safe_array.h"
#include "numeric/array_extrema.h"
#include "numeric/array_sorting.h"

/// The members of qvCommon that work on arrays.
class qvCommon_arrays {
public:
    bool BoundTest(const VARIANT* V) { return ArrayDim(V) > 0; }
    long ArrayDim(const VARIANT* vArray)
    {
        const auto array = vArray ? automation::array_in(*vArray) : std::nullopt;
        return array && *array ? (*array)->cDims : 0;
    }
    automation::Variant Sort(const VARIANT& x)
    {
        numeric::sort(x);
        return {};
    }
    bool SortSpecial(const VARIANT& vData, long Col, bool fSortTranposed)
    {
        numeric::sort_records(vData, Col, fSortTranposed);
        return false; // whatever came of it: callers know no other answer
    }
    automation::Variant MinMax(const VARIANT& V, bool fTrnsps) { return numeric::min_max(V, fTrnsps); }
    automation::Variant Min(const VARIANT& V) { return numeric::extreme(V, numeric::End::Least); }
    automation::Variant max(const VARIANT& V) { return numeric::extreme(V, numeric::End::Greatest); }
    automation::Variant AbsMin(const VARIANT& V) { return numeric::absolute_extreme(V, numeric::End::Least); }
    automation::Variant AbsMax(const VARIANT& V) { return numeric::absolute_extreme(V, numeric::End::Greatest); }
};
