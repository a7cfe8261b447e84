#pragma once
// The start-up panel: the one long-lived window of an analysis (dialog 4813 with its four tab
// pages), and at the same time the analysis's automation object DDNStartup.
//
// Every control is a thin trigger for an operation of CDrillDown; the panel keeps only the
// choices of the "Catégorisation" page until they are applied to the current variable.
// Commands of the pages arrive in this one message routine.
//
// Life: CDrillDown::StartAnalysis makes the panel with one reference, which its window holds.
// The window goes with command 2 (or when the analysis goes); the last Release deletes the
// object, so a macro may hold it past the window's end, and its members then fail.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "../core/Drill.h"
#include "../host/framework/AnalysisDialog.h"
#include "../host/HostAutomation.h"
#include "../resources/ControlIds.h"

class CDrillDown;

// The lists of the panel that the user may reorder by dragging a row.
class CDrillDownListBox : public CReorderListBox {
public:
    CDrillDownListBox(CDrillDown& analysis, HWND control);
    void ReorderItem(int target) override;

protected:
    // Reorders the set that the list shows.
    virtual int Reorder(const int* order, int count, int placed);
    virtual int SetSize() const;
    CDrillDown& m_drill;
};

class CDrillUpListBox : public CDrillDownListBox {
public:
    using CDrillDownListBox::CDrillDownListBox;

protected:
    int Reorder(const int* order, int count, int placed) override;
    int SetSize() const override;
};

// The panel's recordable controls, closed by an entry with controlId 0.
extern const CDialogControlDescr DDNControlDescriptions[];

class CDDNStartupDlg : public CAnalysisModelessDialog, public IDispatch, public ISupportErrorInfo {
public:
    explicit CDDNStartupDlg(CDrillDown* analysis);
    ~CDDNStartupDlg() override;

    long EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) override;
    // The window's reference goes with the window.
    void PostNcDestroy() override;

    // Control state and the current variables.
    void UpdateControls(HWND dialog, int unused);
    int SyncCurrentDrillDown(HWND dialog, int unused);
    int SyncCurrentDrillUp(HWND dialog, int unused);
    int SelectDrillVariables(HWND dialog);
    int SelectReviewVariables(HWND dialog);

    // The "Catégorisation" page.
    int ApplyCategorisation(HWND dialog);
    void ShowCurrentMethod(HWND dialog);
    void ResetIntervalControls(HWND dialog, int enable);
    void EnableMethodGroup(HWND dialog, int enable);
    void CheckMethodRadios(HWND dialog, int check);

    // The page's choices, as last read or shown.
    std::uint16_t m_VarType = 0;
    std::uint16_t m_Method = 0;
    std::uint16_t m_Count = 10;
    std::uint16_t m_AtMinimum = 1;
    double m_Step = 1.0;
    double m_Start = 0.0;

    // ---- Automation: IUnknown, IDispatch, ISupportErrorInfo ----
    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;
    HRESULT GetTypeInfoCount(UINT* count) override;
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                          DISPID* ids) override;
    HRESULT Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                   VARIANT* result, EXCEPINFO* exception, UINT* argErr) override;
    HRESULT InterfaceSupportsErrorInfo(REFIID iid) override;

    // The members with code of their own.
    HRESULT get_DrillDownVariable(BSTR* value);
    HRESULT put_DrillDownVariable(const VARIANT& value);
    HRESULT get_DrillUpVariable(BSTR* value);
    HRESULT put_DrillUpVariable(const VARIANT& value);
    HRESULT get_DrillDownCategory(BSTR* value);
    HRESULT put_DrillDownCategory(const VARIANT& value);
    HRESULT get_CategorySelections(BSTR* value);
    HRESULT put_CategorySelections(const VARIANT& value);
    HRESULT get_UserDefinedBoundaries(BSTR* value);
    HRESULT put_UserDefinedBoundaries(const VARIANT& value);
    HRESULT get_Name(BSTR* value);

    // Macro recording (automation/RecordingTable.cpp): the values the host cannot read.
    COleAConstant* RecordControlValue(int id) override;

private:
    void Initialise(HWND dialog);
    long Command(HWND dialog, int id);
    long DrillDownCommand(HWND dialog);
    long DrillUpCommand(HWND dialog);
    long PageCommand(HWND dialog, int id);
    // Brushing (brushing/BrushingCommand.cpp): one pass, then the drill step it chose; the
    // pass posts itself again while a variable is left to drill.
    long BrushingCommand(HWND dialog);
    // The brushing graph's key among the tracked outputs, and the end of brushing.
    void EndBrushing();
    long MethodCommand(HWND dialog, int id);
    void Close();
    void OpenOtherFile(HWND dialog);
    void ChangeWeights(HWND dialog);
    void RunOrderDialog(HWND dialog);
    void RunLimitsDialog(HWND dialog);
    void WriteCaptionLists(HWND dialog);
    void WriteReviewCaptions(HWND dialog);
    void Enable(HWND dialog, int id, bool enable);
    void Check(HWND dialog, int id, bool check);
    bool IsChecked(HWND dialog, int id);
    // The selected row of a list box, -1 for none.
    int SelectedRow(HWND dialog, int listId);
    // Shows the variable's row of list `listId` selected, as the user's click would have, or
    // the first row when the list does not hold the variable. The row, -1 for an empty list.
    int ShowRowOf(HWND dialog, int listId, const DrillSet& records, short variable);
    // Reads the page's number edits for method `method` into the members.
    void ReadMethodSettings(HWND dialog, int method);

    // Automation.
    HRESULT InvokeMember(DISPID id, const DispatchCall& call, VARIANT* result);
    HRESULT InvokeControlMember(int control, const DispatchCall& call, VARIANT* result);
    HRESULT InvokeSpecialMember(DISPID id, const DispatchCall& call, VARIANT* result);
    HRESULT PutCurrentVariable(const VARIANT& value, bool drillDown);
    HRESULT GetCurrentVariable(BSTR* value, bool drillDown);
    HRESULT ReportError(const char* text);

    CDrillDown* m_pDrill;
    HWND m_hDlg = nullptr;
    std::unique_ptr<CDrillDownListBox> m_downList;
    std::unique_ptr<CDrillUpListBox> m_upList;
    // Set while a drill-down waits for the limits dialog that it posted; that command then
    // releases the drill-down's results lock as well as its own.
    bool m_limitsPending = false;
    std::atomic<ULONG> m_references{1};
};
