// The members of qvForm that work on forms, controls and windows: with objects of the client that write down what happens to
// them, and with windows of the platform.

#include "support/canvas.h"
#include "support/recorded_object.h"
#include "support/tables.h"

#include <qvObjects.h>

#include <commctrl.h> // behind the contract, whose enumerators have the names of its macros

#include <cmath>

using client::Canvas;
using client::expect_error;
using client::Object;
using client::Recorded;
using client::told;
using client::Value;

namespace {

class Form : public testing::Test {
protected:
    /// What a call does to the client's objects.
    std::wstring logged(const wchar_t* member, const std::vector<Value>& arguments)
    {
        log.clear();
        form.call(member, arguments);
        return log;
    }

    client::Apartment apartment;
    const Object form = Object::create(L"qvObjects.qvForm");
    std::wstring log;
};

Value handle(const void* handle)
{
    return static_cast<long>(reinterpret_cast<LONG_PTR>(handle));
}

class Window {
public:
    explicit Window(const wchar_t* window_class, HWND parent = nullptr, DWORD style = WS_OVERLAPPED)
    {
        style |= parent ? WS_CHILD : 0;
        window_ = CreateWindowExW(0, window_class, L"", style, 0, 0, 200, 100, parent, nullptr, nullptr, nullptr);
        EXPECT_TRUE(window_);
    }
    ~Window() { DestroyWindow(window_); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND get() const { return window_; }
    operator Value() const { return handle(window_); }

private:
    HWND window_;
};

/// Windows of this class write down what they are told about their drawing.
struct Drawn {
    static inline std::wstring log;

    Drawn()
    {
        WNDCLASSW described{};
        described.lpszClassName = L"Drawn";
        described.lpfnWndProc = procedure;
        RegisterClassW(&described);
    }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
    {
        RECT area;
        if (message == WM_SETREDRAW)
            log += L"redraw " + std::to_wstring(static_cast<long>(wparam)) + L" ";
        if (message == WM_ERASEBKGND)
            log += L"erase ";
        if (message == WM_PAINT && GetUpdateRect(window, &area, FALSE))
            log += L"paint " + std::to_wstring(area.right) + L"x" + std::to_wstring(area.bottom) + L" ";
        return DefWindowProcW(window, message, wparam, lparam);
    }
};

} // namespace

TEST_F(Form, SelectedItemsAreTheirPositions)
{
    Recorded a{log, {{L"Selected", false}}, L"1."}, b{log, {{L"Selected", true}}, L"2."}, c{log, {{L"Selected", true}}, L"3."};
    Recorded items{log, {{L"Count", 3}, {L"Item", 0}}, L"l."};
    items.items = {&a, &b, &c};
    Recorded view{log, {{L"MultiSelect", true}, {L"ListItems", &items}}};
    EXPECT_EQ(told(form.call(L"GetSelectedListItem", {&view})), L"Variant 0: - 2& 3&");
    EXPECT_EQ(log, L"MultiSelect? ListItems? l.Count? 1.Selected? 2.Selected? 3.Selected? ");
    view[L"MultiSelect"] = false;
    EXPECT_EQ(told(form.call(L"GetSelectedListItem", {&view})), L"2&");
    EXPECT_TRUE(logged(L"GetSelectedListItem", {&view}).ends_with(L"1.Selected? 2.Selected? ")) << "the first one is enough";
    b[L"Selected"] = c[L"Selected"] = false;
    EXPECT_EQ(told(form.call(L"GetSelectedListItem", {&view})), L"-");
    view[L"MultiSelect"] = true;
    EXPECT_EQ(told(form.call(L"GetSelectedListItem", {&view})), L"Variant 0: -");
    items[L"Count"] = 0;
    EXPECT_EQ(told(form.call(L"GetSelectedListItem", {&view})), L"Variant 0: -");
    c.fail(L"Selected");
    items[L"Count"] = 3;
    expect_error(form.try_call(L"GetSelectedListItem", {&view}), 384, L"No way", L"Client");
}

TEST_F(Form, InnerSizesAreWithoutBorders)
{
    const Window window{L"STATIC", nullptr, WS_OVERLAPPEDWINDOW};
    RECT area;
    GetClientRect(window.get(), &area);
    ASSERT_LT(area.right, 200);
    const HDC screen = GetDC(nullptr);
    const double x = 1440. / GetDeviceCaps(screen, LOGPIXELSX), y = 1440. / GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    Recorded own{log, {{L"hwnd", window}}};
    EXPECT_EQ(form.call(L"InWidthPix", {&own}).number(), area.right);
    EXPECT_EQ(form.call(L"InHeightPix", {&own}).number(), area.bottom);
    EXPECT_EQ(form.call(L"InWidthTwp", {&own}).number(), std::lrint(area.right * x));
    EXPECT_EQ(form.call(L"InHeightTwp", {&own}).number(), std::lrint(area.bottom * y));
    own[L"hwnd"] = 0x7654321;
    EXPECT_EQ(form.call(L"InWidthTwp", {&own}).number(), 0) << "no window";
    own[L"hwnd"] = L"window";
    expect_error(form.try_call(L"InWidthPix", {&own}), 13, L"Type mismatch");
}

TEST_F(Form, StylesAreSwitchedOneByOne)
{
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    const Window host{L"STATIC"};
    const Window view{L"SysListView32", host.get(), LVS_REPORT};
    const auto styles = [&] { return SendMessageW(view.get(), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0); };
    SendMessageW(view.get(), LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_GRIDLINES);
    form.call(L"SetListviewStyle", {view, LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP, true});
    EXPECT_EQ(styles(), LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP);
    form.call(L"SetListviewStyle", {view, LVS_EX_FULLROWSELECT | LVS_EX_TRACKSELECT, false});
    EXPECT_EQ(styles(), LVS_EX_GRIDLINES | LVS_EX_HEADERDRAGDROP);

    EXPECT_FALSE(form.call(L"SetToolBarStyle", {host, TBSTYLE_FLAT, true}).flag()) << "there is none";
    const Window bar{TOOLBARCLASSNAMEW, host.get(), TBSTYLE_LIST};
    const auto bar_styles = [&] { return SendMessageW(bar.get(), TB_GETSTYLE, 0, 0); };
    const auto former = bar_styles();
    EXPECT_TRUE(form.call(L"SetToolBarStyle", {host, TBSTYLE_FLAT | TBSTYLE_WRAPABLE, true}).flag());
    EXPECT_EQ(bar_styles(), former | TBSTYLE_FLAT | TBSTYLE_WRAPABLE);
    EXPECT_TRUE(form.call(L"SetToolBarStyle", {host, TBSTYLE_FLAT, false}).flag());
    EXPECT_EQ(bar_styles(), former | TBSTYLE_WRAPABLE);
    const Window on_desktop{TOOLBARCLASSNAMEW, nullptr, WS_POPUP};
    for (const long no_window : {0L, 0x7654321L}) {
        EXPECT_FALSE(form.call(L"SetToolBarStyle", {no_window, TBSTYLE_FLAT, true}).flag());
        EXPECT_EQ(form.try_call(L"SetListviewStyle", {no_window, 1, true}).result, S_OK);
    }
}

TEST_F(Form, DrawingIsStoppedAndMadeUpFor)
{
    const Drawn drawn;
    const Window window{L"Drawn", nullptr, WS_POPUP | WS_VISIBLE};
    const auto set = [&](const std::vector<Value>& arguments) {
        Drawn::log.clear();
        const long result = form.call(L"SetRedrawMode", arguments).number();
        return std::to_wstring(result) + L": " + Drawn::log;
    };
    UpdateWindow(window.get());
    EXPECT_EQ(set({window, false}), L"0: redraw 0 ");
    EXPECT_EQ(set({window, true}), L"1: redraw -1 paint 200x100 erase ");
    EXPECT_EQ(set({window, true, false}), L"0: redraw -1 ");
    EXPECT_EQ(set({window, false, true}), L"0: redraw 0 ");
    EXPECT_TRUE(set({0, true}).ends_with(L": ")) << "the desktop is none of its windows";
}

TEST_F(Form, TheHalftoneBrushPaintsAChessboard)
{
    const Value brush = form.call(L"GetHalftoneBrush");
    ASSERT_EQ(brush.vt, VT_I4);
    const auto handle = reinterpret_cast<HBRUSH>(static_cast<LONG_PTR>(brush.lVal));
    const Canvas picture{16, 16};
    const RECT all{0, 0, 16, 16};
    FillRect(picture.context, &all, handle);
    for (int x = 0; x < 15; ++x)
        for (int y = 0; y < 15; ++y) {
            EXPECT_NE(picture(x, y), picture(x + 1, y));
            EXPECT_EQ(picture(x, y), picture(x + 1, y + 1));
        }
    EXPECT_TRUE(DeleteObject(handle)) << "it is the caller's";
}

TEST_F(Form, TextIsAppended)
{
    Recorded box{log, {{L"Text", L"old"}, {L"SelStart", 0}, {L"SelLength", 0}, {L"SelText", L""}, {L"SelColor", 0},
                       {L"SelRTF", L""}}};
    const auto append = [&](const wchar_t* part) {
        return [&box, part] { box[L"Text"] = box[L"Text"].text() + box[part].text(); };
    };
    box.when(L"SelText", append(L"SelText"));
    box.when(L"SelRTF", append(L"SelRTF"));
    EXPECT_EQ(logged(L"AddText2Ctrl", {&box, L" new"}), L"Text? SelStart=3 SelText= new Text? SelStart=7 ");
    EXPECT_EQ(logged(L"AddText2Ctrl", {&box, L"er", false}), L"Text? SelStart=7 SelText=er ");
    EXPECT_EQ(logged(L"AddText2Ctrl", {&box, L" red", false, 255}),
              L"Text? SelStart=9 SelText= red SelStart=9 SelLength=4 SelColor=255 Text? SelStart=13 SelColor=-2147483640 ");
    EXPECT_TRUE(logged(L"AddText2Ctrl", {&box, L"!", true, 0})
                    .ends_with(L"Text? SelStart=14 SelColor=-2147483640 Text? SelStart=14 "));
    EXPECT_EQ(logged(L"AddText2Ctrl", {&box}), L"Text? SelStart=14 SelText= Text? SelStart=14 ");
    EXPECT_EQ(logged(L"AddTextRTF", {&box, L"{}"}), L"Text? SelStart=14 SelRTF={} ");
    EXPECT_EQ(logged(L"AddTextRTF", {&box, L"{b}", true}), L"Text? SelStart=16 SelRTF={b} Text? SelStart=19 ");
    box.fail(L"SelText");
    expect_error(form.try_call(L"AddText2Ctrl", {&box, L"x"}), 384, L"No way", L"Client");
}

TEST_F(Form, DisabledControlsLookDisabled)
{
    Recorded control{log, {{L"Enabled", false}, {L"BackColor", 0}}};
    EXPECT_EQ(logged(L"EnableVbWindow", {&control, true}), L"Enabled=True BackColor=-2147483643 ");
    EXPECT_EQ(logged(L"EnableVbWindow", {&control, false}), L"Enabled=False BackColor=-2147483633 ");
}

TEST_F(Form, ControlsAreMovedIntoTheForm)
{
    Recorded own{log, {{L"ScaleWidth", 1000.5}, {L"ScaleHeight", 800}}, L"f."};
    Recorded control{log, {{L"Left", 900}, {L"Top", -5}, {L"Width", 200}, {L"Height", 100}}};
    const std::wstring asked = L"f.ScaleWidth? f.ScaleHeight? Left? Width? Top? Height? ";
    EXPECT_EQ(logged(L"MoveToForm", {&own, &control}), asked + L"Left=800.5 Top=0 ");
    EXPECT_EQ(logged(L"MoveToForm", {&own, &control}), asked) << "it is inside";
    control[L"Height"] = 801;
    control[L"Top"] = 3;
    EXPECT_EQ(logged(L"MoveToForm", {&own, &control}), asked + L"Top=0 ") << "larger than the form";
    control[L"Left"] = 2000;
    own.fail(L"ScaleHeight");
    expect_error(form.try_call(L"MoveToForm", {&own, &control}), 384, L"No way", L"Client");
    EXPECT_EQ(control[L"Left"].number(), 2000) << "not moved half-way";
}

TEST_F(Form, CaptionsAreNumbered)
{
    const Object collection = Object::create(L"Scripting.Dictionary"); // enumerates its keys, which may be objects
    Recorded first{log, {{L"Caption", L"Chart"}}}, second{log, {{L"Caption", L"Chart:3"}}};
    Recorded third{log, {{L"Caption", L"Chart:2"}}};
    const auto caption = [&](const wchar_t* wanted) { return form.call(L"qvCaption", {collection, wanted}).text(); };
    EXPECT_EQ(caption(L"Chart"), L"Chart") << "no form at all";
    collection.call(L"Add", {&first, 1});
    EXPECT_EQ(caption(L"Chart"), L"Chart:2");
    EXPECT_EQ(caption(L"chart"), L"chart") << "another text";
    EXPECT_EQ(caption(L""), L"");
    collection.call(L"Add", {&second, 2});
    EXPECT_EQ(caption(L"Chart"), L"Chart:2");
    collection.call(L"Add", {&third, 3});
    EXPECT_EQ(caption(L"Chart"), L"Chart:4");
    EXPECT_EQ(caption(L"Chart:2"), L"Chart:2:2");
    collection.call(L"Add", {5, 4});
    expect_error(form.try_call(L"qvCaption", {collection, L"Chart"}), 13, L"Type mismatch");
    const Value nothing{static_cast<IDispatch*>(nullptr)};
    expect_error(form.try_call(L"qvCaption", {nothing, L""}), 91, L"Object variable or With block variable not set");
    expect_error(form.try_call(L"qvCaption", {&first, L"Chart"}), 438, L"Object doesn't support this property or method");
    collection.call(L"RemoveAll");
}

TEST_F(Form, FormsAreCentred)
{
    const HDC screen = GetDC(nullptr);
    const double width = GetDeviceCaps(screen, HORZRES) * 1440. / GetDeviceCaps(screen, LOGPIXELSX);
    const double height = GetDeviceCaps(screen, VERTRES) * 1440. / GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    Recorded own{log, {{L"Height", 3001}, {L"Width", 4000}, {L"Top", 0}, {L"Left", 0}}};
    const auto place = [&](const std::vector<Value>& offset) {
        std::vector<Value> arguments{&own};
        arguments.insert(arguments.end(), offset.begin(), offset.end());
        EXPECT_TRUE(logged(L"CenterFormToScreen", arguments).starts_with(L"Height? Width? Top="));
        return std::pair{own[L"Left"].dblVal, own[L"Top"].dblVal};
    };
    const std::pair centre{(width - 4000) / 2, (height - 3001) / 2}, end{width - 4000, height - 3001}, start{0., 0.};
    EXPECT_EQ(place({}), centre);
    EXPECT_EQ(place({0}), centre);
    EXPECT_EQ(place({-1}), start);
    EXPECT_EQ(place({-1.5}), start);
    EXPECT_EQ(place({1}), end);
    EXPECT_EQ(place({99}), end);
    EXPECT_EQ(place({0.5}), std::pair((width - 4000) / 2 * 1.5, (height - 3001) / 2 * 1.5));
    log.clear();
    EXPECT_EQ(form.try_call(L"CenterFormToScreen", {&own, L"left"}).number(), 13);
    EXPECT_EQ(log, L"");
}

TEST_F(Form, EdgesAreDrawnInsideARectangle)
{
    constexpr GUID rectangle{0x6C1B5E2F, 0x0D9A, 0x4B7E, {0x8A, 0x53, 0x27, 0xF4, 0xD1, 0xC0, 0x9B, 0x68}};
    constexpr GUID library{0xB713A6BC, 0xB922, 0x11D1, {0xB8, 0x17, 0x00, 0x20, 0x18, 0x2C, 0x2F, 0x2F}};
    IRecordInfo* description = nullptr;
    ASSERT_EQ(GetRecordInfoFromGuids(library, 1, 79, 0, rectangle, &description), S_OK);
    RECT area{10, 10, 110, 70};
    Value record = Value::reference(VT_RECORD, &area);
    record.pRecInfo = description;
    const COLORREF white = RGB(255, 255, 255), corner = GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF background = RGB(1, 2, 3);
    const auto draw = [&](const Canvas& picture, long dx, long dy, bool grip) {
        const HBRUSH brush = CreateSolidBrush(background);
        FillRect(picture.context, &area, brush);
        DeleteObject(brush);
        VARIANT arguments[]{Value{grip}, Value{dy}, Value{dx}, record, handle(picture.context)};
        DISPPARAMS parameters{arguments, nullptr, 5, 0};
        const DISPID id = form.id(L"Draw3dEdge");
        EXPECT_EQ(form.dispatch()->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
    };
    const Canvas plain{120, 80}, filled{120, 80}, gripped{120, 80};
    draw(plain, 0, 17, true);
    EXPECT_EQ(plain(10, 10), GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(plain(109, 69), GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_EQ(plain(12, 12), background);
    EXPECT_EQ(plain(107, 67), background) << "no corner";
    for (const auto& [x, y] : {std::pair{9, 40}, {110, 40}, {50, 9}, {50, 70}})
        EXPECT_EQ(plain(x, y), white) << "outside";

    draw(filled, 16, 18, false);
    EXPECT_EQ(filled(107, 67), corner);
    EXPECT_EQ(filled(92, 50), corner);
    EXPECT_EQ(filled(91, 50), background);
    EXPECT_EQ(filled(92, 49), background);

    _qvForm* early = nullptr;
    ASSERT_EQ(form.dispatch()->QueryInterface(__uuidof(_qvForm), reinterpret_cast<void**>(&early)), S_OK);
    const auto context = static_cast<long>(reinterpret_cast<LONG_PTR>(gripped.context));
    EXPECT_EQ(early->Draw3dEdge(context, &area, 16, 16, VARIANT_TRUE), S_OK);
    bool has_grip = false;
    for (int i = 0; i < 16; ++i)
        has_grip |= gripped(92 + i, 52 + i) != gripped(92, 52);
    EXPECT_TRUE(has_grip);
    EXPECT_EQ(early->Draw3dEdge(context, nullptr, 0, 0, VARIANT_FALSE), static_cast<HRESULT>(0x800A0005));
    RECT extreme{LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX};
    EXPECT_EQ(early->Draw3dEdge(0, &extreme, LONG_MAX, LONG_MAX, VARIANT_TRUE), S_OK) << "no context";
    early->Release();
    description->Release();
}

TEST_F(Form, ObjectsAreHeldWhileTheyAreUsed)
{
    _qvForm* early = nullptr;
    ASSERT_EQ(form.dispatch()->QueryInterface(__uuidof(_qvForm), reinterpret_cast<void**>(&early)), S_OK);
    Recorded items{log, {{L"Count", 0}}};
    const Recorded::Members members{
        {L"MultiSelect", true}, {L"ListItems", &items}, {L"Text", L""}, {L"SelStart", 0}, {L"SelText", L""}, {L"SelRTF", L""},
        {L"Enabled", true}, {L"BackColor", 0}, {L"ScaleWidth", 5}, {L"ScaleHeight", 5}, {L"Left", 9}, {L"Top", 9}, {L"Width", 1},
        {L"Height", 1}, {L"ListCount", 0}, {L"ColumnCount", 1}};
    Recorded control{log, members};
    // The test has one reference, each use of a member has one, and the call has its own from the first to the last of them.
    int uses = 0;
    for (const auto& [member, value] : members)
        control.when(member.c_str(), [&] {
            ++uses;
            EXPECT_GE(control.references(), 3) << log.c_str();
        });
    Value selected;
    VARIANT_BOOL flag = VARIANT_FALSE;
    long number = 0;
    EXPECT_EQ(early->GetSelectedListItem(&control, &selected), S_OK);
    EXPECT_EQ(early->AddText2Ctrl(&control, nullptr, VARIANT_TRUE, static_cast<long>(0x80000008)), S_OK);
    EXPECT_EQ(early->EnableVbWindow(&control, VARIANT_TRUE), S_OK);
    EXPECT_EQ(early->MoveToForm(&control, &control), S_OK);
    EXPECT_EQ(early->CenterFormToScreen(&control, Value::missing()), S_OK);
    EXPECT_EQ(early->AddTextRTF(&control, nullptr, VARIANT_TRUE), S_OK);
    EXPECT_EQ(early->Box_Sel(&control, &flag), S_OK);
    EXPECT_EQ(early->Box_Move(&control, &control, VARIANT_TRUE, &number), S_OK);
    EXPECT_EQ(early->Box_Sort(&control, 0, &flag), S_OK);
    EXPECT_EQ(early->Box_Del(&control, &number), S_OK);
    EXPECT_GT(uses, 25);
    early->Release();
}
