#include "workbench/session/AnalysisSession.h"

#include <iterator>

#include "drilldown/dialogs/StartupPanel.h"
#include "drilldown/resources/StringIds.h"
#include "drilldown/resources/StringTable.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/stats/ParentShares.h"

namespace wb {

AnalysisSession::AnalysisSession(FrontEnd frontEnd, SessionOptions options)
    : m_frontEnd(frontEnd), m_options(std::move(options)), m_keywords(m_options.keywordFile),
      m_dialogs(m_frontEnd.dialogs, m_keywords, &m_file), m_newFile(m_data, m_options.outputFolder),
      m_loader(services()) {
    m_dialogs.setAutomation(&m_automation);
    m_dialogs.setOutput(&m_output);
    m_dialogs.setNewFile(&m_newFile);
    m_output.setAutomation(&m_automation);
    if (m_frontEnd.documents != nullptr)
        m_documents.addObserver(*m_frontEnd.documents);
    m_output.setDataFile(&m_file);
    m_data.setDataFile(&m_file);
}

HostServices AnalysisSession::services() {
    HostServices all{&m_memory, &m_frontEnd.messages, &m_frontEnd.progress, &m_data, &m_text,
                     &m_dialogs};
    all.Output = &m_output;
    all.NewFile = &m_newFile;
    all.Automation = &m_automation;
    all.Brushing = &m_brushing;
    return all;
}

void AnalysisSession::open(DataFile file) {
    closeAnalysis();
    m_file = std::move(file);
    m_data.setDataFile(&m_file);
}

CDrillDown& AnalysisSession::startAnalysis() {
    closeAnalysis();
    if (!m_loader.isLoaded()) {
        if (const auto* path = std::get_if<std::string>(&m_options.module))
            m_loader.load(*path);
        else
            m_loader.attach(std::get<ModuleEntryPoints>(m_options.module), "linked in");
    }
    m_analysis = &dynamic_cast<CDrillDown&>(m_loader.openAnalysis(&m_analysisDocument));
    m_output.setRouter([analysis = m_analysis](IDispatch* document) {
        return analysis->BeforeRouteOutput(document);
    });
    // The graphs drawn from the cases count the weights as the analysis's tables do.
    m_output.setWeightRule([analysis = m_analysis] {
        return analysis->GetWM() == 0 ? CaseWeights::Whole : CaseWeights::AsGiven;
    });
    if (m_options.parentShares)
        m_output.setAugmenter([this](Document& document, int command, int output) {
            addParentShares(document, command, output, *m_analysis, m_file);
        });
    // The file block exists once step 100 has bound the module's blocks.
    m_output.setFileBlock(m_data.fileBlock());
    return *m_analysis;
}

void AnalysisSession::closeAnalysis() {
    if (m_analysis == nullptr)
        return;
    m_output.setRouter({});
    m_output.setWeightRule({});
    m_output.setAugmenter({});
    m_loader.closeAnalysis(*m_analysis);
    m_analysis = nullptr;
}

CDrillDown& AnalysisSession::analysis() const {
    if (m_analysis == nullptr)
        throw std::logic_error("the session has no analysis");
    return *m_analysis;
}

IDispatch* AnalysisSession::panelObject() const {
    return m_analysis != nullptr ? m_analysis->GetDialogAutomationInterface() : nullptr;
}

HWND AnalysisSession::panel() const {
    const auto* startup = static_cast<CDDNStartupDlg*>(panelObject());
    return startup != nullptr ? startup->GetSafeHwnd() : nullptr;
}

void AnalysisSession::setPanelMember(const std::string& member, const VARIANT& value) {
    try {
        Dispatcher(m_automation).put(panelObject(), member, value);
    } catch (const AutomationError& error) {
        throw DrillError(member + ": " + error.reason());
    }
}

void AnalysisSession::pressPanelButton(const std::string& member) {
    try {
        Dispatcher(m_automation).call(panelObject(), member);
    } catch (const AutomationError& error) {
        throw DrillError(member + ": " + error.reason());
    }
}

void AnalysisSession::chooseVariables(const std::string& drillDown, const std::string& review) {
    setPanelMember("Variables", COleVariant::Text(m_automation, drillDown));
    if (!review.empty())
        setPanelMember("ReviewVariables", COleVariant::Text(m_automation, review));
}

void AnalysisSession::makeCurrentDrillDown(short variable) {
    DrillSet* downs = analysis().GetDrillDowns();
    if (m_analysis->LookFor(variable, downs) == downs->end())
        throw DrillError("variable " +
                         (variable >= 1 && variable <= m_file.variableCount()
                              ? m_file.variable(variable).name
                              : std::to_string(variable)) +
                         " cannot be drilled: it is not among the drill-down variables");
    setPanelMember("DrillDownVariable", COleVariant(static_cast<LONG>(variable)));
}

std::vector<std::string> AnalysisSession::categoryRows(short variable) {
    makeCurrentDrillDown(variable);
    CDrillDown& drill = analysis();
    drill.CountCategoriesIfOwed();
    const CDrillDown::CategoryRowList list = drill.CategoryRows();
    std::vector<std::string> rows = list.Names;
    if (list.MissingRow)
        rows.push_back(ModuleString(StrMissingRow));
    return rows;
}

void AnalysisSession::drillDown(short variable, int row) {
    makeCurrentDrillDown(variable);
    setPanelMember("DrillDownCategory", COleVariant(static_cast<LONG>(row)));
    pressPanelButton("DrillDown");
}

void AnalysisSession::drillUp(int position) {
    const DrillSet& ups = *analysis().GetDrillUps();
    if (position < 0 || position >= static_cast<int>(ups.size()))
        throw DrillError("there is no drill step at row " + std::to_string(position));
    const short variable = std::next(ups.begin(), position)->Variable;
    setPanelMember("DrillUpVariable", COleVariant(static_cast<LONG>(variable)));
    pressPanelButton("DrillUp");
}

std::string AnalysisSession::takeFailure() {
    std::string failure = m_output.lastError();
    if (failure.empty())
        failure = m_newFile.lastError();
    m_output.clearError();
    m_newFile.clearError();
    return failure;
}

} // namespace wb
