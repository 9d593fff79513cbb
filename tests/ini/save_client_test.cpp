#include "support/client.h"
#include "support/recorded_object.h"

using client::expect_error;
using client::Object;
using client::Recorded;
using client::Value;

namespace {

/// A number as the platform writes it for the user.
std::wstring in_locale(double number)
{
    Value value{number}, text;
    EXPECT_EQ(VariantChangeTypeEx(&text, &value, LOCALE_USER_DEFAULT, 0, VT_BSTR), S_OK);
    return text.text();
}

class Save : public testing::Test {
protected:
    Save()
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, path);
        save.put(L"Application", {L"qvObjects tests"});
        save.put(L"Section", {L"Main window"});
    }
    ~Save() override { RegDeleteTreeW(HKEY_CURRENT_USER, path); }

    /// What lies in the registry, by the platform's own functions.
    static std::wstring stored(const wchar_t* key)
    {
        wchar_t text[64] = L"";
        DWORD size = sizeof text;
        const std::wstring section = std::wstring{path} + L"\\Main window";
        const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, section.c_str(), key, RRF_RT_REG_SZ, nullptr, text, &size);
        return status == ERROR_SUCCESS ? text : L"-";
    }
    static std::wstring all_stored(std::initializer_list<const wchar_t*> keys)
    {
        std::wstring all;
        for (const wchar_t* key : keys)
            all += stored(key) + L" ";
        return all;
    }
    void store(const wchar_t* key, const std::wstring& text) const { save.call(L"WriteS", {key, text}); }
    /// What a call does to the client's objects.
    std::wstring logged(const wchar_t* member, const std::vector<Value>& arguments = {})
    {
        log.clear();
        save.call(member, arguments);
        return log;
    }

    static constexpr const wchar_t* path = L"Software\\VB and VBA Program Settings\\qvObjects tests";

    client::Apartment apartment;
    std::wstring log;
    Object save = Object::create(L"qvObjects.qvSave");
};

/// Those with a form.
class SaveForm : public Save {
protected:
    SaveForm() { save.try_set(L"Form", {&form}); }
    ~SaveForm() override { save.try_set(L"Form", {static_cast<IDispatch*>(nullptr)}); }

    bool write() const { return save.call(L"WritePosition").flag(); }
    bool read() const { return save.call(L"ReadPosition").flag(); }

    Recorded form{log, {{L"WindowState", 0}, {L"Left", 1500.5}, {L"Top", -30}, {L"BorderStyle", 2}, {L"Width", 6000},
                        {L"Height", 4500.25}, {L"MaxButton", true}, {L"MinButton", true}}};
};

/// Those with a bar that is docked at the top.
class SaveBar : public Save {
protected:
    using Members = Recorded::Members;

    Recorded floating_form{log, {{L"Left", 11}, {L"Top", 22}, {L"Width", 33}, {L"Height", 44.5}}, L"f."};
    Recorded undocked{log, {{L"Form", &floating_form}, {L"Left", 100}, {L"Top", 200}, {L"Width", 300}, {L"Height", 400},
                            {L"DockedWindowState", 1}}, L"u."};
    Recorded parent{log, {{L"ScaleWidth", 5000}, {L"ScaleHeight", 800}}, L"p."};
    Recorded bar{log, {{L"Name", L"tools"}, {L"Align", 1}, {L"Width", 700}, {L"Height", 500.5}, {L"WindowState", 0},
                       {L"NormalSize", 450}, {L"UndockedBar", &undocked}, {L"Parent", &parent}, {L"LimitLeft", 0},
                       {L"MinSize", 100}, {L"Refresh", 0}}};
};

} // namespace

TEST_F(Save, TextsLieWhereFormsClientsKeepTheirs)
{
    store(L"Last", L"C:\\Gr\u00f6\u00dfe");
    EXPECT_EQ(stored(L"Last"), L"C:\\Gr\u00f6\u00dfe");
    EXPECT_EQ(save.call(L"ReadS", {L"LAST", L"other"}).text(), L"C:\\Gr\u00f6\u00dfe") << "keys are found in any case";
    EXPECT_EQ(save.call(L"ReadS", {L"None", L"other"}).text(), L"other");
    EXPECT_EQ(save.call(L"ReadS", {L"None"}).text(), L"");
    store(L"Last", L"");
    EXPECT_EQ(save.call(L"ReadS", {L"Last", L"other"}).text(), L"other") << "an empty text is none";

    EXPECT_EQ(save.call(L"Application").text() + save.call(L"Section").text(), L"qvObjects testsMain window");
    save.put(L"Section", {L"Other"});
    EXPECT_EQ(save.call(L"ReadS", {L"Last", L"other"}).text(), L"other");
    expect_error(save.try_call(L"WriteS", {L"", L"x"}), 5, L"Invalid procedure call or argument");
    save.put(L"Section", {L""});
    expect_error(save.try_call(L"ReadS", {L"Last"}), 5, L"Invalid procedure call or argument");
}

TEST_F(Save, TruthIsReadByWords)
{
    const auto read = [&](const wchar_t* text, const Value& otherwise) {
        store(L"Flag", text);
        return save.call(L"ReadF", {L"Flag", otherwise}).flag();
    };
    const Value none = Value::missing();
    EXPECT_TRUE(read(L"xTRUEx", none) && read(L"wahr", none) && read(L"false, true", L"False"));
    EXPECT_FALSE(read(L"False", L"True") || read(L"unfalsch", L"True") || read(L"wahr, false", L"True"));
    EXPECT_TRUE(read(L"1", L"it is true") && read(L"", L"Wahr") && read(L"1", true));
    EXPECT_FALSE(read(L"1", none) || read(L"-1", L"1") || read(L"", L"Falsch") || read(L"1", false) || read(L"", none));
}

TEST_F(SaveForm, ANormalFormComesBackAsItWas)
{
    EXPECT_EQ(logged(L"WritePosition"), L"WindowState? Left? Top? BorderStyle? Width? Height? MaxButton? MinButton? ");
    EXPECT_EQ(all_stored({L"Left", L"Top", L"Width", L"Height", L"WindowState"}),
              in_locale(1500.5) + L" -30 6000 " + in_locale(4500.25) + L" 0 ");
    for (const wchar_t* member : {L"Left", L"Top", L"Width", L"Height"})
        form[member] = 1;
    EXPECT_EQ(logged(L"ReadPosition"),
              L"Left=1500.5 Top=-30 BorderStyle? Width=6000 Height=4500.25 MaxButton? MinButton? WindowState=0 ");
    EXPECT_TRUE(write() && read());
}

TEST_F(SaveForm, OnlyANormalFormHasAPlaceToKeep)
{
    write();
    for (const auto& [state, restored] : {std::pair{2, L"WindowState=2 "}, std::pair{1, L"WindowState=0 "}}) {
        form[L"WindowState"] = state;
        form[L"Left"] = -32000;
        EXPECT_EQ(logged(L"WritePosition"), L"WindowState? BorderStyle? MaxButton? MinButton? ");
        EXPECT_TRUE(logged(L"ReadPosition").ends_with(restored)) << "state " << state;
        EXPECT_EQ(form[L"Left"].dblVal, 1500.5);
    }
}

TEST_F(SaveForm, BorderAndButtonsSayWhatIsKept)
{
    form[L"BorderStyle"] = 1;
    form[L"MinButton"] = false;
    EXPECT_EQ(logged(L"WritePosition"), L"WindowState? Left? Top? BorderStyle? MaxButton? MinButton? ");
    EXPECT_EQ(all_stored({L"Width", L"Height", L"WindowState"}), L"- - - ");
    store(L"Width", L"7000");
    store(L"WindowState", L"2");
    EXPECT_EQ(logged(L"ReadPosition"), L"Left=1500.5 Top=-30 BorderStyle? MaxButton? MinButton? ");
    form[L"BorderStyle"] = 5;
    form[L"MinButton"] = true;
    EXPECT_EQ(logged(L"ReadPosition"),
              L"Left=1500.5 Top=-30 BorderStyle? Width=7000 Height? Height=4500.25 MaxButton? MinButton? WindowState=2 ");
}

TEST_F(SaveForm, AFormThatWasNeverSavedIsCentred)
{
    const HDC screen = GetDC(nullptr);
    const auto middle = [&](int pixels, int inch, double size) {
        return (GetDeviceCaps(screen, pixels) * 1440. / GetDeviceCaps(screen, inch) - size) / 2;
    };
    const double left = middle(HORZRES, LOGPIXELSX, 6000), top = middle(VERTRES, LOGPIXELSY, 4500.25);
    ReleaseDC(nullptr, screen);
    form[L"WindowState"] = 2;
    read();
    EXPECT_EQ(form[L"Left"].dblVal, left);
    EXPECT_EQ(form[L"Top"].dblVal, top);
    EXPECT_EQ(form[L"Width"].number(), 6000);
    EXPECT_EQ(form[L"Height"].dblVal, 4500.25);
    EXPECT_EQ(form[L"WindowState"].number(), 2) << "as the program made it";

    for (const wchar_t* key : {L"Left", L"Width", L"WindowState"})
        store(key, L"wide");
    form[L"Left"] = 0;
    read();
    EXPECT_EQ(form[L"Left"].dblVal, left) << "what is no number is not stored";
    EXPECT_EQ(form[L"Width"].number(), 6000);
    EXPECT_EQ(form[L"WindowState"].number(), 2);
}

TEST_F(SaveForm, OnlyTheBorderMayFail)
{
    form.fail(L"BorderStyle");
    EXPECT_TRUE(write() && read());
    EXPECT_EQ(all_stored({L"Width", L"WindowState"}), L"- 0 ");
    form.fail(L"Left");
    for (const wchar_t* member : {L"WritePosition", L"ReadPosition"})
        expect_error(save.try_call(member), 384, L"No way", L"Client");

    Recorded no_border{log, {{L"WindowState", 0}, {L"Left", 1}, {L"Top", 2}, {L"MaxButton", false}, {L"MinButton", false}}};
    save.try_set(L"Form", {&no_border});
    EXPECT_TRUE(write() && read());
    Recorded no_form{log, {{L"WindowState", 0}}};
    save.try_set(L"Form", {&no_form});
    for (const wchar_t* member : {L"WritePosition", L"ReadPosition"})
        expect_error(save.try_call(member), 438, L"Object doesn't support this property or method");
    save.try_set(L"Form", {static_cast<IDispatch*>(nullptr)});
    EXPECT_EQ(save.call(L"Form").pdispVal, nullptr);
    save.put(L"Application", {L""});
    for (const wchar_t* member : {L"WritePosition", L"ReadPosition"})
        expect_error(save.try_call(member), 91, L"Object variable or With block variable not set");
}

TEST_F(SaveForm, AClientMayChangeEverythingMeanwhile)
{
    Recorded other{log, {}};
    form.when(L"Left", [&] {
        save.try_set(L"Form", {&other});
        save.put(L"Application", {L"Other"});
        save.put(L"Section", {L""});
    });
    EXPECT_TRUE(write());
    EXPECT_EQ(all_stored({L"Left", L"Top", L"WindowState"}), in_locale(1500.5) + L" -30 0 ");
    EXPECT_EQ(save.call(L"Form").pdispVal, &other);
    EXPECT_EQ(form.references(), 1);

    save.put(L"Application", {L"qvObjects tests"});
    save.put(L"Section", {L"Main window"});
    save.try_set(L"Form", {&form});
    IDispatch* const held = save.dispatch();
    form.when(L"Left", [&] { save = Object{}; });
    log.clear();
    DISPID id = Object{held}.id(L"ReadPosition"), none = 0;
    DISPPARAMS no_arguments{nullptr, &none, 0, 0};
    EXPECT_EQ(held->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &no_arguments, nullptr, nullptr, nullptr), S_OK);
    EXPECT_TRUE(log.ends_with(L"WindowState=0 ")) << "although the last reference to it was let go of at the beginning";
    save = Object::create(L"qvObjects.qvSave");
}

TEST_F(Save, ListViewsKeepTheirColumnsAndTheirOrder)
{
    Recorded first{log, {{L"Width", 1440.5}}, L"1."}, second{log, {{L"Width", 800}}, L"2."};
    const Recorded::Members by_name{{L"Count", 2}, {L"Item", 0}}, by_default{{L"Count", 2}};
    for (const auto& members : {by_name, by_default}) {
        Recorded headers{log, members};
        headers.items = {&first, &second};
        Recorded list{log, {{L"Name", L"lvFiles"}, {L"ColumnHeaders", &headers}, {L"SortKey", 1}}};
        EXPECT_EQ(logged(L"WriteListView", {&list}), L"Name? ColumnHeaders? Count? 1.Width? 2.Width? SortKey? ");
        EXPECT_EQ(all_stored({L"lvFiles1", L"lvFiles2", L"lvFilesSortKey"}), in_locale(1440.5) + L" 800 1 ");
        store(L"lvFiles2", L"broad");
        list[L"SortKey"] = 0;
        EXPECT_EQ(logged(L"ReadListView", {&list}),
                  L"Name? ColumnHeaders? Count? 1.Width=1440.5 2.Width? 2.Width=800 SortKey=1 ");
        list[L"Name"] = L"lvOther";
        list[L"SortKey"] = 3;
        EXPECT_EQ(logged(L"ReadListView", {&list}),
                  L"Name? ColumnHeaders? Count? 1.Width? 1.Width=1440.5 2.Width? 2.Width=800 SortKey? SortKey=3 ");
        list[L"ColumnHeaders"] = 7;
        expect_error(save.try_call(L"ReadListView", {&list}), 13, L"Type mismatch");
    }
    const Value nothing{static_cast<IDispatch*>(nullptr)};
    for (const wchar_t* member : {L"WriteListView", L"ReadListView", L"WriteQvBar"})
        expect_error(save.try_call(member, {nothing}), 91, L"Object variable or With block variable not set");
}

TEST_F(SaveBar, DockedBarsKeepTheirThicknessAndTheUndockedPlace)
{
    EXPECT_EQ(logged(L"WriteQvBar", {&bar}), L"Name? Align? Height? WindowState? NormalSize? UndockedBar? "
                                             L"u.Top? u.Left? u.Width? u.Height? u.DockedWindowState? ");
    const auto keys = {L"tools_Height", L"tools_Width", L"toolsWindowState", L"toolsNormalSize", L"tools_UDLeft",
                       L"tools_UDTop", L"tools_UDWidth", L"tools_UDHeight", L"tools_DWS"};
    EXPECT_EQ(all_stored(keys), in_locale(500.5) + L" - 0 450 100 200 300 400 1 ");
    EXPECT_EQ(logged(L"ReadQvBar", {&bar, 9}),
              L"Name? Height=500.5 NormalSize=450 UndockedBar? u.DockedWindowState=1 "
              L"u.Left=100 u.Top=200 u.Width=300 u.Height=400 WindowState=0 Refresh! ");

    bar[L"Align"] = 4;
    bar[L"WindowState"] = 1;
    undocked[L"DockedWindowState"] = 0;
    save.call(L"WriteQvBar", {&bar});
    EXPECT_EQ(all_stored(keys), in_locale(500.5) + L" 700 1 450 100 200 300 400 0 ");
    EXPECT_TRUE(logged(L"ReadQvBar", {&bar, 9}).starts_with(L"Name? Width=700 Height=500.5 "));
    bar[L"Align"] = 0;
    EXPECT_TRUE(logged(L"WriteQvBar", {&bar}).starts_with(L"Name? Align? WindowState? ")) << "a bar that is docked nowhere";
}

TEST_F(SaveBar, FloatingBarsKeepThePlaceOfTheirWindow)
{
    bar[L"WindowState"] = 4;
    EXPECT_EQ(logged(L"WriteQvBar", {&bar}), L"Name? Align? Height? WindowState? NormalSize? UndockedBar? u.Form? "
                                             L"f.Top? f.Left? f.Width? f.Height? ");
    EXPECT_EQ(all_stored({L"toolsWindowState", L"tools_UDLeft", L"tools_UDHeight", L"tools_DWS"}),
              L"4 11 " + in_locale(44.5) + L" - ");
    EXPECT_EQ(logged(L"ReadQvBar", {&bar, 9, 0, true}),
              L"Name? Height=500.5 NormalSize=450 UndockedBar? u.Left=11 u.Top=22 u.Width=33 u.Height=44.5 WindowState=4 "
              L"Align? WindowState? Refresh! ")
        << "into the undocked bar, and it is not cut";
}

TEST_F(SaveBar, DefaultsServeWhereNothingIsStored)
{
    EXPECT_EQ(logged(L"ReadQvBar", {&bar, 320}), L"Name? NormalSize=320 UndockedBar? WindowState=0 Refresh! ");
    store(L"toolsWindowState", L"open");
    store(L"toolsNormalSize", L"260");
    EXPECT_EQ(logged(L"ReadQvBar", {&bar, 320, 1}), L"Name? NormalSize=260 UndockedBar? WindowState=1 Refresh! ");
    bar.fail(L"Refresh");
    expect_error(save.try_call(L"ReadQvBar", {&bar, 320}), 384, L"No way", L"Client");
}

TEST_F(SaveBar, ADockedBarIsCutToTheRoomThereIs)
{
    const auto read = [&](const wchar_t* height, int state = 0) {
        store(L"tools_Height", height);
        return logged(L"ReadQvBar", {&bar, 9, state, true});
    };
    const std::wstring asks = L"Align? WindowState? Height? Parent? p.ScaleHeight? LimitLeft? MinSize? ";
    EXPECT_TRUE(read(L"800").ends_with(L"WindowState=0 " + asks + L"Refresh! "));
    EXPECT_TRUE(read(L"801").ends_with(asks + L"Height=800 Refresh! "));
    EXPECT_TRUE(read(L"801", 1).ends_with(L"WindowState=1 Align? WindowState? Refresh! ")) << "a closed bar";
    bar[L"LimitLeft"] = 99;
    EXPECT_TRUE(read(L"500").ends_with(asks + L"Height=99 WindowState=1 Refresh! ")) << "too small to be of use";

    bar[L"Align"] = 3;
    bar[L"LimitLeft"] = 0;
    bar[L"Width"] = 5001;
    EXPECT_TRUE(read(L"900").ends_with(L"Width? Parent? p.ScaleWidth? LimitLeft? MinSize? Width=5000 Refresh! "));
}
