#pragma once

#include "support/client.h"
#include "support/dispatch_object.h"

#include <qvObjects.h>

namespace client {

/// Hears of what the walks of a file object find. Its handler says whether the walk shall end.
class ItemListener {
public:
    using Handler = std::function<bool(std::wstring_view name)>;

    ItemListener(const Object& file, Handler handler) : handler_{std::move(handler)}
    {
        IConnectionPointContainer* container = nullptr;
        EXPECT_EQ(file.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(__qvFile), &point_), S_OK);
        container->Release();
        EXPECT_EQ(point_->Advise(&sink_, &cookie_), S_OK);
    }
    ~ItemListener() { let_go(); }

    void let_go()
    {
        if (!point_)
            return;
        point_->Unadvise(cookie_);
        std::exchange(point_, nullptr)->Release();
    }

    std::vector<std::wstring> found; ///< path and name, a "|" between them

private:
    HRESULT hear(DISPID event, const DISPPARAMS& arguments)
    {
        const VARIANTARG &path = arguments.rgvarg[2], &name = arguments.rgvarg[1], &cancel = arguments.rgvarg[0];
        EXPECT_TRUE(event == 1 && arguments.cArgs == 3);
        EXPECT_TRUE(path.vt == VT_BSTR && name.vt == VT_BSTR && cancel.vt == (VT_BYREF | VT_BOOL));
        found.push_back(std::wstring{path.bstrVal} + L"|" + name.bstrVal);
        if (handler_(name.bstrVal))
            *cancel.pboolVal = VARIANT_TRUE;
        return S_OK;
    }

    Handler handler_;
    DispatchObject sink_{{L"ItemFound"}, [this](DISPID event, auto& arguments, VARIANT*) { return hear(event, arguments); }};
    IConnectionPoint* point_ = nullptr;
    DWORD cookie_ = 0;
};

} // namespace client
