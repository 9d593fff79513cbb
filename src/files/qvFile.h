#pragma once

#include "automation/connection_point.h"

#include <qvObjects.h>

/// Paths, folders and files. Its members are still to come.
class qvFile final : public automation::WithEvents<automation::Object<qvFile, _qvFile>, __qvFile> {
};
