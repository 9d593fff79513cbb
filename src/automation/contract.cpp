#include "automation/contract.h"

#include "automation/border.h"
#include "automation/case_folding.h"
#include "automation/module.h"

#include <algorithm>
#include <atomic>

namespace automation {
namespace {

/// Lets go of a description that a type information lent.
template <class Description, void (STDMETHODCALLTYPE ITypeInfo::*give_back)(Description*)>
class Lent {
public:
    explicit Lent(ITypeInfo& info) noexcept : info_{info} {}
    ~Lent()
    {
        if (description_)
            (info_.*give_back)(description_);
    }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;

    Description** put() noexcept { return &description_; }
    const Description* operator->() const noexcept { return description_; }
    const Description& operator*() const noexcept { return *description_; }

private:
    ITypeInfo& info_;
    Description* description_ = nullptr;
};

struct LentAttributes : Lent<TYPEATTR, &ITypeInfo::ReleaseTypeAttr> {
    explicit LentAttributes(ITypeInfo& info) : Lent{info} { check(info.GetTypeAttr(put())); }
};

struct LentFunction : Lent<FUNCDESC, &ITypeInfo::ReleaseFuncDesc> {
    LentFunction(ITypeInfo& info, UINT index) : Lent{info} { check(info.GetFuncDesc(index, put())); }
};

Ref<ITypeInfo> referred(ITypeInfo& info, HREFTYPE reference)
{
    Ref<ITypeInfo> target;
    check(info.GetRefTypeInfo(reference, target.put()));
    return target;
}

/// The type that a parameter is declared with, pointers and names of types resolved.
void resolve(ITypeInfo& info, const TYPEDESC& description, Parameter& parameter)
{
    if (description.vt == VT_SAFEARRAY) {
        Parameter element;
        resolve(info, *description.lptdesc, element);
        parameter.type = static_cast<VARTYPE>(VT_ARRAY | element.type);
        parameter.identity = element.identity;
        return;
    }
    if (description.vt == VT_PTR) {
        resolve(info, *description.lptdesc, parameter);
        // A pointer to an interface is the object itself; one more makes it by reference.
        if (parameter.type == VT_USERDEFINED)
            parameter.type = VT_DISPATCH;
        else
            parameter.by_reference = true;
        return;
    }
    if (description.vt != VT_USERDEFINED) {
        parameter.type = description.vt == VT_INT || description.vt == VT_HRESULT ? static_cast<VARTYPE>(VT_I4) : description.vt;
        return;
    }
    const Ref<ITypeInfo> named = referred(info, description.hreftype);
    const LentAttributes attributes{*named};
    switch (attributes->typekind) {
    case TKIND_ENUM:
        parameter.type = VT_I4;
        break;
    case TKIND_ALIAS:
        resolve(*named, attributes->tdescAlias, parameter);
        break;
    case TKIND_RECORD:
        parameter.type = VT_RECORD;
        parameter.identity = attributes->guid;
        break;
    default: // an interface, of which only a pointer can be passed
        parameter.type = VT_USERDEFINED;
        if (attributes->guid != IID_IDispatch)
            parameter.identity = attributes->guid;
    }
}

Parameter parameter_of(ITypeInfo& info, const ELEMDESC& element, BSTR name)
{
    Parameter parameter;
    parameter.name = view(name);
    resolve(info, element.tdesc, parameter);
    const PARAMDESC& description = element.paramdesc;
    parameter.changes = parameter.by_reference && (description.wParamFlags & PARAMFLAG_FOUT);
    parameter.optional = (description.wParamFlags & PARAMFLAG_FOPT) != 0;
    if (description.wParamFlags & PARAMFLAG_FHASDEFAULT)
        parameter.value_if_omitted = converted(description.pparamdescex->varDefaultValue, parameter.type);
    else if (parameter.type == VT_VARIANT) {
        parameter.value_if_omitted.vt = VT_ERROR;
        parameter.value_if_omitted.scode = DISP_E_PARAMNOTFOUND;
    } else {
        parameter.value_if_omitted.llVal = 0; // an empty text, zero, nothing
        parameter.value_if_omitted.vt = parameter.type;
    }
    return parameter;
}

/// The texts of a function: its own name and those of its parameters.
std::vector<Text> names_of(ITypeInfo& info, const FUNCDESC& description)
{
    std::vector<BSTR> names(static_cast<std::size_t>(description.cParams) + 1);
    UINT count = 0;
    check(info.GetNames(description.memid, names.data(), static_cast<UINT>(names.size()), &count));
    std::vector<Text> owners;
    for (const BSTR name : names)
        owners.push_back(Text::adopt(name));
    return owners;
}

Ref<ITypeInfo> described_as_interface(ITypeInfo& info)
{
    HREFTYPE reference = 0;
    check(info.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    return referred(info, reference);
}

/// Where a member's identifier is kept: those below 0 are few and close to it.
constexpr DISPID lowest_id = -8;

std::atomic<const Contract*> read_contract{nullptr};

/// What `place` holds, made by the first thread that asks for it; where several do at once, the first result counts.
template <class Made, class Maker>
const Made& made_once(std::atomic<const Made*>& place, Maker&& make)
{
    if (const Made* made = place.load(std::memory_order_acquire))
        return *made;
    std::unique_ptr<const Made> fresh = make();
    const Made* winner = nullptr;
    if (place.compare_exchange_strong(winner, fresh.get()))
        winner = fresh.release();
    return *winner;
}

} // namespace

DISPID Member::parameter(std::wstring_view name) const noexcept
{
    for (const Function* function : {method.get(), get.get(), put.get(), put_reference.get()}) {
        if (!function)
            continue;
        const auto& parameters = function->parameters;
        const auto found = std::ranges::find_if(parameters, [&](const Parameter& p) { return equal_folded(p.name, name); });
        if (found != parameters.end())
            return static_cast<DISPID>(found - parameters.begin());
    }
    return DISPID_UNKNOWN;
}

Interface::Interface(ITypeInfo& info) : info_{&info}
{
    const Ref<ITypeInfo> functions = described_as_interface(info);
    const LentAttributes attributes{*functions};
    for (UINT i = 0; i < attributes->cFuncs; ++i)
        add(*functions, *LentFunction{*functions, i});
    index();
}

void Interface::add(ITypeInfo& info, const FUNCDESC& description)
{
    const std::vector<Text> names = names_of(info, description);
    auto function = std::make_unique<Function>();
    function->slot = static_cast<std::size_t>(description.oVft) / sizeof(void*);
    for (short i = 0; i < description.cParams; ++i) {
        const ELEMDESC& element = description.lprgelemdescParam[i];
        Parameter parameter = parameter_of(info, element, names[static_cast<std::size_t>(i) + 1].get());
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL)
            function->result = std::move(parameter);
        else
            function->parameters.push_back(std::move(parameter));
    }
    if (description.cParamsOpt == -1)
        function->parameters.back().any_number = true;
    function->required = static_cast<std::size_t>(
        std::ranges::count_if(function->parameters, [](const Parameter& p) { return !p.optional && !p.any_number; }));

    auto member = std::ranges::find(members_, description.memid, &Member::id);
    if (member == members_.end()) {
        members_.emplace_back();
        member = std::prev(members_.end());
        member->id = description.memid;
        member->name = names.front();
    }
    auto& place = description.invkind == INVOKE_PROPERTYGET      ? member->get
                  : description.invkind == INVOKE_PROPERTYPUT    ? member->put
                  : description.invkind == INVOKE_PROPERTYPUTREF ? member->put_reference
                                                                 : member->method;
    place = std::move(function);
}

void Interface::index()
{
    std::size_t slots = 4;
    while (slots < members_.size() * 2)
        slots *= 2;
    by_name_.assign(slots, nullptr);
    for (const Member& member : members_) {
        std::size_t slot = hash_folded(member.name) & (slots - 1);
        while (by_name_[slot])
            slot = (slot + 1) & (slots - 1);
        by_name_[slot] = &member;

        const auto place = static_cast<std::size_t>(member.id - lowest_id);
        if (place >= by_id_.size())
            by_id_.resize(place + 1);
        by_id_[place] = &member;
    }
}

const Member* Interface::find(std::wstring_view name) const noexcept
{
    const std::size_t mask = by_name_.size() - 1;
    std::size_t slot = hash_folded(name) & mask;
    for (; by_name_[slot]; slot = (slot + 1) & mask)
        if (equal_folded(by_name_[slot]->name, name))
            return by_name_[slot];
    return nullptr;
}

const Member* Interface::find(DISPID id) const noexcept
{
    const auto place = static_cast<std::size_t>(id - lowest_id);
    return place < by_id_.size() ? by_id_[place] : nullptr;
}

const Interface& DescribedOnUse::description() const
{
    return made_once(description_, [&] { return std::make_unique<const Interface>(*info_); });
}

Contract::Contract()
{
    check(LoadTypeLibEx(module::path().c_str(), REGKIND_NONE, library_.put()));
    const UINT count = library_->GetTypeInfoCount();
    for (UINT i = 0; i < count; ++i) {
        Ref<ITypeInfo> info;
        check(library_->GetTypeInfo(i, info.put()));
        add(*info, *LentAttributes{*info});
    }
}

void Contract::add(ITypeInfo& info, const TYPEATTR& attributes)
{
    BSTR text = nullptr;
    check(info.GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr));
    const Text name = Text::adopt(text);

    if (attributes.typekind == TKIND_DISPATCH)
        registered_interfaces_.push_back(attributes.guid);
    if (attributes.typekind == TKIND_DISPATCH && (attributes.wTypeFlags & TYPEFLAG_FDUAL)) {
        interfaces_.emplace_back(attributes.guid, info);
    } else if (attributes.typekind == TKIND_ALIAS && attributes.guid != GUID_NULL
               && attributes.tdescAlias.vt == VT_USERDEFINED) {
        const Ref<ITypeInfo> target = referred(info, attributes.tdescAlias.hreftype);
        check(target->GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr));
        aliases_.push_back({attributes.guid, LentAttributes{*target}->guid, std::wstring{Text::adopt(text)}});
    } else if (attributes.typekind == TKIND_COCLASS) {
        Class entry{attributes.guid, std::wstring{name}, (attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0, GUID_NULL,
                    Ref{&info}};
        for (UINT i = 0; i < attributes.cImplTypes; ++i) {
            INT flags = 0;
            HREFTYPE reference = 0;
            check(info.GetImplTypeFlags(i, &flags));
            check(info.GetRefTypeOfImplType(i, &reference));
            if ((flags & IMPLTYPEFLAG_FSOURCE) && (flags & IMPLTYPEFLAG_FDEFAULT))
                entry.events = LentAttributes{*referred(info, reference)}->guid;
        }
        classes_.push_back(std::move(entry));
    }
}

const Contract& Contract::here()
{
    return made_once(read_contract, [] { return std::unique_ptr<const Contract>{new Contract}; });
}

void Contract::forget() noexcept
{
    delete read_contract.exchange(nullptr);
}

const Interface& Contract::interface_of(REFIID iid) const
{
    for (const DescribedOnUse& entry : interfaces_)
        if (entry.iid == iid)
            return entry.description();
    throw Error{Runtime::InvalidCall};
}

const Class* Contract::class_of(REFCLSID id) const noexcept
{
    const auto found = std::ranges::find_if(classes_, [&](const Class& entry) { return entry.id == id; });
    return found == classes_.end() ? nullptr : &*found;
}

const IID* Contract::current(REFIID iid) const noexcept
{
    const auto found = std::ranges::find_if(aliases_, [&](const Alias& alias) { return alias.former == iid; });
    return found == aliases_.end() ? nullptr : &found->current;
}

} // namespace automation
