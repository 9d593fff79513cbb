// What a program in C++ needs to use objects by the names of their members, as a script does, and to hear their events.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

/// A value for a call, or its result. It owns what it holds.
class Value : public VARIANT {
public:
    Value() { VariantInit(this); }
    Value(long number) : Value{} { vt = VT_I4; lVal = number; }
    Value(bool flag) : Value{} { vt = VT_BOOL; boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE; }
    Value(const wchar_t* text) : Value{} { vt = VT_BSTR; bstrVal = SysAllocString(text); }
    Value(IDispatch* object) : Value{} { vt = VT_DISPATCH; pdispVal = object; if (object) object->AddRef(); }
    /// Takes the array over.
    Value(SAFEARRAY* array, VARTYPE element) : Value{} { vt = static_cast<VARTYPE>(VT_ARRAY | element); parray = array; }
    /// The call fills the variable.
    Value(long* variable) : Value{} { vt = VT_BYREF | VT_I4; plVal = variable; }
    Value(const Value& other) : Value{} { VariantCopy(this, const_cast<Value*>(&other)); }
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }
};

/// An object of the library. What fails raises std::runtime_error.
class Object {
public:
    explicit Object(const wchar_t* name)
    {
        CLSID id;
        if (FAILED(CLSIDFromProgID(name, &id)) ||
            FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object_))))
            throw std::runtime_error{"an object can't be created: is the library registered?"};
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() { object_->Release(); }

    IDispatch* get() const { return object_; }

    /// object.Member arguments
    Value call(const wchar_t* member, std::initializer_list<Value> arguments = {}) const
    {
        return invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
    }
    /// object.Member = value, or Set object.Member = value
    void set(const wchar_t* member, const Value& value) const
    {
        invoke(member, static_cast<WORD>(value.vt == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT), {value});
    }

private:
    Value invoke(const wchar_t* member, WORD flags, std::initializer_list<Value> arguments) const
    {
        DISPID id, put = DISPID_PROPERTYPUT;
        auto name = const_cast<LPOLESTR>(member);
        if (FAILED(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id)))
            throw std::runtime_error{"there is no such member"};
        std::vector<VARIANTARG> reversed(std::rbegin(arguments), std::rend(arguments)); // what they hold stays with `arguments`
        const bool sets = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DISPPARAMS parameters{reversed.data(), sets ? &put : nullptr, static_cast<UINT>(reversed.size()), sets ? 1u : 0u};
        Value result;
        EXCEPINFO error{};
        const HRESULT outcome =
            object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, sets ? nullptr : &result, &error, nullptr);
        const std::string description = narrow(error.bstrDescription);
        for (BSTR text : {error.bstrSource, error.bstrDescription, error.bstrHelpFile})
            SysFreeString(text);
        if (FAILED(outcome))
            throw std::runtime_error{description.empty() ? "a call was refused" : description};
        return result;
    }
    static std::string narrow(BSTR text)
    {
        const int units = static_cast<int>(SysStringLen(text));
        const int count = WideCharToMultiByte(CP_ACP, 0, text, units, nullptr, 0, nullptr, nullptr);
        std::string bytes(static_cast<std::size_t>(count), '\0');
        WideCharToMultiByte(CP_ACP, 0, text, units, bytes.data(), count, nullptr, nullptr);
        return bytes;
    }

    IDispatch* object_ = nullptr;
};

/// Hears the events of objects. It lives where it is declared, so nobody needs to count its references, and is disconnected when it
/// goes.
class Listener : public IDispatch {
public:
    Listener() = default;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// The object tells through IProvideClassInfo2 which interface it calls.
    void listen_to(const Object& object)
    {
        IProvideClassInfo2* information = nullptr;
        if (SUCCEEDED(object.get()->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&information)))) {
            information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events_);
            information->Release();
        }
        Connection connection{};
        IConnectionPointContainer* container = nullptr;
        if (SUCCEEDED(object.get()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)))) {
            container->FindConnectionPoint(events_, &connection.point);
            container->Release();
        }
        if (!connection.point || FAILED(connection.point->Advise(this, &connection.cookie)))
            throw std::runtime_error{"the object has no events"};
        connections_.push_back(connection);
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

protected:
    ~Listener()
    {
        for (const Connection& connection : connections_) {
            connection.point->Unadvise(connection.cookie);
            connection.point->Release();
        }
    }

private:
    struct Connection {
        IConnectionPoint* point;
        DWORD cookie;
    };
    IID events_{};
    std::vector<Connection> connections_;
};
