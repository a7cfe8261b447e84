#include "CDrillDown.h"

#include <cstring>
#include <utility>

#include "../dialogs/StartupPanel.h"
#include "../outputs/OutputTracker.h"
#include "../resources/StringTable.h"
#include "../resources/StringIds.h"

namespace {

constexpr int StepInit = 100;
constexpr int StepStartAnalysis = 101;

int RunInit(CAnalysisSupport* analysis) { return static_cast<CDrillDown*>(analysis)->Init(); }

int RunStartAnalysis(CAnalysisSupport* analysis) {
    return static_cast<CDrillDown*>(analysis)->StartAnalysis();
}

// The host walks this table to start an analysis: step 100 sets it up on the open file,
// step 101 opens its panel.
constexpr SEQFUNCTTBL kSequence[] = {
    {StepInit, RunInit, StepStartAnalysis, 0},
    {StepStartAnalysis, RunStartAnalysis, 0, 0},
};

} // namespace

CDrillDown::CDrillDown(CAnalysisDoc* doc)
    : CAnalysisSupport(doc, ModuleContext()), Outputs(std::make_unique<CDDNOutputTracker>(this)) {
    m_sequence.SetSequenceTable(this, kSequence, std::size(kSequence));
    InitMembers();
}

CDrillDown::~CDrillDown() {
    Outputs->Clear(IsOleAutomation() == 0);
    ReleasePanel();
    DrillDowns.reset();
    DrillUps.reset();
    Reviews.reset();
    ReleaseMembers();
}

int CDrillDown::InitializeAfterFileChanged() { return Init(); }

int CDrillDown::ForwardSequence(int step, int arg) const {
    return CAnalysisSupport::ForwardSequence(step, arg);
}

void* CDrillDown::GetLibInstance() { return ModuleInstance(); }

std::string CDrillDown::GetAnalysisName() const { return ModuleString(StrAnalysisName); }

IDispatch* CDrillDown::GetDialogAutomationInterface() { return Panel; }

void* CDrillDown::GetDialog() { return static_cast<CAnalysisDialog*>(Panel); }

int CDrillDown::StartAnalysis() {
    // Without the sets of a successful Init there is nothing for a panel to show.
    if (DrillDowns == nullptr)
        return 0;
    ReleasePanel();
    // The panel starts with the one reference that its window holds.
    auto* panel = new CDDNStartupDlg(this);
    if (panel->CreateAnalysisDialog() == 0) {
        panel->Release();
        return 0;
    }
    panel->AddRef();
    Panel = panel;
    return -1;
}

void CDrillDown::ReleasePanel() {
    CDDNStartupDlg* panel = std::exchange(Panel, nullptr);
    if (panel == nullptr)
        return;
    // The panel works on this analysis: its window must not outlive it. A macro may still
    // hold the object, whose members then report the window closed.
    const HWND window = panel->GetSafeHwnd();
    if (window != nullptr && Dialogs().IsWindow(window) != 0)
        panel->ExitDialog(0, 0, 0);
    panel->Release();
}

void CDrillDown::InitMembers() {
    RVCategorical = RVContinuous = Categorical = Continuous = nullptr;
    Hist3DFirst = Hist3DSecond = AllReviews = nullptr;
    ResetOptions();
}

void CDrillDown::ResetOptions() {
    StandAloneResults = 0;
    NeedsRescan = 0;
    BoxMedianQuartiles = 0;
    BoxMeanSeSd = 1;
    BoxMeanSdSd196 = 0;
    BoxMeanSeSe196 = 0;
    NoRVCategorical = NoRVContinuous = NoCategorical = NoContinuous = 0;
    WM = MD = RVMD = 0;
    CountMD = 1;
    ValidVar = 0;
    ProgressOpen = 0;
    CurrentDown = CurrentUp = -1;
    Selected = -1;
    NoHist3DFirst = NoHist3DSecond = 0;
}

bool CDrillDown::AllocateVariableArrays(int nv) {
    const unsigned long listBytes = 2ul * nv + 2;
    short** lists[] = {&RVCategorical, &RVContinuous, &Categorical,
                       &Continuous,    &Hist3DFirst,  &Hist3DSecond};
    for (short** list : lists)
        if (AllocMem(reinterpret_cast<void**>(list), listBytes) != 0)
            return false;
    // AllReviews holds the categorical and the continuous review variables at once.
    return AllocMem(reinterpret_cast<void**>(&AllReviews), 2 * listBytes) == 0;
}

int CDrillDown::Init() {
    HostBlocks& blocks = ModuleBlocks();
    InitCommons(&blocks.Vmk, &blocks.Vmk88, &blocks.B1, &blocks.Wght, nullptr);
    const int nv = blocks.Vmk.NVars;
    ReleaseMembers();
    if (!AllocateVariableArrays(nv)) {
        dsplst(0, GetResourceString(StrMemoryExhausted));
        ReleaseMembers();
        return 0;
    }
    const std::size_t listBytes = 2u * nv + 2;
    for (short* list : {RVCategorical, RVContinuous, Categorical, Continuous, Hist3DFirst,
                        Hist3DSecond})
        std::memset(list, 0, listBytes);
    std::memset(AllReviews, 0, 2 * listBytes);
    DrillDowns = std::make_unique<DrillSet>();
    DrillUps = std::make_unique<DrillSet>();
    Reviews = std::make_unique<DrillSet>();
    return 1;
}

void CDrillDown::ReleaseMembers() {
    for (short** list : {&RVCategorical, &RVContinuous, &Categorical, &Continuous,
                         &Hist3DFirst, &Hist3DSecond, &AllReviews}) {
        if (*list != nullptr) {
            FreeMem(*list);
            *list = nullptr;
        }
    }
}

void CDrillDown::ResetMembers() {
    Init();
    ResetOptions();
    for (auto* records : {DrillDowns.get(), DrillUps.get(), Reviews.get()})
        if (records != nullptr)
            records->clear();
}

void CDrillDown::RescanIfNeeded() {
    if (NeedsRescan != 0 && NoContinuous + NoCategorical + NoRVContinuous + NoRVCategorical > 0)
        ReadAfterDrill(0);
    NeedsRescan = 0;
}
