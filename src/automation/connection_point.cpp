#include "automation/connection_point.h"

#include <olectl.h>

#include <algorithm>
#include <array>

namespace automation {
namespace {

/// What the enumerators of connections and of connection points have in common: a list as it was when they were made.
template <class Interface, class Item>
class Snapshot final : public Helper<Snapshot<Interface, Item>, Interface> {
public:
    explicit Snapshot(std::vector<Item> items, std::size_t next = 0) : items_{std::move(items)}, next_{next} {}

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, decltype(Item{}.lend())* items, ULONG* fetched) noexcept override
    {
        if (!items || (wanted != 1 && !fetched))
            return E_POINTER;
        ULONG given = 0;
        for (; given < wanted && next_ < items_.size(); ++given, ++next_)
            items[given] = items_[next_].lend();
        if (fetched)
            *fetched = given;
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override
    {
        const std::size_t left = items_.size() - next_;
        next_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override
    {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** clone) noexcept override
    {
        return answer(clone, [&] { return Ref<Snapshot>::adopt(new Snapshot{items_, next_}); });
    }

private:
    std::vector<Item> items_;
    std::size_t next_;
};

struct Connection {
    Ref<IDispatch> sink;
    DWORD cookie = 0;
    CONNECTDATA lend() const noexcept { return {Ref<IDispatch>{sink}.release(), cookie}; }
};

struct Point {
    Ref<IConnectionPoint> point;
    IConnectionPoint* lend() const noexcept { return Ref<IConnectionPoint>{point}.release(); }
};

} // namespace

void ConnectionPoint::fire(DISPID id, std::initializer_list<VARIANT> arguments) const
{
    constexpr std::size_t most = 16;
    if (sinks_.empty() || arguments.size() > most)
        return;
    std::array<VARIANTARG, most> reversed;
    std::ranges::copy(arguments, reversed.rend() - static_cast<std::ptrdiff_t>(arguments.size()));
    const std::vector<Sink> now = sinks_;
    const CalculatesAsClient as_client;
    for (const Sink& sink : now) {
        DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        sink.object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
    }
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::QueryInterface(REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IConnectionPoint ? static_cast<IConnectionPoint*>(this) : nullptr;
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::GetConnectionInterface(IID* iid) noexcept
{
    if (!iid)
        return E_POINTER;
    *iid = events_;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) noexcept
{
    return answer(container, [&] { return Ref{&container_}; });
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) noexcept
{
    if (!sink || !cookie)
        return E_POINTER;
    *cookie = 0;
    Ref<IDispatch> object;
    if (FAILED(sink->QueryInterface(events_, object.put_void())))
        object = query<IDispatch>(sink);
    if (!object)
        return CONNECT_E_CANNOTCONNECT;
    return answer([&] {
        sinks_.push_back({last_cookie_ + 1, object});
        *cookie = ++last_cookie_;
    });
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::Unadvise(DWORD cookie) noexcept
{
    const auto found = std::ranges::find(sinks_, cookie, &Sink::cookie);
    if (found == sinks_.end())
        return CONNECT_E_NOCONNECTION;
    const Ref<IDispatch> last = found->object; // letting go of it may run code that comes back here
    sinks_.erase(found);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ConnectionPoint::EnumConnections(IEnumConnections** connections) noexcept
{
    return answer(connections, [&] {
        std::vector<Connection> now;
        for (const Sink& sink : sinks_)
            now.push_back({sink.object, sink.cookie});
        return Ref<IEnumConnections>::adopt(new Snapshot<IEnumConnections, Connection>{std::move(now)});
    });
}

HRESULT STDMETHODCALLTYPE ConnectionPointContainer::EnumConnectionPoints(IEnumConnectionPoints** points) noexcept
{
    return answer(points, [&] {
        std::vector<Point> all{Point{Ref<IConnectionPoint>{&point_}}};
        return Ref<IEnumConnectionPoints>::adopt(new Snapshot<IEnumConnectionPoints, Point>{std::move(all)});
    });
}

HRESULT STDMETHODCALLTYPE ConnectionPointContainer::FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept
{
    if (point && iid != events_) {
        *point = nullptr;
        return CONNECT_E_NOCONNECTION;
    }
    return answer(point, [&] { return Ref<IConnectionPoint>{&point_}; });
}

} // namespace automation
