#pragma once

#include "ini/arena.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace ini {

/// What the tree is made of: it counts its holders and lies on the heap or in an arena. Used by one thread only.
class Node {
public:
    explicit Node(Arena* arena) noexcept : arena_{arena} {}
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// The arena that it lies in; null when it lies on the heap.
    Arena* arena() const noexcept { return arena_; }
    void hold() noexcept { ++holders_; }
    /// Whether the last holder let go, who then destroys it.
    bool let_go() noexcept { return --holders_ == 0; }

    /// The one live automation object that stands for it, if there is one.
    void* object = nullptr;

private:
    Arena* arena_;
    std::uint32_t holders_ : 31 = 0;

protected:
    std::uint32_t flag_ : 1 = 0; ///< a truth value that a node may have of its own, where it takes no room
};

/// Makes a node without holders in the arena, or on the heap when `arena` is null, with room for `more` bytes behind it.
template <class Kind, class... Arguments>
Kind* make_node(Arena* arena, std::size_t more, Arguments&&... arguments)
{
    const std::size_t size = sizeof(Kind) + more;
    void* const memory = arena ? arena->allocate(size, alignof(Kind)) : ::operator new(size);
    if (arena)
        arena->hold();
    return new (memory) Kind{arena, std::forward<Arguments>(arguments)...};
}

template <class Kind>
void unmake_node(Kind* node) noexcept
{
    Arena* const arena = node->arena();
    node->~Kind();
    if (arena)
        arena->let_go();
    else
        ::operator delete(node);
}

/// Owns one hold on a node.
template <class Kind>
class Held {
public:
    Held() noexcept = default;
    Held(std::nullptr_t) noexcept {}
    explicit Held(Kind* node) noexcept : node_{node}
    {
        if (node_)
            node_->hold();
    }
    Held(const Held& other) noexcept : Held{other.node_} {}
    Held(Held&& other) noexcept : node_{std::exchange(other.node_, nullptr)} {}
    Held& operator=(Held other) noexcept
    {
        std::swap(node_, other.node_);
        return *this;
    }
    ~Held()
    {
        if (node_ && node_->let_go())
            Kind::destroy(node_);
    }

    Kind* get() const noexcept { return node_; }
    Kind* operator->() const noexcept { return node_; }
    Kind& operator*() const noexcept { return *node_; }
    explicit operator bool() const noexcept { return node_ != nullptr; }
    Kind* release() noexcept { return std::exchange(node_, nullptr); }

private:
    Kind* node_ = nullptr;
};

} // namespace ini
