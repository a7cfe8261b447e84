#pragma once
// The host's dialog base classes, as the module's dialogs see them.
//
// A dialog object of the module pairs with one window of the host. The host makes the
// window from the dialog's resource (its template, found by id among the module's
// resources), keeps every control's state, and calls the object's EventHandler with each
// message of the window:
//
//   WM_INITDIALOG   once, before the window is shown;
//   WM_COMMAND      a button pressed, a box checked, a list row chosen: the control's id in
//                   the low 16 bits of wParam, the notification code in the high bits;
//   WM_NOTIFY       from a list view: lParam points to an NMLISTVIEW;
//   WM_CTLCOLOR     a control asks for its colours: lParam is the control's id.
//
// A modeless dialog (the start-up panel) lives until ExitDialog; a modal one runs inside
// DoModal and ends there. The non-virtual operations forward to the host's services
// (HostDialogs.h); control calls go through Controls().

#include <cstdint>
#include <stdexcept>
#include <string>

#include "../Automation.h"
#include "../HostDialogs.h"

class CAnalysisSupport;

inline constexpr unsigned WM_CTLCOLOR = 25;
inline constexpr unsigned WM_NOTIFY = 78;
inline constexpr unsigned WM_INITDIALOG = 272;
inline constexpr unsigned WM_COMMAND = 273;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;

// Notification codes of WM_COMMAND (high 16 bits of wParam).
inline constexpr unsigned BN_CLICKED = 0;
inline constexpr unsigned LBN_SELCHANGE = 1;

// Notification codes of a list view.
inline constexpr int NM_DBLCLK = -3;
inline constexpr int LVN_ITEMCHANGED = -101;

struct NMHDR {
    HWND hwndFrom = nullptr;
    unsigned idFrom = 0;
    int code = 0;
};

struct NMLISTVIEW {
    NMHDR hdr;
    int iItem = -1; // the row the notification is about
    int iSubItem = 0;
};

constexpr unsigned long MakeWParam(int low, unsigned high) {
    return (static_cast<unsigned long>(high) << 16) | (static_cast<unsigned>(low) & 0xFFFFu);
}
constexpr int LowWord(unsigned long value) {
    return static_cast<int>(value & 0xFFFFu);
}
constexpr unsigned HighWord(unsigned long value) {
    return static_cast<unsigned>((value >> 16) & 0xFFFFu);
}

// An error of the host's dialog layer that an automation entry turns into an error object.
class CException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One page of a tab control for AddDlgTabs; a record with id 0 ends the list.
struct DLG_TAB {
    std::int32_t DialogId = 0;
    unsigned char Reserved[16] = {};
};

// The resource scope in which AddDlgTabs and DoModal find their templates: the module's
// instance. The host finds every template by id among the module's resources, so the scope
// only has to name the module.
class COpDllResource {
public:
    explicit COpDllResource(void* instance) : m_instance(instance) {}
    void* Instance() const { return m_instance; }

private:
    void* m_instance;
};

// One recordable control of a dialog, for the host's macro recorder: which control, its role
// (0 a value or action, 1 a variable list, 4 a table result, 6 a graph result, 20 a saved
// data file), whether it is an action (1) or holds a value (2), the kind of value (1 a
// whole number or flag, 2 a real, 5 a text, 6 none: a method), the number of its automation
// member in the host's tables, and whether the control itself is recorded (the drill
// actions are not: the dialog finishes them with FinishRecordingDialog). A table of these
// ends with a default-constructed entry (controlId 0).
struct CDialogControlDescr {
    int controlId = 0;
    int controlClass = 0;
    int accessKind = 0;
    int valueKind = 0;
    int memberId = 0;
    bool recorded = false;
    int reserved1 = 0;
    int reserved2 = 0;
};

// A value for the recorder, made by the dialog and owned by the host once handed over.
class COleAConstant {
public:
    explicit COleAConstant(std::string text) : m_text(std::move(text)) {}
    virtual ~COleAConstant() = default;
    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

class CAnalysisDialog {
public:
    CAnalysisDialog(CAnalysisSupport* analysis, int resourceId, HWND parent);
    virtual ~CAnalysisDialog();
    CAnalysisDialog(const CAnalysisDialog&) = delete;
    CAnalysisDialog& operator=(const CAnalysisDialog&) = delete;

    // The message routine. Its result goes back to the host: for WM_INITDIALOG and handled
    // commands usually 1, else 0.
    virtual long EventHandler(HWND dialog, unsigned message, unsigned long wParam,
                              long lParam) = 0;

    // Called by the host when the window has been made (before WM_INITDIALOG) and when it is
    // gone (null).
    void AttachWindow(HWND window) { m_hWnd = window; }
    // Called by the host after the window has been destroyed, last of all.
    virtual void PostNcDestroy() {}

    HWND GetSafeHwnd() const { return m_hWnd; }
    int ResourceId() const { return m_resourceId; }
    CAnalysisSupport* Analysis() const { return m_analysis; }
    // The host's control services.
    HostDialogs& Controls() const;

    void InitOpeningDialog();
    // (1, 0, 0) accepts, (0, 0, 0) cancels, (0, 1, 0) closes the analysis's panel.
    void ExitDialog(int result, int closeAnalysis, int reserved);
    // Creates the pages of tab control `tabId` from the records up to the one with id 0.
    void AddDlgTabs(int tabId, const DLG_TAB* pages, int reserved, COpDllResource& resource,
                    void* reserved2);
    long HandleWM_CTLCOLOR(HWND dialog, unsigned long wParam, long lParam, unsigned long colour);
    unsigned long RGBAttrType(int type);
    const char* szLoadResString(int id);
    int AllocMem(void** block, unsigned long bytes);
    void FreeMem(void* block);

    // The dialog's recordable controls (null: none), read by the host's recorder.
    const CDialogControlDescr* ControlDescriptions() const { return m_pControlDescr; }
    // The value of control `id` for the recorder when the host cannot read it from the
    // control itself; null when the host reads it (the default) or there is none to record.
    virtual COleAConstant* RecordControlValue(int id);

    // Non-zero while an automation call is being served by this dialog.
    int IsOleAutomation() const { return m_automationCalls > 0 ? 1 : 0; }
    void EarlyRecordState(int id);
    int DefineSelCond(int mode, HWND dialog);
    int DefineWeight(int mode, HWND dialog);
    int OpenVmkFile();

    // Cleared while a macro drives the dialog: then it must not open modal sub-dialogs. No
    // macro of this host runs interactively, so it stays clear.
    unsigned char m_bInteractive = 0;

    // Marks an automation call on the dialog for as long as it exists.
    class AutomationCall {
    public:
        explicit AutomationCall(CAnalysisDialog& dialog) : m_dialog(dialog) {
            ++m_dialog.m_automationCalls;
        }
        ~AutomationCall() { --m_dialog.m_automationCalls; }
        AutomationCall(const AutomationCall&) = delete;
        AutomationCall& operator=(const AutomationCall&) = delete;

    private:
        CAnalysisDialog& m_dialog;
    };

protected:
    const CDialogControlDescr* m_pControlDescr = nullptr;
    CAnalysisSupport* m_analysis;
    int m_resourceId;
    HWND m_parent;
    HWND m_hWnd = nullptr;

private:
    int m_automationCalls = 0;
};

// Automation access to the controls of a dialog: a get reads a control's value, a put
// writes it as the user would (a check box or radio is clicked when its state changes, an
// edit takes the text, a button that opens a variable dialog takes the lists it answers
// with), and a put without value presses a button. Failures come back as HRESULTs with the
// thread's error object set by the host.
class CAnalysisDialogAutomationOptions : public CAnalysisDialog {
public:
    using CAnalysisDialog::CAnalysisDialog;

    HRESULT GetOleProperty(int id, int* value);
    HRESULT GetOleProperty(int id, double* value);
    HRESULT GetOleProperty(int id, BSTR* value);
    // Runs the result button and gives the first document it made (null when none), with
    // a reference for the caller.
    HRESULT GetOleProperty(int id, IDispatch** value);
    HRESULT SetOleProperty(int id);
    HRESULT SetOleProperty(int id, int value);
    HRESULT SetOleProperty(int id, double value);
    HRESULT SetOleProperty(int id, const VARIANT& value);

private:
    HRESULT GetValue(int id, VARTYPE type, VARIANT* value);
};

class CAnalysisModelessDialog : public CAnalysisDialogAutomationOptions {
public:
    using CAnalysisDialogAutomationOptions::CAnalysisDialogAutomationOptions;

    // Makes the window; non-zero on success.
    int CreateAnalysisDialog();
    // The host's results handling looks at each message first; non-zero in the low 16 bits
    // means it took it.
    int IsResultsMsg(HWND dialog, unsigned message, unsigned long wParam, long lParam);
    void LockResults();
    void UnlockResults();
    void RestoreResults();
    void ReallyRestoreResults();
    void EnableStartupMenus(int enable);
    // Throws CException when the window is gone.
    void ThrowIfClosed() const;
    virtual void FinishRecordingDialog(int step, int kind, int controlId);
    // The automation members OK and Cancel: both close the panel through its close command.
    HRESULT OAOK(int* success);
    HRESULT OACancel();
    // The automation member ResultsVariables: the lists that the next result's variable
    // dialog answers with.
    HRESULT put_ResultsVariables(const VARIANT& lists);
};

// The results lock of a modeless dialog for one scope: every way out of the scope unlocks,
// an exception from a host service included. handOver() leaves the lock held for a later
// command to end (a drill-down that first asks for limits).
class CResultsLock {
public:
    explicit CResultsLock(CAnalysisModelessDialog& dialog) : m_dialog(&dialog) {
        dialog.LockResults();
    }
    ~CResultsLock() {
        if (m_dialog != nullptr)
            m_dialog->UnlockResults();
    }
    CResultsLock(const CResultsLock&) = delete;
    CResultsLock& operator=(const CResultsLock&) = delete;
    void handOver() { m_dialog = nullptr; }

private:
    CAnalysisModelessDialog* m_dialog;
};

class CAnalysisModalDialog : public CAnalysisDialog {
public:
    using CAnalysisDialog::CAnalysisDialog;
    // Runs the dialog until it ends: 1 when accepted, anything else when cancelled.
    int DoModal(COpDllResource& resource);
};

// A list box whose rows the user can drag to another place; the host calls ReorderItem when
// the selected row is dropped at row `target`.
class CReorderListBox {
public:
    explicit CReorderListBox(HostDialogs& controls) : m_controls(controls) {}
    virtual ~CReorderListBox();
    CReorderListBox(const CReorderListBox&) = delete;
    CReorderListBox& operator=(const CReorderListBox&) = delete;

    // Takes over the drags of the list box `control`.
    void SubclassWindow(HWND control);
    // The selected row, -1 for none.
    int GetCurSel() const;
    virtual void ReorderItem(int target) = 0;

protected:
    HostDialogs& m_controls;
    HWND m_hWnd = nullptr;
};

// Enters the analysis's context for the life of the object: the host's data services then
// serve that analysis.
class CEnterAnalysisContext {
public:
    explicit CEnterAnalysisContext(CAnalysisSupport* analysis);
    ~CEnterAnalysisContext();
    CEnterAnalysisContext(const CEnterAnalysisContext&) = delete;
    CEnterAnalysisContext& operator=(const CEnterAnalysisContext&) = delete;

private:
    CAnalysisSupport* m_analysis;
};
