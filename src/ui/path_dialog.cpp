#include "ui/path_dialog.h"

#include "automation/border.h"
#include "automation/handle.h"
#include "automation/module.h"
#include "files/folder_search.h"
#include "files/item_list.h"
#include "messages/MErrors.h"
#include "text/message_template.h"
#include "ui/folder_finding.h"

#include <ole2.h>
#include <shlwapi.h>

#include <algorithm>
#include <initializer_list>
#include <new>

namespace ui {
namespace {

using automation::answer_callback;
using automation::CalculatesAsClient;
using automation::Ref;
using MErrors::LangStr;

enum Control : int { PromptText = 100, PathEdit, BrowseButton };
constexpr int longest_path = 32766; // the longest that the platform takes

struct OfFont {
    using Value = HFONT;
    static Value none() noexcept { return nullptr; }
    static void close(Value font) noexcept { DeleteObject(font); }
};
using Font = automation::Handle<OfFont>;

/// The font in which the system writes its own messages; without one, that of windows that were given none.
Font message_font()
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0))
        return Font{};
    return Font{CreateFontIndirectW(&metrics.lfMessageFont)};
}

/// Measures what a window writes in a font.
class Measure {
public:
    Measure(HWND window, const Font& font)
        : window_{window}, context_{GetDC(window)}, former_{font ? SelectObject(context_, font.get()) : nullptr}
    {
        constexpr std::wstring_view letters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        const SIZE size = extent(letters);
        base_ = {(size.cx / 26 + 1) / 2, size.cy};
    }
    ~Measure()
    {
        if (former_)
            SelectObject(context_, former_);
        ReleaseDC(window_, context_);
    }
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;

    /// False where the system could not say it: everything would have no size.
    bool is_known() const noexcept { return base_.cy > 0; }
    /// Dialog units in pixels: quarters of a letter's mean width, eighths of its height.
    int across(int units) const noexcept { return MulDiv(units, base_.cx, 4); }
    int down(int units) const noexcept { return MulDiv(units, base_.cy, 8); }

    int width(std::wstring_view text) const noexcept { return extent(text).cx; }
    /// How high a text is when its lines are broken at this width.
    int height(const std::wstring& text, int width) const noexcept
    {
        RECT area{0, 0, width, 0};
        DrawTextW(context_, text.c_str(), -1, &area, DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX | DT_EDITCONTROL);
        return area.bottom;
    }

private:
    SIZE extent(std::wstring_view text) const noexcept
    {
        SIZE size{};
        GetTextExtentPoint32W(context_, text.data(), static_cast<int>(text.size()), &size);
        return size;
    }

    HWND window_;
    HDC context_;
    HGDIOBJ former_;
    SIZE base_{};
};

/// Readies the thread for those parts of the shell that need an apartment of their own.
class Apartment {
public:
    Apartment() noexcept : result_{OleInitialize(nullptr)} {}
    ~Apartment()
    {
        if (is_single())
            OleUninitialize();
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

    /// False in a thread that shares the multithreaded apartment.
    bool is_single() const noexcept { return SUCCEEDED(result_); }

private:
    HRESULT result_;
};

RECT work_area(HWND window)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
    return monitor.rcWork;
}

/// Where something of this length begins, when it is put into the middle of a span, but inside of the limits.
LONG centred(LONG length, LONG from, LONG to, LONG least, LONG most) noexcept
{
    return std::max(least, std::min(from + (to - from - length) / 2, most - length));
}

std::wstring lines(std::initializer_list<std::wstring_view> parts)
{
    std::wstring all;
    for (const std::wstring_view part : parts)
        all.append(all.empty() ? L"" : L"\r\n").append(part);
    return all;
}

std::wstring cancel_text()
{
    return MErrors::current_language() == messages::Language::German ? L"Abbrechen" : L"Cancel";
}

/// Where the folder browser starts: the typed folder, or that of those above it which exists.
std::wstring existing_part(std::wstring_view typed)
{
    auto path = whole_path(typed);
    if (!path || !files::is_folder(path->root()))
        return {};
    while (!path->is_root() && !files::is_folder(for_platform(*path)))
        *path = path->parent();
    return path->text;
}

int CALLBACK select_start(HWND browser, UINT message, LPARAM, LPARAM start) noexcept
{
    return answer_callback(Ref<IUnknown>{}, 0, [&] {
        if (message == BFFM_INITIALIZED)
            SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, start);
        return 0;
    });
}

class PathDialog {
public:
    explicit PathDialog(const PathQuestion& question) : question_{question} {}
    PathDialog(const PathDialog&) = delete;
    PathDialog& operator=(const PathDialog&) = delete;

    std::optional<std::wstring> ask(HWND owner);

private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
    bool command(int control);
    void end(int answer);
    void forget_window() noexcept;

    void open();
    void add(int id, const wchar_t* kind, const std::wstring& text, DWORD style, const RECT& place, DWORD extended_style = 0);
    void fit_around(SIZE inside) const;

    HWND edit() const noexcept { return GetDlgItem(window_, PathEdit); }
    std::wstring typed() const;
    void focus_edit() const;
    void browse();
    void accept();
    bool can_be_taken(const std::optional<WholePath>& path, std::wstring_view shown) const;
    bool create(const WholePath& path, std::wstring_view shown) const;
    int show_box(std::initializer_list<std::wstring_view> parts, UINT kind) const;
    void refuse(std::initializer_list<std::wstring_view> parts) const { show_box(parts, MB_OK | MB_ICONERROR); }
    void refuse_as_invalid(std::wstring_view path) const { refuse({LangStr(2031), path, LangStr(2041)}); }

    const PathQuestion& question_;
    const Apartment apartment_;
    const Font font_ = message_font();
    HWND window_ = nullptr; ///< null again when it is gone
    bool is_ended_ = false;
    std::optional<std::wstring> chosen_;
};

constexpr INT_PTR could_not_open = -2;
constexpr DWORD dialog_style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;

std::optional<std::wstring> PathDialog::ask(HWND owner)
{
    struct {
        alignas(DWORD) DLGTEMPLATE dialog;
        WORD menu, window_class, title;
    } const empty{{dialog_style, 0, 0, 0, 0, 0, 0}, 0, 0, 0};
    const INT_PTR outcome = [&] {
        const CalculatesAsClient as_client;
        return DialogBoxIndirectParamW(automation::module::handle(), &empty.dialog, IsWindow(owner) ? owner : nullptr, procedure,
                                       reinterpret_cast<LPARAM>(this));
    }();
    if (outcome == could_not_open)
        throw std::bad_alloc{};
    if (outcome == -1)
        MErrors::RaiseWindowsError(static_cast<std::int32_t>(GetLastError()));
    return std::move(chosen_); // whatever else may have ended it, WM_QUIT for instance
}

INT_PTR CALLBACK PathDialog::procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept
{
    if (message == WM_INITDIALOG) {
        SetWindowLongW(window, DWLP_USER, static_cast<LONG>(l));
        auto& dialog = *reinterpret_cast<PathDialog*>(l);
        dialog.window_ = window;
        if (!answer_callback(Ref<IUnknown>{}, false, [&] { return dialog.open(), true; }))
            EndDialog(window, could_not_open);
        return FALSE; // the focus has been set
    }
    auto* const dialog = reinterpret_cast<PathDialog*>(GetWindowLongW(window, DWLP_USER));
    if (dialog && message == WM_NCDESTROY)
        dialog->forget_window();
    if (!dialog || message != WM_COMMAND || HIWORD(w) != BN_CLICKED)
        return FALSE;
    return answer_callback(Ref<IUnknown>{}, false, [&] { return dialog->command(LOWORD(w)); });
}

bool PathDialog::command(int control)
{
    switch (control) {
    case IDOK:
        accept();
        return true;
    case IDCANCEL:
        end(IDCANCEL);
        return true;
    case BrowseButton:
        browse();
        return true;
    default:
        return false;
    }
}

void PathDialog::end(int answer)
{
    is_ended_ = true;
    const CalculatesAsClient as_client; // its owner becomes active
    EndDialog(window_, answer);
}

/// Where someone else destroys it, its owner for instance, the platform looks whether it is still there with the next message.
void PathDialog::forget_window() noexcept
{
    window_ = nullptr;
    if (!is_ended_)
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

/// From the top: the prompt, the edit box with its button, OK and Cancel on the right.
void PathDialog::open()
{
    SetWindowTextW(window_, question_.caption.c_str());
    const Measure measure{window_, font_};
    if (!measure.is_known())
        throw std::bad_alloc{};
    const std::wstring cancel = cancel_text();
    const RECT screen = work_area(window_);
    const int margin = measure.across(7), gap = measure.across(4), height = measure.down(14);
    const int inner = measure.across(266), browser = measure.across(16);
    const int button = std::max(measure.across(50), measure.width(cancel) + measure.across(12));
    const int highest_prompt = static_cast<int>(screen.bottom - screen.top) / 2;
    const int prompt_height = std::min(measure.height(question_.prompt, inner), highest_prompt);
    const int edit_top = margin + prompt_height + measure.down(5), buttons_top = edit_top + height + measure.down(10);
    const int right = margin + inner;

    add(PromptText, L"STATIC", question_.prompt, SS_NOPREFIX | SS_EDITCONTROL, {margin, margin, right, margin + prompt_height});
    add(PathEdit, L"EDIT", question_.path, WS_TABSTOP | ES_AUTOHSCROLL,
        {margin, edit_top, right - browser - gap, edit_top + height}, WS_EX_CLIENTEDGE);
    add(BrowseButton, L"BUTTON", L"...", WS_TABSTOP, {right - browser, edit_top, right, edit_top + height});
    add(IDOK, L"BUTTON", L"OK", WS_TABSTOP | BS_DEFPUSHBUTTON,
        {right - 2 * button - gap, buttons_top, right - button - gap, buttons_top + height});
    add(IDCANCEL, L"BUTTON", cancel, WS_TABSTOP, {right - button, buttons_top, right, buttons_top + height});
    SendMessageW(window_, DM_SETDEFID, IDOK, 0);
    fit_around({right + margin, buttons_top + height + margin});

    SendMessageW(edit(), EM_SETLIMITTEXT, longest_path, 0);
    focus_edit();
    if (apartment_.is_single())
        SHAutoComplete(edit(), SHACF_FILESYS_DIRS);
}

void PathDialog::add(int id, const wchar_t* kind, const std::wstring& text, DWORD style, const RECT& place, DWORD extended_style)
{
    const auto number = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
    const HWND control = CreateWindowExW(extended_style, kind, text.c_str(), WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                                         place.right - place.left, place.bottom - place.top, window_, number,
                                         automation::module::handle(), nullptr);
    if (!control)
        throw std::bad_alloc{};
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
}

/// Over the middle of its owner, or else of the screen.
void PathDialog::fit_around(SIZE inside) const
{
    RECT frame{0, 0, inside.cx, inside.cy};
    AdjustWindowRectEx(&frame, dialog_style, FALSE, WS_EX_DLGMODALFRAME);
    const LONG width = frame.right - frame.left, height = frame.bottom - frame.top;
    const HWND owner = GetWindow(window_, GW_OWNER);
    const RECT limits = work_area(owner ? owner : window_);
    RECT around = limits;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner))
        GetWindowRect(owner, &around);
    SetWindowPos(window_, nullptr, centred(width, around.left, around.right, limits.left, limits.right),
                 centred(height, around.top, around.bottom, limits.top, limits.bottom), width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

std::wstring PathDialog::typed() const
{
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(edit())) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(edit(), text.data(), static_cast<int>(text.size()))));
    return text;
}

void PathDialog::focus_edit() const
{
    SendMessageW(edit(), EM_SETSEL, 0, -1);
    const CalculatesAsClient as_client; // a window of the client may lose the focus
    SetFocus(edit());
}

/// The browser's better form needs an apartment of the thread's own.
void PathDialog::browse()
{
    const std::wstring start = existing_part(typed());
    wchar_t name[MAX_PATH];
    BROWSEINFOW browser{};
    browser.hwndOwner = window_;
    browser.pszDisplayName = name;
    browser.lpszTitle = question_.prompt.c_str();
    browser.ulFlags = BIF_RETURNONLYFSDIRS | (apartment_.is_single() ? BIF_NEWDIALOGSTYLE : 0) |
                      (question_.may_create ? 0 : BIF_NONEWFOLDERBUTTON);
    browser.lpfn = select_start;
    browser.lParam = reinterpret_cast<LPARAM>(start.c_str());
    const files::ItemList picked{[&] {
        const CalculatesAsClient as_client;
        return SHBrowseForFolderW(&browser);
    }()};
    const std::wstring path = picked ? files::path_of(*picked) : L"";
    if (!path.empty())
        SetWindowTextW(edit(), path.c_str());
    focus_edit();
}

/// The dialog stays when the path can't be taken.
void PathDialog::accept()
{
    const std::wstring text = typed();
    const auto path = whole_path(text);
    if (!can_be_taken(path, bare(text)))
        return focus_edit();
    chosen_ = path->text;
    end(IDOK);
}

/// Whether the folder is there, or is now. Tells the user why not.
bool PathDialog::can_be_taken(const std::optional<WholePath>& path, std::wstring_view shown) const
{
    switch (path ? find_folder(*path) : Finding::Unusable) {
    case Finding::Folder:
        return true;
    case Finding::Missing:
        if (question_.may_create)
            return create(*path, shown);
        refuse({LangStr(2021)});
        return false;
    case Finding::UnreadableRoot:
        if (path->is_on_network())
            refuse({text::expand(LangStr(2051), {shown}), LangStr(2071)});
        else
            refuse({LangStr(2061) + path->text.substr(0, 2), LangStr(2081)});
        return false;
    case Finding::Unusable:
        refuse_as_invalid(shown);
    }
    return false;
}

/// Whether the user wanted the folder to be created, and it was.
bool PathDialog::create(const WholePath& path, std::wstring_view shown) const
{
    if (show_box({LangStr(1801), shown, LangStr(1901)}, MB_YESNO | MB_ICONQUESTION) != IDYES)
        return false;
    const bool is_created = automation::or_default([&] { return create_folder(path), true; });
    if (!is_created)
        refuse_as_invalid(shown);
    return is_created;
}

int PathDialog::show_box(std::initializer_list<std::wstring_view> parts, UINT kind) const
{
    const std::wstring message = lines(parts);
    const CalculatesAsClient as_client;
    return MessageBoxW(window_, message.c_str(), question_.caption.c_str(), kind);
}

} // namespace

std::optional<std::wstring> ask_for_folder(HWND owner, const PathQuestion& question)
{
    return PathDialog{question}.ask(owner);
}

} // namespace ui
