#include "automation/collection.h"

#include <algorithm>

namespace automation {

long number_from(const VARIANT& index)
{
    return converted(index, VT_I4).lVal;
}

std::size_t position_from(long number, std::size_t count)
{
    if (number < 1 || static_cast<std::size_t>(number) > count)
        throw Error{Runtime::SubscriptOutOfRange};
    return static_cast<std::size_t>(number) - 1;
}

std::optional<std::wstring_view> key_from(const VARIANT& index) noexcept
{
    const VARIANT& value = followed(index);
    if (value.vt == VT_BSTR)
        return view(value.bstrVal);
    if (value.vt == (VT_BSTR | VT_BYREF) && value.pbstrVal)
        return view(*value.pbstrVal);
    return std::nullopt;
}

void Collection::Add(const VARIANT& Item, const VARIANT& Key, const VARIANT& Before, const VARIANT& After)
{
    if (!is_missing(Before) && !is_missing(After))
        throw Error{Runtime::InvalidCall};
    const bool keyed = !is_missing(Key);
    const std::optional<std::wstring_view> key = keyed ? key_from(Key) : std::nullopt;
    if (keyed && !key)
        throw Error{Runtime::TypeMismatch};
    // Owned before an object is asked for the number that it stands for.
    Variant item{followed(Item)};
    const std::wstring own_key{key.value_or(std::wstring_view{})};
    const std::size_t position = !is_missing(Before) ? position_of(Before)
                               : !is_missing(After)  ? position_of(After) + 1
                                                     : entries_.size();
    insert(position, std::move(item), own_key);
}

Variant Collection::get_Item(const VARIANT& Index)
{
    if (const auto key = key_from(Index)) {
        const auto found = by_key_.find(*key);
        if (found == by_key_.end())
            throw Error{Runtime::InvalidCall};
        return found->second->value;
    }
    const long number = number_from(Index); // which may change the list
    return entries_[position_from(number, entries_.size())]->value;
}

void Collection::Remove(const VARIANT& Index)
{
    const std::size_t position = position_of(Index);
    // The value goes last: letting go of an object may run code that comes back here.
    const std::unique_ptr<Entry> removed = std::move(entries_[position]);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    if (!removed->key.empty())
        by_key_.erase(removed->key);
    cursors_.removed(position);
}

void Collection::add(Variant value, std::wstring_view key)
{
    insert(entries_.size(), std::move(value), key);
}

void Collection::insert(std::size_t position, Variant value, std::wstring_view key)
{
    if (!key.empty() && by_key_.contains(key))
        throw Error{Runtime::KeyExists};
    auto entry = std::make_unique<Entry>(Entry{std::move(value), std::wstring{key}});
    const Entry& inserted = *entry;
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(position), std::move(entry));
    if (!key.empty()) {
        try {
            by_key_.emplace(inserted.key, &inserted);
        } catch (...) {
            entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
            throw;
        }
    }
    cursors_.inserted(position);
}

std::size_t Collection::position_of(const VARIANT& index) const
{
    const auto key = key_from(index);
    if (!key) {
        const long number = number_from(index); // which may change the list
        return position_from(number, entries_.size());
    }
    const auto found = by_key_.find(*key);
    if (found == by_key_.end())
        throw Error{Runtime::InvalidCall};
    const auto place = std::ranges::find(entries_, found->second, [](const auto& entry) { return entry.get(); });
    return static_cast<std::size_t>(place - entries_.begin());
}

} // namespace automation
