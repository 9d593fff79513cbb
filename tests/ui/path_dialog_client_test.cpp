#include "support/client.h"

#include <qvObjects.h>

#include <functional>
#include <memory>
#include <thread>

using client::Folder;
using client::Object;
using client::Value;

namespace {

constexpr int prompt = 100, edit = 101, browse = 102;

bool within(DWORD patience, const std::function<bool()>& holds)
{
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > patience)
            return false;
        Sleep(10);
    }
    return true;
}

std::wstring text_of(HWND window)
{
    std::wstring text(0x8000, L'\0');
    text.resize(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

void press(WORD key, DWORD flags = 0)
{
    for (const DWORD up : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = flags & KEYEVENTF_UNICODE ? WORD{0} : key;
        input.ki.wScan = flags & KEYEVENTF_UNICODE ? key : WORD{0};
        input.ki.dwFlags = flags | up;
        SendInput(1, &input, sizeof input);
    }
}

/// Who sits at the keyboard while a dialog of this process is shown.
class User {
public:
    HWND dialog = nullptr;

    /// The dialog that is in front; waits until it has the focus.
    HWND in_front(HWND other_than = nullptr)
    {
        HWND found = nullptr;
        within(10000, [&] {
            const HWND window = GetForegroundWindow();
            DWORD process = 0;
            wchar_t name[16] = L"";
            GetWindowThreadProcessId(window, &process);
            GetClassNameW(window, name, 16);
            const bool is_dialog = process == GetCurrentProcessId() && std::wstring{name} == L"#32770";
            const bool is_ready = is_dialog && IsWindowVisible(window) && window != other_than &&
                                  IsChild(window, focus_in(window));
            found = is_ready ? window : nullptr;
            return is_ready;
        });
        return found;
    }
    static HWND focus_in(HWND window)
    {
        GUITHREADINFO information{};
        information.cbSize = sizeof information;
        GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &information);
        return information.hwndFocus;
    }
    int focus() const { return GetDlgCtrlID(focus_in(dialog)); }
    HWND control(int id) const { return GetDlgItem(dialog, id); }
    std::wstring text(int id) const { return text_of(control(id)); }

    /// Everything in the edit box is selected when it gets the focus.
    void type(const std::wstring& typed) const
    {
        EXPECT_EQ(focus(), edit);
        press(VK_DELETE);
        for (const wchar_t character : typed)
            press(static_cast<WORD>(character), KEYEVENTF_UNICODE);
        EXPECT_TRUE(within(10000, [&] { return text(edit) == typed; })) << testing::PrintToString(text(edit));
    }
    void tab_to(int id) const
    {
        press(VK_TAB);
        EXPECT_TRUE(within(5000, [&] { return focus() == id; })) << focus();
    }
    /// What a message box over the dialog says, which is answered with keys.
    std::wstring answer(std::initializer_list<WORD> keys, int expected_buttons = 1)
    {
        const HWND box = in_front(dialog);
        EXPECT_EQ(GetWindow(box, GW_OWNER), dialog);
        EXPECT_EQ(text_of(box), text_of(dialog));
        std::wstring said;
        int buttons = 0;
        for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            wchar_t kind[16] = L"";
            GetClassNameW(child, kind, 16);
            if (std::wstring{kind} == L"Button")
                buttons += IsWindowVisible(child);
            else if (said.empty() && SendMessageW(child, STM_GETICON, 0, 0) == 0)
                said = text_of(child);
        }
        EXPECT_EQ(buttons, expected_buttons);
        for (const WORD key : keys)
            press(key);
        EXPECT_TRUE(within(5000, [&] { return !IsWindow(box); }));
        return said;
    }
    bool is_still_there() { return in_front() == dialog && within(1000, [&] { return focus() == edit; }); }
};

/// Parts of a message.
std::wstring lines(std::initializer_list<std::wstring_view> parts)
{
    std::wstring all;
    for (const auto part : parts)
        all.append(all.empty() ? L"" : L"\r\n").append(part);
    return all;
}

class PathDialog : public testing::Test {
protected:
    ~PathDialog() override { speak(0); }

    void speak(int language) const { common.call(L"qvObjectsInit", {L"Language", language}); }
    /// Shows the dialog to somebody, and closes it when he has not.
    bool show(const std::function<void(User&)>& act, HWND owner = nullptr) const { return show(dialog, act, owner); }
    static bool show(const Object& dialog, const std::function<void(User&)>& act, HWND owner = nullptr)
    {
        std::thread user{[&] {
            User user;
            user.dialog = user.in_front();
            EXPECT_TRUE(user.control(edit)) << "the dialog was not shown";
            if (user.control(edit))
                act(user);
            if (!within(3000, [&] { return !IsWindow(user.dialog); })) {
                ADD_FAILURE() << "the dialog was not closed";
                PostMessageW(user.dialog, WM_COMMAND, IDCANCEL, 0);
            }
        }};
        const bool chosen = dialog.call(L"Show", {static_cast<long>(reinterpret_cast<LONG_PTR>(owner))}).flag();
        user.join();
        return chosen;
    }
    std::wstring path() const { return dialog.call(L"Path").text(); }

    client::Apartment apartment;
    const Object common = Object::create(L"qvObjects.qvCommon");
    const Object dialog = Object::create(L"qvObjects.qvPathDialog");
    const Folder folder;
};

HWND make_owner()
{
    return CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 600, 400, nullptr, nullptr, nullptr,
                           nullptr);
}

/// Whether a control shows all of its text.
bool shows_all(HWND control)
{
    const HDC context = GetDC(control);
    const HGDIOBJ former = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    const std::wstring text = text_of(control);
    RECT place, needed{};
    GetClientRect(control, &place);
    needed.right = place.right;
    DrawTextW(context, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(context, former);
    ReleaseDC(control, context);
    return needed.bottom <= place.bottom && needed.right <= place.right;
}

TEST_F(PathDialog, SpeaksTheLanguageOfTheThread)
{
    struct Case {
        int language, mode;
        const wchar_t *caption, *product, *prompt, *shown_caption, *shown_prompt, *cancel;
    };
    for (const auto& [language, mode, caption, product, own_prompt, shown_caption, shown_prompt, cancel] :
         {Case{0, 0, L"", L"", L"", L"Verzeichnis wechseln", L"Bitte geben Sie den Pfad f\u00fcr die -Quelldateien an.",
               L"Abbrechen"},
          Case{0, 0, L"", L"Regler & Co", L"", L"Installieren von Regler & Co",
               L"Bitte geben Sie den Pfad f\u00fcr die Regler & Co-Quelldateien an.", L"Abbrechen"},
          Case{0, 1, L"", L"Regler", L"", L"Installieren von Regler",
               L"Bitte geben Sie ein Zielverzeichnis ein oder w\u00e4hlen Sie eins aus.", L"Abbrechen"},
          Case{1, 0, L"", L"Tuner", L"", L"Installing of Tuner", L"Please specify the path for the Tuner-source files.",
               L"Cancel"},
          Case{1, 1, L"", L"", L"", L"Change directory", L"Please specify the destination directory or select one.", L"Cancel"},
          Case{1, 1, L"My & caption", L"Tuner", L"Where |1 & why?\r\nSay it.", L"My & caption", L"Where |1 & why?\r\nSay it.",
               L"Cancel"}}) {
        speak(language);
        dialog.put(L"Mode", {mode});
        dialog.put(L"Caption", {caption});
        dialog.put(L"Product", {product});
        dialog.put(L"Prompt", {own_prompt});
        EXPECT_FALSE(show([&](const User& user) {
            EXPECT_EQ(text_of(user.dialog), shown_caption);
            EXPECT_EQ(user.text(prompt), shown_prompt);
            EXPECT_EQ(user.text(browse), L"...");
            EXPECT_EQ(user.text(IDOK), L"OK");
            EXPECT_EQ(user.text(IDCANCEL), cancel);
            for (const int id : {prompt, browse, static_cast<int>(IDOK), static_cast<int>(IDCANCEL)})
                EXPECT_TRUE(shows_all(user.control(id))) << id << " in language " << language;
            press(VK_ESCAPE);
        }));
        EXPECT_EQ(dialog.call(L"Caption").text(), caption) << "an empty property stays empty";
        EXPECT_EQ(dialog.call(L"Prompt").text(), own_prompt);
    }
    client::expect_error(dialog.try_put(L"Mode", {2}), 5, L"Invalid procedure call or argument");
    EXPECT_EQ(dialog.call(L"Mode").number(), 1);
}

TEST_F(PathDialog, IsUsedWithTheKeyboard)
{
    const HWND owner = make_owner();
    dialog.put(L"Path", {L"C:\\start"});
    EXPECT_FALSE(show(
        [&](const User& user) {
            EXPECT_FALSE(IsWindowEnabled(owner));
            EXPECT_EQ(GetWindow(user.dialog, GW_OWNER), owner);
            EXPECT_EQ(user.focus(), edit);
            EXPECT_EQ(user.text(edit), L"C:\\start");
            user.tab_to(browse);
            user.tab_to(IDOK);
            user.tab_to(IDCANCEL);
            user.tab_to(edit);
            user.type(L"C:\\windows");
            press(VK_ESCAPE);
        },
        owner));
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_EQ(path(), L"C:\\start") << "as it was before";

    EXPECT_TRUE(show([&](const User& user) {
        user.type(L" \"" + folder.path() + L"\\\" ");
        press(VK_RETURN);
    }));
    EXPECT_EQ(path(), folder.path());
    EXPECT_TRUE(show([&](const User& user) {
        EXPECT_EQ(user.text(edit), folder.path());
        user.type(L"C:/");
        user.tab_to(browse);
        user.tab_to(IDOK);
        press(VK_SPACE);
    }, owner));
    EXPECT_EQ(path(), L"C:\\");
    DestroyWindow(owner);
    EXPECT_FALSE(show([&](const User& user) {
        EXPECT_EQ(GetWindow(user.dialog, GW_OWNER), nullptr);
        user.tab_to(browse);
        user.tab_to(IDOK);
        user.tab_to(IDCANCEL);
        press(VK_RETURN);
    }, owner)) << "an owner that is gone counts as none";
}

TEST_F(PathDialog, SaysWhyAFolderCantBeTaken)
{
    const std::wstring file = folder.write(L"file.txt", ""), missing = folder.file(L"missing");
    for (const int language : {0, 1}) {
        speak(language);
        const auto said = [&](const wchar_t* german, const wchar_t* english) { return language == 0 ? german : english; };
        const std::wstring invalid = said(L"Das angegebene Verzeichnis:", L"The specified directory:");
        const std::wstring why =
            said(L"ist ung\u00fcltig, unvollst\u00e4ndig oder schreibgesch\u00fctzt. Bitte geben Sie einen vollst\u00e4ndigen "
                 L"Pfad mit Laufwerkbuchstaben an, zum Beispiel 'C:\\\\Anwendungen'.",
                 L"is invalid, incomplete or write protected. Please specify a complete path with drive letter, e.g. "
                 L"'C:\\\\Applications'.");
        const std::wstring drive = said(L"Kein Lesen m\u00f6glich von Laufwerk Q:", L"No reading possible from drive Q:");
        const std::wstring check =
            said(L"Stellen Sie sicher, da\u00df die Disketten\u00f6ffnung geschlossen ist, da\u00df die Diskette formatiert ist "
                 L"und da\u00df sie nicht besch\u00e4digt ist.",
                 L"Please ensure that the diskdrive is closed and the disk is formatted and not damaged.");
        const std::wstring share = said(L"Netzwerkpfad '\\\\nowhere\\nothing\\x' kann nicht gelesen werden",
                                        L"Network path '\\\\nowhere\\nothing\\x' can not be read");
        const std::wstring rights =
            said(L"Bitte stellen Sie sicher, da\u00df der Pfad richtig ist und da\u00df Sie die n\u00f6tigen "
                 L"Zugriffsrechte haben.",
                 L"Please check validity of the specified path and ensure that you own the necessary access rights.");
        const std::wstring none = said(L"Das Verzeichnis existiert nicht!", L"The directory doesn't exist.");
        dialog.put(L"Path", {L"as it was"});
        EXPECT_FALSE(show([&](User& user) {
            const std::pair<std::wstring, std::wstring> cases[]{
                {L" Temp ", lines({invalid, L"Temp", why})}, {L"C:", lines({invalid, L"C:", why})},
                {L"C:\\a*b", lines({invalid, L"C:\\a*b", why})}, {file, lines({invalid, file, why})},
                {L"Q:\\x", lines({drive, check})}, {L"Q:\\", lines({drive, check})},
                {L"\\\\nowhere\\nothing\\x", lines({share, rights})}, {missing, none}};
            for (const auto& [typed, message] : cases) {
                user.type(typed);
                press(VK_RETURN);
                EXPECT_EQ(user.answer({VK_RETURN}), message);
                EXPECT_TRUE(user.is_still_there());
            }
            press(VK_ESCAPE);
        }));
        EXPECT_EQ(path(), L"as it was");
    }
}

TEST_F(PathDialog, CreatesAFolderThatMayBeCreated)
{
    const std::wstring file = folder.write(L"file.txt", ""), missing = folder.file(L"a\\\u00e4\u4e2d & b");
    const std::wstring deep = folder.file(L"a\\" + std::wstring(150, L'x') + L"\\" + std::wstring(150, L'y'));
    const auto question = [](const std::wstring& typed) {
        return lines({L"Das Zielverzeichnis:", typed, L"existiert nicht. Soll dieses Verzeichnis erstellt werden?"});
    };
    const auto exists = [](const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; };
    dialog.put(L"Mode", {1});
    EXPECT_TRUE(show([&](User& user) {
        user.type(L"Q:\\x");
        press(VK_RETURN);
        EXPECT_TRUE(user.answer({VK_RETURN}).starts_with(L"Kein Lesen m\u00f6glich von Laufwerk Q:"));
        EXPECT_TRUE(user.is_still_there());

        user.type(missing);
        press(VK_RETURN);
        EXPECT_EQ(user.answer({VK_TAB, VK_RETURN}, 2), question(missing));
        EXPECT_TRUE(user.is_still_there());
        EXPECT_FALSE(exists(folder.file(L"a"))) << "the answer was No";

        user.type(file + L"\\x");
        press(VK_RETURN);
        EXPECT_EQ(user.answer({VK_RETURN}, 2), question(file + L"\\x"));
        const std::wstring refused = lines({L"Das angegebene Verzeichnis:", file + L"\\x", L"ist ung\u00fcltig"});
        EXPECT_TRUE(user.answer({VK_RETURN}).starts_with(refused));
        EXPECT_TRUE(user.is_still_there());

        user.type(missing + L"\\");
        press(VK_RETURN);
        EXPECT_EQ(user.answer({VK_RETURN}, 2), question(missing + L"\\"));
    }));
    EXPECT_EQ(path(), missing);
    EXPECT_TRUE(exists(missing));

    EXPECT_TRUE(show([&](User& user) {
        user.type(deep);
        press(VK_RETURN);
        EXPECT_EQ(user.answer({VK_RETURN}, 2), question(deep));
    }));
    EXPECT_EQ(path(), deep) << "with more than 260 characters";
    EXPECT_TRUE(RemoveDirectoryW((L"\\\\?\\" + deep).c_str()));
}

TEST_F(PathDialog, LetsTheUserBrowseFromTheTypedFolder)
{
    const std::wstring before = folder.file(L"missing\\x");
    for (const WORD key : {VK_ESCAPE, VK_RETURN}) {
        dialog.put(L"Path", {before});
        EXPECT_EQ(show([&](User& user) {
                      user.tab_to(browse);
                      press(VK_SPACE);
                      const HWND browser = user.in_front(user.dialog);
                      EXPECT_EQ(GetWindow(browser, GW_OWNER), user.dialog);
                      press(key);
                      EXPECT_TRUE(within(5000, [&] { return !IsWindow(browser); }));
                      EXPECT_TRUE(user.is_still_there());
                      const std::wstring expected = key == VK_RETURN ? folder.path() : before;
                      const std::wstring found = user.text(edit);
                      EXPECT_EQ(lstrcmpiW(found.c_str(), expected.c_str()), 0) << testing::PrintToString(found);
                      press(key);
                  }),
                  key == VK_RETURN);
    }
    EXPECT_EQ(lstrcmpiW(path().c_str(), folder.path().c_str()), 0);
}

/// A window of the client, which does something when it is told to.
class ClientWindow {
public:
    explicit ClientWindow(std::function<void()> act)
        : act_{std::move(act)}, handle{CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)}
    {
        SetWindowLongW(handle, GWL_USERDATA, static_cast<LONG>(reinterpret_cast<LONG_PTR>(this)));
        SetWindowLongW(handle, GWL_WNDPROC, static_cast<LONG>(reinterpret_cast<LONG_PTR>(&procedure)));
    }
    ~ClientWindow() { DestroyWindow(handle); }
    ClientWindow(const ClientWindow&) = delete;
    ClientWindow& operator=(const ClientWindow&) = delete;

    /// From any thread; returns when it is done.
    void tell() const { SendMessageW(handle, WM_APP, 0, 0); }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l)
    {
        if (message == WM_APP)
            reinterpret_cast<ClientWindow*>(static_cast<LONG_PTR>(GetWindowLongW(window, GWL_USERDATA)))->act_();
        return DefWindowProcW(window, message, w, l);
    }

    std::function<void()> act_;

public:
    const HWND handle;
};

TEST_F(PathDialog, StandsWhateverTheClientDoesMeanwhile)
{
    auto own = std::make_unique<Object>(Object::create(L"qvObjects.qvPathDialog"));
    const ClientWindow client{[&] {
        EXPECT_FALSE(own->call(L"Show").flag()) << "it is shown already";
        own->put(L"Caption", {L"too late"});
        own->put(L"Path", {L"C:\\too\\late"});
        own.reset();
    }};
    own->put(L"Caption", {L"in time"});
    const Object called = *own; // to call it by; let go of, too
    EXPECT_TRUE(show(called, [&](const User& user) {
        client.tell();
        EXPECT_EQ(text_of(user.dialog), L"in time");
        user.type(folder.path());
        press(VK_RETURN);
    }));
    EXPECT_EQ(called.call(L"Path").text(), folder.path());
    EXPECT_FALSE(show(called, [&](const User&) { press(VK_ESCAPE); })) << "it can be shown again";

    const HWND owner = make_owner();
    const ClientWindow destroyer{[&] { DestroyWindow(owner); }};
    EXPECT_FALSE(show([&](const User&) { destroyer.tell(); }, owner));

    const DWORD thread = GetCurrentThreadId();
    EXPECT_FALSE(show([&](const User&) { PostThreadMessageW(thread, WM_QUIT, 42, 0); }));
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "it reaches the program";
    EXPECT_EQ(message.wParam, 42u);
}

TEST_F(PathDialog, WorksInTheMultithreadedApartment)
{
    CLSID id{};
    ASSERT_EQ(CLSIDFromProgID(L"qvObjects.qvPathDialog", &id), S_OK);
    const auto entry = reinterpret_cast<decltype(&DllGetClassObject)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"qvObjects.dll"), "DllGetClassObject")));
    std::thread{[&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        IClassFactory* factory = nullptr;
        IDispatch* made = nullptr;
        EXPECT_EQ(entry(id, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&made)), S_OK);
        factory->Release();
        {
            const Object direct{made};
            made->Release();
            EXPECT_TRUE(show(direct, [&](User& user) {
                user.tab_to(browse);
                press(VK_SPACE);
                const HWND browser = user.in_front(user.dialog);
                press(VK_ESCAPE);
                EXPECT_TRUE(within(5000, [&] { return !IsWindow(browser); }));
                EXPECT_TRUE(user.is_still_there());
                user.type(folder.path());
                press(VK_RETURN);
            }));
            EXPECT_EQ(direct.call(L"Path").text(), folder.path());
        }
        CoUninitialize();
    }}.join();
}

} // namespace
