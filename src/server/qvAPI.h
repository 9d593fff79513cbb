#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The global class of profile files, identifiers, processes and the system. Its members are still to come.
class qvAPI final : public automation::Object<qvAPI, faces::qvAPI> {
};
