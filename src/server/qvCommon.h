#pragma once

#include "automation/object.h"
#include "ini/qvCommon_settings.h"
#include "messages/qvCommon_options.h"
#include "numeric/qvCommon_arrays.h"
#include "system/qvCommon_system.h"
#include "text/qvCommon_conversions.h"
#include "text/qvCommon_text.h"
#include "ui/qvCommon_drawing.h"

#include <qvObjects_contract.h>

/// The global class of the library's small functions. Each group of members stands in the folder that it belongs to.
class qvCommon final : public automation::Object<qvCommon, faces::qvCommon>,
                       public qvCommon_options,
                       public qvCommon_text,
                       public qvCommon_arrays,
                       public qvCommon_conversions,
                       public qvCommon_settings,
                       public qvCommon_system,
                       public qvCommon_drawing {};
