#include "workbench/session/MacroRecorder.h"

#include "drilldown/host/framework/AnalysisDialog.h"
#include "drilldown/resources/ControlIds.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/automation/Macro.h"
#include "workbench/session/AnalysisSession.h"

namespace wb {

namespace {

// The workbench's names of the members that the panel's table numbers.
const std::map<int, const char*> MemberNames = {
    {41104, "Variables"},
    {41105, "DrillDownVariable"},
    {41106, "DrillUpVariable"},
    {41107, "WeightedMoments"},
    {41108, "Summary"},
    {41109, "Descriptives"},
    {41110, "Frequencies"},
    {41111, "Histograms"},
    {41112, "Save"},
    {41113, "AllDistinctValues"},
    {41114, "NoOfExactIntervals"},
    {41115, "ValueNoOfExactIntervals"},
    {41116, "NeatIntervalsAppNo"},
    {41117, "ValueNeatIntervalsAppNo"},
    {41118, "StepSize"},
    {41119, "ValueStepSize"},
    {41120, "ValueStartingFrom"},
    {41121, "StartingAtMinimum"},
    {41122, "IntegerCategories"},
    {41123, "UserSpecifiedCategories"},
    {41124, "ReviewVariables"},
    {41125, "ReviewDescriptives"},
    {41126, "ReviewFrequencies"},
    {41127, "ReviewBoxWhisker"},
    {41128, "ReviewHistograms"},
    {41129, "ReviewScatterplot"},
    {41130, "StandAloneResults"},
    {41131, "RVCasewiseDeletionOfMD"},
    {41132, "CasewiseDeletionOfMD"},
    {41133, "DrillDownCategory"},
    {41134, "CategorySelections"},
    {41135, "UserDefinedBoundaries"},
    {41136, "DrillDown"},
    {41137, "DrillUp"},
    {41138, "ReviewPieCharts"},
    {41139, "ReviewStackedPlots"},
    {41140, "Review3DHistograms"},
    {41141, "PieCharts"},
    {41142, "StackedPlots"},
    {41143, "CountMD"},
    {22939, "PlotMedianQuartileRange"},
    {22940, "PlotMeanSEAndSD"},
    {22941, "PlotMeanSD196TimesSD"},
    {22942, "PlotMeanSE196TimesSE"},
};

constexpr int ActionAccess = 1;

// A text as a macro writes it: in double quotes, a quote doubled.
std::string quoted(const std::string& text) {
    std::string written = "\"";
    for (const char c : text)
        written += c == '"' ? std::string("\"\"") : std::string(1, c);
    return written + "\"";
}

const char* memberOf(const CDialogControlDescr& entry) {
    const auto found = MemberNames.find(entry.memberId);
    return found != MemberNames.end() ? found->second : nullptr;
}

} // namespace

MacroRecorder::~MacroRecorder() { stop(); }

void MacroRecorder::start() {
    m_lines.clear();
    m_early.clear();
    m_drillVariable.clear();
    m_recording = true;
    m_session.dialogs().setRecorder(this);
}

void MacroRecorder::stop() {
    if (!m_recording)
        return;
    m_recording = false;
    m_session.dialogs().setRecorder(nullptr);
}

std::string MacroRecorder::text(const std::string& recordedOn) const {
    std::string all = "' Recorded on " + recordedOn + "\n";
    for (const std::string& line : m_lines)
        all += line + "\n";
    return all;
}

const CDialogControlDescr* MacroRecorder::entryOf(HWND dialog, int id) const {
    const CAnalysisDialog* owner = m_session.dialogs().ownerOf(dialog);
    const CDialogControlDescr* entry = owner != nullptr ? owner->ControlDescriptions() : nullptr;
    for (; entry != nullptr && entry->controlId != 0; ++entry)
        if (entry->controlId == id)
            return memberOf(*entry) != nullptr ? entry : nullptr;
    return nullptr;
}

std::string MacroRecorder::givenValue(HWND dialog, int id) {
    CAnalysisDialog* owner = m_session.dialogs().ownerOf(dialog);
    std::unique_ptr<COleAConstant> given(owner != nullptr ? owner->RecordControlValue(id) : nullptr);
    return given != nullptr && !given->Text().empty() ? quoted(given->Text()) : std::string();
}

std::string MacroRecorder::valueLine(HWND dialog, const CDialogControlDescr& entry) {
    std::string value = givenValue(dialog, entry.controlId);
    if (value.empty()) {
        try {
            const COleVariant read =
                Dispatcher(m_session.automation()).get(m_session.panelObject(), memberOf(entry));
            value = read.vt == VT_BSTR ? quoted(macroValueText(read)) : macroValueText(read);
        } catch (const AutomationError&) {
            return {}; // nothing to give now, as a category before one is chosen
        }
    }
    return value.empty() ? std::string() : std::string(memberOf(entry)) + " = " + value;
}

void MacroRecorder::acted(HWND dialog, int id) {
    const CDialogControlDescr* entry = entryOf(dialog, id);
    if (entry == nullptr || !entry->recorded)
        return;
    if (entry->accessKind == ActionAccess) {
        // A result that asked for lists of variables (3D histograms) gets them first.
        COleVariant lists;
        if (SUCCEEDED(m_session.dialogs().GetControlValue(dialog, id, VT_BSTR, &lists)) &&
            lists.vt == VT_BSTR && !BstrView(lists.bstrVal).empty())
            m_lines.push_back("ResultsVariables = " + quoted(macroValueText(lists)));
        m_lines.emplace_back(memberOf(*entry));
        return;
    }
    // The categorisation page's values belong to the current drill-down variable.
    if (id >= RadioDistinctValues && id <= CheckAtMinimum)
        nameDrillVariable(dialog);
    if (std::string line = valueLine(dialog, *entry); !line.empty())
        record(std::move(line));
}

void MacroRecorder::nameDrillVariable(HWND dialog) {
    const std::string variable = givenValue(dialog, ListDrillDowns);
    if (!variable.empty() && variable != m_drillVariable)
        record("DrillDownVariable = " + variable);
}

void MacroRecorder::record(std::string line) {
    constexpr std::string_view Named = "DrillDownVariable = ";
    if (line.starts_with(Named))
        m_drillVariable = line.substr(Named.size());
    m_lines.push_back(std::move(line));
}

void MacroRecorder::earlyState(HWND dialog, int id) {
    // The category is kept for the step's end; the other values stand where they are taken.
    if (id == GroupDrillOperations) {
        m_early[id] = givenValue(dialog, id);
        return;
    }
    if (const CDialogControlDescr* entry = entryOf(dialog, id))
        if (std::string line = valueLine(dialog, *entry); !line.empty())
            record(std::move(line));
}

void MacroRecorder::finished(HWND dialog, int id) {
    const bool down = id == ButtonDrillDown;
    const int list = down ? ListDrillDowns : ListDrillUps;
    if (const std::string variable = givenValue(dialog, list); !variable.empty())
        record(std::string(down ? "DrillDownVariable = " : "DrillUpVariable = ") + variable);
    if (down) {
        const auto early = m_early.find(GroupDrillOperations);
        const std::string category = early != m_early.end() && !early->second.empty()
                                         ? early->second
                                         : givenValue(dialog, GroupDrillOperations);
        if (!category.empty())
            m_lines.push_back("DrillDownCategory = " + category);
    }
    m_early.clear();
    m_lines.emplace_back(down ? "DrillDown" : "DrillUp");
    // After a step the current variable is whichever the panel shows: name it again.
    m_drillVariable.clear();
}

} // namespace wb
