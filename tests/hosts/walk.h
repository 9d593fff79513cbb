#pragma once

#include "support/item_listener.h"

/// A walk through a folder of one file, which raises one event.
class Walk {
public:
    explicit Walk(std::function<void()> handler)
        : listener_{file_, [handler = std::move(handler)](auto) {
                        handler();
                        return false;
                    }}
    {
        folder_.write(L"only.txt", "");
    }

    client::Outcome run() const { return file_.try_call(L"WalkDirTree", {folder_.path(), L"*.txt"}); }

private:
    const client::Folder folder_;
    const client::Object file_ = client::Object::create(L"qvObjects.qvFile");
    client::ItemListener listener_;
};
