#pragma once

#include "automation/values.h"

#include <atomic>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the type library in this module says of its classes and interfaces, read once in a process into the form that
/// calls need. Everything here stays as it is once made, so that all threads may read it.
namespace automation {

/// A parameter of a member, or what it gives.
struct Parameter {
    std::wstring name;
    VARTYPE type = VT_EMPTY; ///< with VT_ARRAY for arrays; an enumeration is VT_I4, an object VT_DISPATCH
    bool by_reference = false;
    bool changes = false;           ///< by reference, and what it becomes goes back to the caller
    bool optional = false;
    bool any_number = false;        ///< the last one of a member that takes any number of arguments
    std::optional<GUID> identity;   ///< the interface of an object, or the record; none where any object will do
    Variant value_if_omitted;
};

/// One function of an interface.
struct Function {
    std::size_t slot = 0; ///< its place in the interface's table of functions
    std::vector<Parameter> parameters;
    std::optional<Parameter> result;
    std::size_t required = 0; ///< how many of the parameters a call must give
};

/// What can be done with a member.
struct Member {
    DISPID id = DISPID_UNKNOWN;
    std::wstring name;
    std::unique_ptr<Function> method, get, put, put_reference;

    /// The identifier of a parameter of this name, in any case: its place. DISPID_UNKNOWN if there is none.
    DISPID parameter(std::wstring_view name) const noexcept;
};

/// A dual interface.
class Interface {
public:
    explicit Interface(ITypeInfo& info);

    /// The member of this name, in any case; null if there is none.
    const Member* find(std::wstring_view name) const noexcept;
    const Member* find(DISPID id) const noexcept;
    ITypeInfo& info() const noexcept { return *info_; }

private:
    void add(ITypeInfo& info, const FUNCDESC& description);
    void index();

    Ref<ITypeInfo> info_;
    std::vector<Member> members_;
    std::vector<const Member*> by_id_;   ///< at the place that belongs to the identifier
    std::vector<const Member*> by_name_; ///< a hash table of the folded names, at most half full
};

/// A class: what its objects show to a browser and to event sinks.
struct Class {
    CLSID id;
    std::wstring name;
    bool creatable;
    GUID events; ///< GUID_NULL when it has none
    Ref<ITypeInfo> info;
};

/// An identifier under which an earlier release knew an interface.
struct Alias {
    IID former;
    IID current;
    std::wstring name; ///< of the current interface
};

/// An interface, whose members are read when they are first asked for.
class DescribedOnUse {
public:
    DescribedOnUse(REFIID iid, ITypeInfo& info) noexcept : iid{iid}, info_{&info} {}
    ~DescribedOnUse() { delete description_.load(); }

    const Interface& description() const;

    const IID iid;

private:
    Ref<ITypeInfo> info_;
    mutable std::atomic<const Interface*> description_{nullptr};
};

class Contract {
public:
    /// The contract in this module. Raises what the platform fails with when it has none.
    static const Contract& here();
    /// Lets go of what was read; only while the module is unloaded.
    static void forget() noexcept;

    /// The members of a dual interface. Raises 5 for an identifier that is none.
    const Interface& interface_of(REFIID iid) const;
    const Class* class_of(REFCLSID id) const noexcept;
    const std::vector<Class>& classes() const noexcept { return classes_; }
    const std::vector<Alias>& aliases() const noexcept { return aliases_; }
    /// The interfaces that clients in other apartments call through the type library, those of events included.
    const std::vector<IID>& registered_interfaces() const noexcept { return registered_interfaces_; }
    /// The current identifier of an interface that `iid` was one of; null if it was none.
    const IID* current(REFIID iid) const noexcept;
    ITypeLib& library() const noexcept { return *library_; }

private:
    Contract();
    void add(ITypeInfo& info, const TYPEATTR& attributes);

    Ref<ITypeLib> library_;
    std::vector<Class> classes_;
    std::vector<Alias> aliases_;
    std::vector<IID> registered_interfaces_;
    std::deque<DescribedOnUse> interfaces_;
};

} // namespace automation
