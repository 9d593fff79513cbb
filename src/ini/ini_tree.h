#pragma once

#include "ini/named_list.h"

#include <string_view>

/// Sections with parameters and sub-sections, as automation objects share them. An object that is in use stays whole when
/// what it was part of goes; lists may be shared by several sections and may even contain themselves.
namespace ini {

/// A named text.
class Parameter : public NamedItem<Parameter> {
public:
    Parameter(Arena* arena, std::uint32_t hash) noexcept : NamedItem{arena, hash} {}
    static void destroy(Parameter* parameter) noexcept { destroy_chain(parameter); }
    /// Destroys a parameter, and those that follow it.
    static void destroy_chain(Parameter* first) noexcept;

    StoredText value;
};

using Parameters = NamedList<Parameter>;

class Section;
using Sections = NamedList<Section>;

/// A named list of parameters and a named list of sub-sections. Neither takes memory before it is used.
class Section : public NamedItem<Section> {
public:
    Section(Arena* arena, std::uint32_t hash) noexcept : NamedItem{arena, hash} {}
    /// A section without a name that is in no list.
    static Held<Section> create();
    static void destroy(Section* section) noexcept { destroy_chain(section); }
    /// Destroys a section, and those that follow it, however deep they are.
    static void destroy_chain(Section* first) noexcept;

    /// The parameters; null before their first use, or when they have been set to nothing.
    Parameters* parameters_if_any() const noexcept { return parameters_.get(); }
    /// The parameters, created in the arena when there are none.
    Parameters& parameters(Arena* arena = nullptr);
    void set_parameters(Held<Parameters> parameters) noexcept { parameters_ = std::move(parameters); }

    /// The sub-sections; null before their first use, or when they have been set to nothing.
    Sections* sections_if_any() const noexcept { return sections_.get(); }
    /// The sub-sections; null only when they have been set to nothing.
    Sections* sections() { return without_sections_ ? nullptr : &create_sections(); }
    /// The sub-sections, created in the arena when there are none.
    Sections& create_sections(Arena* arena = nullptr);
    /// Sets the sub-sections, or sets them to nothing.
    void set_sections(Held<Sections> sections) noexcept;
    bool without_sections() const noexcept { return without_sections_; }

private:
    bool without_sections_ = false;
    Held<Parameters> parameters_;
    Held<Sections> sections_;
};

} // namespace ini
