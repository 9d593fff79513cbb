#include "automation/object.h"

namespace automation {

HRESULT STDMETHODCALLTYPE ClassInformation::GetClassInfo(ITypeInfo** info) noexcept
{
    return answer(info, [&] {
        const Class* entry = Contract::here().class_of(id_);
        if (!entry)
            throw Error{E_NOTIMPL, {}};
        return entry->info;
    });
}

HRESULT STDMETHODCALLTYPE ClassInformation::GetGUID(DWORD kind, GUID* guid) noexcept
try {
    if (!guid)
        return E_POINTER;
    *guid = GUID_NULL;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID)
        return E_INVALIDARG;
    const Class* entry = Contract::here().class_of(id_);
    if (!entry || entry->events == GUID_NULL)
        return E_FAIL;
    *guid = entry->events;
    return S_OK;
} catch (...) {
    return answer_exception();
}

const IID* current_identifier(REFIID iid) noexcept
try {
    return Contract::here().current(iid);
} catch (...) {
    return nullptr;
}

} // namespace automation
