#pragma once

#include "automation/collection.h"
#include "ini/node_hold.h"

namespace ini {

/// What qvIniParameters and qvIniSections have in common: `Derived` with the face `DerivedFace` stands for a list of `Item`,
/// for which objects of `ItemClass` stand.
template <class Derived, template <class> class DerivedFace, class Item, class ItemClass>
class ListObject : public automation::Object<Derived, DerivedFace>, private automation::Sequence {
public:
    explicit ListObject(NamedList<Item>& list) : list_{static_cast<Derived&>(*this), list} {}
    Held<NamedList<Item>> node() const noexcept { return list_.node(); }

    automation::Ref<ItemClass> Add(std::wstring_view name) { return object_for<ItemClass>(list_->add(name)); }
    bool Exists(std::wstring_view name) { return list_->find_name(name) != nullptr; }
    automation::Ref<ItemClass> get_Item(const VARIANT& index)
    {
        const auto key = automation::key_from(index);
        return object_for<ItemClass>(key ? list_->item(*key) : item_at(index));
    }
    long get_Count() { return static_cast<long>(list_->count()); }
    void Remove(const VARIANT& index)
    {
        const auto key = automation::key_from(index);
        Item* const item = key ? list_->find_key(*key) : &item_at(index);
        if (!item)
            throw automation::Error{automation::Runtime::InvalidCall};
        if (!cursors_.empty())
            cursors_.removed(list_->position_of(*item));
        list_->remove(*item);
    }
    automation::Ref<IUnknown> NewEnum() { return automation::make_enumerator(*this->unknown(), *this); }

private:
    Item& item_at(const VARIANT& index)
    {
        const long number = automation::number_from(index); // whose object's code may change the list
        return *list_->at(automation::position_from(number, list_->count()));
    }

    std::size_t count() const noexcept override { return list_->count(); }
    automation::Variant item(std::size_t position) override
    {
        return automation::Variant{automation::Ref<IDispatch>{object_for<ItemClass>(*list_->at(position))}};
    }
    automation::Cursors& cursors() noexcept override { return cursors_; }

    NodeHold<Derived, NamedList<Item>> list_;
    automation::Cursors cursors_; ///< items come in at the end only, so that removals are all they must hear of
};

} // namespace ini
