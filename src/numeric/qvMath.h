#pragma once

#include "automation/object.h"

#include <qvObjects.h>

/// Mathematics on tables. Its members are still to come.
class qvMath final : public automation::Object<qvMath, _qvMath> {
};
