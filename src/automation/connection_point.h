#pragma once

#include "automation/object.h"

#include <initializer_list>
#include <vector>

namespace automation {

/// The one connection point of an object with events. It is an object of its own, as clients in other apartments can reach
/// no other, but lives in the object that raises the events: a reference to it keeps that one alive.
class ConnectionPoint final : public IConnectionPoint {
public:
    /// `container` belongs to the object that raises the events.
    ConnectionPoint(IConnectionPointContainer& container, REFIID events) noexcept : container_{container}, events_{events} {}
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    /// Calls the event `id` of every sink with arguments in the order in which they are written. A sink's failure stays
    /// with the sink. Sinks may come and go meanwhile.
    void fire(DISPID id, std::initializer_list<VARIANT> arguments) const;
    bool has_sinks() const noexcept { return !sinks_.empty(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return container_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return container_.Release(); }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) noexcept override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) noexcept override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) noexcept override;

private:
    struct Sink {
        DWORD cookie;
        Ref<IDispatch> object;
    };

    IConnectionPointContainer& container_;
    const IID& events_;
    std::vector<Sink> sinks_;
    DWORD last_cookie_ = 0;
};

/// An argument of an event: lent for the call, by value.
inline VARIANT argument(const Text& text) noexcept
{
    VARIANT value;
    value.vt = VT_BSTR;
    value.bstrVal = text.get();
    return value;
}
inline VARIANT argument(long number) noexcept
{
    VARIANT value;
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}
/// An argument of an event that its handlers may change.
inline VARIANT by_reference(long& number) noexcept
{
    VARIANT value;
    value.vt = VT_BYREF | VT_I4;
    value.plVal = &number;
    return value;
}
inline VARIANT by_reference(Text& text) noexcept
{
    VARIANT value;
    value.vt = VT_BYREF | VT_BSTR;
    value.pbstrVal = text.storage();
    return value;
}
inline VARIANT by_reference(VARIANT_BOOL& flag) noexcept
{
    VARIANT value;
    value.vt = VT_BYREF | VT_BOOL;
    value.pboolVal = &flag;
    return value;
}

/// What the connection point of an object is found through: an interface of that object, in which it lives.
class ConnectionPointContainer final : public IConnectionPointContainer {
public:
    ConnectionPointContainer(IUnknown& owner, REFIID events) noexcept : owner_{owner}, events_{events}, point_{*this, events} {}
    ConnectionPointContainer(const ConnectionPointContainer&) = delete;
    ConnectionPointContainer& operator=(const ConnectionPointContainer&) = delete;

    const ConnectionPoint& point() const noexcept { return point_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override { return owner_.QueryInterface(iid, object); }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return owner_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return owner_.Release(); }

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override;

private:
    IUnknown& owner_;
    const IID& events_;
    ConnectionPoint point_;
};

/// An object that raises the events of the dispinterface `Events`. `Base` is its `Object<...>`.
template <class Base, class Events>
class WithEvents : public Base {
public:
    const IID* events_identifier() const noexcept { return &__uuidof(Events); }
    void* find_more(REFIID iid) noexcept
    {
        return iid == IID_IConnectionPointContainer ? static_cast<IConnectionPointContainer*>(&container_) : nullptr;
    }

protected:
    const ConnectionPoint& events() const noexcept { return container_.point(); }

private:
    ConnectionPointContainer container_{*this->unknown(), __uuidof(Events)};
};

} // namespace automation
