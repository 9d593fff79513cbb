#include "automation/contract.h"

namespace automation {

VARIANT Parameter::value_if_omitted() const noexcept
{
    VARIANT value;
    value.vt = type;
    value.llVal = number_if_omitted;
    if (type == VT_VARIANT) {
        value.vt = VT_ERROR;
        value.scode = DISP_E_PARAMNOTFOUND;
    } else if (type == VT_BSTR) {
        value.bstrVal = const_cast<BSTR>(text_if_omitted);
    }
    return value;
}

DISPID Member::parameter(std::wstring_view wanted) const noexcept
{
    for (const Function* function : {method, get, put, put_reference}) {
        if (!function)
            continue;
        const auto found = std::ranges::find_if(function->parameters, [&](const Parameter& p) { return equal_folded(p.name, wanted); });
        if (found != function->parameters.end())
            return static_cast<DISPID>(found - function->parameters.begin());
    }
    return DISPID_UNKNOWN;
}

const Member* Interface::find(std::wstring_view wanted) const noexcept
{
    if (by_name.empty())
        return nullptr;
    const std::size_t mask = by_name.size() - 1;
    for (std::size_t slot = hash_folded(wanted) & mask; by_name[slot] != no_member; slot = (slot + 1) & mask)
        if (const Member& member = members[by_name[slot]]; equal_folded(member.name, wanted))
            return &member;
    return nullptr;
}

const Member* Interface::find(DISPID wanted) const noexcept
{
    const auto place = static_cast<std::size_t>(wanted - lowest_id);
    return place < by_id.size() && by_id[place] != no_member ? &members[by_id[place]] : nullptr;
}

} // namespace automation
