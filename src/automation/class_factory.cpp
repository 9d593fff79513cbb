#include "automation/class_factory.h"

#include <algorithm>

namespace automation {

HRESULT STDMETHODCALLTYPE ClassFactory::QueryInterface(REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE ClassFactory::AddRef() noexcept
{
    module::hold();
    return 2;
}

ULONG STDMETHODCALLTYPE ClassFactory::Release() noexcept
{
    module::let_go();
    return 1;
}

HRESULT STDMETHODCALLTYPE ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (outer)
        return CLASS_E_NOAGGREGATION;
    return answer_code([&] { return create_()->QueryInterface(iid, object); });
}

HRESULT STDMETHODCALLTYPE ClassFactory::LockServer(BOOL lock) noexcept
{
    lock ? module::hold() : module::let_go();
    return S_OK;
}

HRESULT get_class_object(std::span<ClassFactory> table, REFCLSID id, REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    const auto factory = std::ranges::find_if(table, [&](const ClassFactory& entry) { return entry.id() == id; });
    return factory == table.end() ? CLASS_E_CLASSNOTAVAILABLE : factory->QueryInterface(iid, object);
}

} // namespace automation
