// The host's dialog base classes: forwarders to the host's dialog services.

#include "AnalysisDialog.h"

#include <iterator>

#include "CAnalysisSupport.h"

CAnalysisDialog::CAnalysisDialog(CAnalysisSupport* analysis, int resourceId, HWND parent)
    : m_analysis(analysis), m_resourceId(resourceId), m_parent(parent) {}

CAnalysisDialog::~CAnalysisDialog() = default;

HostDialogs& CAnalysisDialog::Controls() const { return m_analysis->Dialogs(); }

void CAnalysisDialog::InitOpeningDialog() { Controls().InitOpeningDialog(m_hWnd); }

void CAnalysisDialog::ExitDialog(int result, int closeAnalysis, int) {
    Controls().EndDialogWindow(m_hWnd, result, closeAnalysis);
}

void CAnalysisDialog::AddDlgTabs(int tabId, const DLG_TAB* pages, int, COpDllResource&, void*) {
    int pageIds[16];
    int count = 0;
    for (; pages[count].DialogId != 0 && count < static_cast<int>(std::size(pageIds)); ++count)
        pageIds[count] = pages[count].DialogId;
    Controls().AddDlgTabs(m_hWnd, tabId, pageIds, count);
}

long CAnalysisDialog::HandleWM_CTLCOLOR(HWND dialog, unsigned long wParam, long lParam,
                                        unsigned long colour) {
    return Controls().HandleCtlColor(dialog, wParam, lParam, colour);
}

unsigned long CAnalysisDialog::RGBAttrType(int type) { return Controls().AttributeColour(type); }

const char* CAnalysisDialog::szLoadResString(int id) { return m_analysis->GetResourceString(id); }

int CAnalysisDialog::AllocMem(void** block, unsigned long bytes) {
    return m_analysis->AllocMem(block, bytes);
}

void CAnalysisDialog::FreeMem(void* block) { m_analysis->FreeMem(block); }

void CAnalysisDialog::EarlyRecordState(int id) { Controls().EarlyRecordState(m_hWnd, id); }

COleAConstant* CAnalysisDialog::RecordControlValue(int) { return nullptr; }

int CAnalysisDialog::DefineSelCond(int mode, HWND dialog) {
    return Controls().DefineSelCond(mode, dialog);
}

int CAnalysisDialog::DefineWeight(int mode, HWND dialog) {
    return Controls().DefineWeight(mode, dialog);
}

int CAnalysisDialog::OpenVmkFile() { return Controls().OpenVmkFile(m_hWnd); }

// ---- Automation access ------------------------------------------------------------------

HRESULT CAnalysisDialogAutomationOptions::GetValue(int id, VARTYPE type, VARIANT* value) {
    if (value == nullptr)
        return E_POINTER;
    VariantInit(value);
    return Controls().GetControlValue(m_hWnd, id, type, value);
}

HRESULT CAnalysisDialogAutomationOptions::GetOleProperty(int id, int* value) {
    if (value == nullptr)
        return E_POINTER;
    COleVariant read;
    const HRESULT result = GetValue(id, VT_I4, &read);
    if (SUCCEEDED(result))
        *value = read.lVal;
    return result;
}

HRESULT CAnalysisDialogAutomationOptions::GetOleProperty(int id, double* value) {
    if (value == nullptr)
        return E_POINTER;
    COleVariant read;
    const HRESULT result = GetValue(id, VT_R8, &read);
    if (SUCCEEDED(result))
        *value = read.dblVal;
    return result;
}

HRESULT CAnalysisDialogAutomationOptions::GetOleProperty(int id, BSTR* value) {
    if (value == nullptr)
        return E_POINTER;
    *value = nullptr;
    COleVariant read;
    const HRESULT result = GetValue(id, VT_BSTR, &read);
    if (SUCCEEDED(result))
        *value = read.Detach().bstrVal;
    return result;
}

HRESULT CAnalysisDialogAutomationOptions::GetOleProperty(int id, IDispatch** value) {
    if (value == nullptr)
        return E_POINTER;
    *value = nullptr;
    COleVariant read;
    const HRESULT result = GetValue(id, VT_DISPATCH, &read);
    if (SUCCEEDED(result) && read.vt == VT_DISPATCH)
        *value = read.Detach().pdispVal;
    return result;
}

HRESULT CAnalysisDialogAutomationOptions::SetOleProperty(int id) {
    return Controls().SetControlValue(m_hWnd, id, nullptr);
}

HRESULT CAnalysisDialogAutomationOptions::SetOleProperty(int id, int value) {
    const COleVariant written(static_cast<LONG>(value));
    return Controls().SetControlValue(m_hWnd, id, &written);
}

HRESULT CAnalysisDialogAutomationOptions::SetOleProperty(int id, double value) {
    const COleVariant written(value);
    return Controls().SetControlValue(m_hWnd, id, &written);
}

HRESULT CAnalysisDialogAutomationOptions::SetOleProperty(int id, const VARIANT& value) {
    return Controls().SetControlValue(m_hWnd, id, &value);
}

// ---- Modeless and modal dialogs ---------------------------------------------------------

int CAnalysisModelessDialog::CreateAnalysisDialog() {
    return Controls().CreateDialogWindow(this, m_resourceId, m_parent) != nullptr ? 1 : 0;
}

int CAnalysisModelessDialog::IsResultsMsg(HWND dialog, unsigned message, unsigned long wParam,
                                          long lParam) {
    return Controls().IsResultsMsg(dialog, message, wParam, lParam);
}

void CAnalysisModelessDialog::LockResults() {
    Controls().ResultsChange(m_hWnd, HostDialogs::ResultsEvent::Lock);
}

void CAnalysisModelessDialog::UnlockResults() {
    Controls().ResultsChange(m_hWnd, HostDialogs::ResultsEvent::Unlock);
}

void CAnalysisModelessDialog::RestoreResults() {
    Controls().ResultsChange(m_hWnd, HostDialogs::ResultsEvent::Restore);
}

void CAnalysisModelessDialog::ReallyRestoreResults() {
    Controls().ResultsChange(m_hWnd, HostDialogs::ResultsEvent::ReallyRestore);
}

void CAnalysisModelessDialog::EnableStartupMenus(int enable) {
    Controls().EnableStartupMenus(m_hWnd, enable);
}

void CAnalysisModelessDialog::ThrowIfClosed() const {
    if (m_hWnd == nullptr || Controls().IsWindow(m_hWnd) == 0)
        throw CException("The dialog has been closed.");
}

void CAnalysisModelessDialog::FinishRecordingDialog(int step, int kind, int controlId) {
    Controls().FinishRecordingDialog(m_hWnd, step, kind, controlId);
}

HRESULT CAnalysisModelessDialog::OAOK(int* success) {
    const HRESULT result = SetOleProperty(IDCANCEL);
    if (success != nullptr)
        *success = SUCCEEDED(result) ? 1 : 0;
    return result;
}

HRESULT CAnalysisModelessDialog::OACancel() { return SetOleProperty(IDCANCEL); }

HRESULT CAnalysisModelessDialog::put_ResultsVariables(const VARIANT& lists) {
    return Controls().SetResultsVariables(m_hWnd, lists);
}

int CAnalysisModalDialog::DoModal(COpDllResource&) {
    return Controls().RunModalDialog(this, m_resourceId, m_parent);
}

// ---- List boxes and the analysis's context ----------------------------------------------

CReorderListBox::~CReorderListBox() {
    if (m_hWnd != nullptr)
        m_controls.SubclassListBox(m_hWnd, nullptr);
}

void CReorderListBox::SubclassWindow(HWND control) {
    m_hWnd = control;
    m_controls.SubclassListBox(control, this);
}

int CReorderListBox::GetCurSel() const {
    return static_cast<int>(m_controls.SendMessageA(m_hWnd, LB_GETCURSEL, 0, 0));
}

CEnterAnalysisContext::CEnterAnalysisContext(CAnalysisSupport* analysis) : m_analysis(analysis) {
    m_analysis->ContextEntry();
}

CEnterAnalysisContext::~CEnterAnalysisContext() { m_analysis->ContextExit(); }
