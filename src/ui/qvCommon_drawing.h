#pragma once

#include "automation/values.h"

/// The members of qvCommon for pictures, fonts and palettes.
class qvCommon_drawing {
public:
    /// Raises 53 for a missing file, what reading it does, 482 without a printer, 5 for a wrong context or size, 6 for a
    /// rectangle that leaves the numbers.
    bool PrintEMF(std::wstring_view sFile, long hDC, long Left, long Top, long Width, long Height);
    /// Raises 5 for a size that is not above 0.
    automation::Ref<IDispatch> CreateFontOLE(std::wstring_view sName, const VARIANT& Size, bool Bold, bool Italic, bool Underline,
                                             bool Strikethrough, short Charset);
    /// Raises 5 for a factor that is not above 0, 6 for a size beyond a Double, what the font object does.
    double ScaleFontSize(IDispatch* oFont, double dFactor);
    /// Raise 5 for what is no device context.
    double MMperPixX(long hDC);
    double MMperPixY(long hDC);
    automation::Variant GetPaletteColors(long hPalette);
};
