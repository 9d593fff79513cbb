#include "support/message_listener.h"
#include "support/tables.h"
#include "support/test_window.h"

#include <climits>
#include <cstring>
#include <thread>

using client::MessageListener;
using client::Object;
using client::TestWindow;
using client::Value;
using Event = MessageListener::Event;
using Messages = std::vector<TestWindow::Message>;
using Numbers = std::vector<long>;

namespace {

constexpr long key_down = WM_KEYDOWN, key_up = WM_KEYUP, character = WM_CHAR;

class Watching : public testing::Test {
protected:
    static Object make_watcher() { return Object::create(L"qvObjects.qvWindowProc"); }
    static long original(const Object& watcher) { return watcher.call(L"OriginalWindowProc").number(); }

    void add(std::initializer_list<long> messages) const
    {
        for (const long message : messages)
            watcher.call(L"AddMsg", {message});
    }
    static void hook(const Object& watcher, const TestWindow& window)
    {
        watcher.put(L"hwnd", {window.number()});
        watcher.put(L"Enabled", {true});
    }
    void watch(std::initializer_list<long> messages) const
    {
        add(messages);
        hook(watcher, window);
    }
    Numbers registered() const
    {
        Numbers numbers;
        for (const Value& item : client::items(watcher.object(L"RegisteredMessages")))
            numbers.push_back(item.number());
        return numbers;
    }

    client::Apartment apartment;
    TestWindow window;
    Object watcher = make_watcher();
    const LONG own_procedure = window.procedure();
};

/// A handler that does something once, and nothing else.
MessageListener::Handler once(std::function<void(const Event&)> action)
{
    return [action = std::move(action)](const Event& event) mutable {
        if (action)
            std::exchange(action, nullptr)(event);
        return S_OK;
    };
}

/// Memory of two pages, of which the second one may be anything.
class Pages {
public:
    explicit Pages(DWORD protection_of_second)
    {
        EXPECT_TRUE(start_);
        std::memset(start_, 7, 2 * size);
        DWORD former = 0;
        EXPECT_TRUE(VirtualProtect(start_ + size, size, protection_of_second, &former));
    }
    ~Pages() { VirtualFree(start_, 0, MEM_RELEASE); }
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;

    /// An address so many bytes behind the end of the first one.
    long end(long offset = 0) const { return static_cast<long>(reinterpret_cast<LONG_PTR>(start_ + size)) + offset; }
    bool first_is_untouched() const { return std::count(start_, start_ + size, std::byte{7}) == size; }
    DWORD protection_of_second() const
    {
        MEMORY_BASIC_INFORMATION region{};
        VirtualQuery(start_ + size, &region, sizeof region);
        return region.Protect;
    }

private:
    static constexpr long size = 4096;
    std::byte* start_ = static_cast<std::byte*>(VirtualAlloc(nullptr, 2 * size, MEM_COMMIT, PAGE_READWRITE));
};

LONG_PTR address(const auto& variable) { return reinterpret_cast<LONG_PTR>(&variable); }

/// Calls a window procedure with a stack that is off by so many bytes from what compilers like.
LRESULT call_with_stack_off(unsigned bytes, WNDPROC procedure, HWND window, UINT message)
{
    const struct {
        WNDPROC procedure;
        HWND window;
        UINT message;
    } call{procedure, window, message};
    LRESULT result = 0;
    asm volatile("movl %%esp, %%ebx\n\t"
                 "andl $-16, %%esp\n\t"
                 "subl %[bytes], %%esp\n\t"
                 "pushl $2\n\tpushl $1\n\tpushl 8(%[call])\n\tpushl 4(%[call])\n\t"
                 "call *(%[call])\n\t"
                 "movl %%ebx, %%esp"
                 : "=a"(result)
                 : [bytes] "d"(bytes), [call] "S"(&call)
                 : "ebx", "ecx", "memory", "cc");
    return result;
}

} // namespace

TEST_F(Watching, ReportsTheMessagesThatAreRegistered)
{
    MessageListener listener{watcher, [&](const Event& event) {
                                 EXPECT_EQ(event.hwnd, window.number());
                                 EXPECT_TRUE(event.wParam == 5 && event.lParam == -6 && event.cancel == VARIANT_FALSE);
                                 return S_OK;
                             }};
    watch({key_down, character});
    EXPECT_EQ(window.send(key_down, 5, -6), TestWindow::answer);
    window.send(key_up, 5, -6);
    window.send(character, 5, -6);
    EXPECT_EQ(listener.heard(), (Numbers{key_down, character}));
    EXPECT_EQ(window.seen(), (Messages{{WM_KEYDOWN, 5, -6}, {WM_KEYUP, 5, -6}, {WM_CHAR, 5, -6}}));
    watcher.put(L"Enabled", {false});
    window.send(key_down);
    EXPECT_EQ(listener.heard(), Numbers{});
    EXPECT_EQ(window.procedure(), own_procedure);
}

TEST_F(Watching, WhatAHandlerLeavesBehindIsPassedOn)
{
    const struct {
        MessageListener::Handler handler;
        LRESULT result;
        Messages seen;
    } cases[]{
        {[](const Event& event) { event.message = character; return S_OK; }, TestWindow::answer, {{WM_CHAR, 1, 2}}},
        {[](const Event& event) { event.wParam = LONG_MIN; event.lParam = -1; return E_FAIL; }, TestWindow::answer,
         {{WM_KEYDOWN, 0x80000000u, -1}}},
        {[](const Event& event) { event.cancel = VARIANT_TRUE; return S_OK; }, 0, {}},
        {[](const Event& event) { event.cancel = 1; return DISP_E_EXCEPTION; }, 0, {}},
        {[](const Event& event) { event.cancel = VARIANT_FALSE; return S_OK; }, TestWindow::answer, {{WM_KEYDOWN, 1, 2}}},
    };
    watch({key_down});
    for (const auto& one : cases) {
        MessageListener listener{watcher, one.handler};
        EXPECT_EQ(window.send(key_down, 1, 2), one.result);
        EXPECT_EQ(window.seen(), one.seen);
    }
}

TEST_F(Watching, MonitorAllNeedsOneRegisteredMessage)
{
    MessageListener listener{watcher};
    watcher.put(L"MonitorAll", {true});
    watch({});
    window.send(key_down);
    EXPECT_EQ(listener.heard(), Numbers{});
    add({WM_USER, key_up});
    window.send(key_down);
    window.send(key_up);
    EXPECT_EQ(listener.heard(), (Numbers{key_down, key_up})) << "each once";
    EXPECT_EQ(window.seen().size(), 3u);
}

TEST_F(Watching, TheSetIsWalkedAsItIsThen)
{
    const auto becomes = [&](long message, std::function<void()> then = [] {}) {
        return once([=](const Event& event) {
            event.message = message;
            then();
        });
    };
    const Object set = watcher.object(L"RegisteredMessages");
    const struct {
        std::initializer_list<long> registered;
        MessageListener::Handler handler;
        Numbers heard;
    } cases[]{
        {{key_down, character}, becomes(character), {key_down, character}},
        {{character, key_down}, becomes(character), {key_down}},
        {{key_down, character}, becomes(character, [&] { watcher.call(L"RemoveMsg", {character}); }), {key_down}},
        {{key_down, character, key_up}, becomes(key_up, [&] { watcher.call(L"RemoveMsg", {key_down}); }), {key_down, key_up}},
        {{key_down}, becomes(key_up, [&] { watcher.call(L"AddMsg", {key_up}); }), {key_down, key_up}},
        {{key_down, key_up}, becomes(key_up, [&] { watcher.call(L"ClearAllMsgs"); }), {key_down}},
        {{key_down, key_up}, becomes(key_up, [&] { set.call(L"Add", {key_up, Value::missing(), 1}); }), {key_down, key_up}},
    };
    hook(watcher, window);
    for (const auto& one : cases) {
        MessageListener listener{watcher, one.handler};
        watcher.call(L"ClearAllMsgs");
        add(one.registered);
        window.send(key_down);
        EXPECT_EQ(listener.heard(), one.heard);
    }
}

TEST_F(Watching, AnItemOfAnyKindIsANumberOrNoMessage)
{
    DispatchObject number{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) {
                              result->vt = VT_I2;
                              result->iVal = key_down;
                              return S_OK;
                          }};
    DispatchObject failing{{}, [](DISPID, const DISPPARAMS&, VARIANT*) { return E_FAIL; }};
    const std::pair<Value, std::size_t> cases[]{
        {L"256", 1}, {256.0, 1}, {static_cast<IDispatch*>(&number), 1},        {L"no number", 0},
        {256.5, 0},  {Value::null(), 0}, {static_cast<IDispatch*>(&failing), 0}, {static_cast<IDispatch*>(nullptr), 0},
        {Value{}, 0}, {client::list(0, {256}), 0}};
    MessageListener listener{watcher};
    hook(watcher, window);
    const Object set = watcher.object(L"RegisteredMessages");
    for (const auto& [item, heard] : cases) {
        set.call(L"Add", {item});
        set.call(L"Add", {key_down});
        EXPECT_EQ(window.send(key_down), TestWindow::answer);
        EXPECT_EQ(listener.heard().size(), heard + 1) << "type " << item.vt;
        watcher.call(L"ClearAllMsgs");
    }
    EXPECT_EQ(set.call(L"Count").number(), 0) << "it is the set itself";
}

TEST_F(Watching, MessagesAreRegisteredOnce)
{
    add({512, -5, 512, 0});
    watcher.call(L"RemoveMsg", {7});
    EXPECT_EQ(registered(), (Numbers{512, -5, 0}));
    const Object set = watcher.object(L"RegisteredMessages");
    EXPECT_EQ(set.call(L"Item", {L"-5"}).vt, VT_I4);
    watcher.call(L"RemoveMsg", {512});
    set.call(L"Add", {1, L"36"});
    add({36});
    EXPECT_EQ(registered(), (Numbers{-5, 0, 1})) << "its key is taken";
    watcher.call(L"ClearAllMsgs");
    watcher.call(L"ClearAllMsgs");
    EXPECT_EQ(registered(), Numbers{});
}

TEST_F(Watching, SetMinMaxInfoAnswersForTheWindow)
{
    using Fields = std::array<long, 10>;
    const Fields proposed{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const struct {
        std::vector<Value> arguments;
        Fields fields;
    } cases[]{
        {{300, 200}, {1, 2, 3, 4, 5, 6, 300, 200, 9, 10}},
        {{11, 12, 13, 14, 15, 16, 17, 18, 19, 20}, {1, 2, 15, 16, 17, 18, 11, 12, 13, 14}},
        {{Value::missing(), 0, 0, -14}, {1, 2, 3, 4, 5, 6, 7, 8, 9, -14}},
    };
    MessageListener listener{watcher};
    watch({WM_SIZE, key_down});
    for (const auto& one : cases) {
        EXPECT_FALSE(watcher.call(L"SetMinMaxInfo", one.arguments).flag());
        Fields fields = proposed;
        EXPECT_EQ(window.send(WM_GETMINMAXINFO, 0, address(fields)), 0);
        EXPECT_EQ(fields, one.fields);
    }
    window.send(WM_SIZE, SIZE_RESTORED, 0);
    EXPECT_EQ(window.send(key_down), TestWindow::answer);
    EXPECT_EQ(listener.heard(), Numbers{}) << "meanwhile nothing is reported";
    EXPECT_FALSE(watcher.call(L"SetMinMaxInfo").flag());
    EXPECT_EQ(registered(), (Numbers{WM_SIZE, key_down}));
    window.send(key_down);
    EXPECT_EQ(listener.heard(), Numbers{key_down});
}

TEST_F(Watching, SetMinMaxInfoLimitsAResizedWindow)
{
    const auto size_after = [&](int width, int height) {
        RECT place{};
        SetWindowPos(window.handle(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        GetWindowRect(window.handle(), &place);
        return std::pair{place.right - place.left, place.bottom - place.top};
    };
    hook(watcher, window);
    EXPECT_EQ(size_after(250, 180), (std::pair{250L, 180L}));
    watcher.call(L"SetMinMaxInfo", {300, 200, 500, 400});
    EXPECT_EQ(size_after(250, 180), (std::pair{300L, 200L}));
    EXPECT_EQ(size_after(350, 600), (std::pair{350L, 400L}));
    watcher.call(L"SetMinMaxInfo", {0, 0, 450});
    EXPECT_EQ(size_after(500, 600), (std::pair{450L, 600L}));
}

TEST_F(Watching, ARecordAtABadAddressDoesNoHarm)
{
    const Pages unreadable{PAGE_NOACCESS}, constant{PAGE_READONLY}, code{PAGE_EXECUTE_READ}, guarded{PAGE_READWRITE | PAGE_GUARD};
    watch({});
    watcher.call(L"SetMinMaxInfo", {300, 200, 300, 200, 300, 200, 300, 200});
    for (const Pages* pages : {&unreadable, &constant, &code, &guarded})
        for (const long offset : {-39L, -20L, -1L, 0L}) {
            const DWORD protection = pages->protection_of_second();
            EXPECT_EQ(window.send(WM_GETMINMAXINFO, 0, pages->end(offset)), 0);
            EXPECT_TRUE(pages->first_is_untouched());
            EXPECT_EQ(pages->protection_of_second(), protection);
        }
    for (const long nowhere : {0L, 1L, -1L, -40L, LONG_MIN, LONG_MAX})
        EXPECT_EQ(window.send(WM_GETMINMAXINFO, 0, nowhere), 0);
    const Pages whole{PAGE_READWRITE};
    window.send(WM_GETMINMAXINFO, 0, whole.end(-19)); // it need not be aligned
    EXPECT_FALSE(whole.first_is_untouched());
}

TEST_F(Watching, EnabledAndHwndHookInEitherOrder)
{
    TestWindow other;
    watcher.put(L"Enabled", {true});
    EXPECT_EQ(original(watcher), 0);
    for (const long nowhere : {0L, 0x7FFFL}) {
        watcher.put(L"hwnd", {nowhere});
        EXPECT_EQ(original(watcher), 0) << "there is no such window";
    }
    watcher.put(L"hwnd", {window.number()});
    EXPECT_EQ(original(watcher), own_procedure);
    const LONG shared = window.procedure();
    EXPECT_NE(shared, own_procedure);
    watcher.put(L"hwnd", {other.number()});
    EXPECT_EQ(window.procedure(), own_procedure);
    EXPECT_EQ(other.procedure(), shared);
    watcher.put(L"Enabled", {false});
    EXPECT_EQ(other.procedure(), own_procedure);
    EXPECT_EQ(original(watcher), 0);
    watcher.put(L"OriginalWindowProc", {17});
    EXPECT_EQ(original(watcher), 17);
    EXPECT_EQ(other.procedure(), own_procedure) << "plain access";
    watcher.put(L"OriginalWindowProc", {0});
}

TEST_F(Watching, OfTwoObjectsOnAWindowTheFirstOneHears)
{
    const Object second = make_watcher();
    MessageListener to_first{watcher}, to_second{second};
    watch({key_down});
    second.call(L"AddMsg", {key_down});
    hook(second, window);
    EXPECT_EQ(original(second), window.procedure()) << "the shared procedure itself";
    EXPECT_EQ(window.send(key_down), TestWindow::answer);
    EXPECT_EQ(to_first.heard(), Numbers{key_down});
    EXPECT_EQ(to_second.heard(), Numbers{});

    watcher.put(L"hwnd", {0});
    EXPECT_EQ(window.procedure(), own_procedure);
    second.put(L"Enabled", {false});
    EXPECT_EQ(window.send(key_down), 0) << "nobody watches it, and nobody knows its own procedure";
    SetWindowLongA(window.handle(), GWL_WNDPROC, own_procedure);
}

TEST_F(Watching, AnObjectThatMovesAwayTakesTheEntryAlong)
{
    const Object second = make_watcher();
    watch({});
    hook(second, window);
    second.put(L"hwnd", {0});
    EXPECT_EQ(window.send(key_down), 0);
    watcher.put(L"hwnd", {window.number()});
    EXPECT_EQ(window.send(key_down), TestWindow::answer) << "it is registered again";

    second.put(L"hwnd", {window.number()});
    second.put(L"hwnd", {window.number()}); // now it is registered, and knows the shared procedure only
    EXPECT_EQ(window.send(key_down), 0) << "it does not call itself without end";
    watcher.put(L"Enabled", {false});
    EXPECT_EQ(window.procedure(), own_procedure);
    second.put(L"OriginalWindowProc", {0});
}

TEST_F(Watching, AHandlerMayDoAnything)
{
    TestWindow other;
    TestWindow* target = nullptr;
    MessageListener* listener = nullptr;
    constexpr LRESULT answer = TestWindow::answer;
    const struct {
        const char* what;
        std::function<void()> action;
        LRESULT result, later;
    } cases[]{
        {"unhook", [&] { watcher.put(L"Enabled", {false}); }, 0, answer},
        {"go to no window", [&] { watcher.put(L"hwnd", {0}); }, 0, answer},
        {"go to another window", [&] { watcher.put(L"hwnd", {other.number()}); }, answer, answer},
        {"forget the procedure", [&] { watcher.put(L"OriginalWindowProc", {0}); }, 0, 0},
        {"no longer listen", [&] { listener->let_go(); }, answer, answer},
        {"send it again", [&] { EXPECT_EQ(target->send(key_down), answer); }, answer, answer},
        {"release the object", [&] { watcher = Object{}; }, answer, answer},
        {"go elsewhere, and be released", [&] { watcher.put(L"hwnd", {0}); watcher = Object{}; }, 0, answer},
        {"destroy the window", [&] { DestroyWindow(target->handle()); }, 0, 0},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        watcher = make_watcher();
        TestWindow its_window;
        MessageListener its_listener{watcher, once([&](const Event&) { one.action(); })};
        target = &its_window;
        listener = &its_listener;
        add({key_down});
        hook(watcher, its_window);
        EXPECT_EQ(its_window.send(key_down), one.result);
        EXPECT_EQ(its_window.send(key_up), one.later);
    }
}

TEST_F(Watching, TheRegistryKeepsItsObjectsAndTheLibrary)
{
    MessageListener listener{watcher};
    watch({key_down});
    watcher = Object{};
    CoFreeUnusedLibrariesEx(0, 0);
    for (int i = 0; i < 10; ++i)
        FreeLibrary(GetModuleHandleW(L"qvObjects.dll"));
    EXPECT_EQ(window.send(key_down), TestWindow::answer);
    EXPECT_EQ(listener.heard(), Numbers{key_down});
}

TEST_F(Watching, ATextComesThroughToWindowsOfBothKinds)
{
    const std::wstring text = L"Gr\u00f6\u00dfe";
    for (const auto kind : {TestWindow::Ansi, TestWindow::Unicode}) {
        TestWindow titled{kind};
        const LONG former = titled.procedure();
        watcher.call(L"AddMsg", {WM_SETTEXT});
        hook(watcher, titled);
        wchar_t title[16]{};
        SetWindowTextW(titled.handle(), text.c_str());
        GetWindowTextW(titled.handle(), title, 16);
        EXPECT_EQ(title, text);
        EXPECT_EQ(titled.send(key_down, 5, 6), TestWindow::answer);
        EXPECT_EQ(titled.seen(), (Messages{{WM_KEYDOWN, 5, 6}}));
        watcher.put(L"Enabled", {false});
        EXPECT_EQ(IsWindowUnicode(titled.handle()) != FALSE, kind == TestWindow::Unicode);
        EXPECT_EQ(titled.procedure(), former);
    }
}

TEST_F(Watching, TheStackOfTheCallerMayBeOff)
{
    MessageListener listener{watcher};
    watch({key_down});
    const auto procedure = reinterpret_cast<WNDPROC>(static_cast<LONG_PTR>(window.procedure()));
    for (const unsigned bytes : {0u, 4u, 8u, 12u}) {
        EXPECT_EQ(call_with_stack_off(bytes, procedure, window.handle(), WM_KEYDOWN), TestWindow::answer);
        EXPECT_EQ(listener.heard(), Numbers{key_down});
        EXPECT_EQ(window.seen(), (Messages{{WM_KEYDOWN, 1, 2}}));
    }
}

TEST_F(Watching, CompiledClientsCallTheInterface)
{
    MessageListener listener{watcher, [](const Event& event) {
                                 event.wParam += event.hwnd;
                                 event.cancel = VARIANT_TRUE;
                                 return S_OK;
                             }};
    _qvWindowProc* face = nullptr;
    ASSERT_EQ(watcher.dispatch()->QueryInterface(__uuidof(_qvWindowProc), reinterpret_cast<void**>(&face)), S_OK);
    long message = key_down, wParam = 1, lParam = 2;
    VARIANT_BOOL flag = VARIANT_FALSE;
    EXPECT_EQ(face->RaiseFormMessage(7, &message, &wParam, &lParam, &flag), S_OK);
    EXPECT_TRUE(wParam == 8 && flag == VARIANT_TRUE);
    EXPECT_EQ(face->RaiseFormMessage(7, &message, nullptr, &lParam, &flag), static_cast<HRESULT>(0x800A0005));
    EXPECT_EQ(face->AddMsg(&message), S_OK);
    EXPECT_EQ(face->put_hwnd(window.number()), S_OK);
    EXPECT_EQ(face->put_Enabled(1), S_OK);
    EXPECT_EQ(face->get_Enabled(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(window.send(key_down), 0);
    long least = 300;
    long* const none = nullptr;
    EXPECT_EQ(face->SetMinMaxInfo(&least, none, none, none, none, none, none, none, none, none, &flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(window.send(key_down), TestWindow::answer);
    face->Release();

    Value by_name = key_down, any_number = L"5";
    watcher.call(L"SetMinMaxInfo");
    Value cancel = 0;
    watcher.call(L"RaiseFormMessage", {7, Value::variable(by_name), Value::variable(any_number), 0, Value::variable(cancel)});
    EXPECT_EQ(any_number.number(), 12);
    EXPECT_NE(cancel.number(), 0);
}

TEST_F(Watching, EveryThreadHasItsOwnWindows)
{
    MessageListener listener{watcher};
    watch({key_down});
    for (const bool leaves : {true, false}) {
        DispatchObject held{{}, [](DISPID, const DISPPARAMS&, VARIANT*) { return E_FAIL; }};
        std::thread{[&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            TestWindow own;
            const Object other = make_watcher();
            {
                MessageListener to_other{other};
                other.call(L"AddMsg", {key_up});
                other.object(L"RegisteredMessages").call(L"Add", {static_cast<IDispatch*>(&held)});
                hook(other, own);
                EXPECT_EQ(own.send(key_up), TestWindow::answer);
                EXPECT_EQ(to_other.heard(), Numbers{key_up});
            }
            if (leaves)
                CoUninitialize();
            EXPECT_EQ(own.procedure() == own_procedure, leaves) << "all ends while automation is still there";
            EXPECT_EQ(own.send(key_down), TestWindow::answer);
        }}.join();
        EXPECT_EQ(held.references(), 1);
    }
    EXPECT_EQ(listener.heard(), Numbers{});
}
