#pragma once

#include "ini/qvIniParameters.h"

class qvIniSections;

/// A section of an INI file: its parameters and its sub-sections.
class qvIniSection final : public automation::Object<qvIniSection, _qvIniSection> {
public:
    explicit qvIniSection(ini::Section& section) : section_{*this, section} {}
    ini::Section& node() const noexcept { return *section_; }

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FoundInFile(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FoundInFile(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Parameter(_qvIniParameters** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Parameter(_qvIniParameters* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Section(_qvIniSections** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Section(_qvIniSections* value) noexcept override;

private:
    ini::Face<qvIniSection, ini::Section> section_;
};
