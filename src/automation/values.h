#pragma once

#include <windows.h>

#include <oleauto.h>

#include <concepts>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

/// Owners of the platform's values, each of exactly one thing.
namespace automation {

/// The characters of a text that a client gave; a null text is an empty one.
inline std::wstring_view view(BSTR text) noexcept
{
    return text ? std::wstring_view{text, SysStringLen(text)} : std::wstring_view{};
}

/// Owns a BSTR.
class Text {
public:
    Text() noexcept = default;
    explicit Text(std::wstring_view characters) : text_{SysAllocStringLen(characters.data(), length(characters))}
    {
        if (!text_)
            throw std::bad_alloc{};
    }
    static Text adopt(BSTR text) noexcept
    {
        Text owner;
        owner.text_ = text;
        return owner;
    }
    Text(Text&& other) noexcept : text_{std::exchange(other.text_, nullptr)} {}
    Text& operator=(Text&& other) noexcept
    {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Text() { SysFreeString(text_); }

    BSTR get() const noexcept { return text_; }
    BSTR release() noexcept { return std::exchange(text_, nullptr); }
    /// Where a client may put a text of its own in the place of this one, which it then frees.
    BSTR* storage() noexcept { return &text_; }
    operator std::wstring_view() const noexcept { return view(text_); }

private:
    static UINT length(std::wstring_view characters)
    {
        if (characters.size() > 0x3FFFFFFF)
            throw std::bad_alloc{};
        return static_cast<UINT>(characters.size());
    }

    BSTR text_ = nullptr;
};

/// Puts a text in place of the one in a client's variable.
inline void replace(BSTR& variable, std::wstring_view text)
{
    Text replacement{text};
    SysFreeString(std::exchange(variable, replacement.release()));
}

/// An object of this library that has an interface as a part of it.
template <class Object, class Interface>
concept HasFace = requires(Object& object) {
    { object.template face<Interface>() } -> std::same_as<Interface*>;
};

/// Owns a reference to an object.
template <class Interface>
class Ref {
public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}
    explicit Ref(Interface* object) noexcept : object_{object}
    {
        if (object_)
            object_->AddRef();
    }
    static Ref adopt(Interface* object) noexcept
    {
        Ref owner;
        owner.object_ = object;
        return owner;
    }
    Ref(const Ref& other) noexcept : Ref{other.object_} {}
    Ref(Ref&& other) noexcept : object_{std::exchange(other.object_, nullptr)} {}
    template <class Other>
        requires std::convertible_to<Other*, Interface*>
    Ref(Ref<Other> other) noexcept : object_{other.release()}
    {
    }
    template <HasFace<Interface> Object>
    Ref(Ref<Object> other) noexcept
    {
        if (Object* const object = other.release())
            object_ = object->template face<Interface>();
    }
    Ref& operator=(Ref other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref()
    {
        if (object_)
            object_->Release();
    }

    Interface* get() const noexcept { return object_; }
    Interface* operator->() const noexcept { return object_; }
    Interface& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    Interface* release() noexcept { return std::exchange(object_, nullptr); }
    /// Where a platform call puts a reference of its own; what was held is let go.
    Interface** put() noexcept
    {
        *this = nullptr;
        return &object_;
    }
    void** put_void() noexcept { return reinterpret_cast<void**>(put()); }

private:
    Interface* object_ = nullptr;
};

/// The object's interface `To`, or null when it has none or `object` is null.
template <class To>
Ref<To> query(IUnknown* object) noexcept
{
    Ref<To> found;
    if (object)
        object->QueryInterface(__uuidof(To), found.put_void());
    return found;
}

/// Whether a variant of this type owns something that must be let go: a text, an array, an object, a record.
constexpr bool owns_content(VARTYPE type) noexcept
{
    if (type & VT_BYREF)
        return false;
    return (type & VT_ARRAY) || type == VT_BSTR || type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_RECORD;
}

/// Owns the content of a VARIANT.
class Variant : public VARIANT {
public:
    Variant() noexcept { vt = VT_EMPTY; }
    explicit Variant(const VARIANT& other);
    explicit Variant(bool flag) noexcept : Variant{}
    {
        vt = VT_BOOL;
        boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit Variant(long number) noexcept : Variant{}
    {
        vt = VT_I4;
        lVal = number;
    }
    explicit Variant(double number) noexcept : Variant{}
    {
        vt = VT_R8;
        dblVal = number;
    }
    explicit Variant(std::wstring_view text) : Variant{}
    {
        bstrVal = Text{text}.release();
        vt = VT_BSTR;
    }
    explicit Variant(Ref<IDispatch> object) noexcept : Variant{}
    {
        vt = VT_DISPATCH;
        pdispVal = object.release();
    }
    Variant(const Variant& other) : Variant{static_cast<const VARIANT&>(other)} {}
    Variant(Variant&& other) noexcept : VARIANT{other} { static_cast<VARIANT&>(other).vt = VT_EMPTY; }
    Variant& operator=(Variant other) noexcept
    {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Variant()
    {
        if (owns_content(vt))
            VariantClear(this);
    }

    VARIANT release() noexcept
    {
        const VARIANT content = *this;
        vt = VT_EMPTY;
        return content;
    }
};

/// The value itself, behind by-reference variants. One that leads back to itself stays what it is: a reference to a variant.
inline const VARIANT& followed(const VARIANT& value) noexcept
{
    constexpr int deepest = 16; // deeper than any client goes, unless in a circle
    const VARIANT* inner = &value;
    for (int depth = 0; inner->vt == (VT_VARIANT | VT_BYREF) && inner->pvarVal && depth < deepest; ++depth)
        inner = inner->pvarVal;
    return *inner;
}

/// Whether a value is an object. Asking it for a value, or calling it, runs code of the client.
inline bool holds_object(const VARIANT& value) noexcept
{
    const auto type = static_cast<VARTYPE>(followed(value).vt & ~VT_BYREF);
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

/// How many bytes a value of a type takes where it is kept on its own, as an element of an array or behind a reference. An
/// array is the pointer to it. 0 for types without values of their own: VT_EMPTY, VT_NULL, VT_RECORD, what is no type.
constexpr std::size_t size_of_value(VARTYPE type) noexcept
{
    if (type & VT_ARRAY)
        return type & VT_BYREF ? 0 : sizeof(void*);
    switch (type) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return 8;
    case VT_DECIMAL:
    case VT_VARIANT:
        return 16;
    default:
        return 0;
    }
}

/// The automation conversion in the user's locale, truth values by their words, as a result code. `target` holds the
/// result, and nothing of `value` is changed.
HRESULT change_type(VARIANT& target, const VARIANT& value, VARTYPE type) noexcept;
/// Whether a value can be converted; `target` holds the result then. That memory ran out is no answer: raises 7.
bool converts(VARIANT& target, const VARIANT& value, VARTYPE type);

/// Whether an optional argument was left out.
bool is_missing(const VARIANT& value) noexcept;

/// The text form of a value in the user's locale. Raises 94 for Null, 13 for what has no text form.
Text to_text(const VARIANT& value);

/// The value converted in the user's locale. Raises what the conversion fails with: 6, 13, 94 for Null.
Variant converted(const VARIANT& value, VARTYPE type);

} // namespace automation
