#pragma once

#include "automation/object.h"

#include <qvObjects.h>

/// A QVB matrix file. Its members are still to come.
class qvFile_qvb final : public automation::Object<qvFile_qvb, _qvFile_qvb> {
};
