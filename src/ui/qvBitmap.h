#pragma once

#include "automation/object.h"

#include <qvObjects.h>

/// Sizes of bitmap files. Its members are still to come.
class qvBitmap final : public automation::Object<qvBitmap, _qvBitmap> {
};
