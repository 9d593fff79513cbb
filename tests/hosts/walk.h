#pragma once

#include "support/client.h"
#include "support/dispatch_object.h"

#include <qvObjects.h>

#include <functional>

/// A walk through a folder of one file, which raises one event.
class Walk {
public:
    explicit Walk(std::function<void()> handler)
        : sink_{{L"ItemFound"}, [handler = std::move(handler)](DISPID, const DISPPARAMS&, VARIANT*) {
                    handler();
                    return S_OK;
                }}
    {
        folder_.write(L"only.txt", "");
        IConnectionPointContainer* container = nullptr;
        file_.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
        container->FindConnectionPoint(__uuidof(__qvFile), &point_);
        container->Release();
        point_->Advise(&sink_, &cookie_);
    }
    ~Walk()
    {
        point_->Unadvise(cookie_);
        point_->Release();
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    client::Outcome run() const { return file_.try_call(L"WalkDirTree", {folder_.path(), L"*.txt"}); }

private:
    const client::Folder folder_;
    const client::Object file_ = client::Object::create(L"qvObjects.qvFile");
    DispatchObject sink_;
    IConnectionPoint* point_ = nullptr;
    DWORD cookie_ = 0;
};
