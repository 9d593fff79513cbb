#include "support/client.h"

#include <qvObjects.h>

#include <functional>
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
            const bool is_ready = process == GetCurrentProcessId() && std::wstring{name} == L"#32770" && IsWindowVisible(window) &&
                                  window != other_than && IsChild(window, focus_in(window));
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
    /// What a message box over the dialog says, which is answered with a key.
    std::wstring answer(WORD key)
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
        EXPECT_EQ(buttons, key == VK_RETURN || key == VK_ESCAPE ? 1 : 2);
        if (key == VK_RETURN || key == VK_ESCAPE)
            press(key);
        else
            SendMessageW(box, WM_COMMAND, key, 0);
        EXPECT_TRUE(within(5000, [&] { return !IsWindow(box); }));
        EXPECT_EQ(in_front(), dialog) << "it is still there";
        return said;
    }
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
    bool show(const std::function<void(User&)>& act, HWND owner = nullptr) const
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
         {Case{0, 0, L"", L"", L"", L"Verzeichnis wechseln", L"Bitte geben Sie den Pfad f\u00fcr die -Quelldateien an.", L"Abbrechen"},
          Case{0, 0, L"", L"Regler & Co", L"", L"Installieren von Regler & Co",
               L"Bitte geben Sie den Pfad f\u00fcr die Regler & Co-Quelldateien an.", L"Abbrechen"},
          Case{0, 1, L"", L"Regler", L"", L"Installieren von Regler",
               L"Bitte geben Sie ein Zielverzeichnis ein oder w\u00e4hlen Sie eins aus.", L"Abbrechen"},
          Case{1, 0, L"", L"Tuner", L"", L"Installing of Tuner", L"Please specify the path for the Tuner-source files.", L"Cancel"},
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
    const HWND owner = CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 600, 400, nullptr, nullptr,
                                       nullptr, nullptr);
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
    const std::wstring long_folder = L"\\\\?\\" + folder.file(std::wstring(200, L'a'));
    for (const int language : {0, 1}) {
        speak(language);
        const auto said = [&](const wchar_t* german, const wchar_t* english) { return language == 0 ? german : english; };
        const std::wstring invalid = said(L"Das angegebene Verzeichnis:", L"The specified directory:");
        const std::wstring why = said(L"ist ung\u00fcltig, unvollst\u00e4ndig oder schreibgesch\u00fctzt. Bitte geben Sie einen vollst\u00e4ndigen "
                                      L"Pfad mit Laufwerkbuchstaben an, zum Beispiel 'C:\\\\Anwendungen'.",
                                      L"is invalid, incomplete or write protected. Please specify a complete path with drive "
                                      L"letter, e.g. 'C:\\\\Applications'.");
        const std::wstring drive = said(L"Kein Lesen m\u00f6glich von Laufwerk Q:", L"No reading possible from drive Q:");
        const std::wstring check = said(L"Stellen Sie sicher, da\u00df die Disketten\u00f6ffnung geschlossen ist, da\u00df die Diskette formatiert "
                                        L"ist und da\u00df sie nicht besch\u00e4digt ist.",
                                        L"Please ensure that the diskdrive is closed and the disk is formatted and not damaged.");
        const std::wstring share = said(L"Netzwerkpfad '\\\\nowhere\\nothing\\x' kann nicht gelesen werden",
                                        L"Network path '\\\\nowhere\\nothing\\x' can not be read");
        const std::wstring rights = said(L"Bitte stellen Sie sicher, da\u00df der Pfad richtig ist und da\u00df Sie die n\u00f6tigen "
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
                EXPECT_EQ(user.answer(VK_RETURN), message);
            }
            press(VK_ESCAPE);
        }));
        EXPECT_EQ(path(), L"as it was");
    }
}

} // namespace
