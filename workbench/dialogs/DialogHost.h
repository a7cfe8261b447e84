#pragma once
// The dialog service of every front end: the module's dialog and control calls served from a
// ControlModel that this service owns, its windows made from the dialog templates, the
// messages a window system would deliver, the user's actions on controls, the values of
// controls for automation, and the keywords from a KeywordStore. Who plays the user (modal
// dialogs, the variable dialog, the host's own dialogs) and when posted commands run is the
// front end's (DialogFrontEnd.h).
//
// To use it:
//   1. make it with its front end and the keyword store (and the open data file, or set it
//      later with setDataFile; the caller keeps them alive);
//   2. hand the service to the module, which makes its dialogs through it;
//   3. play the user with the actions below (a front end does, from its widgets or its
//      queue) and read back what the module showed through model().
//
// Handles that lead nowhere (a destroyed dialog, a control of none) are answered as a
// window system answers them: null, 0 or LB_ERR, and nothing changes.
//
// Numbers in edit controls are shown and read as EditNumbers.h says.

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "drilldown/host/HostAutomation.h"
#include "drilldown/host/HostDialogs.h"
#include "workbench/data/DataFile.h"
#include "workbench/dialogs/ControlModel.h"
#include "workbench/dialogs/DialogFrontEnd.h"
#include "workbench/services/NewFileService.h"
#include "workbench/services/OutputService.h"
#include "workbench/services/KeywordStore.h"

namespace wb {

class DialogHost : public HostDialogs {
public:
    DialogHost(DialogFrontEnd& frontEnd, KeywordStore& keywords, const DataFile* file = nullptr);
    DialogHost(const DialogHost&) = delete;
    DialogHost& operator=(const DialogHost&) = delete;

    void setDataFile(const DataFile* file) { m_file = file; }
    ControlModel& model() { return m_model; }
    const ControlModel& model() const { return m_model; }

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
    // Answers with the lists a macro gave (SetResultsVariables, a variables button written
    // through automation), or else with the front end's. `choices`, when not null, is a
    // list of variable numbers ended by 0. Lists that this call could not give (a list too
    // short or too long, more than `total` variables, a number that is no variable of the
    // file or not among the choices, a variable twice in one list) are refused: a macro's
    // as a cancel, kept for takeRefusedChoice; the front end's, which it must never give,
    // with std::invalid_argument and nothing written. The same variable may stand in both
    // lists.
    int DoubleVarListDialog(HWND parent, unsigned short mode, const char* title,
                            const short* choices, int min1, int max1, int min2, int max2, int total,
                            short* first, short* firstCount, short* second, short* secondCount,
                            const char* caption1, const char* caption2,
                            unsigned short flag) override;
    // ---- Playing the user ----
    // Each action delivers to the dialog's owner the messages that a window system would;
    // the commands posted meanwhile go to the front end's loop (the headless one runs them
    // before the action returns). A control that is disabled or hidden, or one of a dialog
    // that has ended, takes no action from the user: false, and nothing happens. Throws
    // std::out_of_range for a dialog or control that does not exist.
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

    // The modal dialogs opened so far, by resource id, oldest first.
    const std::vector<int>& modalDialogsOpened() const { return m_modalsOpened; }

    // What the module told the host, for tests.
    bool isOpen(HWND dialog) const { return m_windows.count(dialog) != 0; }
    // Whether the dialog has ended (a modal one stays open until RunModalDialog returns).
    bool hasEnded(HWND dialog) const;
    // Results locks not yet unlocked on the dialog.
    int resultsLockDepth(HWND dialog) const;
    // The last value the panel gave EnableStartupMenus; -1 when it never did.
    int startupMenusEnabled(HWND dialog) const;
    // The pages put into tab control `tabId`.
    std::vector<int> tabPages(HWND dialog, int tabId) const;
    // What a macro recorder hears: each action of the user or of automation on a control,
    // once the dialog has handled it, and the dialog's own recording moments.
    class Recorder {
    public:
        virtual ~Recorder() = default;
        virtual void acted(HWND dialog, int id) = 0;
        virtual void earlyState(HWND dialog, int id) = 0;
        virtual void finished(HWND dialog, int id) = 0;
    };
    // Null: nobody records.
    void setRecorder(Recorder* recorder) { m_recorder = recorder; }
    // The module's object behind a dialog window; null for none.
    CAnalysisDialog* ownerOf(HWND dialog) const;

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
    // The workbench sets up no fonts or help for a dialog.
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
    // The control model keeps no look of a list; a desktop front end draws its own.
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
    // Tells the recorder, if any, of an action on a control of a dialog still open.
    void tellRecorder(HWND dialog, int id);
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
    // Whether the dialog has the control, creating it on first use where the dialog does.
    bool hasControl(HWND dialog, int id);
    void checkChoice(const VariableDialogCall& call, const VariableChoice& choice) const;
    // The lists that answer the variable dialog's call; nothing for a cancel.
    std::optional<VariableChoice> answerVariableDialog(const VariableDialogCall& call);

    DialogFrontEnd& m_frontEnd;
    ControlModel m_model;
    KeywordStore& m_keywords;
    const DataFile* m_file;
    // The lists a macro gave for the next variable dialog; they go before the front end's.
    std::optional<VariableChoice> m_macroChoice;
    std::vector<VariableDialogCall> m_calls;

    std::map<HWND, Window> m_windows;
    std::map<HWND, CReorderListBox*> m_reorderBoxes; // by list box handle
    std::vector<HWND> m_ended; // modeless dialogs to destroy after the delivery
    int m_deliveries = 0;      // deliveries under way
    std::vector<int> m_modalsOpened;
    Recorder* m_recorder = nullptr;
    // The command being delivered, so that the variable dialog knows which button opened it.
    std::pair<HWND, int> m_command{nullptr, 0};
    std::map<std::pair<HWND, int>, std::string> m_variableLists;
    HostAutomation* m_automation = nullptr;
    std::string m_refusedChoice;
    OutputService* m_output = nullptr;
    const NewFileService* m_newFile = nullptr;
};

} // namespace wb
