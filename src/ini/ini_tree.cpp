#include "ini/ini_tree.h"

namespace ini {

void Parameter::destroy_chain(Parameter* first) noexcept
{
    while (first)
        unmake_node(take_first(first));
}

Held<Section> Section::create()
{
    return Held<Section>{make_node<Section>(nullptr, 0, automation::hash_folded({}))};
}

void Section::destroy_chain(Section* first) noexcept
{
    while (first) {
        Section* const section = take_first(first);
        if (Sections* const sections = section->sections_.release(); sections && sections->let_go()) {
            sections->give_up(first);
            unmake_node(sections);
        }
        unmake_node(section);
    }
}

Parameters& Section::parameters(Arena* arena)
{
    if (!parameters_)
        parameters_ = Parameters::create(arena);
    return *parameters_;
}

Sections& Section::create_sections(Arena* arena)
{
    if (!sections_)
        sections_ = Sections::create(arena);
    without_sections_ = false;
    return *sections_;
}

void Section::set_sections(Held<Sections> sections) noexcept
{
    without_sections_ = !sections;
    sections_ = std::move(sections);
}

} // namespace ini
