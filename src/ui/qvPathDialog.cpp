#include "ui/qvPathDialog.h"

#include "automation/handle.h"
#include "messages/MErrors.h"
#include "text/message_template.h"
#include "ui/path_dialog.h"

using MErrors::LangStr;

namespace {

/// Resets a flag at the end.
class Reset {
public:
    explicit Reset(std::atomic<bool>& flag) noexcept : flag_{flag} {}
    ~Reset() { flag_ = false; }
    Reset(const Reset&) = delete;
    Reset& operator=(const Reset&) = delete;

private:
    std::atomic<bool>& flag_;
};

} // namespace

void qvPathDialog::put_Mode(qvPathDialogMode value)
{
    if (value != qvPDSource && value != qvPDDestination)
        throw automation::Error{automation::Runtime::InvalidCall};
    mode_ = value;
}

/// The dialog keeps what it is asked with, whatever becomes of the properties while it is shown.
bool qvPathDialog::Show(long hwndOwner)
{
    if (is_shown_.exchange(true))
        return false;
    const Reset reset{is_shown_};
    const ui::PathQuestion question{shown_caption(), shown_prompt(), path_, mode_ == qvPDDestination};
    auto chosen = ui::ask_for_folder(automation::handle_from<HWND>(hwndOwner), question);
    if (!chosen)
        return false;
    path_ = std::move(*chosen);
    return true;
}

std::wstring qvPathDialog::shown_caption() const
{
    if (!caption_.empty())
        return caption_;
    return product_.empty() ? LangStr(2001) : LangStr(2011) + L' ' + product_;
}

std::wstring qvPathDialog::shown_prompt() const
{
    if (!prompt_.empty())
        return prompt_;
    return mode_ == qvPDDestination ? LangStr(1701) : text::expand(LangStr(1601), {product_});
}
