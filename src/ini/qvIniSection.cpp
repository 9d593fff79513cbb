#include "ini/qvIniSection.h"

#include "ini/qvIniSections.h"

automation::Ref<qvIniSections> qvIniSection::get_Section()
{
    ini::Sections* const sections = section_->sections();
    return sections ? ini::object_for<qvIniSections>(*sections) : nullptr;
}

void qvIniSection::putref_Section(_qvIniSections* value)
{
    section_->set_sections(ini::node_of<qvIniSections>(value));
}
