#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Sizes of the printer's page. Its members are still to come.
class qvPrinter final : public automation::Object<qvPrinter, faces::qvPrinter> {
};
