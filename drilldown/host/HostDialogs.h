#pragma once
// Dialog, control and keyword services that a host supplies.
//
// Windows are opaque handles. A dialog has a handle; each of its controls, found by id
// with GetDlgItem (also on a page of its tab control), has its own. The host keeps the
// state of every control (enabled, shown, checked, text, list items and selection); the
// module only reads and writes it through these calls, which is what lets a headless host,
// a desktop window and a macro all drive the same dialog.

#include "Automation.h"

struct HWND__;
using HWND = HWND__*;

class CAnalysisDialog;
class CReorderListBox;

// Messages that the module sends to list boxes.
inline constexpr unsigned LB_INSERTSTRING = 385;
inline constexpr unsigned LB_DELETESTRING = 386;
inline constexpr unsigned LB_SETCURSEL = 390;
inline constexpr unsigned LB_GETCURSEL = 392;
inline constexpr unsigned LB_GETTEXT = 393;
inline constexpr unsigned LB_GETTEXTLEN = 394;
inline constexpr unsigned LB_GETCOUNT = 395;
inline constexpr long LB_ERR = -1;

class HostDialogs {
public:
    virtual ~HostDialogs() = default;
    // Handle of control `id` of the dialog, or null when it has none.
    virtual HWND GetDlgItem(HWND dialog, int id) = 0;
    // Enables (non-zero) or disables the control; gives non-zero when it was disabled.
    virtual int EnableWindow(HWND control, int enable) = 0;
    // Shows the control; a show code of 0 hides it. Gives non-zero when it was visible.
    virtual int ShowWindow(HWND control, int show) = 0;
    // Checks (1) or clears (0) a check box or radio button.
    virtual int CheckDlgButton(HWND dialog, int id, unsigned check) = 0;
    // Non-zero when the button is checked.
    virtual unsigned IsDlgButtonChecked(HWND dialog, int id) = 0;
    // List box messages. LB_GETCURSEL gives the selected row or LB_ERR; LB_SETCURSEL selects
    // row wParam (-1 clears) and gives LB_ERR for a row out of range; LB_GETCOUNT the number
    // of rows; LB_GETTEXTLEN the length of row wParam; LB_GETTEXT copies it with a
    // terminator to the buffer in lParam; LB_INSERTSTRING inserts the text in lParam before
    // row wParam (-1: at the end) and gives its row; LB_DELETESTRING deletes row wParam and
    // gives the rows left. A row out of range gives LB_ERR. Other messages give 0.
    // Sent to a dialog's own handle, any message goes to the dialog's message routine at
    // once, as the user's action would deliver it, and its answer is given.
    virtual long SendMessageA(HWND control, unsigned message, unsigned long wParam,
                              long lParam) = 0;
    virtual int SetDlgItemTextA(HWND dialog, int id, const char* text) = 0;
    // Copies at most size - 1 bytes of the text and a terminator; gives the bytes copied.
    virtual int GetDlgItemTextA(HWND dialog, int id, char* buffer, int size) = 0;
    virtual int SetDlgItemInt(HWND dialog, int id, unsigned value, int isSigned) = 0;
    // Stores the whole number shown; non-zero when the text is one that fits 16 bits.
    virtual int GetDlgItemInteger(HWND dialog, int id, short* value) = 0;
    // Shows a real number; flag 0 and 2 for defaults, 3 for stored values.
    virtual int SetDlgItemDouble(HWND dialog, int id, double value, unsigned char flag,
                                 int digits) = 0;
    // Stores the number shown; non-zero when the text is a number.
    virtual int GetDlgItemDouble(HWND dialog, int id, double* value) = 0;
    // Replaces the rows of a list box by the texts of a null-terminated array.
    virtual void InitStaticListBox(HWND control, const char* const* rows) = 0;
    // Writes the names of `count` variables to a caption, separated by blanks.
    virtual void WriteVarListToCaption(HWND dialog, int id, int count, const short* vars) = 0;
    // Lets the user pick two lists of variables (1-based numbers) among `choices` (null: all
    // variables). min/max bound each list's length, `total` both together. Gives 0 when the
    // user cancelled, non-zero otherwise; the lists and counts are written only then. May
    // throw when the host cannot run the dialog (HostServices.h); nothing is written then.
    virtual int DoubleVarListDialog(HWND parent, unsigned short mode, const char* title,
                                    const short* choices, int min1, int max1, int min2,
                                    int max2, int total, short* first, short* firstCount,
                                    short* second, short* secondCount, const char* caption1,
                                    const char* caption2, unsigned short flag) = 0;
    // The keyword store: an integer kept under (section, keyword) in *second; *first is a
    // zero word. Get gives non-zero when the keyword was found (and leaves *second alone
    // otherwise).
    virtual int GetInitKeyword(int section, const char* keyword, int* first, int* second) = 0;
    virtual int PutInitKeyword(int section, const char* keyword, int* first, int* second) = 0;

    // ---- Windows of the module's dialogs (AnalysisDialog.h) ----
    // Makes the window of dialog `resourceId` for `owner`: attaches it to the owner, delivers
    // WM_INITDIALOG, and gives its handle; null when it cannot be made.
    virtual HWND CreateDialogWindow(CAnalysisDialog* owner, int resourceId, HWND parent) = 0;
    // Runs dialog `resourceId` modally for `owner` until EndDialogWindow, then destroys it;
    // gives the result passed to EndDialogWindow.
    virtual int RunModalDialog(CAnalysisDialog* owner, int resourceId, HWND parent) = 0;
    // Ends a dialog with `result`. A modal dialog returns from RunModalDialog; a modeless one
    // is destroyed once the message being handled is done. `closeAnalysis` asks the host to
    // close the analysis that the dialog belongs to as well.
    virtual void EndDialogWindow(HWND dialog, int result, int closeAnalysis) = 0;
    // Non-zero while the window exists.
    virtual int IsWindow(HWND window) = 0;
    // Called first on WM_INITDIALOG of every dialog.
    virtual void InitOpeningDialog(HWND dialog) = 0;
    // Queues a WM_COMMAND of control `id` to the dialog, delivered after the message that is
    // being handled.
    virtual void PostCommand(HWND dialog, int id) = 0;
    // Puts the pages (dialog resource ids, in tab order) into tab control `tabId`.
    virtual void AddDlgTabs(HWND dialog, int tabId, const int* pages, int count) = 0;
    // The answer to WM_CTLCOLOR for the control in lParam, drawn in `colour`.
    virtual long HandleCtlColor(HWND dialog, unsigned long wParam, long lParam,
                                unsigned long colour) = 0;
    // The colour of an attribute of the host's look: 1 is the text of lists and captions.
    virtual unsigned long AttributeColour(int type) = 0;
    // The range that a whole-number or real-number edit accepts.
    virtual void SetIntEditRange(HWND control, int low, int high) = 0;
    virtual void SetRealEditRange(HWND control, double low, double high, int flag) = 0;
    // Hands the drags of a list box's rows to `box` (null: no longer).
    virtual void SubclassListBox(HWND control, CReorderListBox* box) = 0;

    // List views: columns with headings, rows of cells. A row's first cell is its text, as
    // in a list box; LB_SETCURSEL and LB_GETCURSEL work on rows alike.
    virtual int InsertListColumn(HWND control, int column, const char* heading, int width,
                                 int rightAligned) = 0;
    // Inserts a row before `row` (at the end when row is the row count); gives its row.
    virtual int InsertListRow(HWND control, int row, const char* text) = 0;
    virtual int SetListCell(HWND control, int row, int column, const char* text) = 0;
    virtual void SetListViewLook(HWND control, unsigned long extendedStyle,
                                 unsigned long textColour) = 0;

    // ---- The host's results handling and macro recorder ----
    // Gives the host's results handling the first look at a message of an analysis's panel;
    // non-zero in the low 16 bits when it took the message.
    virtual int IsResultsMsg(HWND dialog, unsigned message, unsigned long wParam,
                             long lParam) = 0;
    // Lock and Unlock bracket whatever opens a dialog or changes the drill state; Restore
    // follows a host dialog that may have changed the file, ReallyRestore a brushing step.
    enum class ResultsEvent { Lock, Unlock, Restore, ReallyRestore };
    virtual void ResultsChange(HWND dialog, ResultsEvent event) = 0;
    virtual void EnableStartupMenus(HWND dialog, int enable) = 0;
    virtual void EarlyRecordState(HWND dialog, int id) = 0;
    virtual void FinishRecordingDialog(HWND dialog, int step, int kind, int id) = 0;

    // ---- The host's own dialogs; 0 when the user cancelled ----
    virtual int DefineSelCond(int mode, HWND parent) = 0;
    virtual int DefineWeight(int mode, HWND parent) = 0;
    virtual int OpenVmkFile(HWND parent) = 0;

    // ---- Automation access to controls ----
    // Reads control `id` as a value of `type` (VT_I4, VT_R8, VT_BSTR) into *value; for
    // VT_DISPATCH, presses the result button and gives the first document it made, or no
    // object when it made none.
    virtual HRESULT GetControlValue(HWND dialog, int id, VARTYPE type, VARIANT* value) = 0;
    // Writes control `id` as the user would; a null value presses it.
    virtual HRESULT SetControlValue(HWND dialog, int id, const VARIANT* value) = 0;
    // The variables that the next variable dialog opened by a result command of the dialog
    // answers with (a 3D histogram's two lists), as a macro gives them.
    virtual HRESULT SetResultsVariables(HWND dialog, const VARIANT& lists) = 0;
};
