// Objects that live in another apartment than their client, which meets proxies of them.
#include "support/client.h"
#include "support/dispatch_object.h"
#include "support/own_process.h"

#include <qvObjects.h>

#include <wrl/client.h>

#include <thread>

using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

namespace {

/// Hands an object of this thread's apartment over to a thread of the multithreaded one, which meets a proxy of it, and
/// serves that one's calls until its work is done.
template <class Interface, class Work>
void with_proxy(const wchar_t* program, const Work& work)
{
    const Object object = Object::create(program);
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(Interface), object.dispatch(), &stream), S_OK);
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread other{[&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            ComPtr<Interface> proxy;
            const HRESULT handed_over =
                CoGetInterfaceAndReleaseStream(stream, __uuidof(Interface), reinterpret_cast<void**>(proxy.GetAddressOf()));
            EXPECT_EQ(handed_over, S_OK);
            if (proxy)
                work(*proxy.Get());
        }
        CoUninitialize();
        SetEvent(done);
    }};
    DWORD index = 0;
    EXPECT_EQ(CoWaitForMultipleHandles(0, INFINITE, 1, &done, &index), S_OK);
    other.join();
    CloseHandle(done);
}

template <class Interface>
ComPtr<Interface> query(IUnknown* object)
{
    ComPtr<Interface> found;
    EXPECT_EQ(object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(found.GetAddressOf())), S_OK);
    return found;
}

/// A sink as compilers make it, which answers for the event interface as well.
class ItemFoundSink final : public DispatchObject {
public:
    explicit ItemFoundSink(Answer answer) : DispatchObject{{L"ItemFound"}, std::move(answer)} {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        return DispatchObject::QueryInterface(iid == __uuidof(__qvFile) ? IID_IDispatch : iid, object);
    }
};

void call_late_and_early_bound(_qvCommon& common)
{
    ASSERT_TRUE(query<IClientSecurity>(&common)) << "which only proxies have";
    EXPECT_EQ(Object{&common}.call(L"qvTrim", {L" x "}).text(), L"x");
    const Value text = L" 12 ";
    Value trimmed = Value::of_type(VT_BSTR), number;
    EXPECT_EQ(common.qvTrim(text.bstrVal, &trimmed.bstrVal), S_OK);
    EXPECT_EQ(trimmed.text(), L"12");
    EXPECT_EQ(common.StrToNum(trimmed.bstrVal, &number), S_OK);
    EXPECT_EQ(number.number(), 12);
}

void hear_of_events(IDispatch& file)
{
    const client::Folder folder;
    for (const wchar_t* name : {L"a", L"b", L"c"})
        folder.write(name, "");
    std::atomic<int> heard = 0;
    ItemFoundSink sink{[&](DISPID, const DISPPARAMS& arguments, VARIANT*) {
        EXPECT_EQ(arguments.cArgs, 3u);
        if (++heard == 2)
            *arguments.rgvarg[0].pboolVal = VARIANT_TRUE; // enough
        return S_OK;
    }};
    const auto container = query<IConnectionPointContainer>(&file);
    ComPtr<IConnectionPoint> point;
    ComPtr<IConnectionPointContainer> owner;
    ASSERT_EQ(container->FindConnectionPoint(__uuidof(__qvFile), point.GetAddressOf()), S_OK);
    EXPECT_EQ(point->GetConnectionPointContainer(owner.GetAddressOf()), S_OK);
    EXPECT_EQ(query<IUnknown>(owner.Get()).Get(), query<IUnknown>(&file).Get());
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    Object{&file}.call(L"WalkDirTree", {folder.path(), L"*"});
    EXPECT_EQ(heard, 2) << "the second one ended the walk";
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    Object{&file}.call(L"WalkDirTree", {folder.path(), L"*"});
    EXPECT_EQ(heard, 2);
}

constexpr wchar_t own_process[] = L"TEST_IN_A_PROCESS_OF_ITS_OWN";

class OtherApartments : public testing::Test {
protected:
    client::Apartment apartment;
};

} // namespace

TEST_F(OtherApartments, CallLateAndEarlyBound)
{
    with_proxy<_qvCommon>(L"qvObjects.qvCommon", call_late_and_early_bound);
    with_proxy<_qvIniFile>(L"qvObjects.qvIniFile", [](_qvIniFile& ini) {
        const Value name = L"Main";
        ComPtr<_qvIniSections> sections;
        ComPtr<_qvIniSection> section;
        ASSERT_EQ(ini.get_Section(sections.GetAddressOf()), S_OK);
        EXPECT_EQ(sections->Add(name.bstrVal, section.GetAddressOf()), S_OK);
        Value read = Value::of_type(VT_BSTR);
        EXPECT_EQ(section->get_Name(&read.bstrVal), S_OK);
        EXPECT_EQ(read.text(), L"Main");
        EXPECT_EQ(Object{&ini}.object(L"Section").call(L"Count").number(), 1);
    });
}

TEST_F(OtherApartments, HearOfEvents)
{
    with_proxy<IDispatch>(L"qvObjects.qvFile", hear_of_events);
}

TEST(MultithreadedClients, HaveTheirObjectsInAnApartmentOfThePlatforms)
{
    if (GetEnvironmentVariableW(own_process, nullptr, 0) == 0) { // Wine never lets go of a class that such a client asked for
        SetEnvironmentVariableW(own_process, L"1");
        const client::OwnProcess process{L"MultithreadedClients.HaveTheirObjectsInAnApartmentOfThePlatforms"};
        SetEnvironmentVariableW(own_process, nullptr);
        EXPECT_EQ(process.exit_code(), 0u);
        return;
    }
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (const auto common = query<_qvCommon>(Object::create(L"qvObjects.qvCommon").dispatch()))
        call_late_and_early_bound(*common.Get());
    if (const Object file = Object::create(L"qvObjects.qvFile"))
        hear_of_events(*file.dispatch());
    CoUninitialize();
}
