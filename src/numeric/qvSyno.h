#pragma once

#include "automation/object.h"

#include <qvObjects.h>

/// Focus values. Its members are still to come.
class qvSyno final : public automation::Object<qvSyno, _qvSyno> {
};
