#include "support/tooltip_window.h"

#include <thread>

using client::Object;
using client::ParentWindow;
using client::pump_until;
using client::ToolTip;
using client::Value;
using client::Watched;

namespace {

using Texts = std::vector<std::wstring>;

constexpr long always = TTS_ALWAYSTIP, track = TTF_TRACK | TTF_ABSOLUTE;

class ToolTips : public testing::Test {
protected:
    static bool add_on_demand(const ToolTip& tip, const ParentWindow& parent, long id, long flags = TTF_ABSOLUTE)
    {
        return tip.object.call(L"AddTTRectCB", {parent, 0, 0, 100, 50, flags, id}).flag();
    }
    static bool add(const ToolTip& tip, const ParentWindow& parent, long id, const std::wstring& text)
    {
        return tip.object.call(L"AddTTRect", {parent, 0, 50, 100, 100, text, long{TTF_ABSOLUTE}, id}).flag();
    }
    static bool shows(const ToolTip& tip)
    {
        return pump_until([&] { return IsWindowVisible(tip.window()) != FALSE; });
    }

    client::Apartment apartment;
};

/// The early-bound interface, which takes records.
struct EarlyBound {
    explicit EarlyBound(const Object& object)
    {
        EXPECT_EQ(object.dispatch()->QueryInterface(__uuidof(_qvToolTip), reinterpret_cast<void**>(&tip)), S_OK);
    }
    ~EarlyBound() { tip->Release(); }
    _qvToolTip* operator->() const { return tip; }
    _qvToolTip* tip = nullptr;
};

} // namespace

TEST_F(ToolTips, GiveNothingBeforeInit)
{
    const ToolTip tip;
    const ParentWindow parent;
    const struct {
        const wchar_t* member;
        std::vector<Value> arguments;
        VARTYPE type;
    } calls[]{
        {L"DelayTime", {3}, VT_I4}, {L"BubbleSize", {parent, 1}, VT_I4}, {L"HitTest", {1, 1, parent}, VT_I4},
        {L"SetTrackActivate", {true, parent, 1}, VT_BOOL}, {L"SetTrackPosition", {0x7FFFFFFF, 0}, VT_BOOL},
        {L"AddTTRect", {parent, 0, 0, 9, 9, L"text"}, VT_BOOL}, {L"AddTTRectCB", {parent, 0, 0, 9, 9}, VT_BOOL},
        {L"Count", {}, VT_I4}, {L"DeleteTT", {1}, VT_BOOL}, {L"SetNewTTPos", {1, 0, 0, 9, 9}, VT_BOOL},
        {L"Update", {}, VT_BOOL}, {L"SetTitle", {L"title", 1}, VT_BOOL}, {L"Text", {1, parent}, VT_BSTR},
        {L"BackColor", {}, VT_I4}, {L"FontColor", {}, VT_I4}, {L"MaxTipWidth", {}, VT_I4}, {L"hwnd", {}, VT_I4},
        {L"Enabled", {}, VT_BOOL}, {L"SetMargin", {1, 2, 3, 4}, VT_EMPTY},
    };
    for (const wchar_t* property : {L"BackColor", L"FontColor", L"MaxTipWidth", L"Enabled"})
        tip.object.put(property, {-1});
    for (const auto& one : calls) {
        const Value value = tip.object.call(one.member, one.arguments);
        EXPECT_EQ(value.vt, one.type) << one.member;
        if (value.vt == VT_BSTR) {
            EXPECT_EQ(value.text(), L"");
        } else if (value.vt != VT_EMPTY) {
            EXPECT_EQ(value.number(), 0) << one.member;
        }
    }
    Value variables[4]{1, 2, 3, 4};
    EXPECT_EQ(tip.object.call(L"GetMargin", {Value::variable(variables[0]), Value::variable(variables[1]),
                                             Value::variable(variables[2]), Value::variable(variables[3])}).vt, VT_EMPTY);
    EXPECT_EQ(variables[0].number() * 1000 + variables[3].number(), 1004) << "nothing is filled";
    EXPECT_TRUE(parent.has_own_procedure());
    tip.object.call(L"Init");
    EXPECT_FALSE(tip.object.call(L"Enabled").flag()) << "nor was anything stored";
    const HWND window = tip.window();
    tip.object.call(L"Init", {long{TTS_BALLOON}});
    EXPECT_EQ(tip.window(), window) << "once";
    EXPECT_FALSE(GetWindowLongA(window, GWL_STYLE) & TTS_BALLOON);
    EXPECT_TRUE(GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOPMOST);
}

TEST_F(ToolTips, SendTheMessagesOfTheirMembers)
{
    const ToolTip tip{always};
    const ParentWindow parent;
    const Object& object = tip.object;
    const auto hwnd = reinterpret_cast<LONG_PTR>(parent.handle());
    Watched watched{tip.window()};
    watched.answer = 7;
    constexpr LPARAM any = -77;
    const struct {
        std::function<Value()> call;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        const wchar_t* result;
    } cases[]{
        {[&] { object.put(L"DelayTime", {3, 250}); return Value{}; }, 1027, 3, 250, L""},
        {[&] { return object.call(L"DelayTime", {2}); }, 1045, 2, 0, L"7"},
        {[&] { return object.call(L"GetMargin", {1, 2, 3, 4}); }, 1051, 0, any, L""},
        {[&] { return object.call(L"SetMargin", {1, 2, 3, 4}); }, 1050, 0, any, L""},
        {[&] { return object.call(L"BubbleSize", {parent, 5}); }, 1032, 0, any, L"-1"},
        {[&] { return object.call(L"HitTest", {5, 6, parent}); }, 1034, 0, any, L"0"},
        {[&] { return object.call(L"SetTrackActivate", {true, parent, 5}); }, 1041, static_cast<WPARAM>(-1), any, L"True"},
        {[&] { return object.call(L"SetTrackPosition", {10, 20}); }, 1042, 0, 655380, L"True"},
        {[&] { return object.call(L"SetTrackPosition", {-1, -2}); }, 1042, 0, -65538, L"True"},
        {[&] { return object.call(L"Count"); }, 1037, 0, 0, L"7"},
        {[&] { return object.call(L"DeleteTT", {5}); }, 1029, 0, any, L"True"},
        {[&] { return object.call(L"SetNewTTPos", {5, 1, 2, 3, 4}); }, 1030, 0, any, L"True"},
        {[&] { return object.call(L"Update"); }, 1053, 0, 0, L"True"},
        {[&] { return object.call(L"SetTitle", {L"Titel", 2}); }, 1056, 2, any, L"True"},
        {[&] { return object.call(L"Text", {5, parent}); }, 1035, 0, any, L""},
        {[&] { object.put(L"Text", {5, parent, L"\u00e4"}); return Value{}; }, 1036, 0, any, L""},
        {[&] { return object.call(L"BackColor"); }, 1046, 0, 0, L"7"},
        {[&] { object.put(L"BackColor", {0xABCDEF}); return Value{}; }, 1043, 0xABCDEF, 0, L""},
        {[&] { return object.call(L"FontColor"); }, 1047, 0, 0, L"7"},
        {[&] { object.put(L"FontColor", {0xABCDEF}); return Value{}; }, 1044, 0xABCDEF, 0, L""},
        {[&] { return object.call(L"MaxTipWidth"); }, 1049, 0, 0, L"7"},
        {[&] { object.put(L"MaxTipWidth", {300}); return Value{}; }, 1048, 300, 300, L""},
        {[&] { object.put(L"Enabled", {true}); return Value{}; }, 1025, static_cast<WPARAM>(-1), 0, L""},
        {[&] { return object.call(L"AddTTRect", {parent, 1, 2, 3, 4, L"\u00e4", 128, 5}); }, 1028, 0, any, L"True"},
        {[&] { return object.call(L"AddTTRectCB", {parent, 1, 2, 3, 4, 1, 5}); }, 1028, 0, any, L"True"},
    };
    for (const auto& one : cases) {
        watched.sent.clear();
        Value result = one.call();
        VariantChangeTypeEx(&result, &result, 0x409, VARIANT_ALPHABOOL, VT_BSTR);
        ASSERT_EQ(watched.sent.size(), 1u) << one.message;
        const Watched::Sent& sent = watched.sent[0];
        EXPECT_EQ(sent.message, one.message);
        EXPECT_EQ(sent.wParam, one.wParam) << one.message;
        if (one.lParam != any) {
            EXPECT_EQ(sent.lParam, one.lParam) << one.message;
        }
        EXPECT_EQ(result.text(), one.result) << one.message;
        if (sent.tool.cbSize == 0)
            continue;
        const bool of_no_window = one.message == 1029 || one.message == 1030;
        EXPECT_EQ(reinterpret_cast<LONG_PTR>(sent.tool.hwnd), of_no_window ? 0 : hwnd) << one.message;
        EXPECT_EQ(sent.tool.uId, 5u) << one.message;
        const bool of_library = one.message == 1028 || one.message == 1029 || one.message == 1030 || one.message == 1032;
        EXPECT_EQ(sent.tool.hinst, of_library ? GetModuleHandleA("qvObjects.dll") : nullptr) << one.message;
        if (one.message == 1028 || one.message == 1030) {
            const RECT& rect = sent.tool.rect;
            EXPECT_TRUE(rect.left == 1 && rect.top == 2 && rect.right == 3 && rect.bottom == 4);
        }
        if (one.message == 1028) {
            EXPECT_EQ(sent.tool.uFlags, sent.text.empty() ? 17u : 144u);
            EXPECT_EQ(sent.tool.lpszText == LPSTR_TEXTCALLBACKA, sent.text.empty());
        }
        if (!sent.text.empty()) {
            EXPECT_EQ(sent.text, "\xE4") << one.message;
        }
    }
    EXPECT_TRUE(object.call(L"Enabled").flag());
    watched.answer.reset();
    client::expect_error(object.try_call(L"SetTrackPosition", {32768, 0}), 6, L"Overflow");
    client::expect_error(object.try_call(L"SetTrackPosition", {-32768, -1}), 6, L"Overflow");
}

TEST_F(ToolTips, KeepWhatTheyAreGiven)
{
    ToolTip tip{always};
    const ParentWindow parent;
    const Object& object = tip.object;
    EXPECT_TRUE(add(tip, parent, 5, L"Gr\u00f6\u00dfe"));
    EXPECT_TRUE(add_on_demand(tip, parent, 6));
    EXPECT_EQ(object.call(L"Count").number(), 2);
    EXPECT_EQ(object.call(L"BubbleSize", {parent, 5}).number(), -1);
    EXPECT_EQ(object.call(L"BubbleSize", {parent, 6}).number(), -1);
    EXPECT_EQ(object.call(L"BubbleSize", {parent, 7}).number(), 0);
    EXPECT_EQ(object.call(L"HitTest", {10, 60, parent}).number(), 5);
    EXPECT_EQ(object.call(L"HitTest", {10, 10, parent}).number(), 6);
    EXPECT_EQ(object.call(L"HitTest", {200, 10, parent}).number(), 0);
    EXPECT_EQ(object.call(L"Text", {5, parent}).text(), L"Gr\u00f6\u00dfe");
    tip.answer = L"auf Anfrage: \u00fc";
    EXPECT_EQ(object.call(L"Text", {6, parent}).text(), tip.answer);
    EXPECT_EQ(object.call(L"Text", {7, parent}).text(), L"");
    for (const std::size_t length : {81u, 5000u, 70000u}) { // longer than any buffer of a size that somebody thought of
        const std::wstring text(length, L'x');
        object.put(L"Text", {5, parent, text});
        tip.answer = text;
        for (const long id : {5, 6}) {
            const std::wstring got = object.call(L"Text", {id, parent}).text();
            EXPECT_TRUE(got.size() >= 79 && text.starts_with(got)) << got.size();
            EXPECT_EQ(object.call(L"BubbleSize", {parent, id}).number(), -1);
        }
    }
    object.put(L"MaxTipWidth", {300});
    EXPECT_EQ(object.call(L"MaxTipWidth").number(), 300);
    object.put(L"DelayTime", {long{TTDT_INITIAL}, 250});
    EXPECT_EQ(object.call(L"DelayTime", {long{TTDT_INITIAL}}).number(), 250);
    object.call(L"SetMargin", {1, 2, 3, 4});
    Value margin[4];
    object.call(L"GetMargin", {Value::variable(margin[0]), Value::variable(margin[1]), Value::variable(margin[2]),
                               Value::variable(margin[3])});
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(margin[i].number(), i + 1);
}

TEST_F(ToolTips, TakeRectangles)
{
    const ToolTip tip{always};
    const ParentWindow parent;
    const EarlyBound early{tip.object};
    EXPECT_TRUE(add(tip, parent, 5, L"text"));
    RECT moved{200, 0, 250, 50};
    auto hwnd = static_cast<long>(reinterpret_cast<LONG_PTR>(parent.handle()));
    long id = 5;
    EXPECT_EQ(early->newToolRect(&moved, &hwnd, &id), S_OK);
    EXPECT_EQ(tip.object.call(L"HitTest", {210, 10, parent}).number(), 5);
    EXPECT_EQ(early->newToolRect(nullptr, &hwnd, &id), static_cast<HRESULT>(0x800A0005));
    Watched watched{tip.window()};
    watched.answer = 1;
    RECT rectangle{};
    VARIANT_BOOL adjusted = VARIANT_FALSE;
    EXPECT_EQ(early->AdjustRect(VARIANT_TRUE, &rectangle, &adjusted), S_OK);
    EXPECT_TRUE(adjusted);
    Value variable;
    EXPECT_TRUE(tip.object.call(L"AdjustRect", {false, Value::variable(variable)}).flag());
    ASSERT_EQ(variable.vt, VT_RECORD) << "a script's empty variable";
    ASSERT_EQ(watched.sent.size(), 2u);
    EXPECT_EQ(watched.sent[0].lParam, reinterpret_cast<LPARAM>(&rectangle));
    for (const auto& [place, flag] : {std::pair{0u, -1}, {1u, 0}})
        EXPECT_TRUE(watched.sent[place].message == 1055 && watched.sent[place].wParam == static_cast<WPARAM>(flag));
}

TEST_F(ToolTips, AskForTheTextsOfTheirTools)
{
    for (const bool is_unicode : {true, false}) {
        ParentWindow parent{is_unicode};
        ToolTip tip{always};
        EXPECT_TRUE(add_on_demand(tip, parent, 1, track));
        const HANDLE former = parent.property("OLDPROC");
        EXPECT_TRUE(add_on_demand(tip, parent, 2, track));
        EXPECT_EQ(parent.property("OLDPROC"), former) << "hooked once";
        EXPECT_EQ(parent.property("cTTOBJ"), tip.object.dispatch());
        EXPECT_TRUE(parent.answers());

        tip.answer = L"Gr\u00fc\u00dfe \u4e2d";
        for (const long id : {1, 2}) {
            const NMTTDISPINFOA record = tip.ask(parent, id);
            EXPECT_STREQ(record.lpszText, "Gr\xFC\xDF" "e ?");
            const auto* const bytes = reinterpret_cast<const char*>(&record);
            EXPECT_EQ(std::count(bytes + 16, bytes + sizeof record, 0x55), 92) << "the rest of the record is as it was";
        }
        EXPECT_EQ(tip.heard, (Texts{L"NeedText 1", L"NeedText 2"}));
        EXPECT_EQ(parent.notified, (std::vector<int>{-520, -520})) << "the request goes on";

        tip.heard.clear();
        parent.notified.clear();
        tip.return_code = 9;
        EXPECT_EQ(tip.notify(parent, 2, static_cast<UINT>(TTN_SHOW)), 9);
        EXPECT_EQ(tip.notify(parent, 2, static_cast<UINT>(TTN_POP)), 0);
        EXPECT_EQ(tip.notify(parent, 2, NM_CLICK), 0);
        EXPECT_EQ(tip.heard, (Texts{L"SHOW 2", L"POP 2"}));
        EXPECT_EQ(parent.notified, std::vector<int>{-2}) << "the object's notifications end with it";
        tip.let_go();
        EXPECT_TRUE(parent.has_own_procedure() && !parent.property("OLDPROC") && !parent.property("cTTOBJ"));
        EXPECT_EQ(IsWindowUnicode(parent.handle()), is_unicode);
    }
}

TEST_F(ToolTips, AppearOverTheirWindow)
{
    const ParentWindow parent;
    ToolTip tip{always | TTS_BALLOON};
    add_on_demand(tip, parent, 4, track);
    EXPECT_TRUE(tip.object.call(L"SetTitle", {L"\u00dcberschrift", long{TTI_INFOICON}}).flag());
    tip.object.call(L"SetTrackPosition", {100, 120});
    tip.object.call(L"SetTrackActivate", {true, parent, 4});
    EXPECT_TRUE(shows(tip));
    RECT place;
    GetWindowRect(tip.window(), &place);
    EXPECT_TRUE(place.right > place.left + 20 && place.bottom > place.top + 20);
    EXPECT_EQ(std::ranges::count(tip.heard, L"SHOW 4"), 1);
    EXPECT_GE(std::ranges::count(tip.heard, L"NeedText 4"), 1);
    tip.object.call(L"SetTrackActivate", {false, parent, 4});
    EXPECT_TRUE(pump_until([&] { return !IsWindowVisible(tip.window()); }));
    EXPECT_EQ(tip.heard.back(), L"POP 4");
}

TEST_F(ToolTips, AppearWhereTheMouseRests)
{
    const ParentWindow parent;
    const ToolTip tip{always};
    add_on_demand(tip, parent, 4);
    tip.object.put(L"DelayTime", {long{TTDT_INITIAL}, 10});
    tip.object.put(L"Enabled", {false});
    const auto rest = [&](int x) {
        SetCursorPos(50 + x, 60);
        parent.send(WM_MOUSEMOVE, 0, MAKELPARAM(x, 10));
    };
    rest(20);
    EXPECT_FALSE(pump_until([&] { return !tip.heard.empty(); }, 30)) << "it was switched off";
    tip.object.put(L"Enabled", {true});
    rest(30);
    EXPECT_TRUE(shows(tip));
    EXPECT_GE(std::ranges::count(tip.heard, L"NeedText 4"), 1);
    rest(250); // beside the tool
    EXPECT_TRUE(pump_until([&] { return !IsWindowVisible(tip.window()); }));
    EXPECT_EQ(tip.heard.back(), L"POP 4");
}

TEST_F(ToolTips, ShareTheirWindow)
{
    for (const bool first_goes_first : {true, false}) {
        const ParentWindow parent;
        ToolTip first{always}, second{always}, fixed{always}, stranger{always};
        first.answer = L"one";
        second.answer = L"two";
        add_on_demand(first, parent, 1);
        const HANDLE former = parent.property("OLDPROC");
        add_on_demand(second, parent, 1);
        add(fixed, parent, 3, L"fixed");
        EXPECT_EQ(parent.property("OLDPROC"), former);
        EXPECT_STREQ(first.ask(parent, 1).lpszText, "one");
        EXPECT_STREQ(second.ask(parent, 1).lpszText, "two");
        fixed.notify(parent, 3, static_cast<UINT>(TTN_SHOW));
        EXPECT_EQ(fixed.heard, Texts{L"SHOW 3"}) << "the window is hooked for others, but its tooltip is the sender";
        EXPECT_STREQ(first.ask(parent, 8, parent.handle()).lpszText, "two") << "the window names who hears of those of nobody";

        ToolTip &goes = first_goes_first ? first : second, &stays = first_goes_first ? second : first;
        goes.let_go();
        EXPECT_EQ(parent.property("OLDPROC"), former);
        EXPECT_EQ(parent.property("cTTOBJ"), stays.object.dispatch());
        EXPECT_EQ(stays.ask(parent, 1).lpszText, std::string_view{first_goes_first ? "two" : "one"});
        stays.let_go();
        EXPECT_TRUE(!parent.property("OLDPROC") && parent.answers());
        EXPECT_EQ(stranger.heard, Texts{});
    }
}

TEST_F(ToolTips, LeaveTheirWindowAliveWhereFixedTextsCameFirst)
{
    const ParentWindow parent;
    ToolTip tip{always};
    add(tip, parent, 1, L"fixed"); // the system subclasses the window before it is hooked
    add_on_demand(tip, parent, 2);
    EXPECT_STREQ(tip.ask(parent, 2).lpszText, "on demand");
    tip.let_go();
    EXPECT_TRUE(parent.answers());
}

TEST_F(ToolTips, SurviveWrongNotifications)
{
    const ParentWindow parent;
    ToolTip tip{always};
    add_on_demand(tip, parent, 1);
    for (const LPARAM address : {0L, 1L, 0xFFF0L})
        EXPECT_EQ(parent.send(WM_NOTIFY, 1, address), 0);

    // A record of a header alone, with no memory behind it.
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    auto* const page = static_cast<char*>(VirtualAlloc(nullptr, 2 * system.dwPageSize, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(page, system.dwPageSize, MEM_COMMIT, PAGE_READWRITE);
    auto* const header = reinterpret_cast<NMHDR*>(page + system.dwPageSize - sizeof(NMHDR));
    *header = {tip.window(), 3, static_cast<UINT>(TTN_GETDISPINFOA)};
    parent.send(WM_NOTIFY, 3, reinterpret_cast<LPARAM>(header));
    EXPECT_EQ(tip.heard, Texts{L"NeedText 3"});
    VirtualFree(page, 0, MEM_RELEASE);

    SetPropA(parent.handle(), "cTTOBJ", reinterpret_cast<HANDLE>(0x12345678));
    tip.ask(parent, 1, parent.handle());
    EXPECT_EQ(tip.heard.size(), 1u) << "nobody hears of it";
    EXPECT_EQ(tip.ask(parent, 1).lpszText, std::string_view{"on demand"}) << "the sender is known";
}

TEST_F(ToolTips, SurviveTheirHandlers)
{
    for (const long flags : {long{TTF_ABSOLUTE}, track}) {
        const ParentWindow parent;
        ToolTip tip{always};
        add_on_demand(tip, parent, 1, flags);
        tip.handler = [&] {
            EXPECT_TRUE(parent.answers());
            tip.answer = L"inner";
            EXPECT_STREQ(tip.ask(parent, 2).lpszText, "inner");
            tip.answer = L"outer";
        };
        EXPECT_STREQ(tip.ask(parent, 1).lpszText, "outer");

        // The object goes in the middle of its tooltip's request.
        const HWND window = tip.window();
        const Object object = tip.object;
        tip.handler = [&] { tip.let_go(); };
        const EarlyBound early{object};
        const_cast<Object&>(object) = Object{};
        BSTR text = nullptr;
        early->get_Text(1, static_cast<long>(reinterpret_cast<LONG_PTR>(parent.handle())), &text);
        EXPECT_EQ(std::wstring{text}, L"outer") << "which still gets its answer";
        SysFreeString(text);
        EXPECT_TRUE(IsWindow(window));
    }
    EXPECT_TRUE(pump_until([] { return true; }));
}

TEST_F(ToolTips, GoAfterTheRequestInWhichTheLastReferenceWent)
{
    const ParentWindow parent;
    ToolTip tip{always};
    add_on_demand(tip, parent, 1, track);
    tip.handler = [&] { tip.let_go(); };
    const HWND window = tip.window();
    TTTOOLINFOA tool{};
    tool.cbSize = 44;
    tool.hwnd = parent.handle();
    tool.uId = 1;
    SendMessageA(window, TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
    EXPECT_EQ(tip.heard.size(), 1u);
    EXPECT_TRUE(pump_until([&] { return !IsWindow(window); }));
    EXPECT_TRUE(parent.has_own_procedure() && parent.answers());

    // A handler ends the window that was asked.
    ParentWindow ended;
    ToolTip other{always};
    add_on_demand(other, ended, 1);
    other.handler = [&] { ended.destroy(); };
    EXPECT_STREQ(other.ask(ended, 1).lpszText, "on demand");
    EXPECT_EQ(ended.notified, std::vector<int>{}) << "a window that is gone hears of nothing";
}

TEST_F(ToolTips, GoInAnyOrder)
{
    ToolTip tip{always};
    {
        ParentWindow parent;
        add_on_demand(tip, parent, 1);
        parent.destroy(); // before the object
    }
    const ParentWindow parent;
    add_on_demand(tip, parent, 1);
    DestroyWindow(tip.window());
    EXPECT_EQ(tip.object.call(L"Count").number(), 0);
    EXPECT_EQ(tip.object.call(L"Text", {1, parent}).text(), L"");
    tip.let_go();
    EXPECT_TRUE(parent.has_own_procedure());
}

TEST_F(ToolTips, MeetOthersInFrontOfAWindow)
{
    const ParentWindow parent;
    ToolTip tip{always};
    {
        Watched watched{tip.window()};
        watched.answer = 1; // the system, which would put its own procedure in front, hears of no tool
        add_on_demand(tip, parent, 1);
    }
    const LONG ours = GetWindowLongA(parent.handle(), GWL_WNDPROC);
    EXPECT_FALSE(parent.has_own_procedure());
    tip.let_go();
    SetWindowLongA(parent.handle(), GWL_WNDPROC, ours); // brought back by somebody who had kept it
    EXPECT_TRUE(parent.answers()) << "the window behaves as its class";
    ToolTip next{always};
    add_on_demand(next, parent, 1);
    EXPECT_TRUE(parent.answers()) << "and is not led in a circle";
    EXPECT_STREQ(next.ask(parent, 1).lpszText, "on demand");
}

TEST_F(ToolTips, LeaveWindowsOfOtherThreadsAlone)
{
    const ParentWindow parent;
    std::atomic<bool> is_done = false;
    std::jthread other{[&] {
        client::Apartment apartment;
        const ToolTip tip{always};
        Watched watched{tip.window()};
        watched.answer = 1; // the system would put its own procedure there
        add_on_demand(tip, parent, 1);
        EXPECT_EQ(watched.sent.size(), 1u) << "the tool is added all the same";
        is_done = true;
    }};
    EXPECT_TRUE(pump_until([&] { return is_done.load(); }));
    EXPECT_TRUE(parent.has_own_procedure() && !parent.property("OLDPROC"));
}
