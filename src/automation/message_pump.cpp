#include "automation/message_pump.h"

#include "automation/floating_control.h"

#include <windows.h>

namespace automation {

MessagePump::~MessagePump()
{
    if (exit_code_)
        PostQuitMessage(*exit_code_);
}

void MessagePump::handle()
{
    constexpr int most = 100; // a window that never finishes painting always has one more
    const CalculatesAsClient as_client;
    MSG message;
    for (int i = 0; i < most && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
        if (message.message == WM_QUIT) {
            exit_code_ = static_cast<int>(message.wParam);
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace automation
