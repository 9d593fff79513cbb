// In a process that has the compiler's shared runtime, and with it a second unwinder.
#include "hosts/walk.h"

#include <thread>

using client::expect_error;
using client::Object;

TEST(SharedRuntime, ErrorsReachTheClient)
{
    ASSERT_TRUE(GetModuleHandleW(L"libgcc_s_dw2-1.dll"));
    client::Apartment apartment;
    const Object math = Object::create(L"qvObjects.qvMath");
    for (int i = 0; i < 3; ++i)
        expect_error(math.try_call(L"MMult", {L"no number", 1}), 13, L"Type mismatch");

    int events = 0;
    const Walk walk{[&] {
        ++events;
        expect_error(math.try_call(L"MMult", {L"no number", 1}), 13, L"Type mismatch");
    }};
    EXPECT_EQ(walk.run().result, S_OK);
    EXPECT_EQ(events, 1);
}

TEST(SharedRuntime, ErrorsReachTheClientOnEveryThread)
{
    std::thread{[] {
        client::Apartment apartment;
        const Object common = Object::create(L"qvObjects.qvCommon");
        expect_error(common.try_call(L"Sort", {1}), 13, L"Type mismatch");
    }}.join();
}
