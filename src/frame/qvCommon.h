#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The global class of the library's small functions. Each group of members is implemented in the folder it belongs to.
class qvCommon final : public automation::Object<qvCommon, _qvCommon> {
public:
    // src/frame/qvCommon_frame.cpp
    HRESULT STDMETHODCALLTYPE qvObjectsInit(BSTR sKey, VARIANT val, VARIANT_BOOL* result) noexcept override;

    // src/text/qvCommon_text.cpp
    HRESULT STDMETHODCALLTYPE Insert(BSTR sString, SAFEARRAY* vReplacements, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Ins(BSTR sString, SAFEARRAY* vReplacements, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE StringCut(BSTR s, BSTR CutString, short intSpace, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE AnCD(BSTR StringNotInQuotationMarks, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE StrToNum(BSTR sStr, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE StrToBOOL(BSTR sStr, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNumbersFromStringCol(BSTR Str, IDispatch* colNumbers, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvIsNumeric(BSTR s, VARIANT_BOOL fMsgBox, BSTR sCaption, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvTrimL(BSTR s, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvTrimR(BSTR s, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvTrim(BSTR s, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE ExistsInCol(IDispatch* Col, VARIANT Key, VARIANT_BOOL bolAsObject, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE ObjTest(IDispatch* obj, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetShortText(long lhDc, BSTR s, long Length, long lStyle, BSTR* result) noexcept override;

    // src/numeric/qvCommon_arrays.cpp
    HRESULT STDMETHODCALLTYPE BoundTest(VARIANT* V, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE ArrayDim(VARIANT* vArray, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Sort(VARIANT* x, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE SortSpecial(VARIANT* vData, long Col, VARIANT_BOOL fSortTranposed,
                                          VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE MinMax(VARIANT V, VARIANT_BOOL fTrnsps, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Min(VARIANT V, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE max(VARIANT V, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE AbsMin(VARIANT V, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE AbsMax(VARIANT V, VARIANT* result) noexcept override;
};
