#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

#include <atomic>
#include <string>

/// A dialog in the thread's language that asks the user for a folder.
class qvPathDialog final : public automation::Object<qvPathDialog, faces::qvPathDialog> {
public:
    qvPathDialogMode get_Mode() const noexcept { return mode_; }
    /// Raises 5 for a mode that there isn't.
    void put_Mode(qvPathDialogMode value);
    std::wstring_view get_Caption() const noexcept { return caption_; }
    void put_Caption(std::wstring_view value) { caption_ = value; }
    std::wstring_view get_Product() const noexcept { return product_; }
    void put_Product(std::wstring_view value) { product_ = value; }
    std::wstring_view get_Prompt() const noexcept { return prompt_; }
    void put_Prompt(std::wstring_view value) { prompt_ = value; }
    std::wstring_view get_Path() const noexcept { return path_; }
    void put_Path(std::wstring_view value) { path_ = value; }

    /// False when the user cancelled, and for a dialog that is shown already.
    bool Show(long hwndOwner);

private:
    std::wstring shown_caption() const;
    std::wstring shown_prompt() const;

    qvPathDialogMode mode_ = qvPDSource;
    std::wstring caption_, product_, prompt_, path_;
    std::atomic<bool> is_shown_{false};
};
