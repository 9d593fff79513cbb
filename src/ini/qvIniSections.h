#pragma once

#include "ini/list_object.h"
#include "ini/qvIniSection.h"

/// The sections of an INI file or the sub-sections of a section, in order.
class qvIniSections final : public ini::ListObject<qvIniSections, faces::qvIniSections, ini::Section, qvIniSection> {
public:
    using ListObject::ListObject;
};
