#pragma once

#include "random_calls/values.h"

#include <array>

/// An object of the client that has a member of nearly every name, and gives anything.
class AnyObject final : public IDispatch {
public:
    /// What the client does in the middle of a call: it may change and release what is its own.
    class Client {
    public:
        virtual void interrupted() = 0;

    protected:
        ~Client() = default;
    };

    AnyObject(Values& values, Client& client, unsigned number) : values_{values}, client_{client}, number_{number} {}
    AnyObject(const AnyObject&) = delete;
    AnyObject& operator=(const AnyObject&) = delete;

    ULONG references() const { return references_; }
    /// How many more calls it takes before it fails all of them, so that nobody asks it for ever.
    static inline int patience = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = known ? this : nullptr;
        references_ += known;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override { return *info = nullptr, E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                     UINT*) override;

private:
    /// Gives numbers, and hardly ever fails: calls that ask for much get far with it.
    bool willing() const { return number_ % 2 == 0; }

    Values& values_;
    Client& client_;
    const unsigned number_;
    ULONG references_ = 1;
};
