#include "ini/arena.h"

#include <algorithm>
#include <new>
#include <utility>

namespace ini {
namespace {

constexpr std::size_t largest_chunk = 1 << 20;

} // namespace

struct Arena::Chunk {
    Chunk* next;
};

Arena::~Arena()
{
    while (chunks_)
        ::operator delete(std::exchange(chunks_, chunks_->next));
}

void* Arena::allocate_in_new_chunk(std::size_t bytes)
{
    const std::size_t size = std::max(bytes + sizeof(Chunk), next_size_);
    chunks_ = new (::operator new(size)) Chunk{chunks_};
    void* const piece = chunks_ + 1;
    free_ = static_cast<char*>(piece) + bytes;
    left_ = size - sizeof(Chunk) - bytes;
    next_size_ = std::min(next_size_ * 2, largest_chunk);
    return piece;
}

} // namespace ini
