#include "automation/handle.h"
#include "support/dispatch_object.h"
#include "ui/MWindowProcSubClassing.h"

#include <vector>

using automation::Ref;

namespace {

std::vector<UINT> passed_on;

LRESULT CALLBACK former_procedure(HWND, UINT message, WPARAM, LPARAM)
{
    passed_on.push_back(message);
    return 7;
}

} // namespace

TEST(SubclassWindowProc, LetsNoExceptionOfAHandlerOut)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    constexpr long no_window = 0x1234;
    {
        const auto watcher = automation::make<qvWindowProc>();
        int heard = 0;
        DispatchObject sink{{}, [&](DISPID, const DISPPARAMS& arguments, VARIANT*) -> HRESULT {
                                ++heard;
                                *arguments.rgvarg[3].plVal = 2;
                                throw heard;
                            }};
        Ref<IConnectionPoint> point;
        DWORD cookie = 0;
        const auto points = automation::query<IConnectionPointContainer>(watcher->unknown());
        points->FindConnectionPoint(__uuidof(__qvWindowProc), point.put());
        ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
        watcher->AddMsg(1);
        watcher->AddMsg(2);
        watcher->put_hwnd(no_window);
        watcher->put_OriginalWindowProc(reinterpret_cast<LONG>(&former_procedure));
        const auto procedure = automation::handle_from<WNDPROC>(MWindowProcSubClassing::procedure());
        EXPECT_EQ(procedure(automation::handle_from<HWND>(no_window), 1, 0, 0), 7);
        EXPECT_EQ(heard, 2) << "it goes on";
        EXPECT_EQ(passed_on, std::vector<UINT>{2});
        EXPECT_EQ(procedure(automation::handle_from<HWND>(no_window + 1), 1, 0, 0), 0) << "nobody watches this one";
        EXPECT_EQ(passed_on.size(), 1u);
        point->Unadvise(cookie);
    }
    EXPECT_NE(automation::module::held(), 0);
    CoUninitialize();
    EXPECT_EQ(automation::module::held(), 0);
}
