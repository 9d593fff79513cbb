#pragma once

#include "ini/entries.h"

#include <string_view>
#include <utility>

namespace ini {

/// An entry that knows of what kind its neighbours are.
template <class Item>
class NamedItem : public Entry {
public:
    /// The next one in its list; null behind the last one.
    Item* next() const noexcept
    {
        // What one load made lies in a row, but not so that the processor sees it.
        __builtin_prefetch(reinterpret_cast<const char*>(this) + 1024);
        return static_cast<Item*>(next_);
    }

protected:
    using Entry::Entry;

    /// Takes the first one off a chain of items to be destroyed.
    static Item* take_first(Item*& chain) noexcept { return std::exchange(chain, static_cast<Item*>(chain->next_)); }
};

/// Entries of one kind.
template <class Item>
class NamedList : public Entries {
public:
    static Held<NamedList> create(Arena* arena = nullptr) { return Held<NamedList>{make_node<NamedList>(arena, 0)}; }
    explicit NamedList(Arena* arena) noexcept : Entries{arena} {}
    static void destroy(NamedList* list) noexcept
    {
        Item* alone = nullptr;
        list->give_up(alone);
        unmake_node(list);
        Item::destroy_chain(alone);
    }

    Item* first() const noexcept { return static_cast<Item*>(first_); }
    Item* last() const noexcept { return static_cast<Item*>(last_); }
    /// The item at a position, counted from 0; null if there is none. Cheap for positions near the last one asked for.
    Item* at(std::size_t position) { return static_cast<Item*>(Entries::at(position)); }
    /// The item of this key, the name that it came in with; null if there is none.
    Item* find_key(std::wstring_view key) const noexcept
    {
        return static_cast<Item*>(Entries::find_key(key, automation::hash_folded(key)));
    }
    /// The first item that has this name now; null if there is none.
    Item* find_name(std::wstring_view name) const noexcept
    {
        return static_cast<Item*>(Entries::find_name(name, automation::hash_folded(name)));
    }

    /// The first item that has this name now; if there is none, a new one at the end, which takes over the key
    /// from a renamed item that still has it.
    Item& add(std::wstring_view name, Arena* arena = nullptr)
    {
        const std::uint32_t hash = automation::hash_folded(name);
        if (Entry* const found = Entries::find_name(name, hash))
            return static_cast<Item&>(*found);
        reserve_one();
        Item* const item = make_node<Item>(arena, StoredText::bytes(name), hash);
        append(*item, StoredText::at(item + 1, name));
        return *item;
    }
    /// The item of this key, or what `add` gives.
    Item& item(std::wstring_view key)
    {
        Item* const found = find_key(key);
        return found ? *found : add(key);
    }
    /// Takes out an item of this list. A key that it took over goes back to the item that had it.
    void remove(Item& item) noexcept
    {
        take_out(item);
        if (item.let_go())
            Item::destroy_chain(&item);
    }

    /// Lets go of all items; those that nobody else holds are put in front of the chain `alone`.
    void give_up(Item*& alone) noexcept
    {
        Entry* chain = alone;
        Entries::give_up(chain);
        alone = static_cast<Item*>(chain);
    }
};

} // namespace ini
