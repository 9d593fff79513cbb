#pragma once

#include "automation/connection_point.h"
#include "ui/MToolTipCallBack.h"

#include <qvObjects_contract.h>

#include <string>

/// Tooltips for windows: one tooltip window of the system with its tools. Before Init, members do nothing and give nothing.
class qvToolTip final : public automation::WithEvents<automation::Object<qvToolTip, faces::qvToolTip>, __qvToolTip> {
public:
    void Init(TT_STYLE Style);

    void put_DelayTime(TT_Timing& DTType, long value);
    long get_DelayTime(TT_Timing& DTType);
    void newToolRect(const RECT& ToolRect, long& hwnd, long& ID);
    automation::Variant GetMargin(long& TopText, long& LeftText, long& BottomText, long& RightText);
    automation::Variant SetMargin(long& TopText, long& LeftText, long& BottomText, long& RightText);
    long BubbleSize(long& hwnd, long& ID);
    long HitTest(long& xPos, long& yPos, long& hwnd);
    bool AdjustRect(bool fLarger, RECT& rectOut);
    bool SetTrackActivate(bool Activate, long hwnd, long ID);
    /// Raises 6.
    bool SetTrackPosition(long ScreenXPos, long ScreenYPos);
    bool AddTTRect(long& hwnd, long& Left, long& Top, long& Right, long& Bottom, BSTR& TTText, TT_Flags fl, long ID);
    bool AddTTRectCB(long& hwnd, long& Left, long& Top, long& Right, long& Bottom, TT_Flags fl, long ID);
    long get_Count();
    bool DeleteTT(long ID);
    bool SetNewTTPos(long ID, long& Left, long& Top, long& Right, long& Bottom);
    bool Update();
    bool SetTitle(BSTR& Titel, TT_TITELICON& Icon);
    std::wstring get_Text(long ID, long hwnd);
    void put_Text(long ID, long hwnd, std::wstring_view value);
    long get_BackColor();
    void put_BackColor(long value);
    long get_FontColor();
    void put_FontColor(long value);
    long get_MaxTipWidth();
    void put_MaxTipWidth(long value);
    long get_hwnd() const noexcept;
    bool get_Enabled() const { return enabled_; }
    void put_Enabled(bool value);

    /// The text that handlers give a tool, in the system's code page. It stays until the next one is asked for.
    const char* text_on_demand(long tool);
    /// What handlers answer when a tool's tooltip is about to be shown.
    long shows(long tool);
    void pops(long tool);

    MToolTipCallBack::TooltipWindow& window() noexcept { return window_; }

private:
    class TextBuffer;

    /// 0 before Init.
    long send(UINT message, WPARAM wParam = 0, const void* lParam = nullptr) const;
    bool add(const RECT& rectangle, long hwnd, TT_Flags flags, long tool, const char* text) const;
    /// A text in the system's code page, as it is handed over to the tooltip.
    std::string handed_over(std::wstring_view text);

    bool enabled_ = false;
    std::string text_on_demand_;
    std::size_t longest_text_ = 0; ///< that was handed over, in bytes
    std::size_t room_for_text_ = std::string::npos; ///< where the tooltip copies a text to, in bytes
    MToolTipCallBack::TooltipWindow window_{*this};
};
