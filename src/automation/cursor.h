#pragma once

#include <cstddef>

namespace automation {

class Cursors;

/// A place in a list that stays right while the list changes: what was not reached yet is reached once, what was removed
/// is not. A cursor must not outlive its list.
class Cursor {
public:
    explicit Cursor(Cursors& list, std::size_t next = 0) noexcept;
    ~Cursor();
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    std::size_t next = 0; ///< the position of the item to be reached next, from 0

private:
    friend class Cursors;
    Cursors& list_;
    Cursor* following_;
};

/// The cursors in a list. The list reports its changes to them.
class Cursors {
public:
    Cursors() noexcept = default;
    Cursors(const Cursors&) = delete;
    Cursors& operator=(const Cursors&) = delete;

    bool empty() const noexcept { return !first_; }
    void inserted(std::size_t position) noexcept
    {
        for (Cursor* cursor = first_; cursor; cursor = cursor->following_)
            if (position < cursor->next)
                ++cursor->next;
    }
    void removed(std::size_t position) noexcept
    {
        for (Cursor* cursor = first_; cursor; cursor = cursor->following_)
            if (position < cursor->next)
                --cursor->next;
    }

private:
    friend class Cursor;
    Cursor* first_ = nullptr;
};

inline Cursor::Cursor(Cursors& list, std::size_t next) noexcept : next{next}, list_{list}, following_{list.first_}
{
    list.first_ = this;
}

inline Cursor::~Cursor()
{
    Cursor** place = &list_.first_;
    while (*place != this)
        place = &(*place)->following_;
    *place = following_;
}

} // namespace automation
