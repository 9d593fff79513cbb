#pragma once

#include "support/client.h"
#include "support/dispatch_object.h"

#include <map>

namespace client {

/// An object of the client whose members are plain values. All that happens to it is written down: "Left?" when a member is
/// read, "Left=5" when it is set, "Refresh!" when it is called or read with an argument.
class Recorded : public DispatchObject {
public:
    using Members = std::vector<std::pair<std::wstring, Value>>;

    Recorded(std::wstring& log, const Members& members, std::wstring prefix = {})
        : DispatchObject{names_of(members), {}}, log_{log}, members_{members}, prefix_{std::move(prefix)}
    {
    }

    Value& operator[](const wchar_t* name)
    {
        return std::ranges::find(members_, name, &Members::value_type::first)->second;
    }
    /// What else happens when this member is used.
    void when(const wchar_t* name, std::function<void()> happens) { happenings_[name] = std::move(happens); }
    /// From now on this member raises an error of its own.
    void fail(const wchar_t* name) { failing_ = name; }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                     UINT*) override
    {
        if (id < 0 || static_cast<std::size_t>(id) > members_.size() || (id == DISPID_VALUE && items.empty()))
            return DISP_E_MEMBERNOTFOUND;
        const bool is_put = arguments->cNamedArgs == 1;
        if (id == DISPID_VALUE || (arguments->cArgs == 1 && !is_put))
            return give_item(*arguments, result);
        auto& [name, value] = members_[static_cast<std::size_t>(id - 1)];
        if (is_put)
            VariantCopy(&value, &arguments->rgvarg[0]);
        log_ += prefix_ + name + (is_put ? L"=" + written(value) : name == L"Refresh" ? L"!" : L"?") + L" ";
        if (const auto happens = happenings_.find(name); happens != happenings_.end())
            happens->second();
        if (name == failing_) {
            exception->scode = static_cast<HRESULT>(0x800A0180); // 384
            exception->bstrSource = SysAllocString(L"Client");
            exception->bstrDescription = SysAllocString(L"No way");
            return DISP_E_EXCEPTION;
        }
        return is_put || !result ? S_OK : VariantCopy(result, &value);
    }

    std::vector<Value> items; ///< of a collection

private:
    static std::vector<std::wstring> names_of(const Members& members)
    {
        std::vector<std::wstring> names;
        for (const auto& [name, value] : members)
            names.push_back(name);
        return names;
    }
    /// Numbers and truth values in the notation of no country.
    static std::wstring written(Value value)
    {
        Value text;
        const bool is_plain = value.vt == VT_R8 || value.vt == VT_I4 || value.vt == VT_BOOL || value.vt == VT_BSTR;
        EXPECT_TRUE(is_plain) << "type " << value.vt;
        EXPECT_EQ(VariantChangeTypeEx(&text, &value, 0x409, VARIANT_ALPHABOOL, VT_BSTR), S_OK);
        return text.text();
    }
    HRESULT give_item(const DISPPARAMS& arguments, VARIANT* result)
    {
        const auto position = static_cast<std::size_t>(arguments.rgvarg[0].lVal);
        return position >= 1 && position <= items.size() ? VariantCopy(result, &items[position - 1]) : DISP_E_BADINDEX;
    }

    std::wstring& log_;
    Members members_;
    std::wstring prefix_;
    std::map<std::wstring, std::function<void()>> happenings_;
    std::wstring failing_;
};

} // namespace client
