#include "ini/entries.h"

#include "ini/flat_index.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace ini {

using automation::equal_folded;
using automation::table_hash;

namespace {

constexpr auto unknown = static_cast<std::size_t>(-1);

} // namespace

/// What long lists have.
struct Entries::Lookup {
    FlatIndex<Entry> keys;
    FlatIndex<Entry> names;
    std::uint32_t unindexed_names = 0; ///< entries whose name an earlier one has, too
    std::vector<Entry*> positions;     ///< the first entries in order, as many as were asked for
};

void Entry::rename(std::wstring_view name)
{
    StoredText text{name};
    const std::uint32_t hash = automation::hash_folded(name);
    if (list_)
        return list_->rename(*this, std::move(text), hash);
    name_ = std::move(text);
    hash_ = hash;
}

inline bool Entry::has_name(std::wstring_view name, std::uint32_t hash) const noexcept
{
    return hash_ == hash && equal_folded(name_, name);
}

inline bool Entry::has_key(std::wstring_view key, std::uint32_t hash) const noexcept
{
    if (!key_)
        return has_name(key, hash);
    return !key_->taken && key_->hash == hash && equal_folded(key_->text, key);
}

Entries::Entries(Arena* arena) noexcept : Node{arena} {}

Entries::~Entries() = default;

Entries::Lookup& Entries::lookup()
{
    if (!lookup_)
        lookup_ = std::make_unique<Lookup>();
    return *lookup_;
}

Entry* Entries::at(std::size_t position)
{
    if (position >= count_)
        return nullptr;
    if (count_ <= longest_without_index) {
        Entry* entry = first_;
        for (; position > 0; --position)
            entry = entry->next_;
        return entry;
    }
    std::vector<Entry*>& positions = lookup().positions;
    while (positions.size() <= position) {
        Entry* const entry = positions.empty() ? first_ : positions.back()->next_;
        positions.push_back(entry);
    }
    return positions[position];
}

std::size_t Entries::position_of(const Entry& entry) const noexcept
{
    std::size_t position = known_position(entry);
    if (position != unknown)
        return position;
    const bool some = lookup_ && !lookup_->positions.empty();
    position = some ? lookup_->positions.size() : 0;
    for (const Entry* other = some ? lookup_->positions.back()->next_ : first_; other != &entry; other = other->next_)
        ++position;
    return position;
}

/// What is asked for next to its position, or removed, is mostly what was asked for by position last.
std::size_t Entries::known_position(const Entry& entry) const noexcept
{
    if (!lookup_)
        return unknown;
    const std::vector<Entry*>& positions = lookup_->positions;
    const auto found = std::find(positions.rbegin(), positions.rend(), &entry);
    return found == positions.rend() ? unknown : static_cast<std::size_t>(positions.rend() - found) - 1;
}

Entry* Entries::search_key(std::wstring_view key, std::uint32_t hash) const noexcept
{
    const auto is_it = [&](const Entry& entry) { return entry.has_key(key, hash); };
    if (has_index_)
        return lookup_->keys.find(table_hash(key), is_it);
    Entry* entry = first_;
    while (entry && !is_it(*entry))
        entry = entry->next_;
    return entry;
}

Entry* Entries::search_name(std::wstring_view name, std::uint32_t hash) const noexcept
{
    const auto is_it = [&](const Entry& entry) { return entry.has_name(name, hash); };
    if (has_index_)
        return (renamed_ ? lookup_->names : lookup_->keys).find(table_hash(name), is_it);
    Entry* entry = first_;
    while (entry && !is_it(*entry))
        entry = entry->next_;
    return entry;
}

void Entries::take_out(Entry& entry) noexcept
{
    if (has_index_) {
        if (!entry.lost_key())
            lookup_->keys.erase(table_hash(entry.key()), &entry);
        if (renamed_)
            erase_name(entry);
    }
    if (const std::size_t position = known_position(entry); position != unknown)
        lookup_->positions.resize(position);

    (entry.previous_ ? entry.previous_->next_ : first_) = entry.next_;
    (entry.next_ ? entry.next_->previous_ : last_) = entry.previous_;
    entry.next_ = entry.previous_ = nullptr;
    entry.list_ = nullptr;
    --count_;
    if (entry.lost_key())
        --keys_taken_;
    else
        give_back_key(entry.key(), entry.key_hash());
}

void Entries::give_up(Entry*& alone) noexcept
{
    for (Entry* entry = std::exchange(first_, nullptr); entry;) {
        Entry* const next = entry->next_;
        __builtin_prefetch(reinterpret_cast<const char*>(entry) + 1024);
        entry->next_ = nullptr;
        entry->previous_ = nullptr;
        entry->list_ = nullptr;
        if (entry->let_go())
            entry->next_ = std::exchange(alone, entry);
        entry = next;
    }
    last_ = nullptr;
    count_ = keys_taken_ = 0;
    seen_ = {};
    has_index_ = renamed_ = false;
    lookup_.reset();
}

void Entries::reserve_in_index()
{
    if (!has_index_) {
        index_keys();
        if (renamed_)
            index_names();
        has_index_ = true;
    }
    lookup_->keys.reserve(count_ + std::size_t{1});
    if (renamed_)
        lookup_->names.reserve(count_ + std::size_t{1});
}

void Entries::index_keys()
{
    FlatIndex<Entry> keys;
    keys.reserve(count_);
    for (Entry* entry = first_; entry; entry = entry->next_)
        if (!entry->lost_key())
            keys.insert(table_hash(entry->key()), entry);
    lookup().keys = std::move(keys);
}

void Entries::index_names()
{
    FlatIndex<Entry> names;
    names.reserve(count_);
    lookup_->names = std::move(names);
    lookup_->unindexed_names = 0;
    for (Entry* entry = last_; entry; entry = entry->previous_)
        insert_name(*entry);
}

/// Puts in a new entry.
void Entries::index(Entry& entry) noexcept
{
    lookup_->keys.insert(table_hash(entry.name_), &entry);
    if (renamed_)
        insert_name(entry);
}

void Entries::insert_name(Entry& entry) noexcept
{
    const std::uint32_t hash = table_hash(entry.name_);
    Entry* const other = lookup_->names.find(hash, [&](const Entry& other) { return other.has_name(entry.name_, entry.hash_); });
    if (!other)
        return lookup_->names.insert(hash, &entry);
    ++lookup_->unindexed_names;
    const Entry* behind = entry.next_;
    while (behind && behind != other)
        behind = behind->next_;
    if (behind)
        lookup_->names.replace(hash, other, &entry);
}

/// Before the entry leaves the list or gets another name: the next one of its name takes its place.
void Entries::erase_name(Entry& entry) noexcept
{
    const auto is_namesake = [&](const Entry& other) { return other.has_name(entry.name_, entry.hash_); };
    const std::uint32_t hash = table_hash(entry.name_);
    if (lookup_->names.find(hash, is_namesake) != &entry) {
        --lookup_->unindexed_names;
        return;
    }
    lookup_->names.erase(hash, &entry);
    if (lookup_->unindexed_names == 0)
        return;
    Entry* namesake = entry.next_;
    while (namesake && !is_namesake(*namesake))
        namesake = namesake->next_;
    if (!namesake)
        return;
    lookup_->names.insert(hash, namesake);
    --lookup_->unindexed_names;
}

/// For a new entry, whose key is its name: only one that was renamed can have it.
void Entries::take_key(const Entry& taker) noexcept
{
    Entry* const former = find_key(taker.name_, taker.hash_);
    if (!former)
        return;
    if (has_index_)
        lookup_->keys.erase(table_hash(taker.name_), former);
    former->key_->taken = true;
    ++keys_taken_;
}

void Entries::give_back_key(std::wstring_view key, std::uint32_t hash) noexcept
{
    if (keys_taken_ == 0)
        return;
    Entry* former = last_;
    while (former && !(former->lost_key() && former->key_hash() == hash && equal_folded(former->key(), key)))
        former = former->previous_;
    if (!former)
        return;
    former->key_->taken = false;
    --keys_taken_;
    if (has_index_)
        lookup_->keys.insert(table_hash(key), former);
}

void Entries::rename(Entry& entry, StoredText&& name, std::uint32_t hash)
{
    auto key = entry.key_ ? nullptr : std::make_unique<Entry::Key>();
    if (has_index_ && !renamed_)
        index_names();
    renamed_ = true;

    if (has_index_)
        erase_name(entry);
    if (key) {
        key->text = std::move(entry.name_);
        key->hash = entry.hash_;
        entry.key_ = std::move(key);
    }
    entry.name_ = std::move(name);
    entry.hash_ = hash;
    set_seen(hash);
    if (has_index_)
        insert_name(entry);
}

} // namespace ini
