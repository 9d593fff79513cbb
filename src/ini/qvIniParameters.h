#pragma once

#include "ini/list_object.h"
#include "ini/qvIniParameter.h"

/// The parameters of an INI section, in order.
class qvIniParameters final : public ini::ListObject<qvIniParameters, faces::qvIniParameters, ini::Parameter, qvIniParameter> {
public:
    using ListObject::ListObject;
};
