#pragma once
// The start-up panel of an analysis, opened as the host opens it, for tests of the panel.

#include <string>
#include <vector>

#include "drilldown/dialogs/StartupPanel.h"
#include "drilldown/host/HostBlocks.h"
#include "support/AnalysisFixture.h"

namespace test {

class PanelFixture : public AnalysisFixture {
protected:
    // REGION, SEX (one case missing), AGE, INCOME, SPEND, W.
    static wb::DataFile survey() {
        return makeFile({{"REGION"}, {"SEX"}, {"AGE"}, {"INCOME"}, {"SPEND"}, {"W"}},
                        {{1, 1, 25, 1000, 100, 1},
                         {1, 2, 35, 2000, 200, 2},
                         {2, 1, 45, 3000, 300, 1},
                         {2, 2, 55, 4000, 400, 1},
                         {3, 1, 65, 5000, 500, 1},
                         {3, -999, 30, 1500, 150, 1},
                         {1, 1, 40, 2500, 250, 1},
                         {2, 2, 50, 3500, 350, 2}});
    }

    // Opens the file and starts the analysis and its panel (steps 100 and 101).
    void openPanel(wb::DataFile data) {
        open(std::move(data));
        takePanel();
    }
    // Runs step 101 again: a new panel replaces the open one.
    void startPanel() {
        ASSERT_EQ(analysis->SequenceTable().RunSequence(101), -1);
        takePanel();
    }
    void takePanel() {
        startup = static_cast<CDDNStartupDlg*>(analysis->GetDialogAutomationInterface());
        ASSERT_NE(startup, nullptr);
        window = startup->GetSafeHwnd();
        ASSERT_TRUE(dialogs.isOpen(window));
    }
    // Presses a variables button (9050 or 9080) with the variable dialog answering the lists.
    void choose(std::vector<short> categorical, std::vector<short> continuous, int button = 9050) {
        headless.presetVariableChoice(std::move(categorical), std::move(continuous));
        press(button);
    }
    // Clicks a control of the panel, which must take the click and leave no results lock.
    void press(int id) {
        ASSERT_TRUE(dialogs.click(window, id)) << id;
        EXPECT_EQ(dialogs.resultsLockDepth(window), 0) << "after command " << id;
    }
    // Drills the current variable into row `row` of the category dialog.
    void drillDown(int row) {
        headless.setModalResponder([this, row](HWND dialog, int) {
            dialogs.chooseRow(dialog, 9102, row);
            dialogs.click(dialog, 1);
        });
        press(9056);
        headless.setModalResponder(nullptr);
    }
    // A case weight in force, as the host's weight dialog leaves it.
    void weighBy(int variable) {
        session.changeFile([variable](wb::DataFile& data) { data.setWeightVariable(variable); });
        ModuleBlocks().Wght.WeightOn = variable != 0 ? 1 : 0;
        ModuleBlocks().Wght.WeightVar = static_cast<uint16_t>(variable);
    }

    bool enabled(int id) const { return dialogs.model().isEnabled(window, id); }
    bool checked(int id) const { return dialogs.model().isChecked(window, id); }
    const std::string& text(int id) const { return dialogs.model().text(window, id); }
    const std::vector<std::string>& rows(int id) const { return dialogs.model().rows(window, id); }
    static std::vector<short> variables(const DrillSet* records) {
        std::vector<short> found;
        for (const Drill& record : *records)
            found.push_back(record.Variable);
        return found;
    }

    CDDNStartupDlg* startup = nullptr;
    HWND window = nullptr;
};

} // namespace test
