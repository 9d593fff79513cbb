#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The system's colours. Its members are still to come.
class qvSystemColors final : public automation::Object<qvSystemColors, faces::qvSystemColors> {
};
