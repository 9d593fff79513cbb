#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

/// The shortest of the times that an action took.
class Best {
public:
    template <class Action>
    void take(const Action& action)
    {
        const auto start = std::chrono::steady_clock::now();
        action();
        seconds_ = std::min(seconds_, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    double seconds() const { return seconds_; }

private:
    double seconds_ = std::numeric_limits<double>::infinity();
};
