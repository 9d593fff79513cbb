#pragma once

#include "automation/values.h"

/// The members of qvCommon that set options of the library.
class qvCommon_options {
public:
    bool qvObjectsInit(std::wstring_view sKey, const VARIANT& val);
};
