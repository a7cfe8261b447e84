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
// Numbers in edit controls:
//   - SetDlgItemDouble shows at most 15 significant digits and no trailing zeros; a
//     positive `digits` caps the decimals. Values from 1e15 on, those below 1e-4 when there
//     is no cap, and those that the cap would round to 0 take the exponent form. A value
//     that is not finite shows as "--". The flag (defaults or stored values) does not
//     change the text.
//   - GetDlgItemDouble reads the C locale's form, or the same with a decimal comma instead
//     of the point, blanks around allowed: "2.5", " 2,5 ", "-1e-3". Text with both a point
//     and a comma, more than one comma, or that is not finite is no number.
//   - GetDlgItemInteger reads an optional sign and decimal digits, blanks around allowed,
//     with a value from -32768 to 32767.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "drilldown/host/HostDialogs.h"
#include "workbench/data/DataFile.h"
#include "workbench/host/ControlModel.h"
#include "workbench/host/KeywordStore.h"

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
    // `first` is neither read nor written.
    int GetInitKeyword(int section, const char* keyword, int* first, int* second) override;
    // Gives non-zero when the value was saved to the store's file; it is kept for this run
    // in any case.
    int PutInitKeyword(int section, const char* keyword, int* first, int* second) override;

private:
    struct VariableChoice {
        std::vector<short> first;
        std::vector<short> second;
    };

    // Whether the dialog has the control, creating it on first use where the dialog does.
    bool hasControl(HWND dialog, int id);
    void checkChoice(const VariableDialogCall& call, const VariableChoice& choice) const;

    ControlModel m_model;
    KeywordStore& m_keywords;
    const DataFile* m_file;
    std::deque<std::optional<VariableChoice>> m_choices; // nothing: cancel
    std::vector<VariableDialogCall> m_calls;
};

} // namespace wb
