#pragma once

#include "automation/object.h"

#include <qvObjects_contract.h>

#include <string>

/// Placement of forms, list views and tool bars in the user's settings.
///
/// The client's objects are used by the names of their members, and their code may do anything meanwhile: a call works with
/// the form, the application and the section that there were when it began.
class qvSave final : public automation::Object<qvSave, faces::qvSave> {
public:
    std::wstring_view get_Application() const { return application_; }
    void put_Application(std::wstring_view value) { application_ = value; }
    std::wstring_view get_Section() const { return section_; }
    void put_Section(std::wstring_view value) { section_ = value; }
    automation::Ref<IDispatch> get_Form() const { return form_; }
    void putref_Form(IDispatch* value) { form_ = automation::Ref{value}; }

    void WriteS(std::wstring_view sKey, std::wstring_view sValue);
    std::wstring ReadS(std::wstring_view sKey, std::wstring_view sDefault);
    bool ReadF(std::wstring_view sKey, std::wstring_view fDefault);

    bool WritePosition();
    bool ReadPosition();
    void WriteListView(IDispatch* lv);
    void ReadListView(IDispatch* lv);
    void WriteQvBar(IDispatch* Bar);
    void ReadQvBar(IDispatch* Bar, long lDefaultNSize, long lDefaultWState, bool fCheckCorrectSize);

private:
    std::wstring application_;
    std::wstring section_;
    automation::Ref<IDispatch> form_;
};
