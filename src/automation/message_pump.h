#pragma once

#include <optional>

namespace automation {

/// For members that wait: lets the client's windows live meanwhile. Someone who ends the program is heard by those who asked for
/// messages first: that message goes back when this ends.
class MessagePump {
public:
    MessagePump() noexcept = default;
    MessagePump(const MessagePump&) = delete;
    MessagePump& operator=(const MessagePump&) = delete;
    ~MessagePump();

    /// Handles the messages of this thread that wait, but not without end.
    void handle();

private:
    std::optional<int> exit_code_; ///< of the program that someone ended
};

} // namespace automation
