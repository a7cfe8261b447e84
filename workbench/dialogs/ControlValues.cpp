// Automation access to the controls of the module's dialogs: reading a control's value and
// writing it as the user would.

#include <cmath>
#include <string>

#include "drilldown/host/framework/AnalysisDialog.h"
#include "workbench/automation/VariantConversion.h"
#include "workbench/data/VariableList.h"
#include "workbench/dialogs/EditNumbers.h"
#include "workbench/dialogs/DialogHost.h"

namespace wb {

namespace {

constexpr const char* ErrorSource = "Drill-Down workbench";

// The caption of a button, check box or radio, to name it in a message.
std::string quotedText(const ControlState& control) {
    const bool captioned = control.kind == ControlKind::Button ||
                           control.kind == ControlKind::CheckBox ||
                           control.kind == ControlKind::Radio;
    return !captioned || control.text.empty() ? std::string() : " (\"" + control.text + "\")";
}

// Why a disabled control takes no action, in the user's words: the panel enables each
// control only at the steps where it can be used.
std::string unavailable(int id, const ControlState& control) {
    const std::string name = quotedText(control);
    const std::string step = " cannot be used at this step of the analysis (the panel disables it";
    if (name.empty())
        return "Control " + std::to_string(id) + step + ").";
    return name.substr(2, name.size() - 3) + step + "; control " + std::to_string(id) + ").";
}

// The text of a value: a string as it is, a number in its shortest form, an array its items
// joined by blanks. False for a value that holds no text (an object).
bool valueText(BstrAllocator& strings, const VARIANT& value, std::string& text) {
    if (value.vt == (VT_ARRAY | VT_VARIANT)) {
        text.clear();
        for (const VARIANT& item : value.parray->Items) {
            std::string itemText;
            if (!valueText(strings, item, itemText))
                return false;
            if (!itemText.empty())
                text += (text.empty() ? "" : " ") + itemText;
        }
        return true;
    }
    COleVariant converted;
    if (FAILED(changeVariantType(strings, &converted, &value, VT_BSTR)))
        return false;
    text = std::string(BstrView(converted.bstrVal));
    return true;
}

bool valueNumber(BstrAllocator& strings, const VARIANT& value, double& number) {
    COleVariant converted;
    if (FAILED(changeVariantType(strings, &converted, &value, VT_R8)))
        return false;
    number = converted.dblVal;
    return true;
}

} // namespace

HRESULT DialogHost::fail(HRESULT result, const std::string& description) {
    if (m_automation == nullptr)
        return result;
    ICreateErrorInfo* writer = nullptr;
    if (FAILED(m_automation->CreateErrorInfo(&writer)) || writer == nullptr)
        return result;
    writer->SetSource(ErrorSource);
    writer->SetDescription(description.c_str());
    void* reader = nullptr;
    if (SUCCEEDED(writer->QueryInterface(IID_IErrorInfo, &reader)) && reader != nullptr) {
        m_automation->SetErrorInfo(0, static_cast<IErrorInfo*>(reader));
        static_cast<IErrorInfo*>(reader)->Release();
    }
    writer->Release();
    return result;
}

HRESULT DialogHost::GetControlValue(HWND dialog, int id, VARTYPE type, VARIANT* value) {
    if (value == nullptr)
        return E_POINTER;
    VariantInit(value);
    if (!isOpen(dialog))
        return fail(E_FAIL, "The dialog has been closed.");
    if (!hasControl(dialog, id))
        return fail(DISP_E_MEMBERNOTFOUND, "The dialog has no control " + std::to_string(id) + ".");
    const ControlState& control = m_model.state(dialog, id);
    const bool checkable = control.kind == ControlKind::CheckBox || control.kind == ControlKind::Radio;
    if (type == VT_BSTR) {
        const auto lists = m_variableLists.find({dialog, id});
        const std::string& text =
            control.kind == ControlKind::Button
                ? (lists == m_variableLists.end() ? std::string() : lists->second)
                : control.text;
        if (m_automation == nullptr)
            return E_UNEXPECTED;
        COleVariant made = COleVariant::Text(*m_automation, text);
        *value = made.Detach();
        return S_OK;
    }
    if (type == VT_DISPATCH)
        return pressForDocument(dialog, id, value);
    if (type != VT_I4 && type != VT_R8)
        return fail(DISP_E_TYPEMISMATCH, "Control " + std::to_string(id) + " cannot be read so.");
    double number = 0;
    if (checkable) {
        number = control.checked ? 1 : 0;
    } else {
        const std::optional<double> shown = readEditNumber(control.text);
        if (control.kind != ControlKind::Edit || !shown)
            return fail(DISP_E_TYPEMISMATCH, "Control " + std::to_string(id) + quotedText(control) +
                                                 " holds no number.");
        number = *shown;
    }
    if (type == VT_I4) {
        value->vt = VT_I4;
        value->lVal = static_cast<LONG>(std::lround(number));
    } else {
        value->vt = VT_R8;
        value->dblVal = number;
    }
    return S_OK;
}

HRESULT DialogHost::pressForDocument(HWND dialog, int id, VARIANT* value) {
    const ControlState& control = m_model.state(dialog, id);
    if (control.kind != ControlKind::Button)
        return fail(DISP_E_TYPEMISMATCH,
                    "Control " + std::to_string(id) + quotedText(control) + " gives no document.");
    if (!control.enabled)
        return fail(E_FAIL, unavailable(id, control));
    // The first document the command shows, table or graph, new or refreshed in its window,
    // is the one a macro gets back.
    struct FirstShown final : DocumentObserver {
        int id = 0;
        void added(const Document& document) override { take(document); }
        void replaced(const Document& document) override { take(document); }
        void closed(const Document&) override {}
        void stateChanged(const Document&) override {}
        void take(const Document& document) {
            if (id == 0)
                id = document.id;
        }
    } first;
    struct Watch {
        OutputService* output;
        DocumentObserver& observer;
        Watch(OutputService* o, DocumentObserver& w) : output(o), observer(w) {
            if (output != nullptr)
                output->store().addObserver(observer);
        }
        ~Watch() {
            if (output != nullptr)
                output->store().removeObserver(observer);
        }
    };
    const std::size_t files = m_newFile != nullptr ? m_newFile->finishedFiles().size() : 0;
    {
        Watch watch(m_output, first);
        clickControl(dialog, id);
    }
    value->vt = VT_DISPATCH;
    value->pdispVal = nullptr;
    if (m_output != nullptr && first.id != 0) {
        value->pdispVal = m_output->documentObject(first.id);
    } else if (m_newFile != nullptr && m_automation != nullptr &&
               m_newFile->finishedFiles().size() > files) {
        auto saved = std::make_shared<DocumentState>();
        saved->name = m_newFile->finishedFiles()[files];
        value->pdispVal = NewDocumentObject(*m_automation, std::move(saved));
    }
    return S_OK;
}

HRESULT DialogHost::SetControlValue(HWND dialog, int id, const VARIANT* value) {
    if (!isOpen(dialog))
        return fail(E_FAIL, "The dialog has been closed.");
    if (!hasControl(dialog, id))
        return fail(DISP_E_MEMBERNOTFOUND, "The dialog has no control " + std::to_string(id) + ".");
    const ControlState& control = m_model.state(dialog, id);
    if (!control.enabled)
        return fail(E_FAIL, unavailable(id, control));
    if (value == nullptr) {
        if (control.kind != ControlKind::Button)
            return fail(DISP_E_TYPEMISMATCH,
                        "Control " + std::to_string(id) + quotedText(control) + " is no button.");
        clickControl(dialog, id);
        return S_OK;
    }
    switch (control.kind) {
    case ControlKind::Button: {
        std::string text;
        if (m_automation == nullptr || !valueText(*m_automation, *value, text))
            return fail(DISP_E_TYPEMISMATCH, "A list of variables is text.");
        return writeVariableLists(dialog, id, text);
    }
    case ControlKind::CheckBox:
    case ControlKind::Radio:
        return writeCheck(dialog, id, *value);
    case ControlKind::Edit:
        return writeEdit(dialog, id, *value);
    default:
        return fail(DISP_E_TYPEMISMATCH,
                    "Control " + std::to_string(id) + quotedText(control) + " takes no value.");
    }
}

HRESULT DialogHost::queueVariableLists(const std::string& text) {
    if (m_file == nullptr)
        return fail(E_FAIL, "No data file is open.");
    wb::VariableChoice lists;
    try {
        lists = parseVariableList(text, *m_file);
    } catch (const DataError& error) {
        return fail(E_INVALIDARG, error.what());
    }
    m_macroChoice = std::move(lists);
    return S_OK;
}

HRESULT DialogHost::SetResultsVariables(HWND dialog, const VARIANT& lists) {
    std::string text;
    if (!isOpen(dialog))
        return fail(E_FAIL, "The dialog has been closed.");
    if (m_automation == nullptr || !valueText(*m_automation, lists, text))
        return fail(DISP_E_TYPEMISMATCH, "A list of variables is text.");
    return queueVariableLists(text);
}

HRESULT DialogHost::writeVariableLists(HWND dialog, int id, const std::string& text) {
    if (const HRESULT queued = queueVariableLists(text); FAILED(queued))
        return queued;
    clickControl(dialog, id);
    // A choice that the command did not take (it did not open the variable dialog) is not
    // left for a later one.
    m_macroChoice.reset();
    return S_OK;
}

HRESULT DialogHost::writeCheck(HWND dialog, int id, const VARIANT& value) {
    double number = 0;
    if (m_automation == nullptr || !valueNumber(*m_automation, value, number))
        return fail(DISP_E_TYPEMISMATCH, "Control " + std::to_string(id) + " takes 0 or 1.");
    const bool wanted = number != 0;
    if (m_model.isChecked(dialog, id) == wanted)
        return S_OK;
    if (!wanted && m_model.kind(dialog, id) == ControlKind::Radio)
        m_model.setChecked(dialog, id, false);
    else
        clickControl(dialog, id);
    return S_OK;
}

HRESULT DialogHost::writeEdit(HWND dialog, int id, const VARIANT& value) {
    const std::optional<EditRange> range = m_model.state(dialog, id).range;
    std::string text;
    if (range) {
        double number = 0;
        if (m_automation == nullptr || !valueNumber(*m_automation, value, number))
            return fail(DISP_E_TYPEMISMATCH, "Control " + std::to_string(id) + " takes a number.");
        if (number < range->low || number > range->high)
            return fail(E_INVALIDARG, "The value " + editNumberText(number, 0) + " of control " +
                                          std::to_string(id) + " is outside " +
                                          editNumberText(range->low, 0) + " to " +
                                          editNumberText(range->high, 0) + ".");
        text = editNumberText(number, 0);
    } else if (m_automation == nullptr || !valueText(*m_automation, value, text)) {
        return fail(DISP_E_TYPEMISMATCH, "Control " + std::to_string(id) + " takes a text.");
    }
    m_model.setText(dialog, id, std::move(text));
    tellRecorder(dialog, id);
    return S_OK;
}

} // namespace wb
