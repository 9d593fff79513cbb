#pragma once

#include "automation/case_folding.h"

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// What the contract says of the library's interfaces and classes, as constant tables that the build writes from it. Calls
/// by name and registration read nothing else, so that they work in every code page and from the first moment on.
namespace automation {

/// A parameter of a member.
struct Parameter {
    enum Flags : std::uint8_t {
        ByReference = 1,
        Changes = 2,   ///< by reference, and what it becomes goes back to the caller
        Optional = 4,
        AnyNumber = 8, ///< the last one of a member that takes any number of arguments
    };

    std::wstring_view name;
    VARTYPE type; ///< with VT_ARRAY for arrays; an enumeration is VT_I4, an object VT_DISPATCH or VT_UNKNOWN
    std::uint8_t flags;
    const GUID* identity; ///< the interface of an object, or the record; null where any object will do
    std::int64_t number_if_omitted;
    const wchar_t* text_if_omitted;

    constexpr bool by_reference() const noexcept { return flags & ByReference; }
    constexpr bool changes() const noexcept { return flags & Changes; }
    constexpr bool optional() const noexcept { return flags & Optional; }
    constexpr bool any_number() const noexcept { return flags & AnyNumber; }

    /// What an omitted argument stands for: its default, the marker for "missing", or zero, nothing, an empty text. It
    /// belongs to the table.
    VARIANT value_if_omitted() const noexcept;
};

/// One function of an interface.
struct Function {
    std::uint16_t slot; ///< its place in the interface's table of functions
    VARTYPE result;     ///< VT_EMPTY when it gives nothing
    std::span<const Parameter> parameters;
    bool runs_client_code = false; ///< while it needs its by-reference arguments
};

/// What can be done with a member.
struct Member {
    DISPID id;
    std::wstring_view name;
    const Function *method, *get, *put, *put_reference; ///< null for what can't be done

    /// The identifier of a parameter of this name, in any case: its place. DISPID_UNKNOWN if there is none.
    DISPID parameter(std::wstring_view name) const noexcept;
};

/// A dual interface.
struct Interface {
    const IID& id;
    std::wstring_view name;
    std::span<const Member> members;
    std::span<const std::uint8_t> by_id;   ///< see MemberIndex
    std::span<const std::uint8_t> by_name;
    std::span<const IID> former; ///< under which earlier releases knew it

    /// The member of this name, in any case; null if there is none.
    const Member* find(std::wstring_view name) const noexcept;
    const Member* find(DISPID id) const noexcept;
    bool was(REFIID iid) const noexcept { return std::ranges::find(former, iid) != former.end(); }
};

/// Where the table of a dual interface is: a constant `description`, which the build writes.
template <class Face>
struct Contracted;

/// A class that clients know.
struct Class {
    CLSID id;
    std::wstring_view name;
    bool creatable;
};

/// A library as clients find it registered.
struct Library {
    GUID id;
    std::wstring_view name;
    WORD major, minor;
    LCID locale;
    std::span<const Class> classes;
    std::span<const Interface* const> interfaces;
    std::span<const IID> events; ///< the interfaces of events
};

/// The place of no member in an index, and the identifier with which an index begins: of those below 0 there are few.
constexpr std::uint8_t no_member = 0xFF;
constexpr DISPID lowest_id = -8;

/// The places of members by identifier and by name.
template <std::size_t count, DISPID highest_id>
class MemberIndex {
public:
    consteval explicit MemberIndex(const Member (&members)[count])
    {
        by_id_.fill(no_member);
        by_name_.fill(no_member);
        for (std::uint8_t place = 0; place < count; ++place) {
            by_id_.at(static_cast<std::size_t>(members[place].id - lowest_id)) = place;
            std::size_t slot = hash_folded(members[place].name) % by_name_.size();
            while (by_name_[slot] != no_member)
                slot = (slot + 1) % by_name_.size();
            by_name_[slot] = place;
        }
    }

    /// At an identifier less the lowest one.
    constexpr std::span<const std::uint8_t> by_id() const noexcept { return by_id_; }
    /// A hash table of the names in any case, at most half full; its size is a power of two.
    constexpr std::span<const std::uint8_t> by_name() const noexcept { return by_name_; }

private:
    static_assert(count < no_member);
    std::array<std::uint8_t, highest_id - lowest_id + 1> by_id_{};
    std::array<std::uint8_t, std::bit_ceil(count * 2 + 1)> by_name_{};
};

/// The bits of a number as a parameter keeps them.
constexpr std::int64_t bits_of(double number) noexcept { return std::bit_cast<std::int64_t>(number); }
constexpr std::int64_t bits_of(float number) noexcept { return std::bit_cast<std::int32_t>(number); }

/// A BSTR that is there for good. It may be lent, never given.
template <std::size_t size>
struct ConstantText {
    std::uint32_t bytes = (size - 1) * sizeof(wchar_t);
    wchar_t characters[size];

    consteval ConstantText(const wchar_t (&text)[size]) { std::ranges::copy(text, characters); }
};
template <ConstantText text>
constexpr const wchar_t* constant_text() noexcept
{
    return text.characters;
}

} // namespace automation
