#pragma once

#include "automation/object.h"

#include <qvObjects.h>

/// A NIF text table. Its members are still to come.
class qvFile_Nif final : public automation::Object<qvFile_Nif, _qvFile_Nif> {
};
