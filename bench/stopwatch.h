#pragma once

#include <algorithm>
#include <chrono>
#include <limits>
#include <vector>

inline double seconds_of(const auto& action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The shortest of the times that an action took.
class Best {
public:
    void take(const auto& action) { seconds_ = std::min(seconds_, seconds_of(action)); }
    double seconds() const { return seconds_; }

private:
    double seconds_ = std::numeric_limits<double>::infinity();
};

/// The time in the middle of those that an action took. For actions that wait for other processes: they are short now and
/// then by luck.
class Typical {
public:
    void take(const auto& action) { add(seconds_of(action)); }
    void add(double seconds) { all_.push_back(seconds); }
    double best() const { return std::ranges::min(all_); }
    double seconds() const
    {
        std::vector<double> sorted = all_;
        std::ranges::sort(sorted);
        return sorted.at(sorted.size() / 2);
    }

private:
    std::vector<double> all_;
};
