#pragma once

#include "automation/object.h"
#include "ini/qvAPI_profile.h"
#include "system/qvAPI_system.h"
#include "text/qvAPI_identifiers.h"

#include <qvObjects_contract.h>

/// The global class of profile files, identifiers, processes and the system. Each group of members stands in the folder that it
/// belongs to.
class qvAPI final : public automation::Object<qvAPI, faces::qvAPI>,
                    public qvAPI_profile,
                    public qvAPI_identifiers,
                    public qvAPI_system {};
