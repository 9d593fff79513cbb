#include "ini/qvSave.h"

#include "automation/client_object.h"
#include "ini/placement.h"
#include "ini/settings_store.h"
#include "ini/truth_words.h"
#include "ui/device.h"

#include <optional>
#include <utility>

namespace {

using automation::get;
using automation::object_in;
using automation::put;
using automation::Ref;
using automation::to_bool;
using automation::to_double;
using automation::to_long;
using automation::Variant;

/// The settings of one application and section.
class Settings {
public:
    Settings(std::wstring_view application, std::wstring_view section) : application_{application}, section_{section} {}

    void write(std::wstring_view key, std::wstring_view text) const { settings::write(place(key), text); }
    void write(std::wstring_view key, const Variant& value) const { write(key, std::wstring_view{automation::to_text(value)}); }

    /// The stored text; `otherwise` when there is none, or an empty one.
    std::wstring text(std::wstring_view key, std::wstring_view otherwise) const
    {
        std::wstring stored = settings::read(place(key), otherwise);
        return stored.empty() ? std::wstring{otherwise} : stored;
    }
    /// The stored number; none when there is no text, or it is no number of this type.
    std::optional<Variant> number(std::wstring_view key, VARTYPE type = VT_R8) const
    {
        Variant number;
        if (!automation::converts(number, Variant{std::wstring_view{text(key, {})}}, type))
            return std::nullopt;
        return number;
    }
    std::optional<Variant> integer(std::wstring_view key) const { return number(key, VT_I4); }

private:
    settings::Place place(std::wstring_view key) const { return {application_, section_, key}; }

    std::wstring application_, section_;
};

std::wstring name(IDispatch* object)
{
    return std::wstring{automation::to_text(get(object, L"Name"))};
}
const Ref<IDispatch>& set_object(const Ref<IDispatch>& object)
{
    if (!object)
        throw automation::Error{automation::Runtime::ObjectNotSet};
    return object;
}

/// Whether the user can size a form. One that knows no borders can't be sized.
bool is_sizable(IDispatch* form)
{
    return placement::is_sizable(automation::or_default([&] { return to_long(get(form, L"BorderStyle")); }));
}
/// Whether the user can change the state of a form.
bool changes_state(IDispatch* form)
{
    const bool can_maximise = to_bool(get(form, L"MaxButton"));
    return to_bool(get(form, L"MinButton")) && can_maximise;
}

/// Calls `use` with each header of a list view and the key that its width has.
template <class Use>
void for_each_header(IDispatch* list_view, const std::wstring& name, Use use)
{
    const Ref headers = object_in(get(list_view, L"ColumnHeaders"));
    const long count = to_long(get(headers.get(), L"Count"));
    for (long i = 1; i <= count; ++i)
        use(object_in(automation::item(headers.get(), Variant{i})).get(), name + std::to_wstring(i));
}

void restore(IDispatch* object, const wchar_t* member, const std::optional<Variant>& stored)
{
    if (stored)
        put(object, member, *stored);
}

/// Lets a docked bar take no more room than there is, and closes one that is too small then.
void fit(IDispatch* bar)
{
    const auto thickness = placement::thickness(to_long(get(bar, L"Align")));
    if (thickness == placement::Thickness::None || to_long(get(bar, L"WindowState")) != placement::normal)
        return;
    const bool is_height = thickness == placement::Thickness::Height;
    const wchar_t* const member = is_height ? L"Height" : L"Width";
    const double size = to_double(get(bar, member));
    const Ref parent = object_in(get(bar, L"Parent"));
    const double room = to_double(get(parent.get(), is_height ? L"ScaleHeight" : L"ScaleWidth"));
    const double limit = to_double(get(bar, L"LimitLeft"));
    const auto fitted = placement::fitted(size, room, limit, to_double(get(bar, L"MinSize")));
    if (fitted.size < size)
        put(bar, member, Variant{fitted.size});
    if (fitted.too_small)
        put(bar, L"WindowState", Variant{placement::minimised});
}

} // namespace

void qvSave::WriteS(std::wstring_view sKey, std::wstring_view sValue)
{
    Settings{application_, section_}.write(sKey, sValue);
}

std::wstring qvSave::ReadS(std::wstring_view sKey, std::wstring_view sDefault)
{
    return Settings{application_, section_}.text(sKey, sDefault);
}

bool qvSave::ReadF(std::wstring_view sKey, std::wstring_view fDefault)
{
    const auto told = settings::truth_in_words(ReadS(sKey, fDefault));
    return told ? *told : settings::truth_in_words(fDefault).value_or(false);
}

bool qvSave::WritePosition()
{
    const Settings settings{application_, section_};
    const Ref form = set_object(form_);
    const Variant state = get(form.get(), L"WindowState");
    const bool is_normal = to_long(state) == placement::normal;
    const auto write = [&](const wchar_t* member) { settings.write(member, get(form.get(), member)); };
    if (is_normal) {
        write(L"Left");
        write(L"Top");
    }
    if (is_sizable(form.get()) && is_normal) {
        write(L"Width");
        write(L"Height");
    }
    if (changes_state(form.get()))
        settings.write(L"WindowState", state);
    return true;
}

bool qvSave::ReadPosition()
{
    const Settings settings{application_, section_};
    const Ref form = set_object(form_);
    const auto stored_or_centred = [&](const wchar_t* position, const wchar_t* size, device::Extent device::Area::*side) {
        if (auto stored = settings.number(position))
            return *std::move(stored);
        return Variant{placement::centred((device::screen_area().*side).twips(), to_double(get(form.get(), size)))};
    };
    put(form.get(), L"Left", stored_or_centred(L"Left", L"Width", &device::Area::width));
    put(form.get(), L"Top", stored_or_centred(L"Top", L"Height", &device::Area::height));
    if (is_sizable(form.get()))
        for (const wchar_t* const size : {L"Width", L"Height"}) {
            const auto stored = settings.number(size);
            put(form.get(), size, stored ? *stored : get(form.get(), size));
        }
    if (changes_state(form.get())) {
        const auto stored = settings.integer(L"WindowState");
        put(form.get(), L"WindowState",
            stored ? Variant{placement::restored_state(stored->lVal)} : get(form.get(), L"WindowState"));
    }
    return true;
}

void qvSave::WriteListView(IDispatch* lv)
{
    const Settings settings{application_, section_};
    const Ref list_view{lv};
    const std::wstring name = ::name(lv);
    for_each_header(lv, name, [&](IDispatch* header, const std::wstring& key) { settings.write(key, get(header, L"Width")); });
    settings.write(name + L"SortKey", get(lv, L"SortKey"));
}

void qvSave::ReadListView(IDispatch* lv)
{
    const Settings settings{application_, section_};
    const Ref list_view{lv};
    const std::wstring name = ::name(lv);
    for_each_header(lv, name, [&](IDispatch* header, const std::wstring& key) {
        const auto width = settings.number(key);
        put(header, L"Width", width ? *width : get(header, L"Width"));
    });
    const auto sort_key = settings.integer(name + L"SortKey");
    put(lv, L"SortKey", sort_key ? *sort_key : get(lv, L"SortKey"));
}

void qvSave::WriteQvBar(IDispatch* Bar)
{
    const Settings settings{application_, section_};
    const Ref bar{Bar};
    const std::wstring name = ::name(Bar);
    switch (placement::thickness(to_long(get(Bar, L"Align")))) {
    case placement::Thickness::Height:
        settings.write(name + L"_Height", get(Bar, L"Height"));
        break;
    case placement::Thickness::Width:
        settings.write(name + L"_Width", get(Bar, L"Width"));
        break;
    case placement::Thickness::None:
        break;
    }
    const Variant state = get(Bar, L"WindowState");
    settings.write(name + L"WindowState", state);
    settings.write(name + L"NormalSize", get(Bar, L"NormalSize"));

    const bool is_floating = to_long(state) == placement::floating;
    const Ref undocked = object_in(get(Bar, L"UndockedBar"));
    const Ref placed = is_floating ? object_in(get(undocked.get(), L"Form")) : undocked;
    for (const wchar_t* const member : {L"Top", L"Left", L"Width", L"Height"})
        settings.write(name + L"_UD" + member, get(placed.get(), member));
    if (!is_floating)
        settings.write(name + L"_DWS", get(undocked.get(), L"DockedWindowState"));
}

void qvSave::ReadQvBar(IDispatch* Bar, long lDefaultNSize, long lDefaultWState, bool fCheckCorrectSize)
{
    const Settings settings{application_, section_};
    const Ref bar{Bar};
    const std::wstring name = ::name(Bar);
    restore(Bar, L"Width", settings.number(name + L"_Width"));
    restore(Bar, L"Height", settings.number(name + L"_Height"));
    put(Bar, L"NormalSize", settings.number(name + L"NormalSize").value_or(Variant{lDefaultNSize}));

    const Ref undocked = object_in(get(Bar, L"UndockedBar"));
    restore(undocked.get(), L"DockedWindowState", settings.integer(name + L"_DWS"));
    for (const wchar_t* const member : {L"Left", L"Top", L"Width", L"Height"})
        restore(undocked.get(), member, settings.number(name + L"_UD" + member));

    put(Bar, L"WindowState", settings.integer(name + L"WindowState").value_or(Variant{lDefaultWState}));
    if (fCheckCorrectSize)
        fit(Bar);
    automation::call(Bar, L"Refresh");
}
