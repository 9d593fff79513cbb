#include "ini/qvIniSection.h"

#include "ini/qvIniSections.h"

using automation::answer;
using automation::Ref;
using automation::view;

HRESULT qvIniSection::get_Name(BSTR* result) noexcept
{
    return answer(result, [&] { return section_->name(); });
}

HRESULT qvIniSection::put_Name(BSTR value) noexcept
{
    return answer([&] { section_->rename(view(value)); });
}

HRESULT qvIniSection::get_FoundInFile(VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return section_->found_in_file(); });
}

HRESULT qvIniSection::put_FoundInFile(VARIANT_BOOL value) noexcept
{
    return answer([&] { section_->set_found_in_file(value != VARIANT_FALSE); });
}

HRESULT qvIniSection::get_Parameter(_qvIniParameters** result) noexcept
{
    return answer(result, [&] { return ini::object_for<qvIniParameters>(section_->parameters()); });
}

HRESULT qvIniSection::putref_Parameter(_qvIniParameters* value) noexcept
{
    return answer([&] { section_->set_parameters(ini::node_of<qvIniParameters>(value)); });
}

HRESULT qvIniSection::get_Section(_qvIniSections** result) noexcept
{
    return answer(result, [&] {
        ini::Sections* const sections = section_->sections();
        return sections ? ini::object_for<qvIniSections>(*sections) : Ref<qvIniSections>{};
    });
}

HRESULT qvIniSection::putref_Section(_qvIniSections* value) noexcept
{
    return answer([&] { section_->set_sections(ini::node_of<qvIniSections>(value)); });
}
