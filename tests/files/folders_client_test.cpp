#include "support/client.h"
#include "support/dispatch_object.h"
#include "support/link.h"
#include "support/message_box.h"

#include <qvObjects.h>

using client::expect_error;
using client::Folder;
using client::Link;
using client::Object;
using client::Value;

namespace {

constexpr long current_only = 1, folders_only = 2;

bool exists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void set_attributes(const std::wstring& path, DWORD attributes)
{
    EXPECT_TRUE(SetFileAttributesW(path.c_str(), attributes));
}

/// Hears of what a walk finds.
class Listener {
public:
    using Handler = std::function<void(const std::wstring& path, const std::wstring& name, VARIANT_BOOL& cancel)>;

    explicit Listener(const Object& file, Handler handler = [](auto&&...) {}) : handler_{std::move(handler)}
    {
        IConnectionPointContainer* container = nullptr;
        EXPECT_EQ(file.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(__qvFile), &point_), S_OK);
        container->Release();
        EXPECT_EQ(point_->Advise(&sink_, &cookie_), S_OK);
    }
    ~Listener() { let_go(); }

    void let_go()
    {
        if (!point_)
            return;
        point_->Unadvise(cookie_);
        std::exchange(point_, nullptr)->Release();
    }

    /// What was found, a "|" between path and name, without what all paths start with.
    std::vector<std::wstring> found(const std::wstring& start = L"") const
    {
        std::vector<std::wstring> short_ones;
        for (const std::wstring& one : found_) {
            EXPECT_TRUE(one.starts_with(start));
            short_ones.push_back(one.substr(start.size()));
        }
        return short_ones;
    }
    std::size_t count() const { return found_.size(); }

private:
    HRESULT hear(DISPID event, const DISPPARAMS& arguments)
    {
        EXPECT_EQ(event, 1);
        EXPECT_EQ(arguments.cArgs, 3u);
        const VARIANTARG &path = arguments.rgvarg[2], &name = arguments.rgvarg[1], &cancel = arguments.rgvarg[0];
        EXPECT_EQ(path.vt, VT_BSTR);
        EXPECT_EQ(name.vt, VT_BSTR);
        EXPECT_EQ(cancel.vt, VT_BYREF | VT_BOOL);
        found_.push_back(std::wstring{path.bstrVal} + L"|" + name.bstrVal);
        handler_(path.bstrVal, name.bstrVal, *cancel.pboolVal);
        return S_OK;
    }

    Handler handler_;
    std::vector<std::wstring> found_;
    DispatchObject sink_{{L"ItemFound"},
                         [this](DISPID event, const DISPPARAMS& arguments, VARIANT*) { return hear(event, arguments); }};
    IConnectionPoint* point_ = nullptr;
    DWORD cookie_ = 0;
};

class Folders : public testing::Test {
protected:
    ~Folders() override
    {
        SetCurrentDirectoryW(came_from_.c_str());
        common.call(L"qvObjectsInit", {L"Language", 0});
    }

    std::wstring make(std::wstring_view name) const
    {
        const std::wstring path = folder.file(name);
        EXPECT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
        return path;
    }
    bool flag(const wchar_t* member, std::initializer_list<Value> arguments) const { return file.call(member, arguments).flag(); }
    long clear(const std::wstring& path, bool ignore_errors = true) const
    {
        return file.call(L"ClearFolder", {path, ignore_errors}).number();
    }

    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
    Object file = Object::create(L"qvObjects.qvFile");
    const Folder folder;

private:
    static std::wstring current_folder()
    {
        wchar_t path[MAX_PATH];
        GetCurrentDirectoryW(MAX_PATH, path);
        return path;
    }
    std::wstring came_from_ = current_folder();
};

using Names = std::vector<std::wstring>;

class Walks : public Folders {
protected:
    Walks()
    {
        for (const wchar_t* name : {L".cache", L"Gr\u00f6\u00dfe", L"hidden", L"sub", L"sub\\deep"})
            make(name);
        for (const wchar_t* name : {L"a.txt", L"b.doc", L"hidden.txt", L".cache\\x.txt", L"Gr\u00f6\u00dfe\\\u00e4.txt",
                                    L"hidden\\x.txt", L"sub\\deep\\c.txt"})
            folder.write(name, "");
        set_attributes(folder.file(L"hidden"), FILE_ATTRIBUTE_HIDDEN);
        set_attributes(folder.file(L"hidden.txt"), FILE_ATTRIBUTE_HIDDEN);
    }

    Names walk(const wchar_t* pattern, long flags = 0, long attributes = 0) const
    {
        Listener listener{file};
        file.call(L"WalkDirTree", {folder.path(), pattern, flags, attributes});
        return listener.found(folder.path());
    }
};

} // namespace

TEST_F(Walks, ReportFilesBeforeTheSubfoldersOfTheirFolder)
{
    const std::wstring umlauts = L"\\Gr\u00f6\u00dfe\\|\u00e4.txt";
    EXPECT_EQ(walk(L"*.*"), (Names{L"\\|a.txt", L"\\|b.doc", umlauts, L"\\sub\\deep\\|c.txt"}));
    EXPECT_EQ(walk(L"*.txt"), (Names{L"\\|a.txt", umlauts, L"\\sub\\deep\\|c.txt"}));
    EXPECT_EQ(walk(L"*.txt", current_only), (Names{L"\\|a.txt"}));
    EXPECT_EQ(walk(L"*.txt", current_only, FILE_ATTRIBUTE_HIDDEN), (Names{L"\\|a.txt", L"\\|hidden.txt"}));
    EXPECT_EQ(walk(L"*", folders_only), (Names{L"\\|Gr\u00f6\u00dfe", L"\\|sub", L"\\sub\\|deep"}));
    EXPECT_EQ(walk(L"?ee*", folders_only), (Names{L"\\sub\\|deep"})) << "the pattern tells what is found, not where it goes";
    EXPECT_EQ(walk(L"*", folders_only | current_only), (Names{L"\\|Gr\u00f6\u00dfe", L"\\|sub"}));
    EXPECT_EQ(walk(L"s*", current_only, FILE_ATTRIBUTE_DIRECTORY), (Names{L"\\|sub"})) << "found by its attributes";
    EXPECT_EQ(walk(L"a<b|"), Names{});
    EXPECT_EQ(file.try_call(L"WalkDirTree", {folder.file(L"missing"), L"*"}).result, S_OK);
}

TEST_F(Walks, GiveTheCallersVariableItsBackslash)
{
    Value path = folder.path();
    file.call(L"WalkDirTree", {Value::variable(path), L"*", current_only});
    EXPECT_EQ(path.text(), folder.path() + L"\\");
    Value typed = path;
    file.call(L"WalkDirTree", {Value::reference(VT_BSTR, &typed.bstrVal), L"*", current_only});
    EXPECT_EQ(typed.text(), path.text());
    Value empty = L"";
    file.call(L"WalkDirTree", {Value::reference(VT_BSTR, &empty.bstrVal), L"*", current_only});
    EXPECT_EQ(empty.text(), L"\\");

    _qvFile* early = nullptr;
    ASSERT_EQ(file.dispatch()->QueryInterface(__uuidof(_qvFile), reinterpret_cast<void**>(&early)), S_OK);
    EXPECT_EQ(early->WalkDirTree(nullptr, nullptr, dwWalkDirNormal, 0), static_cast<HRESULT>(0x800A0005));
    early->Release();
}

TEST_F(Walks, EndWhenAHandlerSaysSo)
{
    for (const long flags : {0L, folders_only})
        for (const wchar_t* pattern : {L"*", L"*b*"}) {
            Listener listener{file, [](auto&&, auto&&, VARIANT_BOOL& cancel) { cancel = VARIANT_TRUE; }};
            file.call(L"WalkDirTree", {folder.path(), pattern, flags});
            EXPECT_EQ(listener.count(), 1u);
        }
    EXPECT_EQ(walk(L"*").size(), 4u) << "the next walk starts afresh";

    Listener in_a_subfolder{file, [](auto&&, const std::wstring& name, VARIANT_BOOL& cancel) {
                                cancel = name == L"\u00e4.txt" ? VARIANT_TRUE : VARIANT_FALSE;
                            }};
    file.call(L"WalkDirTree", {folder.path(), L"*"});
    EXPECT_EQ(in_a_subfolder.count(), 3u);
}

TEST_F(Walks, GoOnInWhatAHandlerLeaves)
{
    Listener listener{file, [&](auto&&, const std::wstring& name, VARIANT_BOOL&) {
                          if (name != L"b.doc")
                              return;
                          CreateDirectoryW(folder.file(L"new").c_str(), nullptr);
                          folder.write(L"new\\new.txt", "");
                          DeleteFileW(folder.file(L"sub\\deep\\c.txt").c_str());
                          RemoveDirectoryW(folder.file(L"sub\\deep").c_str());
                          RemoveDirectoryW(folder.file(L"sub").c_str());
                      }};
    file.call(L"WalkDirTree", {folder.path(), L"*"});
    EXPECT_EQ(listener.found(folder.path()),
              (Names{L"\\|a.txt", L"\\|b.doc", L"\\Gr\u00f6\u00dfe\\|\u00e4.txt", L"\\new\\|new.txt"}));
}

TEST_F(Walks, KeepTheirObject)
{
    IDispatch* const object = file.dispatch();
    Listener listener{file, [&](auto&&...) {
                          listener.let_go();
                          object->AddRef();
                          file = Object{};
                          EXPECT_GT(object->Release(), 0u) << "the client has let go of it, not the walk";
                      }};
    Value given[]{L"*", folder.path()};
    DISPPARAMS arguments{given, nullptr, 2, 0};
    EXPECT_EQ(object->Invoke(file.id(L"WalkDirTree"), IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(listener.count(), 1u) << "nobody listens after that";
}

TEST_F(Walks, EndWhereALinkLeadsInACircle)
{
    const Link circle{folder.file(L"sub"), L"back", L"."};
    if (!circle.exists())
        GTEST_SKIP() << "no link can be made on this machine";
    Listener all{file};
    file.call(L"WalkDirTree", {folder.path(), L"c.txt"});
    EXPECT_GT(all.count(), 1u) << "links are folders";
    Listener one{file, [](auto&&, auto&&, VARIANT_BOOL& cancel) { cancel = VARIANT_TRUE; }};
    file.call(L"WalkDirTree", {folder.path(), L"c.txt"});
    EXPECT_EQ(one.count(), 1u);
}

TEST_F(Folders, TheChecksTellWhatThereIs)
{
    const std::wstring plain = folder.write(L"pl\u00e4in.txt", ""), sub = make(L"sub"), hidden = folder.write(L"hidden", "");
    const std::wstring locked = folder.write(L"read-only", "");
    set_attributes(hidden, FILE_ATTRIBUTE_HIDDEN);
    set_attributes(locked, FILE_ATTRIBUTE_READONLY);
    const std::wstring missing = folder.file(L"missing"), impossible = folder.file(L"*\\x"), nul{L"a\0b", 3};
    const struct {
        std::wstring path;
        bool is_file, is_path, may_be_written;
    } cases[]{{plain, true, true, true},
              {folder.file(L"*.txt"), true, true, false},
              {sub, false, true, false},
              {sub + L"\\", false, false, false},
              {folder.path() + L"\\", true, true, false},
              {hidden, false, false, true},
              {locked, true, true, false},
              {missing, false, false, true},
              {missing + L"\\x", false, false, true},
              {impossible, false, false, false},
              {nul, false, false, false},
              {L"", false, false, true}};
    for (const auto& one : cases) {
        EXPECT_EQ(flag(L"CheckFile", {one.path}), one.is_file) << testing::PrintToString(one.path);
        EXPECT_EQ(flag(L"CheckPath", {one.path}), one.is_path) << testing::PrintToString(one.path);
        EXPECT_EQ(flag(L"CheckForWrite", {one.path}), one.may_be_written) << testing::PrintToString(one.path);
    }
    make(L"sub\\folder");
    EXPECT_TRUE(flag(L"CheckPath", {sub + L"\\"}));
}

TEST_F(Folders, TheChecksTellTheUser)
{
    const std::wstring sub = make(L"sub"), missing = folder.file(L"fehlt\u00e4.txt"), locked = folder.write(L"read-only", "");
    set_attributes(locked, FILE_ATTRIBUTE_READONLY);
    const struct {
        const wchar_t* member;
        const std::wstring& path; // which stands for the |
        const wchar_t* texts[2];
    } cases[]{
        {L"CheckFile", missing, {L"Die Datei \"|\" konnte nicht gefunden werden!", L"The file \"|\" could not be found!"}},
        {L"CheckPath", missing, {L"Der Ordner \"|\" konnte nicht gefunden werden!", L"The folder \"|\" could not be found!"}},
        {L"CheckForWrite", sub, {L"\"|\" ist keine Datei.", L"\"|\" is not a file."}},
        {L"CheckForWrite", locked, {L"Die Datei \"|\" ist schreibgesch\u00fctzt.", L"The file \"|\" is write protected."}},
    };
    for (const int language : {0, 1}) {
        common.call(L"qvObjectsInit", {L"Language", language});
        for (const auto& one : cases) {
            MessageBoxCatcher box;
            EXPECT_FALSE(flag(one.member, {one.path, L"\u00dcberschrift", true}));
            ASSERT_TRUE(box.caught());
            std::wstring text = one.texts[language];
            EXPECT_EQ(box.text, text.replace(text.find(L'|'), 1, one.path));
            EXPECT_EQ(box.caption, L"\u00dcberschrift");
            EXPECT_EQ(box.icon, 32513);
            EXPECT_EQ(box.buttons, 1);
        }
    }
}

TEST_F(Folders, DelFileDeletesOrTellsWhyNot)
{
    for (const wchar_t* name : {L"one.txt", L"two.txt", L"x.doc", L"hidden.txt"})
        folder.write(name, "");
    set_attributes(folder.file(L"hidden.txt"), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(flag(L"DelFile", {folder.file(L"*.txt")}));
    EXPECT_TRUE(exists(folder.file(L"x.doc")) && exists(folder.file(L"hidden.txt")));
    EXPECT_TRUE(flag(L"DelFile", {folder.file(L"hidden.txt")})) << "by its name";
    EXPECT_FALSE(exists(folder.file(L"hidden.txt")) || exists(folder.file(L"one.txt")) || exists(folder.file(L"two.txt")));

    const std::wstring sub = make(L"sub"), inner = folder.write(L"sub\\x", ""), read_only = folder.write(L"read-only", "");
    set_attributes(read_only, FILE_ATTRIBUTE_READONLY);
    const auto fails = [&](const std::wstring& path, long number, const wchar_t* description) {
        expect_error(file.try_call(L"DelFile", {path}), number, description);
    };
    fails(folder.file(L"*.txt"), 53, L"File not found");
    fails(folder.file(L"missing"), 53, L"File not found");
    fails(folder.file(L"missing\\x"), 76, L"Path not found");
    fails(read_only, 75, L"Path/File access error");
    fails(sub, 75, L"Path/File access error");
    fails(sub + L"\\", 75, L"Path/File access error");
    fails(folder.file(L"s*\\x"), 52, L"Bad file name or number");
    fails({L"a\0b", 3}, 52, L"Bad file name or number");
    const HANDLE held = CreateFileW(inner.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    fails(inner, 70, L"Permission denied");
    file.call(L"qvKill", {inner});
    CloseHandle(held);
    for (const std::wstring& spared : {read_only, sub, sub + L"\\", folder.file(L"missing"), std::wstring{}})
        file.call(L"qvKill", {spared});
    EXPECT_TRUE(exists(read_only) && exists(inner));
    file.call(L"qvKill", {inner});
    EXPECT_FALSE(exists(inner));
}

namespace {

HANDLE held = INVALID_HANDLE_VALUE;

LRESULT CALLBACK let_go(HWND window, UINT message, WPARAM word, LPARAM data)
{
    if (message == WM_USER)
        CloseHandle(held);
    return DefWindowProcW(window, message, word, data);
}

/// Opens a file as a scanner does, who does not mind its deletion.
std::wstring hold(const std::wstring& path)
{
    held = CreateFileW(path.c_str(), GENERIC_READ, 7, nullptr, OPEN_EXISTING, 0, nullptr);
    return path;
}

} // namespace

TEST_F(Folders, DelFileWaitsWhileMessagesAreHandled)
{
    const HWND window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(let_go));
    const std::wstring path = hold(folder.write(L"scanned", ""));
    PostMessageW(window, WM_USER, 0, 0);
    EXPECT_TRUE(flag(L"DelFile", {path}));
    EXPECT_FALSE(exists(path));

    hold(folder.write(L"scanned", ""));
    PostMessageW(window, WM_NULL, 0, 0);
    PostQuitMessage(7);
    EXPECT_FALSE(flag(L"DelFile", {path})) << "after 500 polls";
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7u);
    CloseHandle(held);
    DestroyWindow(window);
}

TEST_F(Folders, QvMkDirMultiCreatesWhatIsMissing)
{
    for (int again = 0; again < 2; ++again)
        file.call(L"qvMkDirMulti", {folder.file(L"a\\\u00e4 b\\c\\")});
    EXPECT_TRUE(exists(folder.file(L"a\\\u00e4 b\\c")));
    SetCurrentDirectoryW(folder.path().c_str());
    file.call(L"qvMkDirMulti", {L"\\relative\\x"});
    EXPECT_TRUE(exists(folder.file(L"relative\\x")));
    for (const wchar_t* nothing : {L"", L"\\", L"C:", L"C:\\", L"C:new"})
        file.call(L"qvMkDirMulti", {nothing});
    EXPECT_FALSE(exists(L"C:new"));
    file.call(L"qvMkDirMulti", {folder.file(L"a\\b")});
    for (const wchar_t* hidden : {L"a", L"a\\b"})
        set_attributes(folder.file(hidden), FILE_ATTRIBUTE_HIDDEN);
    file.call(L"qvMkDirMulti", {folder.file(L"a\\b\\c")});
    EXPECT_TRUE(exists(folder.file(L"a\\b\\c"))) << "hidden folders exist as well";

    folder.write(L"file", "");
    const auto fails = [&](const std::wstring& path, long number, const wchar_t* description) {
        expect_error(file.try_call(L"qvMkDirMulti", {path}), number, description);
    };
    fails(folder.file(L"file"), 75, L"Path/File access error");
    fails(folder.file(L"file\\x"), 75, L"Path/File access error");
    fails(folder.file(L"a*b\\x"), 52, L"Bad file name or number");
    fails(L"Q:\\x", 76, L"Path not found");
    fails({L"a\0b", 3}, 52, L"Bad file name or number");
}

TEST_F(Folders, QvChDirChangesDriveAndFolder)
{
    const auto current = [] {
        wchar_t path[MAX_PATH];
        GetCurrentDirectoryW(MAX_PATH, path);
        return std::wstring{path};
    };
    const std::wstring sub = make(L"\u00fcber");
    file.call(L"qvChDir", {folder.path()});
    file.call(L"qvChDir", {L"\u00fcber"});
    EXPECT_EQ(current(), sub);
    file.call(L"qvChDir", {sub.substr(0, 2)});
    EXPECT_EQ(current(), sub) << "each drive has a current folder";
    file.call(L"qvChDir", {L".."});
    EXPECT_EQ(current(), folder.path());
    folder.write(L"file", "");
    for (const std::wstring& wrong :
         {folder.file(L"missing"), folder.file(L"missing\\x"), folder.file(L"file"), std::wstring{L"Q:\\"}})
        expect_error(file.try_call(L"qvChDir", {wrong}), 76, L"Path not found");
    EXPECT_EQ(current(), folder.path());
}

TEST_F(Folders, PathIsEmptyLooksForVisibleThings)
{
    const auto is_empty = [&] { return flag(L"PathIsEmpty", {folder.path()}) && flag(L"PathIsEmpty", {folder.path() + L"\\"}); };
    EXPECT_TRUE(is_empty());
    EXPECT_TRUE(flag(L"PathIsEmpty", {folder.file(L"missing")}));
    make(L".dot");
    set_attributes(folder.write(L"hidden", ""), FILE_ATTRIBUTE_HIDDEN);
    set_attributes(make(L"system"), FILE_ATTRIBUTE_SYSTEM);
    EXPECT_TRUE(is_empty());
    const std::wstring plain = folder.write(L"x", "");
    EXPECT_FALSE(is_empty());
    DeleteFileW(plain.c_str());
    EXPECT_TRUE(is_empty());
    make(L"sub");
    EXPECT_FALSE(is_empty());
}

namespace {

/// A folder to be cleared, and what lies beside it.
class Clearing : public Folders {
protected:
    Clearing()
    {
        for (const wchar_t* name : {L"in", L"in\\sub", L"in\\sub\\deep", L"in\\.dot", L"in\\hidden",
                                    L"out", L"out\\full", L"out\\empty"})
            make(name);
        for (const wchar_t* name : {L"in\\\u00e4", L"in\\hidden.txt", L"in\\.dot\\x", L"in\\hidden\\x", L"in\\sub\\x",
                                    L"in\\sub\\deep\\hidden", L"in\\sub\\deep\\read-only", L"out\\file", L"out\\full\\file"})
            folder.write(name, "");
        for (const wchar_t* name : {L"in\\hidden", L"in\\hidden.txt", L"in\\sub\\deep\\hidden"})
            set_attributes(folder.file(name), FILE_ATTRIBUTE_HIDDEN);
        for (const wchar_t* name : {L"in\\\u00e4", L"in\\sub\\deep", L"in\\sub\\deep\\read-only"})
            set_attributes(folder.file(name), FILE_ATTRIBUTE_READONLY);
    }

    /// Everything below, with paths from the folder on.
    Names content(const std::wstring& below) const
    {
        Names all;
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW((folder.file(below) + L"\\*").c_str(), &found);
        do {
            const std::wstring name = found.cFileName;
            if (name == L"." || name == L"..")
                continue;
            all.push_back(below + L"\\" + name);
            if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !(found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
                for (const std::wstring& inner : content(all.back()))
                    all.push_back(inner);
        } while (FindNextFileW(search, &found));
        FindClose(search);
        return all;
    }

    const Names spared{L"in\\.dot", L"in\\.dot\\x", L"in\\hidden", L"in\\hidden\\x", L"in\\hidden.txt"};
    const Names outside{L"out\\empty", L"out\\file", L"out\\full", L"out\\full\\file"};
};

} // namespace

TEST_F(Clearing, DeletesFilesAndSubfoldersWithAllTheyHold)
{
    EXPECT_EQ(clear(folder.file(L"in")), 0);
    EXPECT_EQ(content(L"in"), spared);
    EXPECT_EQ(clear(folder.file(L"in") + L"\\"), 0);
}

TEST_F(Clearing, TakesRelativeNamesFromTheCurrentFolder)
{
    SetCurrentDirectoryW(folder.file(L"out").c_str());
    EXPECT_EQ(clear(L"..\\in"), 0);
    EXPECT_EQ(content(L"in"), spared);
    EXPECT_EQ(clear(folder.path().substr(0, 2) + L"full/"), 0);
    EXPECT_EQ(content(L"out"), (Names{L"out\\empty", L"out\\file", L"out\\full"}));
}

TEST_F(Clearing, DeletesNothingForANameThatIsNoFolder)
{
    SetCurrentDirectoryW(folder.file(L"in").c_str());
    const Names all = content(L"in");
    for (const std::wstring& name : {folder.file(L"missing"), folder.file(L"i*"), folder.file(L"in\\*"),
                                     folder.file(L"in\\sub\\*.*"), folder.file(L"in\\sub\\x"), std::wstring{L"?"}})
        EXPECT_EQ(clear(name), 0) << testing::PrintToString(name);
    expect_error(file.try_call(L"ClearFolder", {folder.file({L"in\0", 3})}), 52, L"Bad file name or number");
    EXPECT_EQ(content(L"in"), all);
}

TEST_F(Clearing, CountsWhatCannotBeDeleted)
{
    const std::wstring path = folder.write(L"in\\sub\\locked", "");
    const HANDLE locked = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(clear(folder.file(L"in")), 2) << "the file and its folder";
    EXPECT_FALSE(exists(folder.file(L"in\\sub\\x")) || exists(folder.file(L"in\\sub\\deep")));
    const std::wstring later = folder.write(L"in\\sub\\more", "");
    EXPECT_EQ(clear(folder.file(L"in"), false), 1) << "stops there";
    EXPECT_TRUE(exists(later));
    CloseHandle(locked);
    EXPECT_EQ(clear(folder.file(L"in"), false), 0);
    EXPECT_EQ(content(L"in"), spared);
}

TEST_F(Clearing, NeverLeavesTheFolder)
{
    const Link links[]{{folder.file(L"in"), L"empty", L"..\\out\\empty"}, {folder.file(L"in"), L"full", L"..\\out\\full"},
                       {folder.file(L"in\\sub\\deep"), L"empty", L"..\\..\\..\\out\\empty"},
                       {folder.file(L"in\\sub\\deep"), L"full", L"..\\..\\..\\out\\full"},
                       {folder.file(L"in\\sub"), L"parent", L".."}, {folder.file(L"in"), L"file", L"..\\out\\file", false},
                       {folder.file(L"in\\sub\\deep"), L"file", L"..\\..\\..\\out\\file", false}};
    for (const Link& link : links)
        if (!link.exists())
            GTEST_SKIP() << "no link can be made on this machine";
    const long left = clear(folder.file(L"in"));
    EXPECT_EQ(content(L"out"), outside);
    if (links[0].opens_itself()) {
        EXPECT_EQ(left, 0);
        EXPECT_EQ(content(L"in"), spared);
    } else { // where a link can't be deleted without what it leads to, both stay, with the folders that hold the link
        EXPECT_EQ(left, 9);
        for (const Link& link : links)
            EXPECT_TRUE(link.exists());
        EXPECT_FALSE(exists(folder.file(L"in\\sub\\x")) || exists(folder.file(L"in\\\u00e4")));
    }
}

TEST_F(Clearing, FollowsTheLinkThatItWasGiven)
{
    const Link link{folder.path(), L"link", L"in"};
    if (!link.exists())
        GTEST_SKIP() << "no link can be made on this machine";
    EXPECT_EQ(clear(folder.file(L"link")), 0);
    EXPECT_EQ(content(L"in"), spared);
    EXPECT_TRUE(link.exists());
}
