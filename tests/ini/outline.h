#pragma once

#include "ini/ini_format.h"

#include <string>

namespace ini {

/// A tree in one line: "name=value;" for a parameter, "[name]{...}" for a section, "!" where it was not found in a file,
/// "-" where the sub-sections are set to nothing.
inline std::wstring outline(const Section& section)
{
    std::wstring text;
    if (const Parameters* parameters = section.parameters_if_any())
        for (const Parameter* p = parameters->first(); p; p = p->next())
            text.append(p->name()).append(L"=").append(p->value).append(p->found_in_file() ? L";" : L"!;");
    if (const Sections* sections = section.sections_if_any())
        for (const Section* s = sections->first(); s; s = s->next())
            text.append(L"[").append(s->name()).append(s->found_in_file() ? L"]{" : L"]!{").append(outline(*s)).append(L"}");
    return section.without_sections() ? text + L"-" : text;
}

inline std::wstring written(const Section& root)
{
    std::wstring text;
    write(root, [&](std::wstring_view piece) { text += piece; });
    return text;
}

} // namespace ini
