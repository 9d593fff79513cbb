#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// Sizes of the screen. Its members are still to come.
class qvScreen final : public automation::Object<qvScreen, faces::qvScreen> {
};
