#pragma once

#include "automation/border.h"
#include "automation/late_bound.h"
#include "automation/type_library.h"

#include <oaidl.h>

/// An object's interfaces as its clients call them. The build writes a face for each dual interface of the contract; it
/// turns arguments and results into plain values and calls the object's own functions.
namespace automation {

/// A part of an object that is an interface: it has the object's identity and life.
template <class Object, class Interface>
class Part : public Interface {
public:
    explicit Part(Object& object) noexcept : object_{object} {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** found) noexcept final { return object_.QueryInterface(iid, found); }
    ULONG STDMETHODCALLTYPE AddRef() noexcept final { return object_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept final { return object_.Release(); }

protected:
    Object& object() const noexcept { return object_; }
    /// The object, which stays alive for the time of a call although a client may let go of it in the middle.
    Ref<Object> kept() const noexcept { return Ref{&object_}; }

private:
    Object& object_;
};

/// A dual interface of an object: what IDispatch means for it. The functions themselves follow in the face.
template <class Object, class Dual>
class Face : public Part<Object, Dual> {
public:
    using Interface = Dual;
    using Part<Object, Dual>::Part;

    static constexpr const automation::Interface& contract = Contracted<Dual>::description;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final
    {
        if (!count)
            return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept final
    {
        if (info && index != 0) {
            *info = nullptr;
            return DISP_E_BADINDEX;
        }
        return answer(info, [] { return type_info(__uuidof(Dual)); });
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept final
    {
        return reserved == IID_NULL ? late_bound::find_names(contract, names, count, ids) : DISP_E_UNKNOWNINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept final
    {
        return answer_code([&] {
            return late_bound::invoke(static_cast<Dual*>(this), contract, id, reserved, locale, flags, arguments, result,
                                      exception, bad_argument);
        });
    }
};

/// A by-reference argument. A function takes it as a reference, and a null pointer is error 5; or as a pointer, null or not.
template <class Value>
class ByReference {
public:
    explicit ByReference(Value* argument) noexcept : argument_{argument} {}
    operator Value&() const { return referred(argument_); }
    operator Value*() const noexcept { return argument_; }

private:
    Value* argument_;
};

/// A text that is lent to a call. A function takes it as characters, a null text as an empty one; or as it came.
class TextArgument {
public:
    explicit TextArgument(BSTR text) noexcept : text_{text} {}
    operator std::wstring_view() const noexcept { return view(text_); }
    operator BSTR() const noexcept { return text_; }

private:
    BSTR text_;
};

} // namespace automation
