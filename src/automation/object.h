#pragma once

#include "automation/face.h"
#include "automation/module.h"

#include <ocidl.h>

#include <atomic>
#include <concepts>
#include <tuple>
#include <type_traits>
#include <utility>

/// What every automation object is made of. A class names itself and its faces, the default one first,
///
///     class qvIniFile final : public automation::Object<qvIniFile, faces::qvIniFile, faces::qvIniSection> { ... };
///
/// and has a plain function for each of their members; everything else is here. Objects are made with `make<qvIniFile>()`.
namespace automation {

/// Whether a client may learn more of an error from this object, by interface; always.
template <class Object>
class ErrorSupport final : public Part<Object, ISupportErrorInfo> {
public:
    using Part<Object, ISupportErrorInfo>::Part;
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept final
    {
        return this->object().find_face(iid) ? S_OK : S_FALSE;
    }
};

/// What an object says of its class.
template <class Object>
class ClassInformation final : public Part<Object, IProvideClassInfo2> {
public:
    using Part<Object, IProvideClassInfo2>::Part;
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept final
    {
        return answer(info, [] { return type_info(__uuidof(Object)); });
    }
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) noexcept final
    {
        if (!guid)
            return E_POINTER;
        *guid = GUID_NULL;
        if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID)
            return E_INVALIDARG;
        const IID* const events = this->object().events_identifier();
        if (!events)
            return E_FAIL;
        *guid = *events;
        return S_OK;
    }
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

template <class Derived, template <class> class... Faces>
class Object {
public:
    Object() noexcept { module::hold(); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    /// The object as any client knows it.
    IUnknown* unknown() noexcept { return &std::get<0>(faces_); }
    /// One of its interfaces.
    template <class Interface>
        requires(std::same_as<Interface, IDispatch> || (std::same_as<Interface, typename Faces<Derived>::Interface> || ...))
    Interface* face() noexcept
    {
        if constexpr (std::same_as<Interface, IDispatch>)
            return &std::get<0>(faces_);
        else
            return static_cast<Interface*>(find_face(__uuidof(Interface)));
    }

    ULONG AddRef() noexcept { return ++references_; }
    ULONG Release() noexcept
    {
        const ULONG left = --references_;
        if (left == 0)
            delete &derived();
        return left;
    }
    HRESULT QueryInterface(REFIID iid, void** object) noexcept
    {
        if (!object)
            return E_POINTER;
        *object = find(iid);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    /// The face that has this identifier, or had it in an earlier release; null for none.
    void* find_face(REFIID iid) noexcept
    {
        void* found = nullptr;
        const auto look = [&](auto& face) {
            using Interface = typename std::remove_reference_t<decltype(face)>::Interface;
            if (iid == __uuidof(Interface) || face.contract.was(iid))
                found = static_cast<Interface*>(&face);
            return found != nullptr;
        };
        std::apply([&](auto&... face) { (void)(look(face) || ...); }, faces_);
        return found;
    }
    /// The interface of its events; null when it has none.
    const IID* events_identifier() const noexcept { return nullptr; }

protected:
    ~Object() { module::let_go(); }
    /// Further interfaces of a class; null for those it does not have.
    void* find_more(REFIID) noexcept { return nullptr; }

private:
    Derived& derived() noexcept { return static_cast<Derived&>(*this); }
    void* find(REFIID iid) noexcept
    {
        if (iid == IID_IUnknown || iid == IID_IDispatch)
            return unknown();
        if (void* const face = find_face(iid))
            return face;
        if (iid == IID_ISupportErrorInfo)
            return &error_support_;
        if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)
            return &class_information_;
        if (iid == Mark::identifier())
            return &mark_;
        return derived().find_more(iid);
    }

    std::tuple<Faces<Derived>...> faces_{(static_cast<void>(sizeof(Faces<Derived>)), derived())...};
    ErrorSupport<Derived> error_support_{derived()};
    ClassInformation<Derived> class_information_{derived()};
    Mark mark_{unknown(), &kind_of<Derived>, &derived()};
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
