#pragma once
// The drill-down analysis: one per open analysis, created by the factory Vmk6NewAnalysis.
//
// It owns the lists of chosen variables, the three sets of records (DrillDowns: variables
// that may still be drilled; DrillUps: drilled variables, newest first, whose pinned
// categories together define the current subset; Reviews: variables only looked at), and
// the option flags. Its members are grouped by subsystem and implemented in the folder of
// that subsystem.
//
// Life: constructed (no arrays, no sets) -> step 100 Init (arrays sized from the file's
// number of variables, empty sets) -> step 101 StartAnalysis (the panel opens) -> the user
// works; a change of file calls Init again -> the host's close -> destructor, which also
// ends a panel window still open.
//
// Results: operations give 1 for done and 0 for failure, and show their own messages.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "../host/framework/CAnalysisSupport.h"
#include "Drill.h"

enum class LoopEnd;
class CGeneralChart;
template <typename T> class HostArray;
class CasewiseTest;
class CDDNOutputTracker;
class CDDNStartupDlg;
class ScanMoments;
class SubsetTest;

inline constexpr int DrillDownAnalysisID = 4811;

// Cases first to last, both included, numbered from 1.
struct CaseRange {
    int first;
    int last;
};

// How a scan splits a large file over threads: into at most MaxParts parts of at least
// MinCases cases each (CaseLoop.h). One part reads the file in one pass.
struct ScanSplit {
    int MaxParts;
    int MinCases;
    int PartsFor(int cases) const;
    // The machine's cores, parts of at least 100,000 cases: below that a thread costs more
    // than it saves.
    static ScanSplit ForThisMachine();
};

class CDrillDown : public CAnalysisSupport {
public:
    explicit CDrillDown(CAnalysisDoc* doc = nullptr);
    ~CDrillDown() override;

    CDrillDown(const CDrillDown&) = delete;
    CDrillDown& operator=(const CDrillDown&) = delete;

    // Host's virtual operations.
    int InitializeAfterFileChanged() override;
    void Initialize() override {}
    int ForwardSequence(int step, int arg) const override;
    void* GetLibInstance() override;
    int GetAnalysisID() override { return DrillDownAnalysisID; }
    std::string GetAnalysisName() const override;
    // The panel, which also is the analysis's automation object: null before StartAnalysis,
    // and kept after its window has closed. No reference is added.
    IDispatch* GetDialogAutomationInterface() override;
    // The panel as the analysis's current dialog (a CAnalysisDialog), or null.
    void* GetDialog() override;

    // Stand-alone results (outputs/). With StandAloneResults off, BeforeRouteOutput gives
    // false and the host shows the output itself; on, the tracker decides.
    bool BeforeRouteOutput(IDispatch* document) override;
    bool OutputExists(unsigned int command, unsigned int number) const;
    void SetNextOutputID(unsigned int command, unsigned int number);

    // Life of the object.
    void InitMembers();
    int Init();
    void ReleaseMembers();
    void ResetMembers();
    // Step 101 of the start: opens the start-up panel. -1 when it is open, 0 when its window
    // could not be made (the host's walk takes 0 for a start that failed).
    int StartAnalysis();

    // Options, lists and current indices.
    short GetNoCategorical() const { return NoCategorical; }
    short GetNoContinuous() const { return NoContinuous; }
    short GetNoRVCategorical() const { return NoRVCategorical; }
    short GetNoRVContinuous() const { return NoRVContinuous; }
    short* GetCategorical() const { return Categorical; }
    short* GetContinuous() const { return Continuous; }
    short* GetRVCategorical() const { return RVCategorical; }
    short* GetRVContinuous() const { return RVContinuous; }
    short GetWM() const { return WM; }
    short GetMD() const { return MD; }
    short GetRVMD() const { return RVMD; }
    short GetCountMD() const { return CountMD; }
    short GetCurrentDown() const { return CurrentDown; }
    short GetCurrentUp() const { return CurrentUp; }
    short SetWM(short value) { return WM = value; }
    short SetMD(short value) { return MD = value; }
    short SetRVMD(short value) { return RVMD = value; }
    short SetCountMD(short value) { return CountMD = value; }
    short SetCurrentDown(short value) { return CurrentDown = value; }
    short SetCurrentUp(short value) { return CurrentUp = value; }
    short ChangeWM() { return WM = Toggled(WM); }
    short ChangeMD() { return MD = Toggled(MD); }
    short ChangeRVMD() { return RVMD = Toggled(RVMD); }
    short ChangeCountMD() { return CountMD = Toggled(CountMD); }
    int GetSelected() const { return Selected; }
    int GetValidVar() const { return ValidVar; }
    int SetSelected(int value) { return Selected = value; }
    DrillSet* GetDrillDowns() const { return DrillDowns.get(); }
    DrillSet* GetDrillUps() const { return DrillUps.get(); }
    DrillSet* GetReviews() const { return Reviews.get(); }
    int GetDrillDownsSize() const { return static_cast<int>(DrillDowns->size()); }
    int GetDrillUpsSize() const { return static_cast<int>(DrillUps->size()); }
    int GetDrillReviewsSize() const { return static_cast<int>(Reviews->size()); }

    // Drill records.
    DrillSet::iterator LookFor(short variable, DrillSet* records) const;
    CategorySet* GetCurrentCategories() const;
    CategorySet* GetDrillCategories(short variable) const;
    short GetCurrentDrillDown() const;
    short GetCurrentDrillUp() const;
    std::string GetCurrentVariableName() const;
    std::string GetCurrentDrillUpName() const;
    int GetCurrentVariableType() const;
    int GetCurrentMethod() const;
    int GetCurrentIsset() const;
    int GetCurrentNU() const;
    double GetCurrentMCount() const;
    int GetDrillDownsContSize() const;
    int NoMissingDrill() const;
    int GetDrillMinMax(double& min, double& max) const;
    int GetDrillMethod(int& type, int& n, int& atMinimum, double& step, double& start) const;
    double* GetUserInterv() const;
    int SetUserIntervals(const double* values, int count);
    int SetDrillCategories(short variable, double value, short type, double weight);
    int SetReviewCategories(short variable, double value, short type, double weight);
    int SetDrillDescriptives(short variable, double min, double max, double mean, double ss);
    int SetReviewDescriptives(short variable, double min, double max, double mean, double ss);
    int SetMissingCount(short variable, int missingN, double missingWeight, int n,
                        double weightedN);
    int SetReviewMissingCount(short variable, int missingN, double missingWeight, int n,
                              double weightedN);
    int SetIsset(int variable, int value);
    int SetCategoriesIsset(int variable);
    int SetReviewCategoriesIsset(int variable);
    int SetAllIsset(int value);

    // Drill moves. A drill-down pins CurrentDown to its category Selected, counted among the
    // non-empty categories; a drill-up takes back the step of CurrentUp.
    int MoveToDrillUps();
    int MoveBackToDrillDowns();
    // order: one entry per record in set order, its new position or -1 for unplaced ones.
    int ReorderDrillDowns(const int* order, int count, int placed);
    int ReorderDrillUps(const int* order, int count, int placed);
    int RefreshListBoxes(HWND window);
    int LeftAndRight(HWND window, const int* order, int count);
    int SetSelectedItem(int row);
    // The rows of the category dialog for the current variable: the names of the categories
    // that hold cases, in order, then the missing-data row when missing data are counted and
    // the variable has some. Selected counts these rows.
    struct CategoryRowList {
        std::vector<std::string> Names;
        bool MissingRow = false;
        int Count() const { return static_cast<int>(Names.size()) + (MissingRow ? 1 : 0); }
    };
    CategoryRowList CategoryRows() const;
    // Counts the current variable's categories in the current subset when a pending change
    // or a drill step left them uncounted, as a drill-down does before it offers them.
    void CountCategoriesIfOwed();
    short SetCurrentUpItem(short position);
    short GetCurrentUpItem();

    // Variable set-up: the user's choice of variables becomes records, and one scan reads them.
    int SetDDNVariable(HWND window, unsigned short mode, int min1, int max1, int min2, int max2,
                       int total);
    int SetRVVariable(HWND window, unsigned short mode, int min, int max);
    short SelectedVariable(int variable) const;
    short IsCategoricalVariable(int variable) const;

    // Categorisation.
    int SetNeatIntervals();
    int SetReviewsIntervals();
    int SetContinuousIntervals();
    int AddCategories(double value, short variable, double weight);
    int SetCategoriesName(short variable);
    int SetReviewCategoriesName(short variable);

    // Missing data and weights.
    double DealWithWeights(unsigned short unused);
    int SetMissingData(const double* values);
    int MDReviews(const double* values);

    // Scans. Each gives 1 when it ran to its end, 0 when memory ran out or it was broken off.
    int ReadDDNV(unsigned short unused);
    int ReadRVV(unsigned short unused);
    int ReadAfterDrill(unsigned short unused);
    int ReadBeforeDrill(unsigned short unused);
    int FillNeatIntervals();
    int FillContinuousIntervals();
    // 1 when the case lies outside the current subset, 0 when inside.
    int HasBeenDrilled(const double* values);

    // Results: tables handed to the host. Each opens with the rescan rule, gives 1 when done
    // and 0 when it refused or memory ran out.
    short DDNSummary(HWND window);
    short DDNDescriptive(HWND window);
    short RVSummary(HWND window);
    short DDNFrequency(HWND window);
    short RVFrequency(HWND window);
    // Whether the categories of a categorical variable have long text labels.
    short LongDescription(short variable, short type);
    short LongDescriptionReviews(short variable, short type);
    // The number of cases and one line per drill step, newest first, as a token.
    std::string DrillString();
    // The same, naming the variables by their expanded names.
    std::string ScatterDrillString();

    // Results: graphs. Histograms, pie charts and stacked plots are drawn from the category
    // counts of the records, one chart request each (ChartBuilder.h). Box plots, the
    // scatterplot matrix and 3D histograms the host draws from the cases, keeping those that
    // CaseInDrill lets through. The arguments other than the window are not looked at.
    short DDNHistograms(HWND window);
    short RVHistograms(HWND window);
    // A 3D histogram of each pair of the two lists the user picks; 0 when the user cancels.
    int RV3DHistograms(short unused, HWND window);
    int DDNPiecharts(short unused, HWND window);
    int RVPiecharts(short unused, HWND window);
    // One chart of all variables; 0 also when a variable has no case at all.
    int DDNStackedplots(short unused, HWND window);
    int RVStackedplots(short unused, HWND window);
    // One box-plot graph per style that is on; 0 with a message when none is.
    short RVBoxWhiker(HWND window);
    // 0 when the host could not draw the matrix.
    short RVScatterPlot(HWND window);

    // The current subset as a new data file (1 when finished), or as a table of all variables.
    short DDNSaveData(HWND window);
    short DDNDatasheet(HWND window);

    // Brushing (brushing/): drilling by picking a bar of the current drill-down variable's
    // graph. The graph has bar i, from 1, for category i (empty ones too) and the missing
    // data last when counted, under the title of string 10021, by which it is found again.
    // 1 when drawn, 0 when memory ran out or the host has no application object.
    short DDNGraphForBrushing(HWND unused);
    // One pass of brushing on that graph: 1 with *picked the bar (from 0) and *direction 0 for
    // a drill down, or *direction 1 for a drill up; 0 when the user left or the graph was not
    // found; -1 when nothing can be done (an empty bar, no bar and no drill up). `Selected`
    // becomes the row of the picked bar's category in the category dialog.
    short DDNBrushing(int* picked, int* direction);
    // The brushing graph's document; false when none is open.
    bool GetActiveChartInfo(COutDocument** document);

    // Progress display, guarded so that it is never closed twice nor left open.
    void tdstar(int total, const char* text);
    void ddstop();

    // Refreshes the stand-alone result windows after a drill step: 1 when done, 0 (and
    // nothing done) with StandAloneResults off.
    int AutoUpdate(unsigned short unused);

    // The rescan rule with which every result operation opens: a pending change of the
    // selection, weights, categorisation or missing-data options costs one scan, at the
    // moment a result first needs it.
    void RescanIfNeeded();

    // Builds the record's categories by its method; a fixed step that cannot cut the
    // record's range is told to the user, who would otherwise see the variable without
    // intervals and no reason.
    void Recategorise(Drill& record);

    // The fields, in declared order.
    int32_t StandAloneResults;
    int16_t NeedsRescan;
    int16_t BoxMedianQuartiles;
    int16_t BoxMeanSeSd;
    int16_t BoxMeanSdSd196;
    int16_t BoxMeanSeSe196;
    int16_t NoRVCategorical;
    short* RVCategorical = nullptr;
    int16_t NoRVContinuous;
    short* RVContinuous = nullptr;
    int16_t NoCategorical;
    int16_t NoContinuous;
    short* Categorical = nullptr;
    short* Continuous = nullptr;
    int16_t WM;
    int16_t MD;
    int16_t RVMD;
    int16_t CountMD;
    int32_t ValidVar;
    int8_t ProgressOpen;
    int16_t CurrentDown;
    int16_t CurrentUp;
    int32_t Selected;
    short* Hist3DFirst = nullptr;
    short* Hist3DSecond = nullptr;
    short* AllReviews = nullptr;
    int16_t NoHist3DFirst;
    int16_t NoHist3DSecond;
    std::unique_ptr<DrillSet> DrillDowns;
    std::unique_ptr<DrillSet> DrillUps;
    std::unique_ptr<DrillSet> Reviews;
    std::unique_ptr<CDDNOutputTracker> Outputs;
    // How the scans split the cases over threads.
    ScanSplit Split = ScanSplit::ForThisMachine();

protected:
    // The host's close: the tracked windows go with the analysis, unless a macro drives it.
    void BeforeClose() override;

private:
    // The panel made by StartAnalysis. The analysis holds a reference of its own, so the
    // pointer stays valid after the window has gone, until the analysis lets it go.
    CDDNStartupDlg* Panel = nullptr;

    // Ends the panel's window if it is still open and lets go of the panel.
    void ReleasePanel();
    static short Toggled(short flag) { return flag == 0 ? 1 : 0; }
    // Gives the options, counts and current indices their start values; the arrays and the
    // sets are left alone.
    void ResetOptions();
    // The record of DrillDowns named by CurrentDown, or null.
    const Drill* CurrentRecord() const;
    const Drill* FindRecord(const DrillSet& records, int variable) const;
    int NameValueCategories(DrillSet& records, short variable);
    int AddValueTo(DrillSet& records, short variable, double value, short type, double weight);
    std::vector<std::string> DrillUpTexts() const;
    int SelectedCount() const;
    std::string DescribeSteps(bool expandedNames);
    bool HasLongLabel(int variable, double value);
    short AnyLongLabel(DrillSet& records, short variable, short type);
    short DescriptiveTable(const std::vector<const Drill*>& rows, bool trimNames);
    short FrequencyTables(DrillSet& records, bool reviews);
    short Histograms(DrillSet& records, bool reviews);
    // The count bars of one record (bar i, from 1, for category i; the missing data behind
    // them when `missingBar`) with their axes, titles but the main one, drawn into `work`;
    // null when memory ran out.
    std::unique_ptr<CGeneralChart> CountBars(const Drill& record, bool missingBar,
                                             HostArray<double>& work);
    int Piecharts(DrillSet& records, bool reviews);
    int Stackedplots(DrillSet& records, bool reviews);
    std::string DisplayName(short variable, char* buffer);
    struct VariableSide;
    struct SaveStorage;
    // How many parts a scan of the open file is split into.
    int ScanPartCount() const { return Split.PartsFor(ModuleBlocks().Vmk.NCases); }
    // The selection scans with their cases split into `parts`.
    int ReadAfterDrillInParts(int parts);
    int ReadBeforeDrillInParts(int parts);
    // The first-look scan of one side, its cases split into `parts`.
    LoopEnd ReadVariables(const VariableSide& side, int parts);
    // Stores the counts and moments of a scan's slot into its record.
    void StoreScanResult(Drill& record, const ScanMoments& moments, int slot);
    SubsetTest CompileSubsetTest();
    // The tests of a case for missing data among the chosen drill-down or review variables,
    // with their missing codes looked up once.
    CasewiseTest DrillCasewiseTest();
    CasewiseTest ReviewCasewiseTest();
    // The records a selection scan fills: DrillDowns in set order, then Reviews.
    std::vector<Drill*> ScanSlots();
    // Walks the cases of the file, handing them to `visit` in blocks (CaseLoop.h).
    template <typename VisitBlock> LoopEnd RunCaseLoop(VisitBlock&& visit);
    // The same with the cases split into `parts`, each read into visit(part, block).
    template <typename VisitPart> LoopEnd RunPartedLoop(int parts, VisitPart&& visit);
    // How a part is read: on the calling thread it keeps the host's blocks; on another it
    // gives up, between stretches, once `stop` is set.
    struct PartReader {
        bool keepsBlocks;
        const std::atomic<bool>* stop;
    };
    // Reads the cases of one part a block at a time into `visit`, the break asked for with
    // `poll` (ReadCase.h); `buffer` holds a block when the host does not hand over its rows.
    template <typename Poll, typename VisitBlock>
    LoopEnd ReadPart(CaseRange range, double* buffer, PartReader reader, Poll&& poll,
                     VisitBlock&& visit);
    // Walks the cases the subset keeps, each with its weight (SubsetTest.h).
    template <typename Visit> LoopEnd RunSubsetLoop(const SubsetTest& subset, Visit&& visit);
    // Allocates the seven per-variable arrays; false when memory ran out.
    bool AllocateVariableArrays(int nv);
};

// The case filter of the host's own graphs (HostOutput.h): 0 when the case, one double per
// variable with variable v at index v - 1, lies in the current subset of the current
// analysis, 1 when a drill step leaves it out. When x and y are both not null they take the
// values at CaseFilterXIndex and CaseFilterYIndex.
int CaseInDrill(char* unused1, long* unused2, double* values, double* x, double* y);
// The same with the two outputs as floats, for Histogram3D.
int CaseInDrillFloat(char* unused1, long* unused2, double* values, float* x, float* y);
// The 0-based numbers of the two variables of the 3D histogram being drawn.
extern int16_t CaseFilterXIndex;
extern int16_t CaseFilterYIndex;
