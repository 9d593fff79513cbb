#include "automation/specimen.h"
#include "support/dispatch_object.h"

#include <olectl.h>

#include <functional>

using client::Object;
using client::Value;

namespace {

/// A client's sink: calls back with the number that the event hands over.
class Sink final : public DispatchObject {
public:
    explicit Sink(std::function<void(long&)> happened)
        : DispatchObject{{L"Happened"}, [=](DISPID id, const DISPPARAMS& arguments, VARIANT*) {
              if (id == 1 && arguments.cArgs == 1 && arguments.rgvarg[0].vt == (VT_BYREF | VT_I4))
                  happened(*arguments.rgvarg[0].plVal);
              return E_FAIL; // which is the sink's own affair
          }}
    {
    }
};

class Events : public testing::Test {
protected:
    automation::Ref<IConnectionPoint> point()
    {
        automation::Ref<IConnectionPoint> point;
        const auto container = automation::query<IConnectionPointContainer>(specimen.dispatch());
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(__Specimen), point.put()), S_OK);
        return point;
    }

    client::Apartment apartment;
    Object specimen = Specimen::create();
};

} // namespace

TEST_F(Events, ReachEverySinkAndBringBackWhatItChanged)
{
    Sink one{[](long& n) { n += 1; }}, other{[](long& n) { n *= 10; }};
    DWORD first = 0, second = 0;
    EXPECT_EQ(point()->Advise(&one, &first), S_OK);
    EXPECT_EQ(point()->Advise(&other, &second), S_OK);
    EXPECT_EQ(specimen.call(L"Happen", {4}).number(), 50);
    EXPECT_EQ(point()->Unadvise(first), S_OK);
    EXPECT_EQ(point()->Unadvise(first), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(specimen.call(L"Happen", {4}).number(), 40);
    specimen = Object{};
    EXPECT_EQ(one.references() + other.references(), 2) << "the object lets go of its sinks";
}

TEST_F(Events, AHandlerMayGiveAVariableOfTheCallAValueOfAnotherType)
{
    client::Value text = L"before";
    Sink sink{[&](long&) { text = 7; }};
    DWORD cookie = 0;
    ASSERT_EQ(point()->Advise(&sink, &cookie), S_OK);
    specimen.call(L"Announce", {client::Value::variable(text)});
    EXPECT_EQ(text.text(), L"announced");
    EXPECT_EQ(point()->Unadvise(cookie), S_OK);
}

TEST_F(Events, SinksMayGoWhileAnEventIsRaised)
{
    DWORD first = 0, second = 0;
    Sink one{[&](long& n) {
        ++n;
        point()->Unadvise(first);
        point()->Unadvise(second);
    }};
    Sink other{[](long& n) { ++n; }};
    point()->Advise(&one, &first);
    point()->Advise(&other, &second);
    EXPECT_EQ(specimen.call(L"Happen", {0}).number(), 2);
    EXPECT_EQ(specimen.call(L"Happen", {0}).number(), 0);
}

TEST_F(Events, TheirPointIsAnObjectOfItsOwnThatKeepsTheOtherAlive)
{
    using automation::query, automation::Ref;
    Ref<IConnectionPoint> listed = point();
    auto identity = query<IUnknown>(listed.get());
    EXPECT_NE(identity.get(), query<IUnknown>(specimen.dispatch()).get());
    EXPECT_EQ(identity.get(), query<IUnknown>(query<IConnectionPoint>(identity.get()).get()).get());
    EXPECT_FALSE(query<IDispatch>(listed.get()));
    EXPECT_FALSE(query<IConnectionPointContainer>(listed.get()));
    {
        Ref<IConnectionPointContainer> container;
        EXPECT_EQ(listed->GetConnectionPointContainer(container.put()), S_OK);
        EXPECT_EQ(query<IUnknown>(container.get()).get(), query<IUnknown>(specimen.dispatch()).get());
    }
    specimen = Object{};
    Sink sink{[](long&) {}};
    DWORD cookie = 0;
    EXPECT_EQ(listed->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(sink.references(), 2);
    listed = nullptr;
    EXPECT_EQ(sink.references(), 2) << "its identity is a reference too";
    identity = nullptr;
    EXPECT_EQ(sink.references(), 1);
}

TEST_F(Events, AreFoundAndListed)
{
    const auto container = automation::query<IConnectionPointContainer>(specimen.dispatch());
    automation::Ref<IConnectionPoint> none, listed;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, none.put()), CONNECT_E_NOCONNECTION);
    automation::Ref<IEnumConnectionPoints> points;
    ASSERT_EQ(container->EnumConnectionPoints(points.put()), S_OK);
    EXPECT_EQ(points->Next(1, listed.put(), nullptr), S_OK);
    EXPECT_EQ(points->Next(1, none.put(), nullptr), S_FALSE);
    IID iid{};
    listed->GetConnectionInterface(&iid);
    EXPECT_EQ(iid, __uuidof(__Specimen));

    Sink sink{[](long&) {}};
    DWORD cookie = 0;
    listed->Advise(&sink, &cookie);
    automation::Ref<IEnumConnections> connections;
    ASSERT_EQ(listed->EnumConnections(connections.put()), S_OK);
    CONNECTDATA connection{};
    ASSERT_EQ(connections->Next(1, &connection, nullptr), S_OK);
    EXPECT_EQ(connection.dwCookie, cookie);
    connection.pUnk->Release();
    listed->Unadvise(cookie);
}
