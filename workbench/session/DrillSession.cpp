#include "DrillSession.h"

#include <iterator>

#include "drilldown/resources/ControlIds.h"
#include "drilldown/resources/StringIds.h"
#include "drilldown/resources/StringTable.h"

namespace wb {

namespace {

int selectionOf(HostDialogs& dialogs, HWND panel, int list) {
    return static_cast<int>(dialogs.SendMessageA(dialogs.GetDlgItem(panel, list), LB_GETCURSEL, 0, 0));
}
} // namespace

void DrillSession::selectDrillDown(short variable) {
    const DrillSet& downs = *m_analysis.GetDrillDowns();
    const auto it = m_analysis.LookFor(variable, m_analysis.GetDrillDowns());
    if (it == downs.end())
        throw DrillError("variable " + std::to_string(variable) +
                         " cannot be drilled: it is not among the drill-down variables");
    HostDialogs& dialogs = m_analysis.Dialogs();
    dialogs.SendMessageA(dialogs.GetDlgItem(m_panel, ListDrillDowns), LB_SETCURSEL,
                         static_cast<unsigned long>(std::distance(downs.begin(), it)), 0);
    syncCurrentVariables();
}

std::vector<std::string> DrillSession::currentCategoryRows() const {
    const CDrillDown::CategoryRowList list = m_analysis.CategoryRows();
    std::vector<std::string> rows = list.Names;
    if (list.MissingRow)
        rows.push_back(ModuleString(StrMissingRow));
    return rows;
}

std::vector<std::string> DrillSession::categoryRows(short variable) {
    selectDrillDown(variable);
    m_analysis.CountCategoriesIfOwed();
    return currentCategoryRows();
}

void DrillSession::drillDown(short variable, int row) {
    selectDrillDown(variable);
    m_analysis.CountCategoriesIfOwed();
    const std::vector<std::string> rows = currentCategoryRows();
    if (row < 0 || row >= static_cast<int>(rows.size()))
        throw DrillError("variable " + m_analysis.GetCurrentVariableName() + " has no category row " +
                         std::to_string(row) + " (it offers " + std::to_string(rows.size()) + ")");
    m_analysis.SetSelected(row);
    m_analysis.MoveToDrillUps();
    m_analysis.RefreshListBoxes(m_panel);
    m_analysis.ReadAfterDrill(0);
    syncCurrentVariables();
    m_analysis.SetAllIsset(0);
}

void DrillSession::drillUp(int position) {
    if (position < 0 || position >= m_analysis.GetDrillUpsSize())
        throw DrillError("there is no drill step at row " + std::to_string(position));
    m_analysis.SetCurrentUpItem(static_cast<short>(position));
    m_analysis.MoveBackToDrillDowns();
    m_analysis.RefreshListBoxes(m_panel);
    m_analysis.ReadAfterDrill(0);
    syncCurrentVariables();
}

void DrillSession::syncCurrentVariables() {
    HostDialogs& dialogs = m_analysis.Dialogs();
    const int down = selectionOf(dialogs, m_panel, ListDrillDowns);
    const DrillSet& downs = *m_analysis.GetDrillDowns();
    m_analysis.SetCurrentDown(down >= 0 && down < static_cast<int>(downs.size())
                                  ? std::next(downs.begin(), down)->Variable
                                  : -1);
    m_analysis.SetSelected(-1);
    m_analysis.SetCurrentUpItem(static_cast<short>(selectionOf(dialogs, m_panel, ListDrillUps)));
}

} // namespace wb
