#pragma once

#include "ini/node_hold.h"

#include <qvObjects_contract.h>

/// A named value of an INI section.
class qvIniParameter final : public automation::Object<qvIniParameter, faces::qvIniParameter> {
public:
    explicit qvIniParameter(ini::Parameter& parameter) : parameter_{*this, parameter} {}

    std::wstring_view get_Value(std::wstring_view sDefault) const
    {
        const std::wstring_view value = parameter_->value;
        return value.empty() ? sDefault : value;
    }
    void put_Value(std::wstring_view, std::wstring_view value) { parameter_->value = ini::StoredText{value}; }
    std::wstring_view get_Name() const { return parameter_->name(); }
    void put_Name(std::wstring_view value) { parameter_->rename(value); }
    bool get_FoundInFile() const { return parameter_->found_in_file(); }
    void put_FoundInFile(bool value) { parameter_->set_found_in_file(value); }

private:
    ini::NodeHold<qvIniParameter, ini::Parameter> parameter_;
};
