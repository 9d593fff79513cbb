// What the process holds does not grow, however long the library is used: not by a byte that a call leaves behind, nor by a
// handle. Each piece of work is done once to fill the caches of the platform, and then many times between two countings.
#include "hosts/holdings.h"
#include "hosts/library.h"
#include "support/canvas.h"
#include "support/item_listener.h"
#include "support/message_listener.h"
#include "support/tables.h"
#include "support/test_window.h"
#include "support/tooltip_window.h"

#include <olectl.h>
#include <wrl/client.h>

#include <random>
#include <thread>

using client::Apartment;
using client::expect_error;
using client::Object;
using client::Value;
using Microsoft::WRL::ComPtr;

namespace {

/// With QVOBJECTS_SOAK=full it takes hours, and finds what is lost in one of ten thousand calls; else what every call loses.
const bool is_full = [] {
    wchar_t length[8] = L"";
    GetEnvironmentVariableW(L"QVOBJECTS_SOAK", length, 8);
    return std::wstring_view{length} == L"full";
}();

struct Kind {
    const char* name;
    std::size_t Holdings::*count;
    std::size_t allowance, of_thread;
};

// The platform keeps a few blocks more for its own ends now and then, one of a page among them; threads that serve other
// apartments for a while; and the most device contexts that threads had at a time. It takes memory in large pieces, and more of
// them the more it is cut up.
constexpr std::size_t page = 4096, megabyte = 1 << 20;
constexpr Kind kinds[]{
    {"blocks of memory", &Holdings::blocks, 4, 4},
    {"bytes in them", &Holdings::bytes, page + 64, 1024},
    {"handles", &Holdings::handles, 0, 2},
    {"drawing objects", &Holdings::drawing_objects, 0, 4},
    {"windows", &Holdings::windows, 0, 0},
    {"mappings", &Holdings::mappings, 0, 0},
    {"places for threads", &Holdings::thread_places, 0, 0},
    {"atoms", &Holdings::atoms, 32, 0}, // other processes' are among them
    {"bytes committed", &Holdings::committed, megabyte, megabyte},
    {"bytes resident", &Holdings::resident, 4 * megabyte, megabyte},
};

/// The most that there may be of a kind, with `threads` of the platform's more than before.
std::size_t limit(const Kind& kind, const Holdings& before, unsigned threads)
{
    return before.*kind.count + kind.allowance + threads * kind.of_thread;
}

void expect_no_growth(const Holdings& before, const Holdings& after, unsigned threads = 0)
{
    for (const Kind& kind : kinds)
        EXPECT_LE(after.*kind.count, limit(kind, before, threads)) << kind.name;
}

/// What the process holds before and after some work. Where it has grown the work is done again: now and then the platform takes
/// something late, but never twice.
template <class Work>
std::pair<Holdings, Holdings> count_around(const Work& work, Holdings (*count)() = &Holdings::now, unsigned threads = 0)
{
    Holdings before, after = count();
    const auto has_grown = [&](const Kind& kind) { return after.*kind.count > limit(kind, before, threads); };
    for (int i = 0; i == 0 || (i == 1 && std::ranges::any_of(kinds, has_grown)); ++i) {
        before = after;
        work();
        after = count();
    }
    return {before, after};
}

/// What somebody who waits for a long soak wants to know.
void tell(const char* work, long times, const Holdings& before, const Holdings& after)
{
    std::cout << work << ", " << times << " times:";
    for (const Kind& kind : kinds)
        std::cout << " " << static_cast<long>(after.*kind.count - before.*kind.count) << " " << kind.name;
    std::cout << std::endl;
}

/// Does it so many times, after a start that fills what is kept.
template <class Work>
void soak(const std::string& name, long times, const Work& work, unsigned threads = 0)
{
    SCOPED_TRACE(name);
    const auto repeat = [&](long so_often) {
        for (long i = 0; i < so_often && !testing::Test::HasFailure(); ++i)
            work();
    };
    repeat(3 + times / 10);
    const auto [before, after] = count_around([&] { repeat(times); }, &Holdings::now, threads);
    expect_no_growth(before, after, threads);
    if (is_full)
        tell(name.c_str(), times, before, after);
}

const HMODULE module = LoadLibraryW(library::file().c_str());

/// An object that the platform has no part in.
Object made(REFCLSID id)
{
    return library::create(module, id);
}

/// A name of the contract, which has no other letters than these.
std::string narrow(std::wstring_view name)
{
    std::string text;
    std::ranges::transform(name, std::back_inserter(text), [](wchar_t letter) { return static_cast<char>(letter); });
    return text;
}

/// A class of the type library whose objects clients create.
struct Creatable {
    std::string name;
    CLSID id;
};

std::vector<Creatable> creatable_classes()
{
    std::vector<Creatable> all;
    ComPtr<ITypeLib> types;
    EXPECT_EQ(LoadTypeLibEx(library::file().c_str(), REGKIND_NONE, types.GetAddressOf()), S_OK);
    for (UINT i = 0; types && i < types->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> type;
        TYPEATTR* attributes = nullptr;
        Value name = Value::of_type(VT_BSTR);
        types->GetTypeInfo(i, type.GetAddressOf());
        type->GetTypeAttr(&attributes);
        type->GetDocumentation(MEMBERID_NIL, &name.bstrVal, nullptr, nullptr, nullptr);
        if (attributes->typekind == TKIND_COCLASS && (attributes->wTypeFlags & TYPEFLAG_FCANCREATE))
            all.push_back({narrow(name.text()), attributes->guid});
        type->ReleaseTypeAttr(attributes);
    }
    EXPECT_GT(all.size(), 10u);
    return all;
}

/// An object that another one hands out.
struct HandedOut {
    const char* name;
    Object (*get)();
};

Object section()
{
    return made(__uuidof(qvIniFile)).object(L"Section", {L"Main"});
}

Object collection()
{
    return made(__uuidof(qvWindowProc)).object(L"RegisteredMessages");
}

const HandedOut handed_out[]{
    {"sections", [] { return made(__uuidof(qvIniFile)).object(L"Section"); }},
    {"section", section},
    {"parameters", [] { return section().object(L"Parameter"); }},
    {"parameter", [] { return section().object(L"Parameter", {L"Path"}); }},
    {"information header", [] { return made(__uuidof(qvFile_qvb)).object(L"FileInfoHeader"); }},
    {"matrix header", [] { return made(__uuidof(qvFile_qvb)).object(L"FileQVBHeader"); }},
    {"collection", collection},
};

/// A member as the type information of an object tells of it.
struct Member {
    std::wstring name;
    DISPID id;
    WORD kind;
    std::vector<VARTYPE> parameters; ///< without the mark of references
};

/// Enumerations are numbers, and what is neither those nor a record is an object.
VARTYPE plain_type(ITypeInfo& owner, const TYPEDESC& type)
{
    if (type.vt == VT_PTR)
        return plain_type(owner, *type.lptdesc);
    if (type.vt == VT_SAFEARRAY)
        return static_cast<VARTYPE>(VT_ARRAY | plain_type(owner, *type.lptdesc));
    if (type.vt != VT_USERDEFINED)
        return type.vt;
    ComPtr<ITypeInfo> named;
    TYPEATTR* attributes = nullptr;
    owner.GetRefTypeInfo(type.hreftype, named.GetAddressOf());
    named->GetTypeAttr(&attributes);
    const TYPEKIND kind = attributes->typekind;
    named->ReleaseTypeAttr(attributes);
    return kind == TKIND_ENUM ? VT_I4 : kind == TKIND_RECORD ? VT_RECORD : VT_DISPATCH;
}

/// Those that ask the user, end processes, leave things outside of the test's folder, or keep by design what they made.
constexpr std::wstring_view left_out[]{
    L"Show", L"SelectFolder95", L"qvMoveToRecycle", L"WaitOnProgram", L"TerminateProgram", L"SetDisplayResolution",
    L"GetTempFileName", L"qvChDir", L"WriteKey", L"WriteS", L"WritePosition", L"GetHalftoneBrush", L"Create", L"CreateForString",
};

std::vector<Member> members_of(const Object& object)
{
    std::vector<Member> all;
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(object.dispatch()->GetTypeInfo(0, LOCALE_NEUTRAL, type.GetAddressOf()), S_OK);
    FUNCDESC* function = nullptr;
    for (UINT i = 0; type && type->GetFuncDesc(i, &function) == S_OK; ++i) {
        Value name = Value::of_type(VT_BSTR);
        type->GetDocumentation(function->memid, &name.bstrVal, nullptr, nullptr, nullptr);
        Member member{name.text(), function->memid, static_cast<WORD>(function->invkind), {}};
        for (const ELEMDESC* p = function->lprgelemdescParam; p < function->lprgelemdescParam + function->cParams; ++p)
            if (!(p->paramdesc.wParamFlags & PARAMFLAG_FRETVAL))
                member.parameters.push_back(plain_type(*type.Get(), p->tdesc));
        type->ReleaseFuncDesc(function);
        if (member.id < 0x60000000 && std::ranges::find(left_out, member.name) == std::end(left_out))
            all.push_back(std::move(member));
    }
    return all;
}

const Value table = client::table(VT_R8, 0, 0, {{1.5, 2}, {3, 4}});

/// How a member is called: with what fits its parameters, with something else that fits, and with what does not.
enum class Fit { Well, Somehow, Not };

Value value_for(VARTYPE type, Fit fit, const client::Folder& folder)
{
    const bool is_array = (type & VT_ARRAY) != 0;
    if (fit == Fit::Not)
        return type == VT_VARIANT ? Value::null() : is_array ? Value{L"no list"} : table;
    if (is_array)
        return client::list(fit == Fit::Well ? 0 : 1, {1, 2, 3}, static_cast<VARTYPE>(type & VT_TYPEMASK));
    switch (type) {
    case VT_BSTR:
        return fit == Fit::Well ? Value{folder.file(L"item.txt")} : Value{L"12.5"};
    case VT_BOOL:
        return false; // nobody would answer a box
    case VT_VARIANT:
        return fit == Fit::Well ? table : Value{L"12.5"};
    case VT_DISPATCH:
        return fit == Fit::Well ? collection() : Object{};
    default:
        return fit == Fit::Well ? 1 : 2; // also as a handle it is nothing
    }
}

/// As scripts call it, with variables.
void call(const Object& object, const Member& member, Fit fit, const client::Folder& folder)
{
    std::vector<Value> variables, arguments;
    variables.reserve(member.parameters.size());
    for (const VARTYPE type : member.parameters)
        arguments.push_back(Value::variable(variables.emplace_back(value_for(type, fit, folder))));
    object.invoke(member.id, member.kind, arguments);
}

/// A member of some class.
struct AnyMember {
    CLSID id;
    Member member;
};

const std::vector<AnyMember> all_members = [] {
    const Apartment apartment;
    std::vector<AnyMember> all;
    for (const Creatable& one : creatable_classes())
        for (Member& member : members_of(made(one.id)))
            all.push_back({one.id, std::move(member)});
    return all;
}();

/// The first window and the first count take things that stay, and the platform still starts threads of its own: waits until all
/// has been the same for a while.
[[maybe_unused]] const Holdings at_start = [] {
    const client::TestWindow window;
    Holdings last = Holdings::now();
    for (int same = 0, tries = 0; same < 8 && tries < 60; ++tries) {
        Sleep(50);
        const Holdings now = Holdings::now();
        same = now.blocks == last.blocks && now.handles == last.handles ? same + 1 : 0;
        last = now;
    }
    return last;
}();

/// What a thread of a client works with.
struct Session {
    const Apartment apartment;
    const client::Folder folder;
    std::mt19937 random{GetCurrentThreadId()};
};

void call_anything(Session& session)
{
    const auto& [id, member] = all_members[session.random() % all_members.size()];
    call(made(id), member, Fit{static_cast<int>(session.random() % 3)}, session.folder);
}

void raise_errors(Session&)
{
    const Object math = Object::create(L"qvObjects.qvMath");
    expect_error(math.try_call(L"MMult", {L"no number", 1}), 13, L"Type mismatch");
    EXPECT_EQ(math.try_call(L"RoundDown", {1}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(math.id(L"NoSuchMember"), DISPID_UNKNOWN);
    ComPtr<_qvMath> face;
    ComPtr<IErrorInfo> information;
    Value text{L"no number"}, number{2}, product;
    EXPECT_EQ(math.dispatch()->QueryInterface(__uuidof(_qvMath), reinterpret_cast<void**>(face.GetAddressOf())), S_OK);
    EXPECT_EQ(face->MMult(&text, &number, &product), static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(GetErrorInfo(0, information.GetAddressOf()), S_OK);
}

void switch_languages(Session& session)
{
    const Object common = Object::create(L"qvObjects.qvCommon"), file = Object::create(L"qvObjects.qvFile_qvb");
    file.put(L"File", {session.folder.file(L"none.qvb")});
    std::wstring told[2];
    for (const int language : {1, 0}) {
        common.call(L"qvObjectsInit", {L"Language", language});
        told[language] = file.try_call(L"WriteFile", {L"no table"}).description;
    }
    EXPECT_NE(told[0], told[1]);
}

void keep_settings(Session& session)
{
    const Object ini = Object::create(L"qvObjects.qvIniFile"), again = Object::create(L"qvObjects.qvIniFile");
    const Object sections = ini.object(L"Section");
    for (const wchar_t* name : {L"One", L"Two"}) {
        const Object nested = sections.object(L"Item", {name}).object(L"Section", {L"Nested"});
        for (const wchar_t* parameter : {L"a", L"b"})
            nested.object(L"Parameter", {parameter}).put(L"Value", {L"a long value"});
    }
    ini.call(L"Save", {session.folder.file(L"settings.ini")});
    again.call(L"Load", {session.folder.file(L"settings.ini")});
    EXPECT_EQ(client::items(again.object(L"Section")).size(), 2u);
    sections.call(L"Remove", {L"One"});
    EXPECT_NE(sections.try_call(L"Remove", {L"Three"}).result, S_OK);
    const std::wstring application = L"qvObjects soak_test " + std::to_wstring(GetCurrentThreadId());
    Object::create(L"qvObjects.qvCommon").call(L"WriteKey", {application, L"Key", L"value"});
    RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\VB and VBA Program Settings\\" + application).c_str());
}

void keep_data(Session& session)
{
    const Object qvb = Object::create(L"qvObjects.qvFile_qvb"), nif = Object::create(L"qvObjects.qvFile_Nif");
    qvb.put(L"File", {session.folder.file(L"data.qvb")});
    qvb.put(L"ObjNames", {client::list(1, {L"first", L"second"}, VT_BSTR)});
    qvb.call(L"WriteFile", {table});
    Value read;
    qvb.call(L"ReadFile", {Value::variable(read)});
    EXPECT_EQ(read.vt, VT_ARRAY | VT_R8);
    nif.call(L"SetSize", {2, 2});
    nif.put(L"Name", {1, L"first"});
    nif.put(L"Value", {1, 1, 2.5});
    EXPECT_TRUE(nif.call(L"Save", {session.folder.file(L"data.nif")}).flag());
    EXPECT_TRUE(nif.call(L"Load", {session.folder.file(L"data.nif")}).flag());
}

void draw(Session& session)
{
    const Object common = Object::create(L"qvObjects.qvCommon"), form = Object::create(L"qvObjects.qvForm");
    const client::Canvas canvas{60, 40};
    const auto context = static_cast<long>(reinterpret_cast<LONG_PTR>(canvas.context));
    const std::wstring path = session.folder.file(L"picture.emf");
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        const HDC recorder = CreateEnhMetaFileW(nullptr, path.c_str(), nullptr, nullptr);
        Ellipse(recorder, 0, 0, 100, 50);
        DeleteEnhMetaFile(CloseEnhMetaFile(recorder));
    }
    EXPECT_TRUE(common.call(L"PrintEMF", {path, context}).flag());
    EXPECT_NE(common.call(L"GetShortText", {context, std::wstring(100, L'x'), 50}).text(), L"");
    EXPECT_EQ(common.call(L"CreateFontOLE", {L"Arial", 9}).vt, VT_DISPATCH);
    common.call(L"MMperPixX");
    EXPECT_TRUE(DeleteObject(reinterpret_cast<HGDIOBJ>(static_cast<LONG_PTR>(form.call(L"GetHalftoneBrush").number()))));
}

/// A hundred times the event of a walk.
void hear_of_items(Session& session)
{
    if (GetFileAttributesW(session.folder.file(L"walk").c_str()) == INVALID_FILE_ATTRIBUTES) {
        CreateDirectoryW(session.folder.file(L"walk").c_str(), nullptr);
        for (int i = 0; i < 100; ++i)
            session.folder.write(L"walk\\" + std::to_wstring(i), "");
    }
    const Object file = Object::create(L"qvObjects.qvFile");
    client::ItemListener listener{file, [](auto) { return false; }};
    file.call(L"WalkDirTree", {session.folder.file(L"walk"), L"*"});
    EXPECT_EQ(listener.found.size(), 100u);
}

/// A hundred times the event of a window's message.
void hear_of_messages(Session&)
{
    client::TestWindow window;
    const Object watcher = Object::create(L"qvObjects.qvWindowProc");
    client::MessageListener listener{watcher};
    watcher.call(L"AddMsg", {WM_USER});
    watcher.put(L"hwnd", {window.number()});
    watcher.put(L"Enabled", {true});
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(window.send(WM_USER), client::TestWindow::answer);
    EXPECT_EQ(listener.heard().size(), 100u);
    watcher.put(L"hwnd", {0});
}

/// The tool with a text first: Wine puts a procedure of its own in front of the window with the first tool, and never gives its
/// memory back where the library's, below it, takes it away with its own.
void add_tools(const client::ToolTip& tip, const client::ParentWindow& parent)
{
    EXPECT_TRUE(tip.object.call(L"AddTTRect", {parent, 0, 50, 100, 100, L"a text", long{TTF_ABSOLUTE}, 8}).flag());
    EXPECT_TRUE(tip.object.call(L"AddTTRectCB", {parent, 0, 0, 100, 50, long{TTF_ABSOLUTE}, 7}).flag());
}

/// A hundred times all three events of a tooltip.
void hear_of_tooltips(Session&)
{
    const client::ParentWindow parent;
    client::ToolTip tip{TTS_ALWAYSTIP};
    add_tools(tip, parent);
    for (int i = 0; i < 100; ++i) {
        EXPECT_STREQ(tip.ask(parent, 7).lpszText, "on demand");
        for (const UINT code : {TTN_SHOW, TTN_POP})
            tip.notify(parent, 7, code);
    }
    EXPECT_EQ(tip.heard.size(), 300u);
}

/// Its last reference goes while the tooltip waits for the answer.
void give_up_tooltips(Session&)
{
    const client::ParentWindow parent;
    client::ToolTip tip{TTS_ALWAYSTIP};
    add_tools(tip, parent);
    const HWND window = tip.window();
    tip.handler = [&] { tip.let_go(); };
    tip.ask(parent, 7, window);
    EXPECT_TRUE(client::pump_until([&] { return !IsWindow(window); }));
}

void connect(Session&)
{
    const Object file = Object::create(L"qvObjects.qvFile");
    client::ItemListener first{file, [](auto) { return false; }}, second{file, [](auto) { return false; }};
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IEnumConnectionPoints> points;
    ComPtr<IConnectionPoint> point;
    ComPtr<IEnumConnections> connections, copy;
    file.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(container.GetAddressOf()));
    EXPECT_EQ(container->EnumConnectionPoints(points.GetAddressOf()), S_OK);
    EXPECT_EQ(points->Next(1, point.GetAddressOf(), nullptr), S_OK);
    EXPECT_EQ(point->EnumConnections(connections.GetAddressOf()), S_OK);
    EXPECT_EQ(connections->Clone(copy.GetAddressOf()), S_OK);
    CONNECTDATA both[2];
    EXPECT_EQ(copy->Next(2, both, nullptr), E_POINTER);
    ULONG count = 0;
    EXPECT_EQ(copy->Next(2, both, &count), S_OK);
    std::for_each(both, both + count, [](const CONNECTDATA& connection) { connection.pUnk->Release(); });
    EXPECT_EQ(point->Unadvise(4711), CONNECT_E_NOCONNECTION);
}

/// Has another apartment use an object of this one, while this one serves its calls.
template <class Receive, class Work>
void have_used_elsewhere(const Receive& receive, const Work& work)
{
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread other{[&] {
        {
            const Apartment apartment;
            IDispatch* proxy = nullptr;
            EXPECT_EQ(receive(&proxy), S_OK);
            const Object object{proxy};
            proxy->Release();
            work(object);
        }
        SetEvent(done);
    }};
    DWORD index = 0;
    EXPECT_EQ(CoWaitForMultipleHandles(0, INFINITE, 1, &done, &index), S_OK);
    other.join();
    CloseHandle(done);
}

template <class Work>
void hand_over(IDispatch* object, const Work& work)
{
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object, &stream), S_OK);
    const auto receive = [&](IDispatch** proxy) {
        return CoGetInterfaceAndReleaseStream(stream, IID_IDispatch, reinterpret_cast<void**>(proxy));
    };
    have_used_elsewhere(receive, work);
}

void use_file(const Object& file)
{
    EXPECT_EQ(file.call(L"GetPath", {L"C:\\folder\\item"}).text(), L"C:\\folder");
    EXPECT_NE(file.try_call(L"qvMkDirMulti", {L"?"}).result, S_OK);
}

void hand_over_in_a_stream(Session&)
{
    hand_over(Object::create(L"qvObjects.qvFile").dispatch(), use_file);
}

void hand_over_in_the_table(Session&)
{
    const Object file = Object::create(L"qvObjects.qvFile");
    ComPtr<IGlobalInterfaceTable> interfaces;
    DWORD cookie = 0;
    ASSERT_EQ(CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalInterfaceTable,
                               reinterpret_cast<void**>(interfaces.GetAddressOf())), S_OK);
    ASSERT_EQ(interfaces->RegisterInterfaceInGlobal(file.dispatch(), IID_IDispatch, &cookie), S_OK);
    const auto receive = [&](IDispatch** proxy) {
        return interfaces->GetInterfaceFromGlobal(cookie, IID_IDispatch, reinterpret_cast<void**>(proxy));
    };
    have_used_elsewhere(receive, use_file);
    EXPECT_EQ(interfaces->RevokeInterfaceFromGlobal(cookie), S_OK);
}

/// What so many times take of the process, after a start.
template <class Work>
Holdings taken_by(int times, const Work& work)
{
    work();
    const Holdings before = Holdings::now();
    for (int i = 0; i < times; ++i)
        work();
    Holdings taken = Holdings::now();
    for (const Kind& kind : kinds)
        taken.*kind.count -= std::min(taken.*kind.count, before.*kind.count);
    return taken;
}

/// Something that clients do, and how often a long soak does it.
struct Use {
    const char* name;
    void (*once)(Session&);
    long times;
    unsigned threads = 0;
};

constexpr Use uses[]{
    {"call anything", call_anything, 100'000},
    {"raise errors", raise_errors, 100'000},
    {"switch languages", switch_languages, 10'000},
    {"keep settings", keep_settings, 10'000},
    {"keep data", keep_data, 10'000},
    {"draw", draw, 10'000},
    {"hear of items", hear_of_items, 1000},
    {"hear of messages", hear_of_messages, 1000},
    {"hear of tooltips", hear_of_tooltips, 1000},
    {"give up tooltips", give_up_tooltips, 1000},
    {"connect", connect, 100'000},
    {"hand over in a stream", hand_over_in_a_stream, 10'000, 1},
    {"hand over in the table", hand_over_in_the_table, 10'000, 1},
};

/// A client's thread after another, each of which does this and that until it has done enough, and meanwhile uses an object of
/// this one. Wine lets no more than 60 apartments of a process hand over anything, and those that come and go hand over nothing.
void work_in_turns(ULONGLONG end, std::atomic<long>& done)
{
    const Apartment apartment;
    while (GetTickCount64() < end && !testing::Test::HasFailure())
        hand_over(made(__uuidof(qvFile)).dispatch(), [&](const Object& file) {
            Session session;
            for (int i = 0; i < 20 && GetTickCount64() < end; ++i, ++done) {
                const Use& use = uses[session.random() % std::size(uses)];
                use.threads == 0 ? use.once(session) : use_file(file);
                for (int j = 0; j < 10; ++j)
                    call_anything(session);
            }
        });
}

long work_on_four_threads(ULONGLONG milliseconds)
{
    std::atomic<long> done = 0;
    std::vector<std::thread> places;
    for (int i = 0; i < 4; ++i)
        places.emplace_back(work_in_turns, GetTickCount64() + milliseconds, std::ref(done));
    for (std::thread& place : places)
        place.join();
    return done;
}

} // namespace

// A count that missed one would prove nothing. What the platform takes for the first of each stays.
TEST(Soak, CountsEachThingThatIsHeld)
{
    Holdings before, with;
    for ([[maybe_unused]] const bool is_first : {true, false}) {
        before = Holdings::now();
        void* const memory = HeapAlloc(GetProcessHeap(), 0, 16);
        const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
        const DWORD place = TlsAlloc();
        const ATOM atom = GlobalAddAtomW(L"qvObjects soak_test");
        const HANDLE section = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, nullptr);
        const void* const view = MapViewOfFile(section, FILE_MAP_READ, 0, 0, 0);
        {
            const client::TestWindow window;
            with = Holdings::now();
        }
        HeapFree(GetProcessHeap(), 0, memory);
        DeleteObject(brush);
        TlsFree(place);
        GlobalDeleteAtom(atom);
        UnmapViewOfFile(view);
        CloseHandle(section);
    }
    expect_no_growth(before, Holdings::now());
    EXPECT_GE(with.blocks, before.blocks + 1);
    EXPECT_GE(with.bytes, before.bytes + 16);
    EXPECT_EQ(with.handles, before.handles + 1);
    EXPECT_EQ(with.drawing_objects, before.drawing_objects + 1);
    EXPECT_GE(with.windows, before.windows + 1); // with those that the platform gives it
    EXPECT_EQ(with.mappings, before.mappings + 1);
    EXPECT_EQ(with.thread_places, before.thread_places + 1);
    EXPECT_GE(with.atoms, before.atoms + 1);
}

TEST(Soak, ObjectsOfEveryClassAreGivenBack)
{
    const Apartment apartment;
    for (const auto& [name, id] : creatable_classes()) {
        ComPtr<IClassFactory> factory;
        const auto get_class_object = library::entry_point<LPFNGETCLASSOBJECT>(module, "DllGetClassObject");
        ASSERT_EQ(get_class_object(id, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf())), S_OK);
        soak(name, is_full ? 1'000'000 : 1000, [&] {
            ComPtr<IUnknown> object;
            EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(object.GetAddressOf())), S_OK);
        });
    }
}

TEST(Soak, ObjectsHandedOutAreGivenBack)
{
    const Apartment apartment;
    for (const HandedOut& one : handed_out)
        soak(one.name, is_full ? 1'000'000 : 100, [&] { EXPECT_TRUE(one.get()); });
}

TEST(Soak, EveryMemberGivesBackWhatItTakes)
{
    const Session session;
    const auto soak_members = [&](const std::string& name, const auto& make) {
        const std::vector<Member> members = members_of(make());
        const auto with_each = [&](const auto& action) {
            for (const Member& member : members)
                for (const Fit fit : {Fit::Well, Fit::Somehow, Fit::Not})
                    action(member, fit);
        };
        const auto call_once = [&](const Member& member, Fit fit) { call(make(), member, fit, session.folder); };
        const int times = is_full ? 1000 : 5;
        with_each(call_once);
        const Holdings before = Holdings::now();
        with_each([&](const Member& member, Fit fit) {
            SCOPED_TRACE(name + "." + narrow(member.name) + " " + std::to_string(static_cast<int>(fit)));
            const auto call_often = [&] {
                for (int i = 0; i < times; ++i)
                    call_once(member, fit);
            };
            const auto [without, with] = count_around(call_often, &Holdings::of_heaps);
            expect_no_growth(without, with);
        });
        const Holdings after = Holdings::now();
        SCOPED_TRACE(name);
        expect_no_growth(before, after);
        if (is_full)
            tell(name.c_str(), times, before, after);
    };
    for (const HandedOut& one : handed_out)
        soak_members(one.name, one.get);
    for (const Creatable& one : creatable_classes())
        soak_members(one.name, [&] { return made(one.id); });
}

TEST(Soak, UsesLeaveNothing)
{
    Session session;
    for (const Use& use : uses)
        soak(use.name, is_full ? use.times : 10, [&] { use.once(session); }, use.threads);
}

// Wine keeps two handles of every apartment that has handed over anything, a sink here, whosever object it is.
TEST(Soak, EventsInOtherApartmentsTakeNoMoreThanThePlatformDoes)
{
    const Apartment apartment;
    constexpr int times = 12;
    DispatchObject clients_own{{L"Take"}, [](DISPID, const DISPPARAMS& arguments, VARIANT*) {
                                   const Object sink{arguments.rgvarg[0].pdispVal};
                                   return S_OK;
                               }};
    const Holdings by_platform = taken_by(times, [&] {
        hand_over(&clients_own, [](const Object& object) {
            DispatchObject sink{{}, [](auto&&...) { return S_OK; }};
            object.call(L"Take", {Value{&sink}});
        });
    });
    const Holdings by_library = taken_by(times, [] {
        hand_over(Object::create(L"qvObjects.qvFile").dispatch(), [](const Object& file) {
            const client::ItemListener listener{file, [](auto) { return false; }};
        });
    });
    expect_no_growth(by_platform, by_library, 1);
}

TEST(Soak, ThreadsThatComeAndGoLeaveNothing)
{
    work_on_four_threads(is_full ? 60'000 : 300);
    const Holdings before = Holdings::now();
    const long done = work_on_four_threads(is_full ? 600'000 : 700);
    const Holdings after = Holdings::now();
    tell("pieces of work", done, before, after);
    expect_no_growth(before, after, 8);
}
