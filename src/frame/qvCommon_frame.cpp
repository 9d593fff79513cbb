#include "frame/MErrors.h"
#include "frame/qvCommon.h"

#include "automation/case_folding.h"

namespace {

/// Sets the option of this name; false when there is none or the value does not suit it.
bool set_option(std::wstring_view key, const VARIANT& value)
{
    if (!automation::equal_folded(key, L"Language"))
        return false;
    automation::Variant number;
    if (FAILED(automation::change_type(number, automation::followed(value), VT_R8)))
        return false;
    if (!(number.dblVal >= 0.0 && number.dblVal <= 1.0))
        return false;
    MErrors::set_language(number.dblVal > 0.5 ? 1 : 0); // a half goes to the even number
    return true;
}

} // namespace

HRESULT qvCommon::qvObjectsInit(BSTR sKey, VARIANT val, VARIANT_BOOL* result) noexcept
{
    return automation::answer(result, [&] { return set_option(automation::view(sKey), val); });
}
