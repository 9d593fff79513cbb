#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ini {

/// A hash table of pointers with open addressing: it knows the items' hashes and asks the caller what is equal.
template <class Item>
class FlatIndex {
public:
    /// Makes room for `count` items in all.
    void reserve(std::size_t count)
    {
        std::size_t size = slots_.empty() ? 64 : slots_.size();
        while (count > size / 5 * 4)
            size *= 2;
        if (size == slots_.size())
            return;
        FlatIndex larger;
        larger.slots_.resize(size);
        for (std::size_t rest = size; rest > 1; rest /= 2)
            --larger.shift_;
        for (const Slot& slot : slots_)
            if (slot.item)
                larger.insert(slot.hash, slot.item);
        *this = std::move(larger);
    }

    std::size_t size() const noexcept { return used_; }

    /// Puts an item in, for which there must be room.
    void insert(std::uint32_t hash, Item* item) noexcept
    {
        std::size_t place = home(hash);
        while (slots_[place].item)
            place = behind(place);
        slots_[place] = {hash, item};
        ++used_;
    }

    /// The item with this hash for which `is_it` is true; null if there is none.
    template <class Test>
    Item* find(std::uint32_t hash, const Test& is_it) const noexcept
    {
        if (used_ == 0)
            return nullptr;
        for (std::size_t place = home(hash); slots_[place].item; place = behind(place))
            if (slots_[place].hash == hash && is_it(*slots_[place].item))
                return slots_[place].item;
        return nullptr;
    }

    /// Takes out an item that is in it.
    void erase(std::uint32_t hash, const Item* item) noexcept
    {
        std::size_t hole = place_of(hash, item);
        for (std::size_t place = behind(hole); slots_[place].item; place = behind(place)) {
            const std::size_t way = (place - home(slots_[place].hash)) & (slots_.size() - 1);
            if (way < ((place - hole) & (slots_.size() - 1)))
                continue;
            slots_[hole] = slots_[place];
            hole = place;
        }
        slots_[hole] = {};
        --used_;
    }

    /// Puts `successor` in the place of an item of the same hash.
    void replace(std::uint32_t hash, const Item* item, Item* successor) noexcept { slots_[place_of(hash, item)].item = successor; }

private:
    struct Slot {
        std::uint32_t hash = 0;
        Item* item = nullptr;
    };

    std::size_t home(std::uint32_t hash) const noexcept { return (hash * 0x9E3779B9u) >> shift_; }
    std::size_t behind(std::size_t place) const noexcept { return (place + 1) & (slots_.size() - 1); }
    std::size_t place_of(std::uint32_t hash, const Item* item) const noexcept
    {
        std::size_t place = home(hash);
        while (slots_[place].item != item)
            place = behind(place);
        return place;
    }

    std::vector<Slot> slots_; ///< a power of two of them, at most four fifths of them in use
    std::size_t used_ = 0;
    unsigned shift_ = 32; ///< 32 less the power
};

} // namespace ini
