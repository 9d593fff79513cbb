#pragma once

#include "support/client.h"
#include "support/dispatch_object.h"

#include <qvObjects.h>

namespace client {

/// Hears of the messages that a qvWindowProc reports.
class MessageListener {
public:
    /// A message as its handler may change it.
    struct Event {
        const long hwnd;
        long &message, &wParam, &lParam;
        VARIANT_BOOL& cancel;
    };
    /// It says with what result the event ends.
    using Handler = std::function<HRESULT(const Event& event)>;

    explicit MessageListener(const Object& watcher, Handler handler = {}) : handler_{std::move(handler)}
    {
        IConnectionPointContainer* container = nullptr;
        EXPECT_EQ(watcher.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(__qvWindowProc), &point_), S_OK);
        container->Release();
        EXPECT_EQ(point_->Advise(&sink_, &cookie_), S_OK);
    }
    ~MessageListener() { let_go(); }

    void let_go()
    {
        if (!point_)
            return;
        point_->Unadvise(cookie_);
        std::exchange(point_, nullptr)->Release();
    }

    /// The numbers of the messages that it has heard of since it was last asked.
    std::vector<long> heard() { return std::exchange(heard_, {}); }

private:
    HRESULT hear(DISPID event, const DISPPARAMS& arguments)
    {
        EXPECT_TRUE(event == 1 && arguments.cArgs == 5);
        const VARIANTARG* const reversed = arguments.rgvarg;
        EXPECT_TRUE(reversed[4].vt == VT_I4 && reversed[0].vt == (VT_BYREF | VT_BOOL));
        for (const int i : {3, 2, 1})
            EXPECT_EQ(reversed[i].vt, VT_BYREF | VT_I4);
        heard_.push_back(*reversed[3].plVal);
        const Event given{reversed[4].lVal, *reversed[3].plVal, *reversed[2].plVal, *reversed[1].plVal, *reversed[0].pboolVal};
        return handler_ ? handler_(given) : S_OK;
    }

    Handler handler_;
    std::vector<long> heard_;
    DispatchObject sink_{{L"message"}, [this](DISPID event, auto& arguments, VARIANT*) { return hear(event, arguments); }};
    IConnectionPoint* point_ = nullptr;
    DWORD cookie_ = 0;
};

} // namespace client
