#pragma once
// Drill steps under program control, in the order in which the panel's drill-down and
// drill-up buttons take them, for the state dump and for tests of whole drill sessions.
//
// 1. choose the variables through the analysis (SetDDNVariable, SetRVVariable);
// 2. drillDown(variable, row) picks the variable in the drill-down list and pins row `row` of
//    the category dialog: the non-empty categories in order, then the missing-data row when
//    missing data are counted and the variable has some;
// 3. drillUp(position) undoes the step at that row of the drill-up list, any row.

#include <stdexcept>
#include <string>
#include <vector>

#include "drilldown/core/CDrillDown.h"

namespace wb {

// A drill step that the analysis cannot take; the message names the variable or the row.
class DrillError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class DrillSession {
public:
    // `panel` is the dialog whose list boxes show the drill-down and drill-up variables.
    DrillSession(CDrillDown& analysis, HWND panel) : m_analysis(analysis), m_panel(panel) {}

    // The rows the category dialog offers for `variable`, counting its categories first when
    // they are owed.
    std::vector<std::string> categoryRows(short variable);
    void drillDown(short variable, int row);
    void drillUp(int position);

private:
    // Makes the variable current as a click on its row of the drill-down list does.
    void selectDrillDown(short variable);
    std::vector<std::string> currentCategoryRows() const;
    // Takes the current variables from the selections of the two lists.
    void syncCurrentVariables();

    CDrillDown& m_analysis;
    HWND m_panel;
};

} // namespace wb
