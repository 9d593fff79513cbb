#pragma once

#include "automation/case_folding.h"
#include "ini/node.h"
#include "ini/stored_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace ini {

class Entries;

/// An item of a list, with a name that can change and a key, which is the name that it came in with.
class Entry : public Node {
public:
    std::wstring_view name() const noexcept { return name_; }
    /// Changes the name; the key stays.
    void rename(std::wstring_view name);
    /// Whether it was read from a file.
    bool found_in_file() const noexcept { return flag_ != 0; }
    void set_found_in_file(bool found) noexcept { flag_ = found; }

protected:
    Entry(Arena* arena, std::uint32_t hash) noexcept : Node{arena}, hash_{hash} {}

    Entry* next_ = nullptr; ///< in a list, or in a chain of entries to be destroyed

private:
    friend class Entries;

    /// The key of an entry whose name has changed.
    struct Key {
        StoredText text;
        std::uint32_t hash = 0;
        bool taken = false; ///< by an entry that was made under the same key since
    };

    bool has_key(std::wstring_view key, std::uint32_t hash) const noexcept;
    bool has_name(std::wstring_view name, std::uint32_t hash) const noexcept;
    std::wstring_view key() const noexcept { return key_ ? key_->text : name_; }
    std::uint32_t key_hash() const noexcept { return key_ ? key_->hash : hash_; }
    bool lost_key() const noexcept { return key_ && key_->taken; }

    Entry* previous_ = nullptr;
    Entries* list_ = nullptr;
    std::uint32_t hash_; ///< of the name
    StoredText name_;
    std::unique_ptr<Key> key_;
};

/// Entries in their order, which are found by key, by current name and by position, without regard to case.
/// Finding by key and by name takes the same time however many entries there are, renamed ones included.
///
/// Short lists are searched through, with a hash that is quick. Longer ones have an index of keys, and one of names as soon as
/// these differ, by a hash for which nobody can make up names that meet. When
/// several entries have come by the same name, that index holds the first one; what this costs, renaming and removing pay.
class Entries : public Node {
public:
    std::uint32_t count() const noexcept { return count_; }
    /// Where an entry of this list stands, counted from 0. Cheap near a position that was asked for.
    std::size_t position_of(const Entry& entry) const noexcept;

    /// Whether a walk down the tree is inside this list just now.
    mutable bool on_path = false;

protected:
    explicit Entries(Arena* arena) noexcept;
    ~Entries();

    Entry* at(std::size_t position);
    Entry* find_key(std::wstring_view key, std::uint32_t hash) const noexcept
    {
        return may_have(hash) ? search_key(key, hash) : nullptr;
    }
    Entry* find_name(std::wstring_view name, std::uint32_t hash) const noexcept
    {
        return may_have(hash) ? search_name(name, hash) : nullptr;
    }
    /// What can fail of adding an entry: it comes before the first change.
    void reserve_one()
    {
        if (has_index_ || count_ >= longest_without_index)
            reserve_in_index();
    }
    /// Puts in an entry under a name that no other has, and holds it.
    void append(Entry& entry, StoredText&& name) noexcept
    {
        entry.name_ = std::move(name);
        if (renamed_)
            take_key(entry);
        entry.hold();
        entry.list_ = this;
        entry.previous_ = last_;
        (last_ ? last_->next_ : first_) = &entry;
        last_ = &entry;
        ++count_;
        set_seen(entry.hash_);
        if (has_index_)
            index(entry);
    }
    /// Takes out an entry, which the caller then lets go.
    void take_out(Entry& entry) noexcept;
    /// Lets go of all entries; those that nobody else holds are put in front of the chain `alone`.
    void give_up(Entry*& alone) noexcept;

    Entry* first_ = nullptr;
    Entry* last_ = nullptr;

private:
    friend class Entry;
    struct Lookup;

    static constexpr std::uint32_t longest_without_index = 32;

    bool may_have(std::uint32_t hash) const noexcept { return has_index_ || seen_[hash / 32 % seen_.size()] >> hash % 32 & 1; }
    void set_seen(std::uint32_t hash) noexcept { seen_[hash / 32 % seen_.size()] |= std::uint32_t{1} << hash % 32; }
    Entry* search_key(std::wstring_view key, std::uint32_t hash) const noexcept;
    Entry* search_name(std::wstring_view name, std::uint32_t hash) const noexcept;
    std::size_t known_position(const Entry& entry) const noexcept;
    Lookup& lookup();
    void reserve_in_index();
    void index_keys();
    void index_names();
    void index(Entry& entry) noexcept;
    void insert_name(Entry& entry) noexcept;
    void erase_name(Entry& entry) noexcept;
    void take_key(const Entry& taker) noexcept;
    void give_back_key(std::wstring_view key, std::uint32_t hash) noexcept;
    void rename(Entry& entry, StoredText&& name, std::uint32_t hash);

    std::uint32_t count_ = 0;
    std::uint32_t keys_taken_ = 0; ///< entries that lost their key
    std::array<std::uint32_t, 4> seen_{}; ///< a bit for every key and name that came in, by its hash: most searches of short
                                          ///< lists for what is not there end here
    bool has_index_ = false;
    bool renamed_ = false; ///< whether names may differ from keys
    std::unique_ptr<Lookup> lookup_;
};

} // namespace ini
