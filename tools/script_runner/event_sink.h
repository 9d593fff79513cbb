#pragma once

#include <windows.h>

#include <ocidl.h>

#include <map>
#include <string>

/// Hands the events of an object to the procedures of a script that are named for them: a prefix, then the event's name.
class EventSink final : public IDispatch {
public:
    /// Connects a new sink with the object. Fails when the object has no events.
    static HRESULT connect(IUnknown& object, IDispatch& script, const std::wstring& prefix);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                                     UINT*) override;

private:
    EventSink(IDispatch& script, std::wstring prefix) : script_{script}, prefix_{std::move(prefix)} {}

    IDispatch& script_; ///< the engine's; it outlives the objects that the script has
    const std::wstring prefix_;
    IID events_{};
    std::map<DISPID, std::wstring> names_;
    ULONG references_ = 1;
};
