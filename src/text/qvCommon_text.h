#pragma once

#include "automation/values.h"
#include "text/leading_number.h"
#include "text/strings.h"

/// The members of qvCommon that work on texts, and on collections and objects by their members' names.
class qvCommon_text {
public:
    std::wstring Insert(std::wstring_view sString, SAFEARRAY* vReplacements);
    std::wstring Ins(std::wstring_view sString, SAFEARRAY* vReplacements) { return Insert(sString, vReplacements); }
    std::wstring StringCut(std::wstring_view s, std::wstring_view CutString, short intSpace)
    {
        return text::StringCut(s, CutString, intSpace);
    }
    std::wstring AnCD(std::wstring_view StringNotInQuotationMarks) { return text::in_quotation_marks(StringNotInQuotationMarks); }
    automation::Variant StrToNum(std::wstring_view sStr) { return automation::Variant{text::leading_number(sStr)}; }
    bool StrToBOOL(std::wstring_view sStr) { return text::StrToBOOL(sStr); }
    long GetNumbersFromStringCol(std::wstring_view Str, IDispatch* colNumbers);
    bool qvIsNumeric(std::wstring_view s, bool fMsgBox, std::wstring_view sCaption);
    std::wstring_view qvTrimL(std::wstring_view s) { return text::qvTrimL(s); }
    std::wstring_view qvTrimR(std::wstring_view s) { return text::qvTrimR(s); }
    std::wstring_view qvTrim(std::wstring_view s) { return text::qvTrim(s); }
    bool ExistsInCol(IDispatch* Col, const VARIANT& Key, bool bolAsObject);
    bool ObjTest(IDispatch* obj);
    std::wstring GetShortText(long lhDc, std::wstring_view s, long Length, long lStyle);
};
