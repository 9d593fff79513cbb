#pragma once

#include "ini/face.h"

#include <qvObjects_contract.h>

/// A named value of an INI section.
class qvIniParameter final : public automation::Object<qvIniParameter, _qvIniParameter> {
public:
    explicit qvIniParameter(ini::Parameter& parameter) : parameter_{*this, parameter} {}

    HRESULT STDMETHODCALLTYPE get_Value(BSTR sDefault, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(BSTR sDefault, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FoundInFile(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FoundInFile(VARIANT_BOOL value) noexcept override;

private:
    ini::Face<qvIniParameter, ini::Parameter> parameter_;
};
