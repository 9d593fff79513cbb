#pragma once

#include <cstddef>
#include <cstdint>

namespace ini {

/// Memory for what one load makes, handed out piece by piece and given back all at once, when nothing that lies in it is
/// left. An allocation on the heap for every text and every parameter would be most of a load's time.
class Arena {
public:
    /// A new arena with one holder.
    static Arena& create() { return *new Arena; }
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    /// Memory that is there as long as the arena has holders.
    void* allocate(std::size_t bytes, std::size_t alignment)
    {
        const std::size_t padding = -reinterpret_cast<std::uintptr_t>(free_) & (alignment - 1);
        if (bytes + padding > left_)
            return allocate_in_new_chunk(bytes);
        void* const piece = free_ + padding;
        free_ += bytes + padding;
        left_ -= bytes + padding;
        return piece;
    }

    void hold() noexcept { ++holders_; }
    void let_go() noexcept
    {
        if (--holders_ == 0)
            delete this;
    }

private:
    struct Chunk;

    Arena() noexcept = default;
    ~Arena();
    void* allocate_in_new_chunk(std::size_t bytes);

    Chunk* chunks_ = nullptr;
    char* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t next_size_ = 4096;
    std::uint32_t holders_ = 1;
};

} // namespace ini
