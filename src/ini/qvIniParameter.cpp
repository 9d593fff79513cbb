#include "ini/qvIniParameter.h"

using automation::answer;
using automation::view;

HRESULT qvIniParameter::get_Value(BSTR sDefault, BSTR* result) noexcept
{
    return answer(result, [&] {
        const std::wstring_view value = parameter_->value;
        return value.empty() ? view(sDefault) : value;
    });
}

HRESULT qvIniParameter::put_Value(BSTR, BSTR value) noexcept
{
    return answer([&] { parameter_->value = ini::StoredText{view(value)}; });
}

HRESULT qvIniParameter::get_Name(BSTR* result) noexcept
{
    return answer(result, [&] { return parameter_->name(); });
}

HRESULT qvIniParameter::put_Name(BSTR value) noexcept
{
    return answer([&] { parameter_->rename(view(value)); });
}

HRESULT qvIniParameter::get_FoundInFile(VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return parameter_->found_in_file(); });
}

HRESULT qvIniParameter::put_FoundInFile(VARIANT_BOOL value) noexcept
{
    return answer([&] { parameter_->set_found_in_file(value != VARIANT_FALSE); });
}
