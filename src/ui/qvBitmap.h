#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

#include <string_view>

/// Sizes of bitmap files.
class qvBitmap final : public automation::Object<qvBitmap, faces::qvBitmap> {
public:
    /// There for programs that call it.
    void GetBitmapSize(long, long*, long*) {}
    bool GetBitmapSizeS(std::wstring_view sBitmapFile, long& dX, long& dY);
};
