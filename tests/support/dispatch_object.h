#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <oaidl.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// An object of the client, whose members are called by name. It lives where it is declared, and tells when somebody still
/// holds it then.
class DispatchObject : public IDispatch {
public:
    using Answer = std::function<HRESULT(DISPID member, const DISPPARAMS& arguments, VARIANT* result)>;

    /// The members have the identifiers 1, 2, ...; 0 is the default member.
    DispatchObject(std::vector<std::wstring> members, Answer answer) : members_{std::move(members)}, answer_{std::move(answer)} {}
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;
    ~DispatchObject() { EXPECT_EQ(references_, 1) << "somebody still holds it"; }

    long references() const { return references_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = known ? this : nullptr;
        references_ += known;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references_); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override
    {
        const auto found = std::ranges::find(members_, *names);
        *id = found == members_.end() ? DISPID_UNKNOWN : static_cast<DISPID>(found - members_.begin() + 1);
        return *id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                                     UINT*) override
    {
        return answer_(id, *arguments, result);
    }

private:
    std::vector<std::wstring> members_;
    Answer answer_;
    long references_ = 1;
};
