#pragma once

#include "automation/collection.h"
#include "ini/face.h"

namespace ini {

/// What qvIniParameters and qvIniSections have in common: `Derived` with the interface `Interface` stands for a list of
/// `Item`, for which objects of `ItemClass` with the interface `ItemInterface` stand.
template <class Derived, class Interface, class Item, class ItemClass, class ItemInterface>
class ListObject : public automation::Object<Derived, Interface>, private automation::Sequence {
public:
    explicit ListObject(NamedList<Item>& list) : list_{static_cast<Derived&>(*this), list} {}
    Held<NamedList<Item>> node() const noexcept { return list_.node(); }

    HRESULT STDMETHODCALLTYPE Add(BSTR name, ItemInterface** result) noexcept final
    {
        return automation::answer(result, [&] { return object_for<ItemClass>(list_->add(automation::view(name))); });
    }
    HRESULT STDMETHODCALLTYPE Exists(BSTR name, VARIANT_BOOL* result) noexcept final
    {
        return automation::answer(result, [&] { return list_->find_name(automation::view(name)) != nullptr; });
    }
    HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, ItemInterface** result) noexcept final
    {
        return automation::answer(result, [&] {
            const auto key = automation::key_from(index);
            return object_for<ItemClass>(key ? list_->item(*key) : item_at(index));
        });
    }
    HRESULT STDMETHODCALLTYPE get_Count(long* result) noexcept final
    {
        return automation::answer(result, [&] { return static_cast<long>(list_->count()); });
    }
    HRESULT STDMETHODCALLTYPE Remove(VARIANT index) noexcept final
    {
        return automation::answer([&] {
            const auto key = automation::key_from(index);
            Item* const item = key ? list_->find_key(*key) : &item_at(index);
            if (!item)
                throw automation::Error{automation::Runtime::InvalidCall};
            if (!cursors_.empty())
                cursors_.removed(list_->position_of(*item));
            list_->remove(*item);
        });
    }
    HRESULT STDMETHODCALLTYPE NewEnum(IUnknown** result) noexcept final
    {
        return automation::answer(result, [&] { return automation::make_enumerator(*this->unknown(), *this); });
    }

private:
    Item& item_at(const VARIANT& index) { return *list_->at(automation::position_from(index, list_->count())); }

    std::size_t count() const noexcept override { return list_->count(); }
    automation::Variant item(std::size_t position) override
    {
        return automation::Variant{automation::Ref<IDispatch>{object_for<ItemClass>(*list_->at(position))}};
    }
    automation::Cursors& cursors() noexcept override { return cursors_; }

    Face<Derived, NamedList<Item>> list_;
    automation::Cursors cursors_; ///< items come in at the end only, so that removals are all they must hear of
};

} // namespace ini
