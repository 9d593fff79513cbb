#pragma once

#include "automation/values.h"

#include <oaidl.h>

#include <initializer_list>

/// Calls on objects of the client, by member name as a script would. They raise the object's own error when it fails,
/// 91 when there is no object and 438 when it has no such member.
namespace automation {

/// The value of a property or of a function, with arguments in the order in which they are written.
Variant get(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments = {});

/// Calls a method.
void call(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments = {});

/// An item of a collection: what its member Item gives, or its default member when it has none of that name.
Variant item(IDispatch* collection, const Variant& key);

/// How many items a collection has.
long count(IDispatch* collection);

/// Removes its first item as often as it had items.
void remove_all(IDispatch* collection);

/// Sets a property to a value, or to an object as `Set` does; one with arguments in the order in which they are written.
void put(IDispatch* object, const wchar_t* member, const Variant& value);
void put(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments, const Variant& value);

/// The value that a member gave, converted in the user's locale. Raise 6, 13, and 94 for Null.
inline long to_long(const VARIANT& value)
{
    return converted(value, VT_I4).lVal;
}
inline double to_double(const VARIANT& value)
{
    return converted(value, VT_R8).dblVal;
}
inline bool to_bool(const VARIANT& value)
{
    return converted(value, VT_BOOL).boolVal != VARIANT_FALSE;
}

/// The object that a member gave: Nothing is one, too, which fails when it is used. Raises 13 for any other value.
Ref<IDispatch> object_in(const Variant& value);

/// Goes through a collection as `For Each` does, by its enumerator.
class Items {
public:
    explicit Items(IDispatch* collection);

    /// Goes on to the first or the next item; false when there is none.
    bool next(Variant& item);

private:
    Ref<IEnumVARIANT> enumerator_;
};

/// What an object stands for where a value is wanted: its default member. Raises 13 when it has none.
Variant default_value(IUnknown* object);

/// The same as a result code: DISP_E_TYPEMISMATCH. What `value` held is not let go.
HRESULT ask_default_value(IUnknown* object, VARIANT& value) noexcept;

} // namespace automation
