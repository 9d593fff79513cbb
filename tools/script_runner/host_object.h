#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// An object that the runner gives to scripts: its members by name. It lives where it is declared, longer than any script.
class HostObject : public IDispatch {
public:
    /// What a member does with its arguments, which lie in reverse order, and what it gives.
    using Answer = std::function<HRESULT(const DISPPARAMS& arguments, VARIANT* result)>;
    /// A member without a name is the default one.
    using Members = std::vector<std::pair<std::wstring, Answer>>;

    explicit HostObject(Members members) : members_{std::move(members)} {}
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override
    {
        for (std::size_t place = 0; place < members_.size(); ++place)
            if (!members_[place].first.empty() && lstrcmpiW(members_[place].first.c_str(), names[0]) == 0) {
                ids[0] = static_cast<DISPID>(place + 1);
                return S_OK;
            }
        ids[0] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                                     UINT*) override
    {
        for (std::size_t place = 0; place < members_.size(); ++place)
            if (id == static_cast<DISPID>(place + 1) || (id == DISPID_VALUE && members_[place].first.empty()))
                return members_[place].second(*arguments, result);
        return DISP_E_MEMBERNOTFOUND;
    }

private:
    Members members_;
};
