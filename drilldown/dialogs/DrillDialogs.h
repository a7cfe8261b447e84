#pragma once
// The three short modal dialogs of the start-up panel: picking the category to drill into,
// ordering the drill-down variables, and entering user-defined category limits. Each lives
// for one DoModal; its answer is 1 for accepted, anything else for cancelled.

#include "../host/framework/AnalysisDialog.h"

class CDrillDown;

// Dialog 4818: the non-empty categories of the current drill-down variable, then the
// missing-data row when missing data are counted. Accepting stores the chosen row with
// SetSelected.
class CDDNCategoryDlg : public CAnalysisModalDialog {
public:
    explicit CDDNCategoryDlg(CDrillDown* analysis);
    long EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) override;

    int m_Item = -1; // the row chosen in the list

private:
    long Initialise(HWND dialog);
    long Accept(HWND dialog);
    CDrillDown* m_pDrill;
};

// Dialog 4819: builds a new order of the drill-down variables. Accepting reorders them with
// ReorderDrillDowns; the variables left unplaced keep their order behind the placed ones.
class CDDNOrderDlg : public CAnalysisModalDialog {
public:
    explicit CDDNOrderDlg(CDrillDown* analysis);
    ~CDDNOrderDlg() override;
    long EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) override;

    int* m_Order = nullptr; // per variable in set order: its new position, -1 while unplaced
    int m_Size = 0;
    int m_Placed = 0;

private:
    void Place(HWND dialog);
    void Unplace(HWND dialog);
    CDrillDown* m_pDrill;
};

// Dialog 4820: the upper limits of user-defined categories for the current drill-down
// variable. Accepting stores them in its record; a wrong entry keeps the dialog open with its
// message.
class CDDNLimitsDlg : public CAnalysisModalDialog {
public:
    explicit CDDNLimitsDlg(CDrillDown* analysis);
    long EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) override;

private:
    // Reads the limits typed into the edit and stores them; their number, 0 when refused.
    int StoreLimits(HWND dialog);
    CDrillDown* m_pDrill;
};
