#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

#include <string>

/// Helpers for a client's forms and controls. These are used by the names of their members, and held for the time of a call.
class qvForm final : public automation::Object<qvForm, faces::qvForm> {
public:
    bool Box_Sel(IDispatch* Box);
    automation::Variant GetSelectedListItem(IDispatch* Box);
    long InWidthPix(IDispatch* frm);
    long InHeightPix(IDispatch* frm);
    long InWidthTwp(IDispatch* frm);
    long InHeightTwp(IDispatch* frm);
    void SetListviewStyle(long CtlHwnd, long Style, bool AddStyle);
    bool SetToolBarStyle(long CtlHwnd, long Style, bool AddStyle);
    long SetRedrawMode(long hwnd, bool fAllowRedraw, bool fRefresh);
    automation::Variant GetHalftoneBrush();
    void AddText2Ctrl(IDispatch* obj, std::wstring_view sText, bool fMoveToLastLine, long lColor);
    void EnableVbWindow(IDispatch* objWindow, bool fEnable);
    long Box_Copy(IDispatch* Box1, IDispatch* Box2, bool fAlles);
    long Box_Move(IDispatch* Box1, IDispatch* Box2, bool fAlles);
    bool Box_Sort(IDispatch* Box, long Spalte);
    long Box_Del(IDispatch* Box);
    void MoveToForm(IDispatch* frm, IDispatch* obj);
    std::wstring qvCaption(IDispatch* frmCol, std::wstring_view sCaption);
    void CenterFormToScreen(IDispatch* frm, const VARIANT& dOffset);
    void AddTextRTF(IDispatch* oRTF, std::wstring_view sText, bool fSetCursor);
    void Draw3dEdge(long hDC, RECT& r, long lDXscroll, long lDYscroll, bool fSizeGrip);
};
