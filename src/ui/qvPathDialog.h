#pragma once

#include "automation/object.h"

#include <qvObjects.h>

/// The folder-picker dialog. Its members are still to come.
class qvPathDialog final : public automation::Object<qvPathDialog, _qvPathDialog> {
};
