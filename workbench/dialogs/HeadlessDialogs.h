#pragma once
// The headless host's dialog service: the module's dialog and control calls served from a
// ControlModel that this service owns, and its keywords from a KeywordStore.
//
// Nobody sits in front of a headless dialog, so the variable dialog answers with choices
// that the caller queued beforehand, and cancels when there is none.
//
// To use it:
//   1. make it with the keyword store (and the open data file, or set it later with
//      setDataFile; the caller keeps the file alive);
//   2. create the module's dialogs in model() and hand the service to the module;
//   3. queue the answers of the variable dialog with presetVariableChoice, play the user
//      through model() (select, setText, setChecked) and read back what the module showed.
//
// Handles that lead nowhere (a destroyed dialog, a control of none) are answered as a
// window system answers them: null, 0 or LB_ERR, and nothing changes.
//
// Numbers in edit controls are shown and read as EditNumbers.h says.

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "drilldown/host/HostAutomation.h"
#include "drilldown/host/HostDialogs.h"
#include "workbench/data/DataFile.h"
#include "workbench/dialogs/ControlModel.h"
#include "workbench/services/NewFileService.h"
#include "workbench/services/OutputService.h"
#include "workbench/services/KeywordStore.h"

namespace wb {

// One call of the variable dialog as the module made it.
struct VariableDialogCall {
    HWND parent = nullptr;
    unsigned short mode = 0;
    std::string title;
    std::vector<short> choices; // empty for all variables
    int min1 = 0, max1 = 0, min2 = 0, max2 = 0, total = 0;
    std::string caption1, caption2;
    unsigned short flag = 0;
};

class HeadlessDialogs : public HostDialogs {
public:
    explicit HeadlessDialogs(KeywordStore& keywords, const DataFile* file = nullptr);
    HeadlessDialogs(const HeadlessDialogs&) = delete;
    HeadlessDialogs& operator=(const HeadlessDialogs&) = delete;

    void setDataFile(const DataFile* file) { m_file = file; }
    ControlModel& model() { return m_model; }
    const ControlModel& model() const { return m_model; }

    // Queues the answer of one later variable dialog: the two lists of 1-based variable
    // numbers that the user picks. Answers are taken in the order queued.
    void presetVariableChoice(std::vector<short> first, std::vector<short> second);
    // Queues a cancel.
    void presetVariableCancel();
    std::size_t pendingVariableChoices() const { return m_choices.size(); }
    // Why the variable dialog last refused lists that a macro gave, and forgets it; empty
    // when it refused none.
    std::string takeRefusedChoice() { return std::exchange(m_refusedChoice, {}); }
    // Every call of the variable dialog so far, the latest last.
    const std::vector<VariableDialogCall>& variableDialogCalls() const { return m_calls; }

    HWND GetDlgItem(HWND dialog, int id) override;
    int EnableWindow(HWND control, int enable) override;
    int ShowWindow(HWND control, int show) override;
    // Gives non-zero when the control exists.
    int CheckDlgButton(HWND dialog, int id, unsigned check) override;
    unsigned IsDlgButtonChecked(HWND dialog, int id) override;
    // The list reads wParam as an int, as a window system does, so that -1 arrives whatever
    // width the caller gave it. LB_SETCURSEL gives the selected row; clearing the selection
    // gives LB_ERR, and so does a row out of range, which leaves the selection as it was.
    long SendMessageA(HWND control, unsigned message, unsigned long wParam, long lParam) override;
    // A null text is the empty text. Gives non-zero when the control exists.
    int SetDlgItemTextA(HWND dialog, int id, const char* text) override;
    // Never cuts a UTF-8 character: the copy ends before one that does not fit whole.
    int GetDlgItemTextA(HWND dialog, int id, char* buffer, int size) override;
    int SetDlgItemInt(HWND dialog, int id, unsigned value, int isSigned) override;
    // Leaves *value alone when the text is no such number.
    int GetDlgItemInteger(HWND dialog, int id, short* value) override;
    int SetDlgItemDouble(HWND dialog, int id, double value, unsigned char flag,
                         int digits) override;
    // Leaves *value alone when the text is no number.
    int GetDlgItemDouble(HWND dialog, int id, double* value) override;
    // A null array is the empty list.
    void InitStaticListBox(HWND control, const char* const* rows) override;
    // Numbers that are no variable of the data file are left out.
    void WriteVarListToCaption(HWND dialog, int id, int count, const short* vars) override;
    // Answers with the next queued choice, or cancels when the queue is empty. `choices`,
    // when not null, is a list of variable numbers ended by 0. A queued choice that this
    // call could not give (a list too short or too long, more than `total` variables, a
    // number that is no variable of the file or not among the choices, a variable twice in
    // one list) is an error of the test that queued it: std::invalid_argument, nothing
    // written, the choice used up. The same variable may stand in both lists.
    int DoubleVarListDialog(HWND parent, unsigned short mode, const char* title,
                            const short* choices, int min1, int max1, int min2, int max2, int total,
                            short* first, short* firstCount, short* second, short* secondCount,
                            const char* caption1, const char* caption2,
                            unsigned short flag) override;
    // ---- Playing the user ----
    // Each action delivers to the dialog's owner the messages that a window system would,
    // then the commands posted meanwhile. A control that is disabled or hidden, or one of a
    // dialog that has ended, takes no action from the user: false, and nothing happens. Throws std::out_of_range for a
    // dialog or control that does not exist.
    //
    // A button sends WM_COMMAND; a check box first toggles; a radio first checks itself and
    // clears the other radios of its page (or dialog).
    bool click(HWND dialog, int id);
    // A list box: selects the row and sends WM_COMMAND with LBN_SELCHANGE. A list view:
    // selects the row and sends WM_NOTIFY with LVN_ITEMCHANGED.
    bool chooseRow(HWND dialog, int id, int row);
    // A list view: selects the row and sends WM_NOTIFY with NM_DBLCLK.
    bool doubleClickRow(HWND dialog, int id, int row);
    // Drags row `source` of a list box that a CReorderListBox took over and drops it at row
    // `target`: the row is selected and the list box's ReorderItem runs.
    bool dragRow(HWND dialog, int id, int source, int target);
    // Replaces the text of an edit.
    bool typeText(HWND dialog, int id, std::string text);
    // Delivers any message to the dialog's owner; its answer.
    long send(HWND dialog, unsigned message, unsigned long wParam, long lParam);

    // Plays the user of each modal dialog, called once the dialog has had WM_INITDIALOG.
    // A dialog that the responder leaves open gets IDCANCEL, as Escape would send, and is
    // ended with 0 if it still stays. Without a responder every modal dialog is cancelled so.
    using ModalResponder = std::function<void(HWND dialog, int resourceId)>;
    void setModalResponder(ModalResponder responder) { m_responder = std::move(responder); }
    // The modal dialogs opened so far, by resource id, oldest first.
    const std::vector<int>& modalDialogsOpened() const { return m_modalsOpened; }

    // The host's own dialogs (selection conditions, case weights, opening a file): each
    // gives the dialog's answer, 0 for cancelled. Without a handler the user cancels.
    using HostDialog = std::function<int()>;
    void setSelectionDialog(HostDialog dialog) { m_selectionDialog = std::move(dialog); }
    void setWeightDialog(HostDialog dialog) { m_weightDialog = std::move(dialog); }
    void setOpenFileDialog(HostDialog dialog) { m_openFileDialog = std::move(dialog); }

    // What the module told the host, for tests.
    bool isOpen(HWND dialog) const { return m_windows.count(dialog) != 0; }
    // Results locks not yet unlocked on the dialog.
    int resultsLockDepth(HWND dialog) const;
    // The last value the panel gave EnableStartupMenus; -1 when it never did.
    int startupMenusEnabled(HWND dialog) const;
    // The pages put into tab control `tabId`.
    std::vector<int> tabPages(HWND dialog, int tabId) const;
    // Calls of EarlyRecordState (kind 0, the control) and FinishRecordingDialog (kind 1,
    // the control), oldest first.
    struct RecordingCall {
        int kind = 0;
        int id = 0;
        bool operator==(const RecordingCall&) const = default;
    };
    const std::vector<RecordingCall>& recordingCalls() const { return m_recording; }

    // Told when a modeless dialog has ended, after its window is gone.
    using CloseHandler = std::function<void(HWND dialog, int result, bool closeAnalysis)>;
    void setCloseHandler(CloseHandler handler) { m_onClose = std::move(handler); }

    // `first` is neither read nor written.
    int GetInitKeyword(int section, const char* keyword, int* first, int* second) override;
    // Gives non-zero when the value was saved to the store's file; it is kept for this run
    // in any case.
    int PutInitKeyword(int section, const char* keyword, int* first, int* second) override;

    // Windows. A dialog's resource id must be one of the module's templates; an unknown id
    // makes no window (null, or -1 from RunModalDialog).
    HWND CreateDialogWindow(CAnalysisDialog* owner, int resourceId, HWND parent) override;
    int RunModalDialog(CAnalysisDialog* owner, int resourceId, HWND parent) override;
    void EndDialogWindow(HWND dialog, int result, int closeAnalysis) override;
    int IsWindow(HWND window) override { return isOpen(window) ? 1 : 0; }
    // The headless host has no fonts or help to set up.
    void InitOpeningDialog(HWND) override {}
    void PostCommand(HWND dialog, int id) override;
    // Also writes the pages' titles as the rows of the tab control.
    void AddDlgTabs(HWND dialog, int tabId, const int* pages, int count) override;
    // Nothing is drawn: the answer says that the colour was taken.
    long HandleCtlColor(HWND, unsigned long, long, unsigned long) override { return 1; }
    unsigned long AttributeColour(int type) override;
    void SetIntEditRange(HWND control, int low, int high) override;
    void SetRealEditRange(HWND control, double low, double high, int flag) override;
    void SubclassListBox(HWND control, CReorderListBox* box) override;
    int InsertListColumn(HWND control, int column, const char* heading, int width,
                         int rightAligned) override;
    int InsertListRow(HWND control, int row, const char* text) override;
    int SetListCell(HWND control, int row, int column, const char* text) override;
    // A headless list has no look.
    void SetListViewLook(HWND, unsigned long, unsigned long) override {}
    // Takes the "Options" command 10710, which has nothing to show here.
    int IsResultsMsg(HWND dialog, unsigned message, unsigned long wParam, long lParam) override;
    void ResultsChange(HWND dialog, ResultsEvent event) override;
    void EnableStartupMenus(HWND dialog, int enable) override;
    void EarlyRecordState(HWND dialog, int id) override;
    void FinishRecordingDialog(HWND dialog, int step, int kind, int id) override;
    int DefineSelCond(int mode, HWND parent) override;
    int DefineWeight(int mode, HWND parent) override;
    int OpenVmkFile(HWND parent) override;

    // Values of controls for automation:
    //   - a check box or radio reads 1 when checked, 0 otherwise; writing a value that
    //     differs from its state clicks it; writing 0 to a checked radio clears it;
    //   - an edit reads and writes its text, as a number for VT_I4 or VT_R8; a number outside
    //     the edit's range, or a text that is no number in an edit of numbers, is refused;
    //   - a button that opens the variable dialog (the command runs DoubleVarListDialog)
    //     takes a text in the list syntax of VariableList.h: its command runs with the
    //     variable dialog answering those lists; it reads as the lists it last answered with;
    //   - writing nothing presses a button; a hidden button can be pressed, not a disabled one.
    // Failures: DISP_E_MEMBERNOTFOUND for no such control, DISP_E_TYPEMISMATCH for a value
    // the control cannot hold, E_INVALIDARG for a refused value, E_FAIL for a disabled
    // control; each leaves an error object that says why.
    HRESULT GetControlValue(HWND dialog, int id, VARTYPE type, VARIANT* value) override;
    HRESULT SetControlValue(HWND dialog, int id, const VARIANT* value) override;
    // Queues the lists, in the list syntax of VariableList.h, as the next variable dialog's
    // answer; E_INVALIDARG naming the item that is no variable.
    HRESULT SetResultsVariables(HWND dialog, const VARIANT& lists) override;

    // The automation runtime that value errors are reported through; without one, failures
    // come back without an error object.
    void setAutomation(HostAutomation* automation) { m_automation = automation; }
    // The output whose documents the result buttons make: each command's documents are
    // tagged with its control id, and a result read through automation (VT_DISPATCH) presses
    // the button and gives the first document it made, or no object when it made none.
    void setOutput(OutputService* output) { m_output = output; }
    // The new files that a result button may save instead (the subset): a command that made
    // no table but finished a file gives a document named by the file's path.
    void setNewFile(const NewFileService* newFile) { m_newFile = newFile; }

private:
    struct Window {
        CAnalysisDialog* owner = nullptr;
        bool modal = false;
        std::optional<int> result; // set when the dialog has ended
        bool closeAnalysis = false;
        std::map<int, std::vector<int>> tabs;
        int locks = 0;
        int menus = -1;
    };

    // Delivers a message to the dialog's owner; when the outermost delivery is done, the
    // posted commands follow and ended modeless dialogs are destroyed.
    long deliver(HWND dialog, unsigned message, unsigned long wParam, long lParam);
    template <typename Action> auto dispatch(Action&& action);
    void finishDispatch();
    void destroyWindow(HWND dialog);
    Window* window(HWND dialog);
    const Window* window(HWND dialog) const;
    // Whether the user can act on the control: it exists, is enabled and shown.
    bool actionable(HWND dialog, int id) const;
    void clickControl(HWND dialog, int id);
    bool isListView(HWND dialog, int id) const;
    HRESULT fail(HRESULT result, const std::string& description);
    HRESULT writeVariableLists(HWND dialog, int id, const std::string& text);
    HRESULT queueVariableLists(const std::string& text);
    HRESULT writeEdit(HWND dialog, int id, const VARIANT& value);
    HRESULT writeCheck(HWND dialog, int id, const VARIANT& value);
    HRESULT pressForDocument(HWND dialog, int id, VARIANT* value);
    struct VariableChoice {
        std::vector<short> first;
        std::vector<short> second;
        // Given by a macro: a choice the dialog cannot take is refused as a user's cancel,
        // and remembered for refusedChoice(), instead of being the caller's error.
        bool fromMacro = false;
    };

    // Whether the dialog has the control, creating it on first use where the dialog does.
    bool hasControl(HWND dialog, int id);
    void checkChoice(const VariableDialogCall& call, const VariableChoice& choice) const;

    ControlModel m_model;
    KeywordStore& m_keywords;
    const DataFile* m_file;
    std::deque<std::optional<VariableChoice>> m_choices; // nothing: cancel
    std::vector<VariableDialogCall> m_calls;

    std::map<HWND, Window> m_windows;
    std::map<HWND, CReorderListBox*> m_reorderBoxes; // by list box handle
    std::deque<std::pair<HWND, int>> m_posted;
    std::vector<HWND> m_ended; // modeless dialogs to destroy after the delivery
    int m_deliveries = 0;      // deliveries under way
    ModalResponder m_responder;
    std::vector<int> m_modalsOpened;
    HostDialog m_selectionDialog, m_weightDialog, m_openFileDialog;
    CloseHandler m_onClose;
    std::vector<RecordingCall> m_recording;
    // The command being delivered, so that the variable dialog knows which button opened it.
    std::pair<HWND, int> m_command{nullptr, 0};
    std::map<std::pair<HWND, int>, std::string> m_variableLists;
    HostAutomation* m_automation = nullptr;
    std::string m_refusedChoice;
    OutputService* m_output = nullptr;
    const NewFileService* m_newFile = nullptr;
};

} // namespace wb
