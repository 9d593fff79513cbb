// What a call by name costs: the look-up of the name and the call itself, against the platform's own dictionary, and an
// item by its key in a long list against a short one.

#include "stopwatch.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <string>

namespace {

IDispatch* create(const wchar_t* program)
{
    CLSID id{};
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(program, &id))
        || FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object)))) {
        std::printf("%ls is not registered\n", program);
        std::exit(1);
    }
    return object;
}

DISPID id_of(IDispatch* object, const wchar_t* name)
{
    DISPID id = DISPID_UNKNOWN;
    auto text = const_cast<LPOLESTR>(name);
    object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

VARIANT invoke(IDispatch* object, DISPID id, std::initializer_list<VARIANT> reversed)
{
    VARIANT result;
    VariantInit(&result);
    DISPPARAMS arguments{const_cast<VARIANT*>(reversed.begin()), nullptr, static_cast<UINT>(reversed.size()), 0};
    object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &arguments, &result, nullptr, nullptr);
    return result;
}

VARIANT text(const wchar_t* characters)
{
    VARIANT value;
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(characters);
    return value;
}

IDispatch* sections(IDispatch* ini)
{
    return invoke(ini, id_of(ini, L"Section"), {}).pdispVal;
}

constexpr int calls = 200000;

/// Seconds of one call of `action`, at its best.
template <class Action>
double cost(const Action& action)
{
    Best best;
    for (int round = 0; round < 5; ++round)
        best.take([&] {
            for (int i = 0; i < calls; ++i)
                action();
        });
    return best.seconds() / calls;
}

double look_up(IDispatch* object)
{
    return cost([&] { id_of(object, L"Exists"); });
}

double exists(IDispatch* object, VARIANT key)
{
    const DISPID id = id_of(object, L"Exists");
    return cost([&] { invoke(object, id, {key}); });
}

double item(IDispatch* list, VARIANT key)
{
    return cost([&] { invoke(list, DISPID_VALUE, {key}).pdispVal->Release(); });
}

void fill(IDispatch* list, int count)
{
    const DISPID add = id_of(list, L"Add");
    for (int i = 0; i < count; ++i)
        invoke(list, add, {text((L"Section " + std::to_wstring(i)).c_str())}).pdispVal->Release();
}

} // namespace

int main()
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    IDispatch* const dictionary = create(L"Scripting.Dictionary");
    IDispatch* const few = sections(create(L"qvObjects.qvIniFile"));
    IDispatch* const many = sections(create(L"qvObjects.qvIniFile"));
    const VARIANT key = text(L"Section 7");
    fill(few, 10);
    fill(many, 100000);
    for (int i = 0; i < 10; ++i)
        invoke(dictionary, id_of(dictionary, L"Add"), {text(L""), text((L"Section " + std::to_wstring(i)).c_str())});

    std::printf("name look-up:      %.2f of Scripting.Dictionary's (bar 0.5)\n", look_up(few) / look_up(dictionary));
    std::printf("Invoke of Exists:  %.2f of Scripting.Dictionary's (bar 0.25)\n", exists(few, key) / exists(dictionary, key));
    std::printf("Item by key:       %.2f among 100,000 of that among 10 (bar 1, within noise)\n", item(many, key) / item(few, key));
}
