#pragma once

#include "ini/list_object.h"
#include "ini/qvIniParameter.h"

/// The parameters of an INI section, in order.
class qvIniParameters final
    : public ini::ListObject<qvIniParameters, _qvIniParameters, ini::Parameter, qvIniParameter, _qvIniParameter> {
public:
    using ListObject::ListObject;
};
