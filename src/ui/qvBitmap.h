#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Sizes of bitmap files. Its members are still to come.
class qvBitmap final : public automation::Object<qvBitmap, faces::qvBitmap> {
};
