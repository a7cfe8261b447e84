#include "TypeLibrary.h"

#include <algorithm>

namespace {

constexpr MemberAccess Get = MemberAccess::Get;
constexpr MemberAccess Put = MemberAccess::Put;
constexpr MemberAccess Method = MemberAccess::Method;
constexpr MemberType None = MemberType::None;
constexpr MemberType Int = MemberType::Int;
constexpr MemberType Double = MemberType::Double;
constexpr MemberType Text = MemberType::Text;
constexpr MemberType Variant = MemberType::Variant;
constexpr MemberType Object = MemberType::Object;

// OK gives its success flag as result, Cancel nothing; the Results members only take.
constexpr MemberDescription AnalysisDialogMembers[] = {
    {"Name", 0x0, Get, Text, ""},
    {"Application", 0x1, Get, Object, "Returns application object"},
    {"Parent", 0x2, Get, Object, "Returns the parent of the object"},
    {"OK", 0x3, Method, Int, ""},
    {"Cancel", 0x4, Method, None, ""},
    {"ResultsSelection", 0x5, Put, Variant, ""},
    {"ResultsSelectionOption", 0x6, Put, Variant, ""},
    {"ResultsVariables", 0x7, Put, Variant, ""},
    {"ResultsOption", 0x8, Put, Int, ""},
    {"ResultsCodes", 0x9, Put, Variant, ""},
    {"ResultsSaveFileName", 0xa, Put, Text, ""},
    {"ResultsValues", 0xb, Put, Variant, ""},
    {"ResultsOutputFields", 0xc, Put, Variant, ""},
};

// In vtable order. A text property is read as text and written from any value, which the
// panel turns into a text list.
constexpr MemberDescription StartupMembers[] = {
    {"Variables", 0x60030000, Get, Text, "Variables for drill-down"},
    {"Variables", 0x60030000, Put, Variant, "Variables for drill-down"},
    {"DrillDownVariable", 0x60030002, Get, Text, "Next variable for drill-down"},
    {"DrillDownVariable", 0x60030002, Put, Variant, "Next variable for drill-down"},
    {"DrillUpVariable", 0x60030004, Get, Text,
     "Next Variable for drill-up (reversing drill-down operation)"},
    {"DrillUpVariable", 0x60030004, Put, Variant,
     "Next Variable for drill-up (reversing drill-down operation)"},
    {"WeightedMoments", 0x60030006, Get, Int, "Weighted moments (fractional weights)"},
    {"WeightedMoments", 0x60030006, Put, Int, "Weighted moments (fractional weights)"},
    {"Summary", 0x60030008, Get, Object, "Summary of drill-down operations"},
    {"Descriptives", 0x60030009, Get, Object, "Descriptive statistics for drill-down variables"},
    {"Frequencies", 0x6003000a, Get, Object, "Frequency tables for drill-down variables"},
    {"Histograms", 0x6003000b, Get, Object, "Histograms for current drill-down variable"},
    {"PieCharts", 0x6003000c, Get, Object, "Pie charts; for drill-down variables"},
    {"StackedPlots", 0x6003000d, Get, Object, "Stacked bar plots; for drill-down variables"},
    {"Save", 0x6003000e, Get, Object,
     "Save all selected variables, for the most current subset (after drill-down)"},
    {"AllDistinctValues", 0x6003000f, Get, Int, "Use All-distinct-values method of categorization"},
    {"AllDistinctValues", 0x6003000f, Put, Int, "Use All-distinct-values method of categorization"},
    {"NoOfExactIntervals", 0x60030011, Get, Int, "Use Exact-intervals method of categorization"},
    {"NoOfExactIntervals", 0x60030011, Put, Int, "Use Exact-intervals method of categorization"},
    {"ValueNoOfExactIntervals", 0x60030013, Get, Int,
     "Number of intervals, for exact-intervals method of categorization"},
    {"ValueNoOfExactIntervals", 0x60030013, Put, Int,
     "Number of intervals, for exact-intervals method of categorization"},
    {"NeatIntervalsAppNo", 0x60030015, Get, Int, "Use Neat-intervals method of categorization"},
    {"NeatIntervalsAppNo", 0x60030015, Put, Int, "Use Neat-intervals method of categorization"},
    {"ValueNeatIntervalsAppNo", 0x60030017, Get, Int,
     "Number of neat intervals, for neat-intervals method of categorization"},
    {"ValueNeatIntervalsAppNo", 0x60030017, Put, Int,
     "Number of neat intervals, for neat-intervals method of categorization"},
    {"StepSize", 0x60030019, Get, Int, "Use Fixed-stepsize method of categorization"},
    {"StepSize", 0x60030019, Put, Int, "Use Fixed-stepsize method of categorization"},
    {"ValueStepSize", 0x6003001b, Get, Double,
     "Step size value, for fixed-stepsize method of categorization"},
    {"ValueStepSize", 0x6003001b, Put, Double,
     "Step size value, for fixed-stepsize method of categorization"},
    {"ValueStartingFrom", 0x6003001d, Get, Double,
     "Lower boundary (start value) for fixed-stepsize method of categorization"},
    {"ValueStartingFrom", 0x6003001d, Put, Double,
     "Lower boundary (start value) for fixed-stepsize method of categorization"},
    {"StartingAtMinimum", 0x6003001f, Get, Int,
     "Start categorization ('stepping') at minimum observed value"},
    {"StartingAtMinimum", 0x6003001f, Put, Int,
     "Start categorization ('stepping') at minimum observed value"},
    {"IntegerCategories", 0x60030021, Get, Int, "Integer intervals; categorization method"},
    {"IntegerCategories", 0x60030021, Put, Int, "Integer intervals; categorization method"},
    {"UserSpecifiedCategories", 0x60030023, Get, Int,
     "User specified categories; categorization method"},
    {"UserSpecifiedCategories", 0x60030023, Put, Int,
     "User specified categories; categorization method"},
    {"ReviewVariables", 0x60030025, Get, Text,
     "Variables for review (for auxiliary summaries and graphs)"},
    {"ReviewVariables", 0x60030025, Put, Variant,
     "Variables for review (for auxiliary summaries and graphs)"},
    {"ReviewDescriptives", 0x60030027, Get, Object,
     "Descriptive statistics for variables-for-review"},
    {"ReviewFrequencies", 0x60030028, Get, Object, "Frequency tables; for variables-for-review"},
    {"ReviewBoxWhisker", 0x60030029, Get, Object, "Box-whiskers plot; for variables-for-review"},
    {"ReviewHistograms", 0x6003002a, Get, Object, "Histograms; for variables-for-review"},
    {"ReviewScatterplot", 0x6003002b, Get, Object, "Scatterplot matrix, for variables-for-review"},
    {"ReviewPieCharts", 0x6003002c, Get, Object, "Pie charts; for variables-for-review"},
    {"ReviewStackedPlots", 0x6003002d, Get, Object, "Stacked bar plots; for variables-for-review"},
    {"Review3DHistograms", 0x6003002e, Get, Object, "3D histograms; for variables-for-review"},
    {"StandAloneResults", 0x6003002f, Get, Int,
     "Make results in stand-alone windows (for auto-updating)"},
    {"StandAloneResults", 0x6003002f, Put, Int,
     "Make results in stand-alone windows (for auto-updating)"},
    {"RVCasewiseDeletionOfMD", 0x60030031, Get, Int,
     "Casewise (listwise) deletion of missing data for review variables"},
    {"RVCasewiseDeletionOfMD", 0x60030031, Put, Int,
     "Casewise (listwise) deletion of missing data for review variables"},
    {"CasewiseDeletionOfMD", 0x60030033, Get, Int,
     "Casewise (listwise) deletion of missing data for analysis variables"},
    {"CasewiseDeletionOfMD", 0x60030033, Put, Int,
     "Casewise (listwise) deletion of missing data for analysis variables"},
    {"CountMD", 0x60030035, Get, Int, "Count drill-down variable missing data"},
    {"CountMD", 0x60030035, Put, Int, "Count drill-down variable missing data"},
    {"PlotMedianQuartileRange", 0x60030037, Get, Int,
     "Plot median, quartile, and range; in Box-Whiskers plots"},
    {"PlotMedianQuartileRange", 0x60030037, Put, Int,
     "Plot median, quartile, and range; in Box-Whiskers plots"},
    {"PlotMeanSEAndSD", 0x60030039, Get, Int,
     "Plot mean, standard error, standard deviation; in Box-Whiskers plots"},
    {"PlotMeanSEAndSD", 0x60030039, Put, Int,
     "Plot mean, standard error, standard deviation; in Box-Whiskers plots"},
    {"PlotMeanSD196TimesSD", 0x6003003b, Get, Int,
     "Plot mean, standard deviation, 1.96*standard deviation; in Box-Whiskers plots"},
    {"PlotMeanSD196TimesSD", 0x6003003b, Put, Int,
     "Plot mean, standard deviation, 1.96*standard deviation; in Box-Whiskers plots"},
    {"PlotMeanSE196TimesSE", 0x6003003d, Get, Int,
     "Plot mean, standard error, 1.96*standard error; in Box-Whiskers plots"},
    {"PlotMeanSE196TimesSE", 0x6003003d, Put, Int,
     "Plot mean, standard error, 1.96*standard error; in Box-Whiskers plots"},
    {"DrillDown", 0x6003003f, Method, None, "Drill down on selected variable and category"},
    {"DrillUp", 0x60030040, Method, None,
     "Drill up (undo previous drill-down operation) on current variable(category)"},
    {"CategorySelections", 0x60030041, Get, Text,
     "Category selections of current drill-down variable"},
    {"CategorySelections", 0x60030041, Put, Variant,
     "Category selections of current drill-down variable"},
    {"DrillDownCategory", 0x60030043, Get, Text, "Category for drilldown"},
    {"DrillDownCategory", 0x60030043, Put, Variant, "Category for drilldown"},
    {"UserDefinedBoundaries", 0x60030045, Get, Text, "User-defined boundaries"},
    {"UserDefinedBoundaries", 0x60030045, Put, Variant, "User-defined boundaries"},
};

constexpr InterfaceDescription Interfaces[] = {
    {"QrxAnalysisDialog", IID_QrxAnalysisDialog, "QUORIX Dialog", IID_IDispatch,
     AnalysisDialogMembers},
    {"DDNStartup", IID_DDNStartup, "Drill-Down analysis startup dialog", IID_QrxAnalysisDialog,
     StartupMembers},
};

constexpr TypeLibDescription Library = {
    .Name = "QRXDrillDown",
    .LibId = LIBID_QRXDrillDown,
    .MajorVersion = 1,
    .MinorVersion = 0,
    .Locale = 0x409,
    .HelpString = "QUORIX 6 Drill-Down Explorer Library",
    .HelpFile = "qxv6om.chm",
    .Interfaces = Interfaces,
};

struct MemberControl {
    DISPID Id;
    int Control;
};

// The panel's control behind each DDNStartup member, in the order of the members.
constexpr MemberControl Controls[] = {
    {0x60030000, 9050}, {0x60030002, 9053}, {0x60030004, 9054}, {0x60030006, 204},
    {0x60030008, 9058}, {0x60030009, 9059}, {0x6003000a, 9060}, {0x6003000b, 9061},
    {0x6003000c, 9119}, {0x6003000d, 9121}, {0x6003000e, 9086}, {0x6003000f, 9064},
    {0x60030011, 9065}, {0x60030013, 9070}, {0x60030015, 9066}, {0x60030017, 9071},
    {0x60030019, 9067}, {0x6003001b, 9072}, {0x6003001d, 9073}, {0x6003001f, 9075},
    {0x60030021, 9068}, {0x60030023, 9069}, {0x60030025, 9080}, {0x60030027, 9081},
    {0x60030028, 9082}, {0x60030029, 9084}, {0x6003002a, 9083}, {0x6003002b, 9100},
    {0x6003002c, 9122}, {0x6003002d, 9124}, {0x6003002e, 9123}, {0x6003002f, 9106},
    {0x60030031, 9107}, {0x60030033, 9128}, {0x60030035, 9127}, {0x60030037, 9114},
    {0x60030039, 9115}, {0x6003003b, 9116}, {0x6003003d, 9117}, {0x6003003f, 9056},
    {0x60030040, 9057}, {0x60030041, 9126}, {0x60030043, 9108}, {0x60030045, 9112},
};

} // namespace

const TypeLibDescription& DrillDownTypeLib() {
    return Library;
}

HRESULT RegisterDrillDownTypeLib(HostAutomation& registry) {
    return registry.RegisterTypeLib(Library);
}

int PanelControlOf(DISPID id) {
    const auto found = std::find_if(std::begin(Controls), std::end(Controls),
                                    [id](const MemberControl& row) { return row.Id == id; });
    return found != std::end(Controls) ? found->Control : 0;
}
