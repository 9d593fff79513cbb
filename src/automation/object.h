#pragma once

#include "automation/border.h"
#include "automation/late_bound.h"
#include "automation/module.h"
#include "automation/type_library.h"

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
        return answer(info, [] { return type_info(__uuidof(Face)); });
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept final
    {
        return answer_code([&] {
            return reserved == IID_NULL ? late_bound::find_names(contract, names, count, ids) : DISP_E_UNKNOWNINTERFACE;
        });
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept final
    {
        return answer_code([&] {
            return late_bound::invoke(static_cast<Face*>(this), contract, id, reserved, locale, flags, arguments, result,
                                      exception, bad_argument);
        });
    }

protected:
    static constexpr const Interface& contract = Contracted<Face>::description;
};

/// What an object says of its class.
class ClassInformation : public IProvideClassInfo2 {
public:
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept final;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) noexcept final;

protected:
    explicit ClassInformation(REFCLSID id) noexcept : id_{id} {}
    ~ClassInformation() = default;

private:
    /// The interface of its events; null when it has none.
    virtual const IID* events_identifier() const noexcept { return nullptr; }

    const CLSID& id_;
};

/// How an object of this library is known from within: by an interface that is none but its own. A foreign object may answer
/// any identifier with one of its interfaces: only what lies behind it tells. The platform asks for it, and lets go of it
/// again, when an object of another apartment is looked at.
class Mark final : public IUnknown {
public:
    constexpr Mark(IUnknown* owner, const void* kind, void* object) noexcept : owner_{owner}, kind_{kind}, object_{object} {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override { return owner_->QueryInterface(iid, object); }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return owner_->AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return owner_->Release(); }

    /// The identifier under which objects answer with their mark. It holds an address of this module, so that no other
    /// copy of the library answers it.
    static IID identifier() noexcept;
    /// The object of a kind behind what a query for the identifier gave; null for an object of another kind.
    static void* object_behind(const IUnknown* answer, const void* kind) noexcept;

private:
    IUnknown* owner_;
    const void* kind_;
    void* object_;
};

/// An address that stands for a class.
template <class Derived>
inline constexpr char kind_of = 0;

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
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept final { return find_face(iid) ? S_OK : S_FALSE; }

protected:
    virtual ~Object() { module::let_go(); }
    /// Further interfaces of a class; null for those it does not have.
    virtual void* find_more(REFIID) noexcept { return nullptr; }

private:
    template <class Face>
    void* as(REFIID iid) noexcept
    {
        const bool known = iid == __uuidof(Face) || Contracted<Face>::description.was(iid);
        return known ? static_cast<Face*>(this) : nullptr;
    }
    void* find_face(REFIID iid) noexcept
    {
        void* found = as<Default>(iid);
        (void)(found || ... || ((found = as<More>(iid)) != nullptr));
        return found;
    }
    void* find(REFIID iid) noexcept
    {
        if (iid == IID_IUnknown || iid == IID_IDispatch)
            return static_cast<Default*>(this);
        if (void* const face = find_face(iid))
            return face;
        if (iid == IID_ISupportErrorInfo)
            return static_cast<ISupportErrorInfo*>(this);
        if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)
            return static_cast<IProvideClassInfo2*>(this);
        if (iid == Mark::identifier())
            return &mark_;
        return find_more(iid);
    }

    Mark mark_{unknown(), &kind_of<Derived>, static_cast<Derived*>(this)};
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
    Ref<IUnknown> answer;
    if (!object || FAILED(object->QueryInterface(Mark::identifier(), answer.put_void())))
        return nullptr;
    return Ref{static_cast<Derived*>(Mark::object_behind(answer.get(), &kind_of<Derived>))};
}

} // namespace automation
