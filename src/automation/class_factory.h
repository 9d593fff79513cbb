#pragma once

#include "automation/object.h"

#include <span>

namespace automation {

/// Creates the objects of one class. It is part of the class table and lives as long as the module; a reference to it
/// keeps the module loaded.
class ClassFactory final : public IClassFactory {
public:
    using Create = Ref<IUnknown> (*)();

    constexpr ClassFactory(const CLSID& id, Create create) noexcept : id_{id}, create_{create} {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    const CLSID& id() const noexcept { return id_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

private:
    const CLSID& id_;
    Create create_;
};

template <class Derived>
constexpr ClassFactory factory_of() noexcept
{
    return {__uuidof(Derived), [] { return Ref<IUnknown>::adopt(make<Derived>().release()->unknown()); }};
}

/// Gives the factory of a class; CLASS_E_CLASSNOTAVAILABLE for one that is not in the table.
HRESULT get_class_object(std::span<ClassFactory> table, REFCLSID id, REFIID iid, void** object) noexcept;

} // namespace automation
