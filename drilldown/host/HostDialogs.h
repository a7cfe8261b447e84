#pragma once
// Dialog, control and keyword services that a host supplies.
//
// Windows are opaque handles. A dialog has a handle; each of its controls, found by id
// with GetDlgItem (also on a page of its tab control), has its own. The host keeps the
// state of every control (enabled, shown, checked, text, list items and selection); the
// module only reads and writes it through these calls, which is what lets a headless host,
// a desktop window and a macro all drive the same dialog.

struct HWND__;
using HWND = HWND__*;

// Messages that the module sends to list boxes.
inline constexpr unsigned LB_SETCURSEL = 390;
inline constexpr unsigned LB_GETCURSEL = 392;
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
    // LB_GETCURSEL gives the selected row or LB_ERR; LB_SETCURSEL selects row wParam
    // (-1 clears) and gives LB_ERR for a row out of range. Other messages give 0.
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
    // user cancelled, non-zero otherwise; the lists and counts are written only then.
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
};
