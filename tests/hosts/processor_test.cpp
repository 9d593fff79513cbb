// Programs that ask the processor for exceptions, or calculate with other precision, on either of its units.
#include "hosts/walk.h"
#include "support/dispatch_object.h"
#include "support/message_listener.h"
#include "support/own_process.h"
#include "support/tables.h"
#include "support/test_window.h"
#include "support/tooltip_window.h"

#include <xmmintrin.h>

#include <cmath>
#include <cstdint>
#include <limits>

using client::list;
using client::Object;
using client::Outcome;
using client::table;
using client::Value;

namespace {

struct Modes {
    std::uint16_t x87;
    std::uint32_t sse;

    static Modes now()
    {
        Modes modes;
        asm volatile("fnstcw %0" : "=m"(modes.x87));
        modes.sse = _mm_getcsr();
        return modes;
    }
    void set() const
    {
        asm volatile("fnclex\n\tfldcw %0" : : "m"(x87));
        _mm_setcsr(sse);
    }
    friend bool operator==(const Modes&, const Modes&) = default;
};

/// Invalid operations, divisions by zero and overflows raise exceptions.
constexpr Modes asking{0x1372, 0x1F80 & ~(_MM_MASK_INVALID | _MM_MASK_DIV_ZERO | _MM_MASK_OVERFLOW)};

/// Runs code in these modes, and tells in which ones it ended.
template <class Code>
Modes in_modes(const Modes& modes, Code&& code)
{
    const Modes usual = Modes::now();
    modes.set();
    code();
    const Modes left = Modes::now();
    usual.set();
    return left;
}

Modes in_window{};

LRESULT CALLBACK note_modes(HWND, UINT, WPARAM, LPARAM)
{
    in_window = Modes::now();
    return 0;
}

class Processor : public testing::Test {
protected:
    /// Calls a member in a program that asks for exceptions.
    Outcome asking_call(const Object& object, const wchar_t* member, const std::vector<Value>& arguments)
    {
        const DISPID id = object.id(member);
        Outcome outcome;
        const Modes left = in_modes(asking, [&] { outcome = object.invoke(id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments); });
        EXPECT_EQ(left, asking) << member;
        return outcome;
    }

    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon"), math = Object::create(L"qvObjects.qvMath");
};

/// Notes the modes in which it hears of a message.
struct Listener {
    static LRESULT CALLBACK hear(HWND window, UINT message, WPARAM word, LPARAM number)
    {
        if (message == WM_GETTEXT || message == WM_TIMER)
            heard = Modes::now();
        return DefWindowProcW(window, message, word, number);
    }

    static inline Modes heard;
};

const double quiet = std::numeric_limits<double>::quiet_NaN(), signalling = std::numeric_limits<double>::signaling_NaN();

} // namespace

TEST_F(Processor, ListsAndTablesMayHoldNaN)
{
    for (const double unknown : {quiet, signalling}) {
        const auto doubles = [&] { return table(VT_R8, 0, 0, {{unknown, 2.0}, {1.0, unknown}}); };
        for (const wchar_t* member : {L"MinMax", L"Min", L"max", L"AbsMin", L"AbsMax"})
            EXPECT_EQ(asking_call(common, member, {doubles()}).result, S_OK) << member;
        Value rows = doubles(), numbers = list(0, {2.0, unknown, 1.0}, VT_R8), values = list(0, {2.0, unknown, 1.0});
        EXPECT_EQ(asking_call(common, L"SortSpecial", {Value::variable(rows), 0}).result, S_OK);
        EXPECT_EQ(asking_call(common, L"Sort", {Value::variable(numbers)}).result, S_OK);
        EXPECT_EQ(asking_call(common, L"Sort", {Value::variable(values)}).result, S_OK);
        for (const Value& sorted : {rows, numbers, values})
            EXPECT_EQ(sorted.parray->cLocks, 0u) << "an array stayed locked";
    }
}

TEST_F(Processor, WhatIsBeyondADoubleIsAnOverflow)
{
    for (const Value& large : {Value{1e300}, Value{L"1e308"}, table(VT_R8, 0, 0, {{1e300}})})
        client::expect_error(asking_call(math, L"MMult", {large, large}), 6, L"Overflow");
    client::expect_error(math.try_call(L"MMult", {1e300, 1e300}), 6, L"Overflow");
}

TEST_F(Processor, ArgumentsAreConvertedWithoutExceptions)
{
    asking_call(math, L"RoundDown", {signalling, 2});
    EXPECT_TRUE(FAILED(asking_call(math, L"RoundDown", {1.5, quiet}).result));
    EXPECT_TRUE(FAILED(asking_call(math, L"RoundDown", {L"1e999", 2}).result));
}

TEST_F(Processor, CompiledClientsKeepTheirModes)
{
    _qvMath* face = nullptr;
    ASSERT_EQ(math.dispatch()->QueryInterface(__uuidof(_qvMath), reinterpret_cast<void**>(&face)), S_OK);
    constexpr Modes extended{0x37F, 0x1F80}, upwards{0xA7F, 0x5F80}, tiny_is_zero{0x27F, 0x9FC0};
    for (const Modes& modes : {asking, extended, upwards, tiny_is_zero}) {
        double cut = 0;
        VARIANT large{}, product{};
        large.vt = VT_R8;
        large.dblVal = 1e300;
        HRESULT result = S_OK, failure = S_OK;
        const Modes left = in_modes(modes, [&] {
            result = face->RoundDown(1.0 / 3, 3, &cut);
            failure = face->MMult(&large, &large, &product);
        });
        EXPECT_EQ(left, modes);
        EXPECT_EQ(result, S_OK);
        EXPECT_EQ(cut, 0.333);
        EXPECT_EQ(failure, static_cast<HRESULT>(0x800A0006));
    }
    face->Release();
}

TEST_F(Processor, ConditionsOfTheLibrarysOwnDoNotReachTheClient)
{
    const DISPID product = math.id(L"MMult");
    const Modes left = in_modes(asking, [&] {
        math.invoke(product, DISPATCH_METHOD, {1e300, 1e300});
        // Both units would raise what is pending now.
        volatile double zero = 0, sum = zero + 1;
        asm volatile("fldl %0\n\tfaddl %1\n\tfstpl %0\n\tfwait" : "+m"(sum) : "m"(zero));
    });
    EXPECT_EQ(left, asking);
}

TEST_F(Processor, HandlersOfEventsRunInTheModesOfTheClient)
{
    constexpr Modes extended{0x37F, 0x1F80};
    for (const Modes& modes : {asking, extended}) {
        Modes in_handler{}, after_nested{};
        Outcome nested;
        const DISPID product = math.id(L"MMult");
        const Walk walk{[&] {
            in_handler = Modes::now();
            nested = math.invoke(product, DISPATCH_METHOD, {1e300, 1e300});
            after_nested = Modes::now();
        }};
        const Modes left = in_modes(modes, [&] { EXPECT_EQ(walk.run().result, S_OK); });
        EXPECT_EQ(in_handler, modes);
        EXPECT_EQ(after_nested, modes);
        EXPECT_EQ(left, modes);
        client::expect_error(nested, 6, L"Overflow");
    }
}

TEST_F(Processor, DefaultMembersRunInTheModesOfTheClient)
{
    Modes in_member{};
    DispatchObject form{{}, [&](DISPID, const DISPPARAMS&, VARIANT*) { return in_member = Modes::now(), S_OK; }};
    const Object save = Object::create(L"qvObjects.qvSave");
    ASSERT_EQ(save.try_set(L"Form", {Value{&form}}).result, S_OK);
    EXPECT_EQ(asking_call(save, L"Form", {1}).result, S_OK);
    EXPECT_EQ(in_member, asking);
}

TEST_F(Processor, WindowProceduresRunInTheModesOfTheClient)
{
    const client::ParentWindow parent;
    client::ToolTip tip{TTS_ALWAYSTIP};
    tip.object.call(L"AddTTRectCB", {parent, 0, 0, 9, 9, 0, 1});
    Modes in_handler{};
    tip.handler = [&] { in_handler = Modes::now(); };
    const Modes left = in_modes(asking, [&] { EXPECT_STREQ(tip.ask(parent, 1).lpszText, "on demand"); });
    EXPECT_EQ(in_handler, asking);
    EXPECT_EQ(left, asking);
}

TEST_F(Processor, WhatAHandlerLeavesBehindDoesNotReachTheLibrary)
{
    const Modes usual{0x27F, 0x1F80};
    const Walk walk{[] { asking.set(); }};
    const Modes left = in_modes(usual, [&] { EXPECT_EQ(walk.run().result, S_OK); });
    EXPECT_EQ(left.x87, usual.x87);
    EXPECT_EQ(left.sse & ~0x3Fu, usual.sse);
}

TEST_F(Processor, WatchedWindowsAndTheirHandlersRunInTheModesOfTheSender)
{
    Modes in_handler{};
    client::TestWindow window;
    SetWindowLongA(window.handle(), GWL_WNDPROC, reinterpret_cast<LONG>(&note_modes));
    const Object watcher = Object::create(L"qvObjects.qvWindowProc");
    const client::MessageListener listener{watcher, [&](auto&) {
                                               in_handler = Modes::now();
                                               return S_OK;
                                           }};
    watcher.call(L"AddMsg", {long{WM_USER}});
    watcher.put(L"hwnd", {window.number()});
    watcher.put(L"Enabled", {true});
    EXPECT_EQ(in_modes(asking, [&] { window.send(WM_USER); }), asking);
    EXPECT_EQ(in_handler, asking);
    EXPECT_EQ(in_window, asking);
    watcher.put(L"Enabled", {false});
}

TEST_F(Processor, MembersOfTheClientsObjectsRunInItsModes)
{
    Modes in_member{};
    DispatchObject list{{L"Add", L"Count"}, [&](DISPID, const DISPPARAMS&, VARIANT*) {
        in_member = Modes::now();
        return S_OK;
    }};
    asking_call(common, L"GetNumbersFromStringCol", {L"1 2", static_cast<IDispatch*>(&list)});
    EXPECT_EQ(in_member, asking);

    Modes in_default_value{};
    DispatchObject number{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) {
        in_default_value = Modes::now();
        result->vt = VT_I4;
        result->lVal = 2;
        return S_OK;
    }};
    for (const auto& [member, text] : {std::pair{L"StringCut", L"ab"}, std::pair{L"Insert", L"|1"}}) {
        in_default_value = {};
        const std::vector<Value> arguments = member[0] == L'S' ? std::vector<Value>{text, L"b", static_cast<IDispatch*>(&number)}
                                                               : std::vector<Value>{text, static_cast<IDispatch*>(&number)};
        EXPECT_EQ(asking_call(common, member, arguments).result, S_OK);
        EXPECT_EQ(in_default_value, asking) << "when " << member << " asks for its value";
    }
}

TEST(ProcessorRole, DISABLED_Sleep)
{
    Sleep(300);
}

TEST_F(Processor, WindowsHearOfMessagesInTheirProgramsModes)
{
    WNDCLASSW listener{};
    listener.lpfnWndProc = Listener::hear;
    listener.lpszClassName = L"qvObjects listener";
    RegisterClassW(&listener);
    const HWND window = CreateWindowW(listener.lpszClassName, L"text", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    Value text;
    const Object api = Object::create(L"qvObjects.qvAPI");
    asking_call(api, L"GetWindowText", {static_cast<long>(reinterpret_cast<LONG_PTR>(window)), Value::variable(text)});
    EXPECT_EQ(text.text(), L"text");
    EXPECT_EQ(std::exchange(Listener::heard, Modes{}), asking);

    SetTimer(window, 1, 10, nullptr);
    const client::OwnProcess process{L"ProcessorRole.DISABLED_Sleep"};
    EXPECT_EQ(asking_call(common, L"WaitOnProgram", {static_cast<long>(process.id())}).value.number(), 0);
    EXPECT_EQ(Listener::heard, asking);
    DestroyWindow(window);
}
