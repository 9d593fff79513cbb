#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The system's colours, each 0x00BBGGRR.
class qvSystemColors final : public automation::Object<qvSystemColors, faces::qvSystemColors> {
public:
    /// All of its properties.
    long line(faces::qvSystemColors_line line) const;
};
