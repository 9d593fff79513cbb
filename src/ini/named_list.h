#pragma once

#include "automation/case_folding.h"
#include "ini/flat_index.h"
#include "ini/stored_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

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

template <class Item>
class NamedList;

/// What the items of a list have in common: a name that can change, and a key, which is the name that they came in with.
template <class Item>
class NamedItem : public Node {
public:
    std::wstring_view name() const noexcept { return name_; }
    /// Changes the name; the key stays.
    void rename(std::wstring_view name);
    /// Whether it was read from a file.
    bool found_in_file() const noexcept { return this->flag_ != 0; }
    void set_found_in_file(bool found) noexcept { this->flag_ = found; }
    /// The next one in its list; null behind the last one.
    Item* next() const noexcept
    {
        // What one load made lies in a row, but not so that the processor sees it.
        __builtin_prefetch(reinterpret_cast<const char*>(this) + 1024);
        return next_;
    }

protected:
    NamedItem(Arena* arena, std::uint32_t hash) noexcept : Node{arena}, hash_{hash} {}

    Item* next_ = nullptr; ///< in a list, or in a chain of items to be destroyed

private:
    friend class NamedList<Item>;

    /// The key of an item whose name has changed.
    struct Key {
        StoredText text;
        std::uint32_t hash = 0;
        bool taken = false; ///< by an item that was made under the same key since
    };

    bool has_key(std::wstring_view key, std::uint32_t hash) const noexcept
    {
        if (!key_)
            return has_name(key, hash);
        return !key_->taken && key_->hash == hash && automation::equal_folded(key_->text, key);
    }
    bool has_name(std::wstring_view name, std::uint32_t hash) const noexcept
    {
        return hash_ == hash && automation::equal_folded(name_, name);
    }
    std::wstring_view key() const noexcept { return key_ ? key_->text : name_; }
    std::uint32_t key_hash() const noexcept { return key_ ? key_->hash : hash_; }
    bool lost_key() const noexcept { return key_ && key_->taken; }

    Item* previous_ = nullptr;
    NamedList<Item>* list_ = nullptr;
    std::uint32_t hash_;         ///< of the name
    StoredText name_;
    std::unique_ptr<Key> key_;
};

/// An ordered list of items that are found by key, by current name and by position, without regard to case.
/// Finding by key and by name takes the same time however many items there are, renamed ones included.
///
/// Short lists are searched through. Longer ones have an index of keys, and one of names as soon as these differ. When
/// several items have come by the same name, that index holds the first one; what this costs, renaming and removing pay.
template <class Item>
class NamedList : public Node {
public:
    static Held<NamedList> create(Arena* arena = nullptr) { return Held<NamedList>{make_node<NamedList>(arena, 0)}; }
    explicit NamedList(Arena* arena) noexcept : Node{arena} {}
    static void destroy(NamedList* list) noexcept
    {
        Item* alone = nullptr;
        list->give_up(alone);
        unmake_node(list);
        Item::destroy_chain(alone);
    }

    std::uint32_t count() const noexcept { return count_; }
    Item* first() const noexcept { return first_; }
    Item* last() const noexcept { return last_; }
    /// The item at a position, counted from 0; null if there is none. Cheap for positions near the last one asked for.
    Item* at(std::size_t position);
    /// Where an item of this list stands, counted from 0. Cheap near a position that was asked for.
    std::size_t position_of(const Item& item) const noexcept;
    /// The item of this key, the name that it came in with; null if there is none.
    Item* find_key(std::wstring_view key) const noexcept { return find_key(key, automation::hash_folded(key)); }
    /// The first item that has this name now; null if there is none.
    Item* find_name(std::wstring_view name) const noexcept { return find_name(name, automation::hash_folded(name)); }

    /// The first item that has this name now; if there is none, a new one at the end, which takes over the key
    /// from a renamed item that still has it.
    Item& add(std::wstring_view name, Arena* arena = nullptr)
    {
        const std::uint32_t hash = automation::hash_folded(name);
        Item* const found = find_name(name, hash);
        return found ? *found : append(name, hash, arena);
    }
    /// The item of this key, or what `add` gives.
    Item& item(std::wstring_view key)
    {
        Item* const found = find_key(key);
        return found ? *found : add(key);
    }
    /// Takes out an item of this list. A key that it took over goes back to the item that had it.
    void remove(Item& item) noexcept;

    /// Lets go of all items; those that nobody else holds are put in front of the chain `alone`.
    void give_up(Item*& alone) noexcept;

    /// Whether a walk down the tree is inside this list just now.
    mutable bool on_path = false;

private:
    friend class NamedItem<Item>;

    static constexpr std::uint32_t longest_without_index = 32;
    static constexpr std::size_t unknown = static_cast<std::size_t>(-1);

    struct Lookup {
        FlatIndex<Item> keys;
        FlatIndex<Item> names;
        std::uint32_t unindexed_names = 0; ///< items whose name an earlier one has, too
        std::vector<Item*> positions;      ///< the first items in order, as many as were asked for
    };

    Lookup& lookup()
    {
        if (!lookup_)
            lookup_ = std::make_unique<Lookup>();
        return *lookup_;
    }

    template <class Test>
    Item* find(FlatIndex<Item> Lookup::*index, std::uint32_t hash, const Test& is_it) const noexcept;
    Item* find_key(std::wstring_view key, std::uint32_t hash) const noexcept;
    Item* find_name(std::wstring_view name, std::uint32_t hash) const noexcept;
    Item& append(std::wstring_view name, std::uint32_t hash, Arena* arena);
    bool was_seen(std::uint32_t hash) const noexcept { return seen_[hash / 32 % seen_.size()] >> hash % 32 & 1; }
    void set_seen(std::uint32_t hash) noexcept { seen_[hash / 32 % seen_.size()] |= std::uint32_t{1} << hash % 32; }
    std::size_t known_position(const Item& item) const noexcept;
    void reserve_one();
    void index_keys();
    void index_names();
    void insert_name(Item& item) noexcept;
    void erase_name(Item& item) noexcept;
    void take_key(std::wstring_view key, std::uint32_t hash) noexcept;
    void give_back_key(std::wstring_view key, std::uint32_t hash) noexcept;
    void rename(Item& item, StoredText&& name, std::uint32_t hash);

    Item* first_ = nullptr;
    Item* last_ = nullptr;
    std::uint32_t count_ = 0;
    std::uint32_t keys_taken_ = 0; ///< items that lost their key
    std::array<std::uint32_t, 4> seen_{}; ///< a bit for every key and name that came in, by its hash: most searches for
                                          ///< what is not there end here
    bool has_index_ = false;
    bool renamed_ = false; ///< whether names may differ from keys
    std::unique_ptr<Lookup> lookup_;
};

template <class Item>
void NamedItem<Item>::rename(std::wstring_view name)
{
    StoredText text{name};
    const std::uint32_t hash = automation::hash_folded(name);
    if (list_)
        return list_->rename(static_cast<Item&>(*this), std::move(text), hash);
    name_ = std::move(text);
    hash_ = hash;
}

template <class Item>
Item* NamedList<Item>::at(std::size_t position)
{
    if (position >= count_)
        return nullptr;
    if (count_ <= longest_without_index) {
        Item* item = first_;
        for (; position > 0; --position)
            item = item->next_;
        return item;
    }
    std::vector<Item*>& positions = lookup().positions;
    while (positions.size() <= position) {
        Item* const item = positions.empty() ? first_ : positions.back()->next_;
        positions.push_back(item);
    }
    return positions[position];
}

template <class Item>
std::size_t NamedList<Item>::position_of(const Item& item) const noexcept
{
    std::size_t position = known_position(item);
    if (position != unknown)
        return position;
    const bool some = lookup_ && !lookup_->positions.empty();
    position = some ? lookup_->positions.size() : 0;
    for (const Item* other = some ? lookup_->positions.back()->next_ : first_; other != &item; other = other->next_)
        ++position;
    return position;
}

/// What is asked for next to its position, or removed, is mostly what was asked for by position last.
template <class Item>
std::size_t NamedList<Item>::known_position(const Item& item) const noexcept
{
    if (!lookup_)
        return unknown;
    const std::vector<Item*>& positions = lookup_->positions;
    const auto found = std::find(positions.rbegin(), positions.rend(), &item);
    return found == positions.rend() ? unknown : static_cast<std::size_t>(positions.rend() - found) - 1;
}

template <class Item>
Item* NamedList<Item>::find_key(std::wstring_view key, std::uint32_t hash) const noexcept
{
    return find(&Lookup::keys, hash, [&](const Item& item) { return item.has_key(key, hash); });
}

/// By an index where there is one, otherwise by a search through the items.
template <class Item>
template <class Test>
Item* NamedList<Item>::find(FlatIndex<Item> Lookup::*index, std::uint32_t hash, const Test& is_it) const noexcept
{
    if (has_index_)
        return ((*lookup_).*index).find(hash, is_it);
    if (!was_seen(hash))
        return nullptr;
    Item* item = first_;
    while (item && !is_it(*item))
        item = item->next_;
    return item;
}

template <class Item>
Item* NamedList<Item>::find_name(std::wstring_view name, std::uint32_t hash) const noexcept
{
    return find(renamed_ ? &Lookup::names : &Lookup::keys, hash, [&](const Item& item) { return item.has_name(name, hash); });
}

/// Whatever can fail comes before the first change.
template <class Item>
Item& NamedList<Item>::append(std::wstring_view name, std::uint32_t hash, Arena* arena)
{
    reserve_one();
    Item* const item = make_node<Item>(arena, StoredText::bytes(name), hash);
    item->name_ = StoredText::at(item + 1, name);
    take_key(name, hash);
    item->hold();
    item->list_ = this;
    item->previous_ = last_;
    (last_ ? last_->next_ : first_) = item;
    last_ = item;
    ++count_;
    set_seen(hash);
    if (has_index_) {
        lookup_->keys.insert(hash, item);
        if (renamed_)
            insert_name(*item);
    }
    return *item;
}

template <class Item>
void NamedList<Item>::remove(Item& item) noexcept
{
    if (has_index_) {
        if (!item.lost_key())
            lookup_->keys.erase(item.key_hash(), &item);
        if (renamed_)
            erase_name(item);
    }
    if (const std::size_t position = known_position(item); position != unknown)
        lookup_->positions.resize(position);

    (item.previous_ ? item.previous_->next_ : first_) = item.next_;
    (item.next_ ? item.next_->previous_ : last_) = item.previous_;
    item.next_ = item.previous_ = nullptr;
    item.list_ = nullptr;
    --count_;
    if (item.lost_key())
        --keys_taken_;
    else
        give_back_key(item.key(), item.key_hash());

    if (item.let_go())
        Item::destroy_chain(&item);
}

template <class Item>
void NamedList<Item>::give_up(Item*& alone) noexcept
{
    for (Item* item = std::exchange(first_, nullptr); item;) {
        Item* const next = item->next();
        item->next_ = nullptr;
        item->previous_ = nullptr;
        item->list_ = nullptr;
        if (item->let_go())
            item->next_ = std::exchange(alone, item);
        item = next;
    }
    last_ = nullptr;
    count_ = keys_taken_ = 0;
    seen_ = {};
    has_index_ = renamed_ = false;
    lookup_.reset();
}

template <class Item>
void NamedList<Item>::reserve_one()
{
    if (!has_index_) {
        if (count_ < longest_without_index)
            return;
        index_keys();
        if (renamed_)
            index_names();
        has_index_ = true;
    }
    lookup_->keys.reserve(count_ + std::size_t{1});
    if (renamed_)
        lookup_->names.reserve(count_ + std::size_t{1});
}

template <class Item>
void NamedList<Item>::index_keys()
{
    FlatIndex<Item> keys;
    keys.reserve(count_);
    for (Item* item = first_; item; item = item->next_)
        if (!item->lost_key())
            keys.insert(item->key_hash(), item);
    lookup().keys = std::move(keys);
}

template <class Item>
void NamedList<Item>::index_names()
{
    FlatIndex<Item> names;
    names.reserve(count_);
    lookup_->names = std::move(names);
    lookup_->unindexed_names = 0;
    for (Item* item = last_; item; item = item->previous_)
        insert_name(*item);
}

template <class Item>
void NamedList<Item>::insert_name(Item& item) noexcept
{
    Item* const other = lookup_->names.find(item.hash_, [&](const Item& other) { return other.has_name(item.name_, item.hash_); });
    if (!other)
        return lookup_->names.insert(item.hash_, &item);
    ++lookup_->unindexed_names;
    const Item* behind = item.next_;
    while (behind && behind != other)
        behind = behind->next_;
    if (behind)
        lookup_->names.replace(item.hash_, other, &item);
}

/// Before the item leaves the list or gets another name: the next one of its name takes its place.
template <class Item>
void NamedList<Item>::erase_name(Item& item) noexcept
{
    const auto is_namesake = [&](const Item& other) { return other.has_name(item.name_, item.hash_); };
    if (lookup_->names.find(item.hash_, is_namesake) != &item) {
        --lookup_->unindexed_names;
        return;
    }
    lookup_->names.erase(item.hash_, &item);
    if (lookup_->unindexed_names == 0)
        return;
    Item* namesake = item.next_;
    while (namesake && !is_namesake(*namesake))
        namesake = namesake->next_;
    if (!namesake)
        return;
    lookup_->names.insert(item.hash_, namesake);
    --lookup_->unindexed_names;
}

/// For a new item: only one that was renamed can have its key.
template <class Item>
void NamedList<Item>::take_key(std::wstring_view key, std::uint32_t hash) noexcept
{
    Item* const former = renamed_ ? find_key(key, hash) : nullptr;
    if (!former)
        return;
    if (has_index_)
        lookup_->keys.erase(hash, former);
    former->key_->taken = true;
    ++keys_taken_;
}

template <class Item>
void NamedList<Item>::give_back_key(std::wstring_view key, std::uint32_t hash) noexcept
{
    if (keys_taken_ == 0)
        return;
    Item* former = last_;
    while (former && !(former->lost_key() && former->key_hash() == hash && automation::equal_folded(former->key(), key)))
        former = former->previous_;
    if (!former)
        return;
    former->key_->taken = false;
    --keys_taken_;
    if (has_index_)
        lookup_->keys.insert(hash, former);
}

template <class Item>
void NamedList<Item>::rename(Item& item, StoredText&& name, std::uint32_t hash)
{
    auto key = item.key_ ? nullptr : std::make_unique<typename NamedItem<Item>::Key>();
    if (has_index_ && !renamed_)
        index_names();
    renamed_ = true;

    if (has_index_)
        erase_name(item);
    if (key) {
        key->text = std::move(item.name_);
        key->hash = item.hash_;
        item.key_ = std::move(key);
    }
    item.name_ = std::move(name);
    item.hash_ = hash;
    set_seen(hash);
    if (has_index_)
        insert_name(item);
}

} // namespace ini
