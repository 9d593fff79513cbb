#include "event_sink.h"

#include <olectl.h>

#include <utility>
#include <vector>

namespace {

/// The names of the events by their identifiers.
std::map<DISPID, std::wstring> names_of(ITypeInfo& events)
{
    std::map<DISPID, std::wstring> names;
    FUNCDESC* function = nullptr;
    for (UINT place = 0; SUCCEEDED(events.GetFuncDesc(place, &function)); ++place) {
        BSTR name = nullptr;
        UINT count = 0;
        if (SUCCEEDED(events.GetNames(function->memid, &name, 1, &count)) && count == 1)
            names[function->memid] = name;
        SysFreeString(name);
        events.ReleaseFuncDesc(function);
    }
    return names;
}

/// The arguments of an event for a script. Wine's engines hand by-reference arguments back only through variants.
class ScriptArguments {
public:
    explicit ScriptArguments(DISPPARAMS& given) : given_{given}, values_(given.cArgs), passed_(given.cArgs)
    {
        for (UINT place = 0; place < given_.cArgs; ++place) {
            passed_[place] = given_.rgvarg[place];
            VariantInit(&values_[place]);
            if (!is_reference(place))
                continue;
            VariantCopyInd(&values_[place], &given_.rgvarg[place]);
            passed_[place].vt = VT_BYREF | VT_VARIANT;
            passed_[place].pvarVal = &values_[place];
        }
    }
    ScriptArguments(const ScriptArguments&) = delete;
    ScriptArguments& operator=(const ScriptArguments&) = delete;
    ~ScriptArguments()
    {
        for (VARIANT& value : values_)
            VariantClear(&value);
    }

    DISPPARAMS parameters() { return {passed_.data(), nullptr, given_.cArgs, 0}; }

    void give_back()
    {
        for (UINT place = 0; place < given_.cArgs; ++place) {
            VARIANT& target = given_.rgvarg[place];
            VARIANT& value = values_[place];
            if (!is_reference(place) || FAILED(VariantChangeType(&value, &value, 0, static_cast<VARTYPE>(target.vt & ~VT_BYREF))))
                continue;
            if (value.vt == VT_BSTR)
                std::swap(*target.pbstrVal, value.bstrVal);
            else if (value.vt == VT_BOOL)
                *target.pboolVal = value.boolVal;
            else if (value.vt == VT_I4)
                *target.plVal = value.lVal;
        }
    }

private:
    bool is_reference(UINT place) const
    {
        const VARTYPE type = given_.rgvarg[place].vt;
        return type == (VT_BYREF | VT_BSTR) || type == (VT_BYREF | VT_BOOL) || type == (VT_BYREF | VT_I4);
    }

    DISPPARAMS& given_;
    std::vector<VARIANT> values_, passed_;
};

/// The object's own interface of events, from its type library.
ITypeInfo* events_of(IUnknown& object, IID& iid)
{
    IProvideClassInfo2* information = nullptr;
    if (FAILED(object.QueryInterface(IID_PPV_ARGS(&information))))
        return nullptr;
    ITypeInfo *own_class = nullptr, *events = nullptr;
    ITypeLib* library = nullptr;
    UINT place = 0;
    if (SUCCEEDED(information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &iid)) && SUCCEEDED(information->GetClassInfo(&own_class))) {
        if (SUCCEEDED(own_class->GetContainingTypeLib(&library, &place))) {
            library->GetTypeInfoOfGuid(iid, &events);
            library->Release();
        }
        own_class->Release();
    }
    information->Release();
    return events;
}

} // namespace

HRESULT EventSink::connect(IUnknown& object, IDispatch& script, const std::wstring& prefix)
{
    auto* const sink = new EventSink{script, prefix};
    HRESULT outcome = CONNECT_E_NOCONNECTION;
    if (ITypeInfo* const events = events_of(object, sink->events_)) {
        sink->names_ = names_of(*events);
        events->Release();
        IConnectionPointContainer* points = nullptr;
        IConnectionPoint* point = nullptr;
        DWORD cookie = 0;
        outcome = object.QueryInterface(IID_PPV_ARGS(&points));
        if (SUCCEEDED(outcome)) {
            outcome = points->FindConnectionPoint(sink->events_, &point);
            points->Release();
        }
        if (SUCCEEDED(outcome)) {
            outcome = point->Advise(sink, &cookie);
            point->Release();
        }
    }
    sink->Release();
    return outcome;
}

HRESULT EventSink::QueryInterface(REFIID iid, void** object)
{
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_;
    *object = known ? this : nullptr;
    if (known)
        AddRef();
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT EventSink::Invoke(DISPID event, REFIID, LCID locale, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT* bad)
{
    const auto found = names_.find(event);
    if (found == names_.end())
        return DISP_E_MEMBERNOTFOUND;
    std::wstring name = prefix_ + found->second;
    LPOLESTR names[]{name.data()};
    DISPID id = 0;
    if (FAILED(script_.GetIDsOfNames(IID_NULL, names, 1, locale, &id)))
        return S_OK; // the script does not listen to this one
    ScriptArguments passed{*arguments};
    DISPPARAMS parameters = passed.parameters();
    const HRESULT outcome = script_.Invoke(id, IID_NULL, locale, DISPATCH_METHOD, &parameters, result, exception, bad);
    passed.give_back();
    return outcome;
}
