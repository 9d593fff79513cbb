#pragma once

#include "automation/border.h"
#include "automation/late_bound.h"
#include "automation/module.h"

#include <oaidl.h>
#include <ocidl.h>

#include <atomic>
#include <utility>

/// What every automation object is made of. A class names itself and its interfaces, the default one first,
///
///     class qvIniFile final : public automation::Object<qvIniFile, _qvIniFile, _qvIniSection> { ... };
///
/// and implements their members; everything else is here. Objects are made with `make<qvIniFile>()`.
namespace automation {

/// The late-bound half of a dual interface.
template <class Face>
class Dual : public Face {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final
    {
        if (!count)
            return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept final
    {
        if (info && index != 0) {
            *info = nullptr;
            return DISP_E_BADINDEX;
        }
        return answer(info, [] { return Ref{&contract().info()}; });
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept final
    try {
        return reserved == IID_NULL ? late_bound::find_names(contract(), names, count, ids) : DISP_E_UNKNOWNINTERFACE;
    } catch (...) {
        return answer_exception();
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept final
    try {
        return late_bound::invoke(static_cast<Face*>(this), contract(), id, reserved, locale, flags, arguments, result,
                                  exception, bad_argument);
    } catch (...) {
        return answer_exception();
    }

private:
    static const Interface& contract()
    {
        static const Interface& description = Contract::here().interface_of(__uuidof(Face));
        return description;
    }
};

/// What an object says of its class. GUID_NULL stands for a class that no client knows.
class ClassInformation : public IProvideClassInfo2 {
public:
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept final;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) noexcept final;

protected:
    explicit ClassInformation(REFCLSID id) noexcept : id_{id} {}
    ~ClassInformation() = default;

private:
    const CLSID& id_;
};

/// The current identifier of an interface that an earlier release knew under another; null for any other identifier.
const IID* current_identifier(REFIID iid) noexcept;

template <class Derived, class Default, class... More>
class Object : public Dual<Default>, public Dual<More>..., public ISupportErrorInfo, public ClassInformation {
public:
    Object() noexcept : ClassInformation{__uuidof(Derived)} { module::hold(); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    /// The object as any client knows it.
    IUnknown* unknown() noexcept { return static_cast<Default*>(this); }

    ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept final
    {
        const ULONG left = --references_;
        if (left == 0)
            delete static_cast<Derived*>(this);
        return left;
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept final
    {
        if (!object)
            return E_POINTER;
        *object = find(iid);
        if (!*object)
            if (const IID* current = current_identifier(iid))
                *object = find(*current);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept final
    {
        const IID* current = current_identifier(iid);
        return is_face(current ? *current : iid) ? S_OK : S_FALSE;
    }

protected:
    virtual ~Object() { module::let_go(); }
    /// Further interfaces of a class; null for those it does not have.
    virtual void* find_more(REFIID) noexcept { return nullptr; }

private:
    static bool is_face(REFIID iid) noexcept
    {
        return iid == __uuidof(Default) || ((iid == __uuidof(More)) || ...);
    }
    void* find(REFIID iid) noexcept
    {
        void* found = nullptr;
        if (iid == __uuidof(Default) || iid == IID_IDispatch || iid == IID_IUnknown)
            found = static_cast<Default*>(this);
        else if (((iid == __uuidof(More) && (found = static_cast<More*>(this), true)) || ...))
            return found;
        else if (iid == IID_ISupportErrorInfo)
            found = static_cast<ISupportErrorInfo*>(this);
        else if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)
            found = static_cast<IProvideClassInfo2*>(this);
        else if (iid == __uuidof(Derived)) // the object itself, for `own`
            found = static_cast<Derived*>(this);
        else
            found = find_more(iid);
        return found;
    }

    std::atomic<ULONG> references_{1};
};

/// An object of one interface that no client creates: an enumerator, say.
template <class Derived, class Interface>
class Helper : public Interface {
public:
    Helper() noexcept { module::hold(); }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept final
    {
        if (!object)
            return E_POINTER;
        *object = iid == IID_IUnknown || iid == __uuidof(Interface) ? static_cast<Interface*>(this) : nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept final
    {
        const ULONG left = --references_;
        if (left == 0)
            delete static_cast<Derived*>(this);
        return left;
    }

protected:
    virtual ~Helper() { module::let_go(); }

private:
    std::atomic<ULONG> references_{1};
};

/// A new object of a class of this library.
template <class Derived, class... Arguments>
Ref<Derived> make(Arguments&&... arguments)
{
    return Ref<Derived>::adopt(new Derived(std::forward<Arguments>(arguments)...));
}

/// The object of this library behind an interface; null for nothing and for any other object.
template <class Derived>
Ref<Derived> own(IUnknown* object) noexcept
{
    return query<Derived>(object);
}

} // namespace automation
