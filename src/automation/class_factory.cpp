#include "automation/class_factory.h"

#include <algorithm>

namespace automation {
namespace {

class ClassFactory final : public Helper<ClassFactory, IClassFactory> {
public:
    explicit ClassFactory(const Creator& creator) noexcept : creator_{creator} {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override
    try {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return creator_.create()->QueryInterface(iid, object);
    } catch (...) {
        return answer_exception();
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override
    {
        lock ? module::hold() : module::let_go();
        return S_OK;
    }

private:
    const Creator& creator_;
};

} // namespace

HRESULT get_class_object(std::span<const Creator> table, REFCLSID id, REFIID iid, void** object) noexcept
try {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    const auto creator = std::ranges::find_if(table, [&](const Creator& entry) { return *entry.id == id; });
    if (creator == table.end())
        return CLASS_E_CLASSNOTAVAILABLE;
    return Ref<ClassFactory>::adopt(new ClassFactory{*creator})->QueryInterface(iid, object);
} catch (...) {
    return answer_exception();
}

} // namespace automation
