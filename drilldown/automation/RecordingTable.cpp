// What the host's macro recorder needs of the panel: the table of its recordable controls,
// and the values of the five controls that the host cannot read by itself (a list's current
// variable, the chosen category, the category listing and the user's limits), which the
// panel gives through the gets of its automation members.

#include "../dialogs/StartupPanel.h"
#include "../resources/ControlIds.h"

namespace {

// Roles, kinds of access and of value, as CDialogControlDescr tells them.
enum Role { Value = 0, VariableList = 1, TableResult = 4, GraphResult = 6, SavedData = 20 };
enum Access { Action = 1, Holds = 2 };
enum Kind { Whole = 1, Real = 2, Text = 5, Method = 6 };

constexpr CDialogControlDescr Entry(int id, int role, int access, int kind, int member,
                                    bool recorded = true) {
    return {id, role, access, kind, member, recorded, 0, 0};
}

} // namespace

const CDialogControlDescr DDNControlDescriptions[] = {
    Entry(ButtonDrillVariables, VariableList, Holds, Whole, 41104),
    Entry(ListDrillDowns, Value, Holds, Text, 41105),
    Entry(ListDrillUps, Value, Holds, Text, 41106),
    Entry(CheckWeightedMoments, Value, Holds, Whole, 41107),
    Entry(ButtonSummary, TableResult, Action, Whole, 41108),
    Entry(ButtonDescriptives, TableResult, Action, Whole, 41109),
    Entry(ButtonFrequencies, TableResult, Action, Whole, 41110),
    Entry(ButtonPiecharts, GraphResult, Action, Whole, 41141),
    Entry(ButtonStackedPlots, GraphResult, Action, Whole, 41142),
    Entry(ButtonHistograms, GraphResult, Action, Whole, 41111),
    Entry(ButtonSaveData, SavedData, Action, Whole, 41112),
    Entry(RadioDistinctValues, Value, Holds, Whole, 41113),
    Entry(RadioExactIntervals, Value, Holds, Whole, 41114),
    Entry(EditExactCount, Value, Holds, Whole, 41115),
    Entry(RadioNeatIntervals, Value, Holds, Whole, 41116),
    Entry(EditNeatCount, Value, Holds, Whole, 41117),
    Entry(RadioFixedStep, Value, Holds, Whole, 41118),
    Entry(EditStep, Value, Holds, Real, 41119),
    Entry(EditStart, Value, Holds, Real, 41120),
    Entry(CheckAtMinimum, Value, Holds, Whole, 41121),
    Entry(RadioIntegerValues, Value, Holds, Whole, 41122),
    Entry(RadioUserLimits, Value, Holds, Whole, 41123),
    Entry(ButtonReviewVariables, VariableList, Holds, Whole, 41124),
    Entry(ButtonReviewDescriptives, TableResult, Action, Whole, 41125),
    Entry(ButtonReviewFrequencies, TableResult, Action, Whole, 41126),
    Entry(ButtonBoxPlots, GraphResult, Action, Whole, 41127),
    Entry(ButtonReviewHistograms, GraphResult, Action, Whole, 41128),
    Entry(ButtonScatterPlot, GraphResult, Action, Whole, 41129),
    Entry(ButtonReviewPiecharts, GraphResult, Action, Whole, 41138),
    Entry(ButtonReviewStackedPlots, GraphResult, Action, Whole, 41139),
    Entry(ButtonReview3DHistograms, GraphResult, Action, Whole, 41140),
    Entry(GroupDrillDownStatistics, Value, Holds, Text, 41135),
    Entry(GroupDrillVariables, Value, Holds, Text, 41134),
    Entry(GroupDrillOperations, Value, Holds, Text, 41133),
    Entry(CheckStandAlone, Value, Holds, Whole, 41130),
    Entry(CheckReviewCasewise, Value, Holds, Whole, 41131),
    Entry(CheckCasewise, Value, Holds, Whole, 41132),
    Entry(CheckCountMissing, Value, Holds, Whole, 41143),
    Entry(CheckBoxMedianQuartiles, Value, Holds, Whole, 22939),
    Entry(CheckBoxMeanSeSd, Value, Holds, Whole, 22940),
    Entry(CheckBoxMeanSdSd196, Value, Holds, Whole, 22941),
    Entry(CheckBoxMeanSeSe196, Value, Holds, Whole, 22942),
    Entry(ButtonDrillDown, Value, Action, Method, 41136, false),
    Entry(ButtonDrillUp, Value, Action, Method, 41137, false),
    CDialogControlDescr{},
};

COleAConstant* CDDNStartupDlg::RecordControlValue(int id) {
    HRESULT (CDDNStartupDlg::*get)(BSTR*) = nullptr;
    switch (id) {
    case GroupDrillOperations: get = &CDDNStartupDlg::get_DrillDownCategory; break;
    case GroupDrillVariables: get = &CDDNStartupDlg::get_CategorySelections; break;
    case GroupDrillDownStatistics: get = &CDDNStartupDlg::get_UserDefinedBoundaries; break;
    case ListDrillDowns: get = &CDDNStartupDlg::get_DrillDownVariable; break;
    case ListDrillUps: get = &CDDNStartupDlg::get_DrillUpVariable; break;
    default: return CAnalysisDialog::RecordControlValue(id);
    }
    BSTR text = nullptr;
    COleAConstant* value = nullptr;
    if (SUCCEEDED((this->*get)(&text)))
        value = new COleAConstant(std::string(BstrView(text)));
    SysFreeString(text);
    return value;
}
