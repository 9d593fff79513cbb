#pragma once

#include "ini/qvIniParameters.h"

class qvIniSections;

/// A section of an INI file: its parameters and its sub-sections.
class qvIniSection final : public automation::Object<qvIniSection, faces::qvIniSection> {
public:
    explicit qvIniSection(ini::Section& section) : section_{*this, section} {}
    ini::Section& node() const noexcept { return *section_; }

    std::wstring_view get_Name() const { return section_->name(); }
    void put_Name(std::wstring_view value) { section_->rename(value); }
    bool get_FoundInFile() const { return section_->found_in_file(); }
    void put_FoundInFile(bool value) { section_->set_found_in_file(value); }
    automation::Ref<qvIniParameters> get_Parameter() { return ini::object_for<qvIniParameters>(section_->parameters()); }
    void putref_Parameter(_qvIniParameters* value) { section_->set_parameters(ini::node_of<qvIniParameters>(value)); }
    automation::Ref<qvIniSections> get_Section();
    void putref_Section(_qvIniSections* value);

private:
    ini::NodeHold<qvIniSection, ini::Section> section_;
};
