// The start-up panel's window: its message routine, the drill commands, the commands of the
// result and option pages, the rule that gives every control its state, and the two lists
// whose rows the user reorders by dragging. The "Catégorisation" page is in
// CategorisationPage.cpp.

#include "StartupPanel.h"

#include <cstdint>
#include <iterator>
#include <utility>

#include "../core/CDrillDown.h"
#include "../host/framework/HostArray.h"
#include "../resources/Dialogs.h"
#include "DrillDialogs.h"

namespace {

constexpr const char* StandAloneKeyword = "StandAloneResults";
constexpr int StrNoReviewVariables = 10059;
constexpr int StrNoDrillVariables = 10060;

// The step and kind under which the host's recorder closes a drill step.
constexpr int RecordingStep = 101;
constexpr int RecordingKind = 3;

// The page of a tab control, for AddDlgTabs.
DLG_TAB TabPage(int dialogId) {
    DLG_TAB page;
    page.DialogId = dialogId;
    return page;
}

short Toggled(short flag) { return flag == 0 ? 1 : 0; }

} // namespace

// ---- The reorderable lists -----------------------------------------------------------------

CDrillDownListBox::CDrillDownListBox(CDrillDown& analysis, HWND control)
    : CReorderListBox(analysis.Dialogs()), m_drill(analysis) {
    m_hWnd = control;
}

int CDrillDownListBox::Reorder(const int* order, int count, int placed) {
    return m_drill.ReorderDrillDowns(order, count, placed);
}

int CDrillDownListBox::SetSize() const { return m_drill.GetDrillDownsSize(); }

int CDrillUpListBox::Reorder(const int* order, int count, int placed) {
    return m_drill.ReorderDrillUps(order, count, placed);
}

int CDrillUpListBox::SetSize() const { return m_drill.GetDrillUpsSize(); }

void CDrillDownListBox::ReorderItem(int target) {
    const int count = SetSize();
    const int source = GetCurSel();
    if (source < 0 || source == target || target < 0 || target > count)
        return;
    // Both blocks are taken before the list changes: running out of memory leaves list and set
    // as they were.
    const long length = m_controls.SendMessageA(m_hWnd, LB_GETTEXTLEN, source, 0);
    HostArray<char> text(m_drill);
    HostArray<int> order(m_drill);
    if (length < 0 || !text.Allocate(static_cast<std::size_t>(length) + 1) ||
        !order.Allocate(static_cast<std::size_t>(count)))
        return;

    // The row moves in the list: a copy goes in at the target, then the old row goes.
    m_controls.SendMessageA(m_hWnd, LB_GETTEXT, source,
                            static_cast<long>(reinterpret_cast<std::intptr_t>(text.get())));
    m_controls.SendMessageA(m_hWnd, LB_INSERTSTRING, static_cast<unsigned long>(target),
                            static_cast<long>(reinterpret_cast<std::intptr_t>(text.get())));
    m_controls.SendMessageA(m_hWnd, LB_DELETESTRING, target <= source ? source + 1 : source, 0);

    // The same move in the set: the rows before the moved one keep their places, the moved
    // one takes its new place, and the rows it passed follow it.
    for (int i = 0; i < count; ++i)
        order[i] = -1;
    int selected;
    if (target < source) {
        for (int i = 0; i < target; ++i)
            order[i] = i;
        order[source] = target;
        Reorder(order.get(), count, target + 1);
        selected = target;
    } else {
        for (int i = 0; i < source; ++i)
            order[i] = i;
        order[source] = target - 1;
        for (int i = source + 1; i < target; ++i)
            order[i] = i - 1;
        Reorder(order.get(), count, target);
        selected = target - 1;
    }
    m_controls.SendMessageA(m_hWnd, LB_SETCURSEL, static_cast<unsigned long>(selected), 0);
}

// ---- The panel's life and messages -----------------------------------------------------------

CDDNStartupDlg::CDDNStartupDlg(CDrillDown* analysis)
    : CAnalysisModelessDialog(analysis, DlgStartupPanel, nullptr), m_pDrill(analysis) {
    m_pControlDescr = DDNControlDescriptions;
}

CDDNStartupDlg::~CDDNStartupDlg() = default;

void CDDNStartupDlg::PostNcDestroy() {
    // The lists hold control handles of the window that has just gone.
    m_downList.reset();
    m_upList.reset();
    m_hDlg = nullptr;
    Release();
}

long CDDNStartupDlg::EventHandler(HWND dialog, unsigned message, unsigned long wParam,
                                  long lParam) {
    m_hDlg = dialog;
    const auto taken = static_cast<short>(IsResultsMsg(dialog, message, wParam, lParam) & 0xFFFF);
    if (taken != 0)
        return taken;
    switch (message) {
    case WM_CTLCOLOR:
        // The lists and the caption lists are drawn in the colour of the host's lists.
        switch (lParam) {
        case ListDrillDowns:
        case ListDrillUps:
        case CaptionReviewCategorical:
        case CaptionCategorical:
        case CaptionReviewContinuous:
        case CaptionContinuous:
            return HandleWM_CTLCOLOR(dialog, wParam, lParam, RGBAttrType(1));
        default:
            return 0;
        }
    case WM_INITDIALOG:
        Initialise(dialog);
        return 1;
    case WM_COMMAND:
        // Every notification of a list runs its handler: the code is not looked at.
        return Command(dialog, LowWord(wParam));
    default:
        return 0;
    }
}

void CDDNStartupDlg::Initialise(HWND dialog) {
    const DLG_TAB pages[] = {TabPage(DlgBasePage), TabPage(DlgCategorisationPage),
                             TabPage(DlgReviewPage), TabPage(DlgOptionsPage), TabPage(0)};
    COpDllResource resource(ModuleInstance());
    AddDlgTabs(TabControl, pages, -1, resource, nullptr);
    InitOpeningDialog();

    HostDialogs& controls = Controls();
    const HWND downs = controls.GetDlgItem(dialog, ListDrillDowns);
    m_downList = std::make_unique<CDrillDownListBox>(*m_pDrill, downs);
    m_downList->SubclassWindow(downs);
    const HWND ups = controls.GetDlgItem(dialog, ListDrillUps);
    m_upList = std::make_unique<CDrillUpListBox>(*m_pDrill, ups);
    m_upList->SubclassWindow(ups);

    // The user's last choice of stand-alone results; off when it was never stored.
    int first = 0;
    int standAlone = 0;
    m_pDrill->GetInitKeyword(0, StandAloneKeyword, &first, &standAlone);
    m_pDrill->StandAloneResults = standAlone;
    Check(dialog, CheckStandAlone, standAlone != 0);

    SyncCurrentDrillDown(dialog, 0);
    UpdateControls(dialog, 0);
}

long CDDNStartupDlg::Command(HWND dialog, int id) {
    CDrillDown& drill = *m_pDrill;
    switch (id) {
    case IDCANCEL:
        Close();
        return 1;
    case ButtonDrillVariables: {
        const CResultsLock lock(*this);
        SelectDrillVariables(dialog);
        return 0;
    }
    case ListDrillDowns:
        // The page's choices belong to the variable being left.
        ApplyCategorisation(dialog);
        SyncCurrentDrillDown(dialog, 0);
        UpdateControls(dialog, 0);
        return 0;
    case ListDrillUps:
        SyncCurrentDrillUp(dialog, 0);
        UpdateControls(dialog, 0);
        return 0;
    case ButtonDrillDown:
        return DrillDownCommand(dialog);
    case ButtonDrillUp:
        return DrillUpCommand(dialog);
    case ButtonBrushing:
        return BrushingCommand(dialog);
    case CommandBrushingGraph:
        if (drill.GetDrillDownsSize() >= 1)
            drill.DDNGraphForBrushing(nullptr);
        return 0;
    case ButtonOrder:
        RunOrderDialog(dialog);
        return 1;
    case ButtonLimits:
        RunLimitsDialog(dialog);
        return 1;
    case CheckStandAlone:
        drill.StandAloneResults = drill.StandAloneResults == 0 ? 1 : 0;
        return 0;
    case CheckCasewise:
        drill.ChangeMD();
        drill.NeedsRescan = 1;
        UpdateControls(dialog, 0);
        return 0;
    case ButtonSelection: {
        const CResultsLock lock(*this);
        DefineSelCond(1, dialog);
        drill.NeedsRescan = 1;
        return 0;
    }
    case ButtonWeights:
        ChangeWeights(dialog);
        return 0;
    case ButtonOpenFile:
        OpenOtherFile(dialog);
        return 0;
    case CheckWeightedMoments:
        drill.ChangeWM();
        drill.NeedsRescan = 1;
        UpdateControls(dialog, 0);
        return 0;
    default:
        if ((id >= RadioDistinctValues && id <= RadioUserLimits) || id == CheckAtMinimum)
            return MethodCommand(dialog, id);
        return PageCommand(dialog, id);
    }
}

// The result buttons of the "Base" and "Etudier" pages and the options; 0 for an unknown id.
long CDDNStartupDlg::PageCommand(HWND dialog, int id) {
    CDrillDown& drill = *m_pDrill;
    const int downs = drill.GetDrillDownsSize();
    switch (id) {
    case ButtonSummary:
        ApplyCategorisation(dialog);
        if (drill.GetDrillUpsSize() >= 1)
            drill.DDNSummary(dialog);
        break;
    case ButtonFrequencies:
        ApplyCategorisation(dialog);
        if (downs >= 1)
            drill.DDNFrequency(dialog);
        break;
    case ButtonDescriptives:
        ApplyCategorisation(dialog);
        if (downs >= 1)
            drill.DDNDescriptive(dialog);
        break;
    case ButtonHistograms:
        ApplyCategorisation(dialog);
        if (downs >= 1)
            drill.DDNHistograms(dialog);
        break;
    case ButtonPiecharts:
        ApplyCategorisation(dialog);
        if (downs >= 1)
            drill.DDNPiecharts(0, dialog);
        break;
    case ButtonStackedPlots:
        ApplyCategorisation(dialog);
        if (downs >= 1)
            drill.DDNStackedplots(0, dialog);
        break;
    case ButtonSaveData:
        drill.DDNSaveData(dialog);
        break;
    case ButtonReviewVariables: {
        const CResultsLock lock(*this);
        SelectReviewVariables(dialog);
        break;
    }
    case ButtonReviewFrequencies:
        drill.RVFrequency(dialog);
        break;
    case ButtonReviewDescriptives:
        drill.RVSummary(dialog);
        break;
    case ButtonReviewHistograms:
        drill.RVHistograms(dialog);
        break;
    case ButtonReview3DHistograms:
        drill.RV3DHistograms(0, dialog);
        break;
    case ButtonReviewPiecharts:
        drill.RVPiecharts(0, dialog);
        break;
    case ButtonBoxPlots:
        drill.RVBoxWhiker(dialog);
        break;
    case ButtonScatterPlot:
        drill.RVScatterPlot(dialog);
        break;
    case ButtonReviewStackedPlots:
        drill.RVStackedplots(0, dialog);
        break;
    case CheckReviewCasewise:
        drill.ChangeRVMD();
        drill.NeedsRescan = 1;
        UpdateControls(dialog, 0);
        break;
    case CheckCountMissing:
        drill.ChangeCountMD();
        drill.NeedsRescan = 1;
        UpdateControls(dialog, 0);
        break;
    // The box-plot options are read when the plots are made; they change no count.
    case CheckBoxMedianQuartiles:
        drill.BoxMedianQuartiles = Toggled(drill.BoxMedianQuartiles);
        break;
    case CheckBoxMeanSeSd:
        drill.BoxMeanSeSd = Toggled(drill.BoxMeanSeSd);
        break;
    case CheckBoxMeanSdSd196:
        drill.BoxMeanSdSd196 = Toggled(drill.BoxMeanSdSd196);
        break;
    case CheckBoxMeanSeSe196:
        drill.BoxMeanSeSe196 = Toggled(drill.BoxMeanSeSe196);
        break;
    default:
        break;
    }
    return 0;
}

// ---- Drill down and drill up -----------------------------------------------------------------

long CDDNStartupDlg::DrillDownCommand(HWND dialog) {
    CDrillDown& drill = *m_pDrill;
    // The button is disabled without a variable; a command sent by code finds nothing to drill.
    if (drill.GetCurrentDrillDown() < 0)
        return 0;
    CResultsLock lock(*this);
    if (IsChecked(dialog, RadioUserLimits) && drill.GetCurrentNU() == 0) {
        // User-defined categories without limits: the limits dialog comes first, through the
        // posted command, whose handler also ends this lock. The user then drills again.
        lock.handOver();
        m_limitsPending = true;
        Controls().PostCommand(dialog, ButtonLimits);
        return 1;
    }
    ApplyCategorisation(dialog);
    // A macro sets the category itself and gets no dialog.
    const bool macro = IsOleAutomation() != 0 && m_bInteractive == 0;
    if (macro) {
        EarlyRecordState(GroupDrillVariables);
        EarlyRecordState(GroupDrillDownStatistics);
    }
    drill.CountCategoriesIfOwed();
    if (macro) {
        EarlyRecordState(GroupDrillOperations);
        // The macro's category must be a row that the category dialog would offer.
        const int row = drill.GetSelected();
        if (row < 0 || row >= drill.CategoryRows().Count())
            return 0;
    } else {
        CDDNCategoryDlg categories(m_pDrill);
        COpDllResource resource(ModuleInstance());
        const int answer = categories.DoModal(resource);
        EarlyRecordState(GroupDrillOperations);
        if (answer != 1)
            return 0;
    }
    FinishRecordingDialog(RecordingStep, RecordingKind, ButtonDrillDown);
    drill.MoveToDrillUps();
    drill.RefreshListBoxes(dialog);
    drill.ReadAfterDrill(0);
    UpdateControls(dialog, 0);
    drill.AutoUpdate(0);
    SyncCurrentDrillDown(dialog, 0);
    SyncCurrentDrillUp(dialog, 0);
    drill.SetAllIsset(0);
    UpdateControls(dialog, 0);
    return 0;
}

long CDDNStartupDlg::DrillUpCommand(HWND dialog) {
    CDrillDown& drill = *m_pDrill;
    const auto row = static_cast<short>(SelectedRow(dialog, ListDrillUps));
    if (row < 0)
        return 0;
    const CResultsLock lock(*this);
    // Any step can be taken back, not only the last.
    drill.SetCurrentUpItem(row);
    FinishRecordingDialog(RecordingStep, RecordingKind, ButtonDrillUp);
    drill.MoveBackToDrillDowns();
    drill.RefreshListBoxes(dialog);
    drill.ReadAfterDrill(0);
    UpdateControls(dialog, 0);
    drill.AutoUpdate(0);
    SyncCurrentDrillDown(dialog, 0);
    SyncCurrentDrillUp(dialog, 0);
    UpdateControls(dialog, 0);
    return 0;
}

// ---- Other commands ----------------------------------------------------------------------

void CDDNStartupDlg::Close() {
    EnableStartupMenus(1);
    // The next analysis starts with this choice.
    int first = 0;
    int standAlone = m_pDrill->StandAloneResults;
    m_pDrill->PutInitKeyword(0, StandAloneKeyword, &first, &standAlone);
    ExitDialog(0, 1, 0);
}

void CDDNStartupDlg::OpenOtherFile(HWND dialog) {
    if (OpenVmkFile() == 0) {
        RestoreResults();
        return;
    }
    RestoreResults();
    const CResultsLock lock(*this);
    // A new file is a fresh start: no variables, no steps, the options back to their defaults.
    m_pDrill->ResetMembers();
    WriteCaptionLists(dialog);
    HostDialogs& controls = Controls();
    const char* const noRows[] = {nullptr};
    controls.InitStaticListBox(controls.GetDlgItem(dialog, ListDrillDowns), noRows);
    controls.InitStaticListBox(controls.GetDlgItem(dialog, ListDrillUps), noRows);
    SyncCurrentDrillDown(dialog, 0);
    UpdateControls(dialog, 0);
    Check(dialog, CheckStandAlone, m_pDrill->StandAloneResults != 0);
}

void CDDNStartupDlg::ChangeWeights(HWND dialog) {
    const Wght_com& weight = ModuleBlocks().Wght;
    const auto weightOn = weight.WeightOn;
    const auto weightVar = weight.WeightVar;
    const CResultsLock lock(*this);
    DefineWeight(1, dialog);
    if (weight.WeightOn != weightOn || weight.WeightVar != weightVar)
        m_pDrill->NeedsRescan = 1;
    UpdateControls(dialog, 0);
}

void CDDNStartupDlg::RunOrderDialog(HWND dialog) {
    const CResultsLock lock(*this);
    CDDNOrderDlg order(m_pDrill);
    COpDllResource resource(ModuleInstance());
    if (order.DoModal(resource) == 1) {
        m_pDrill->RefreshListBoxes(dialog);
        SyncCurrentDrillDown(dialog, 0);
        UpdateControls(dialog, 0);
    }
}

void CDDNStartupDlg::RunLimitsDialog(HWND dialog) {
    if (SelectedRow(dialog, ListDrillDowns) >= 0) {
        const CResultsLock lock(*this);
        CDDNLimitsDlg limits(m_pDrill);
        COpDllResource resource(ModuleInstance());
        if (limits.DoModal(resource) == 1)
            ApplyCategorisation(dialog);
        else
            UpdateControls(dialog, 0);
    }
    // A drill-down that asked for the limits left its lock to this command.
    if (std::exchange(m_limitsPending, false))
        UnlockResults();
}

// ---- Variables ----------------------------------------------------------------------------

int CDDNStartupDlg::SelectDrillVariables(HWND dialog) {
    CDrillDown& drill = *m_pDrill;
    const int n = ModuleBlocks().Vmk.NVars;
    if (drill.SetDDNVariable(dialog, 1, 0, n, 0, n, n) == 0)
        return 0;
    // An empty choice is asked again; a cancel ends the loop.
    while (drill.GetNoCategorical() + drill.GetNoContinuous() <= 0) {
        drill.dsplst(0, drill.GetResourceString(StrNoDrillVariables));
        if (drill.SetDDNVariable(dialog, 1, 0, n, 0, n, n) == 0)
            return 0;
    }
    WriteCaptionLists(dialog);
    SyncCurrentDrillDown(dialog, 0);
    UpdateControls(dialog, 0);
    return 1;
}

int CDDNStartupDlg::SelectReviewVariables(HWND dialog) {
    CDrillDown& drill = *m_pDrill;
    const int n = ModuleBlocks().Vmk.NVars;
    if (drill.SetRVVariable(dialog, 1, 0, n) == 0)
        return 0;
    while (drill.GetNoRVCategorical() + drill.GetNoRVContinuous() <= 0) {
        drill.dsplst(0, drill.GetResourceString(StrNoReviewVariables));
        if (drill.SetRVVariable(dialog, 1, 0, n) == 0)
            return 0;
    }
    WriteReviewCaptions(dialog);
    UpdateControls(dialog, 0);
    return 1;
}

void CDDNStartupDlg::WriteCaptionLists(HWND dialog) {
    HostDialogs& controls = Controls();
    controls.WriteVarListToCaption(dialog, CaptionCategorical, m_pDrill->GetNoCategorical(),
                                   m_pDrill->GetCategorical());
    controls.WriteVarListToCaption(dialog, CaptionContinuous, m_pDrill->GetNoContinuous(),
                                   m_pDrill->GetContinuous());
    WriteReviewCaptions(dialog);
}

void CDDNStartupDlg::WriteReviewCaptions(HWND dialog) {
    HostDialogs& controls = Controls();
    controls.WriteVarListToCaption(dialog, CaptionReviewCategorical,
                                   m_pDrill->GetNoRVCategorical(), m_pDrill->GetRVCategorical());
    controls.WriteVarListToCaption(dialog, CaptionReviewContinuous,
                                   m_pDrill->GetNoRVContinuous(), m_pDrill->GetRVContinuous());
}

// ---- The current variables ----------------------------------------------------------------

int CDDNStartupDlg::SyncCurrentDrillDown(HWND dialog, int) {
    const DrillSet& records = *m_pDrill->GetDrillDowns();
    int row = SelectedRow(dialog, ListDrillDowns);
    // A list just refilled has no selection: it shows the current variable again.
    if (row < 0 || row >= static_cast<int>(records.size()))
        row = ShowRowOf(dialog, ListDrillDowns, records, m_pDrill->GetCurrentDown());
    m_pDrill->SetCurrentDown(row >= 0 ? std::next(records.begin(), row)->Variable : -1);
    m_pDrill->SetSelected(-1);
    return row;
}

int CDDNStartupDlg::SyncCurrentDrillUp(HWND dialog, int) {
    const DrillSet& records = *m_pDrill->GetDrillUps();
    int row = SelectedRow(dialog, ListDrillUps);
    if (row < 0 || row >= static_cast<int>(records.size()))
        row = ShowRowOf(dialog, ListDrillUps, records, m_pDrill->GetCurrentUp());
    m_pDrill->SetCurrentUp(row >= 0 ? std::next(records.begin(), row)->Variable : -1);
    return row;
}

int CDDNStartupDlg::SelectedRow(HWND dialog, int listId) {
    HostDialogs& controls = Controls();
    return static_cast<int>(
        controls.SendMessageA(controls.GetDlgItem(dialog, listId), LB_GETCURSEL, 0, 0));
}

int CDDNStartupDlg::ShowRowOf(HWND dialog, int listId, const DrillSet& records,
                              short variable) {
    if (records.empty())
        return -1;
    int row = 0;
    for (const Drill& record : records) {
        if (record.Variable == variable)
            break;
        ++row;
    }
    // A variable that the list no longer holds gives way to the first row.
    if (row == static_cast<int>(records.size()))
        row = 0;
    HostDialogs& controls = Controls();
    controls.SendMessageA(controls.GetDlgItem(dialog, listId), LB_SETCURSEL,
                          static_cast<unsigned long>(row), 0);
    return row;
}

// ---- Control state ---------------------------------------------------------------------------

void CDDNStartupDlg::Enable(HWND dialog, int id, bool enable) {
    HostDialogs& controls = Controls();
    controls.EnableWindow(controls.GetDlgItem(dialog, id), enable ? 1 : 0);
}

void CDDNStartupDlg::Check(HWND dialog, int id, bool check) {
    Controls().CheckDlgButton(dialog, id, check ? 1 : 0);
}

bool CDDNStartupDlg::IsChecked(HWND dialog, int id) {
    return Controls().IsDlgButtonChecked(dialog, id) != 0;
}

void CDDNStartupDlg::UpdateControls(HWND dialog, int) {
    const CDrillDown& drill = *m_pDrill;
    const int downs = drill.GetDrillDownsSize();
    const int ups = drill.GetDrillUpsSize();
    const int continuousDowns = drill.GetDrillDownsContSize();
    const int reviewCategorical = drill.GetNoRVCategorical();
    const int reviewContinuous = drill.GetNoRVContinuous();
    const bool anyDown = downs > 0;
    const bool anyUp = ups > 0;
    // Once drilled, the file, the selection, the weights and the missing-data mode are fixed.
    const bool undrilled = ups == 0;

    for (int id : {ListDrillDowns, ButtonBrushing, ButtonDrillDown})
        Enable(dialog, id, anyDown);
    for (int id : {ListDrillUps, ButtonDrillUp})
        Enable(dialog, id, anyUp);
    Enable(dialog, ButtonOrder, downs >= 2);
    Enable(dialog, ButtonSaveData, downs + ups >= 1);
    Enable(dialog, ButtonSummary, anyUp);
    Enable(dialog, ButtonDescriptives, continuousDowns > 0 && drill.NoMissingDrill() != 0);
    for (int id : {ButtonFrequencies, GroupDrillDownStatistics, ButtonPiecharts, ButtonHistograms})
        Enable(dialog, id, anyDown);
    HostDialogs& controls = Controls();
    for (int id : {ButtonStackedPlots, ButtonReviewStackedPlots})
        controls.ShowWindow(controls.GetDlgItem(dialog, id), 0);

    const bool continuousReviews = reviewContinuous > 0;
    Enable(dialog, GroupBoxPlotOptions, continuousReviews);
    const struct {
        int id;
        short flag;
    } boxOptions[] = {{CheckBoxMedianQuartiles, drill.BoxMedianQuartiles},
                      {CheckBoxMeanSeSd, drill.BoxMeanSeSd},
                      {CheckBoxMeanSdSd196, drill.BoxMeanSdSd196},
                      {CheckBoxMeanSeSe196, drill.BoxMeanSeSe196}};
    for (const auto& option : boxOptions) {
        Enable(dialog, option.id, continuousReviews);
        if (continuousReviews)
            Check(dialog, option.id, option.flag == 1);
    }
    for (int id : {ButtonReviewDescriptives, ButtonBoxPlots})
        Enable(dialog, id, continuousReviews);
    for (int id : {ButtonReviewFrequencies, ButtonReviewHistograms, ButtonReviewPiecharts,
                   ButtonReview3DHistograms})
        Enable(dialog, id, reviewCategorical + reviewContinuous > 0);
    Enable(dialog, ButtonScatterPlot, reviewContinuous >= 2);

    for (int id : {ButtonOpenFile, ButtonSelection, ButtonWeights, CheckCasewise})
        Enable(dialog, id, undrilled);
    Enable(dialog, CheckWeightedMoments, ModuleBlocks().Wght.WeightOn != 0 && undrilled);
    Check(dialog, CheckWeightedMoments, drill.GetWM() == 1);
    Enable(dialog, CheckCountMissing, undrilled && downs != 0);
    Check(dialog, CheckCountMissing, drill.GetCountMD() == 1);
    Check(dialog, CheckReviewCasewise, drill.GetRVMD() == 1);
    Check(dialog, CheckCasewise, drill.GetMD() == 1);
    for (int id : {ButtonReviewVariables, LabelReviewCategorical, CaptionReviewCategorical,
                   LabelReviewContinuous, CaptionReviewContinuous})
        Enable(dialog, id, true);

    EnableMethodGroup(dialog, anyDown ? 1 : 0);
    ShowCurrentMethod(dialog);
    // The host's start-up menus follow the drill state.
    EnableStartupMenus(anyUp ? 1 : 0);
}
