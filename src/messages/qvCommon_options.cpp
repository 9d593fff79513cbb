#include "messages/qvCommon_options.h"

#include "automation/case_folding.h"
#include "messages/MErrors.h"

bool qvCommon_options::qvObjectsInit(std::wstring_view sKey, const VARIANT& val)
{
    if (!automation::equal_folded(sKey, L"Language"))
        return false;
    automation::Variant number;
    if (!automation::converts(number, automation::followed(val), VT_R8))
        return false;
    if (!(number.dblVal >= 0.0 && number.dblVal <= 1.0))
        return false;
    MErrors::set_language(number.dblVal > 0.5 ? 1 : 0); // a half goes to the even number
    return true;
}
