#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Helpers for forms and controls. Its members are still to come.
class qvForm final : public automation::Object<qvForm, faces::qvForm> {
};
