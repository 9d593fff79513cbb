#pragma once

#include "automation/case_folding.h"
#include "automation/enumerator.h"
#include "automation/object.h"

#include <collection_contract.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace automation {
class Collection;
}
__CRT_UUID_DECL(automation::Collection, 0x0f6b5c1d, 0x7c55, 0x4e6a, 0x9a, 0x1e, 0x61, 0x9d, 0x33, 0x52, 0x0b, 0x84)

namespace automation {

/// An ordered list of values, counted from 1, some with a key that is found in any case. A missing key raises 5, a
/// position outside the list 9, a key that is there already 457.
class Collection final : public Object<Collection, faces::Collection>, private Sequence {
public:
    void Add(const VARIANT& Item, const VARIANT& Key, const VARIANT& Before, const VARIANT& After);
    Variant get_Item(const VARIANT& Index);
    void Remove(const VARIANT& Index);
    long get_Count() { return static_cast<long>(entries_.size()); }
    Ref<IUnknown> get_NewEnum() { return make_enumerator(*unknown(), *this); }

    /// Adds a value at the end, for the library's own use.
    void add(Variant value, std::wstring_view key = {});

    /// Calls `use` with each value in order, as an enumerator would give it. It may change the list, but must keep it alive.
    template <class Use>
    void for_each(Use&& use)
    {
        Cursor cursor{cursors_};
        while (cursor.next < entries_.size()) {
            const Variant value = entries_[cursor.next++]->value;
            use(value);
        }
    }

private:
    struct Entry {
        Variant value;
        std::wstring key; ///< empty for none
    };

    void insert(std::size_t position, Variant value, std::wstring_view key);
    std::size_t position_of(const VARIANT& index) const;

    std::size_t count() const noexcept override { return entries_.size(); }
    Variant item(std::size_t position) override { return entries_[position]->value; }
    Cursors& cursors() noexcept override { return cursors_; }

    std::vector<std::unique_ptr<Entry>> entries_;
    std::unordered_map<std::wstring_view, const Entry*, FoldedHash, FoldedEqual> by_key_;
    Cursors cursors_;
};

/// The number that a client's index is. An object's own code gives it, and may change any list. Raises 13 for no number.
long number_from(const VARIANT& index);

/// The position from 0 that a number from 1 names in a list of `count` items. Raises 9 outside of it.
std::size_t position_from(long number, std::size_t count);

/// The key that an index is; none where it is a position.
std::optional<std::wstring_view> key_from(const VARIANT& index) noexcept;

} // namespace automation
