#pragma once

#include "automation/connection_point.h"

#include <qvObjects_contract.h>

/// Tooltips for windows. Its members are still to come.
class qvToolTip final : public automation::WithEvents<automation::Object<qvToolTip, faces::qvToolTip>, __qvToolTip> {
};
