#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// A text shared between processes. Its members are still to come.
class qvSharedMemory final : public automation::Object<qvSharedMemory, faces::qvSharedMemory> {
};
