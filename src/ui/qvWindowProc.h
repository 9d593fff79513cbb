#pragma once

#include "automation/connection_point.h"

#include <qvObjects_contract.h>

/// Watches the messages of a window. Its members are still to come.
class qvWindowProc final : public automation::WithEvents<automation::Object<qvWindowProc, faces::qvWindowProc>, __qvWindowProc> {
};
