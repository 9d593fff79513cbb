#pragma once

#include "ini/arena.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace ini {

/// A text that lies in an arena or owns its characters, in the space of a pointer and a length.
class StoredText {
public:
    StoredText() noexcept = default;
    /// A copy on the heap.
    explicit StoredText(std::wstring_view text)
    {
        if (text.empty())
            return;
        *this = at(::operator new(bytes(text)), text);
        size_and_owner_ |= owned;
    }
    /// A copy in an arena, which must outlive it.
    StoredText(Arena& arena, std::wstring_view text) : StoredText{at(arena.allocate(bytes(text), alignof(wchar_t)), text)} {}
    /// A copy in memory that must outlive it.
    static StoredText at(void* memory, std::wstring_view text) noexcept
    {
        StoredText copy;
        copy.characters_ = static_cast<wchar_t*>(memory);
        copy.size_and_owner_ = static_cast<std::uint32_t>(text.size());
        text.copy(copy.characters_, text.size());
        return copy;
    }
    /// The memory that a text takes. Raises what memory running out raises for one that is too long.
    static std::size_t bytes(std::wstring_view text)
    {
        if (text.size() >= owned / sizeof(wchar_t))
            throw std::bad_alloc{};
        return text.size() * sizeof(wchar_t);
    }
    StoredText(StoredText&& other) noexcept { swap(other); }
    StoredText& operator=(StoredText&& other) noexcept
    {
        swap(other);
        return *this;
    }
    ~StoredText()
    {
        if (size_and_owner_ & owned)
            ::operator delete(characters_);
    }

    operator std::wstring_view() const noexcept { return {characters_, size_and_owner_ & ~owned}; }

    void swap(StoredText& other) noexcept
    {
        std::swap(characters_, other.characters_);
        std::swap(size_and_owner_, other.size_and_owner_);
    }

private:
    static constexpr std::uint32_t owned = 0x80000000;

    wchar_t* characters_ = nullptr;
    std::uint32_t size_and_owner_ = 0;
};

} // namespace ini
