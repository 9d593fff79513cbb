#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The folder-picker dialog. Its members are still to come.
class qvPathDialog final : public automation::Object<qvPathDialog, faces::qvPathDialog> {
};
