#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Placement of forms, list views and tool bars in the user's settings. Its members are still to come.
class qvSave final : public automation::Object<qvSave, faces::qvSave> {
};
