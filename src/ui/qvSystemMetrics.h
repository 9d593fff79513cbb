#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The system's metrics. Its members are still to come.
class qvSystemMetrics final : public automation::Object<qvSystemMetrics, faces::qvSystemMetrics> {
};
