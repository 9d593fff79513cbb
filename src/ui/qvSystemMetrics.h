#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

/// The system's metrics. Lengths are in pixels until the unit is set.
class qvSystemMetrics final : public automation::Object<qvSystemMetrics, faces::qvSystemMetrics> {
public:
    /// Raises 0x80040001 for other units than twips (1) and pixels (3).
    void put_ScaleMode(short value);
    /// The unit that is told, twips, is not the one in force: clients expect that.
    short get_ScaleMode() const noexcept { return 1; }
    /// All the metrics. Raises 6.
    long line(faces::qvSystemMetrics_line line) const;

private:
    short x_ = 1, y_ = 1; ///< the units that a pixel has, horizontally and vertically
};
