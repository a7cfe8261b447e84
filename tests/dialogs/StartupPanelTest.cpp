// The start-up panel played as the user plays it: the state of its controls, the drill
// commands with their dialogs, the options and the stored choice of stand-alone results.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>

#include "drilldown/resources/StringTable.h"
#include "support/PanelFixture.h"

namespace {

class StartupPanel : public test::PanelFixture {};

TEST_F(StartupPanel, ControlStateFollowsTheDrillState) {
    // The controls of each enable rule; a case's `rules` gives one digit per rule, 1 enabled.
    const std::vector<std::vector<int>> rules = {
        {9053, 9103, 9056, 9060, 9112, 9119, 9061, 9079}, // D > 0
        {9054, 9057, 9058},                               // U > 0
        {9055},                                           // D >= 2
        {9086},                                           // D + U >= 1
        {9059},                                           // continuous D, no missing step
        {203, 201, 202, 9128},                            // U = 0
        {204},                                            // a weight and U = 0
        {9127},                                           // U = 0 and D > 0
        {9118, 9114, 9115, 9116, 9117, 9081, 9084},       // continuous reviews
        {9082, 9083, 9122, 9123},                         // any review
        {9100},                                           // two continuous reviews
        {9080, 9109, 9051, 9110, 9113},                   // always
    };
    const std::vector<int> all = {9064, 9065, 9066, 9067, 9068, 9069};
    const struct {
        const char* what;
        std::function<void()> reach;
        std::string rules;
        std::vector<int> radios; // enabled
        int menus;
    } cases[] = {
        {"nothing chosen", [] {}, "000001000001", {}, 0},
        {"categorical first, weight on, two continuous reviews",
         [this] { weighBy(6); choose({1}, {3, 4}); choose({}, {4, 5}, 9080); },
         "101111111111", {9064}, 0},
        {"one continuous variable, a categorical review",
         [this] { choose({}, {3}); choose({2}, {}, 9080); }, "100111010101", all, 0},
        {"drilled once with a weight", [this] { weighBy(6); choose({1, 2}, {3}); drillDown(0); },
         "111110000001", {9064}, 1},
        {"drilled into the missing cases", [this] { choose({2}, {3}); drillDown(2); },
         "110100000001", all, 1},
        {"every variable drilled", [this] { choose({1}, {}); drillDown(0); }, "010100000001", {},
         1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        openPanel(survey());
        c.reach();
        for (std::size_t rule = 0; rule < rules.size(); ++rule)
            for (int id : rules[rule])
                EXPECT_EQ(enabled(id), c.rules[rule] == '1') << id;
        for (int radio : all)
            EXPECT_EQ(enabled(radio), std::count(c.radios.begin(), c.radios.end(), radio) == 1)
                << radio;
        EXPECT_FALSE(dialogs.model().isShown(window, 9121));
        EXPECT_FALSE(dialogs.model().isShown(window, 9124));
        EXPECT_EQ(dialogs.startupMenusEnabled(window), c.menus);
    }
}

TEST_F(StartupPanel, OptionsToggleTheirFlagAndOnlyCountingOptionsAskForARescan) {
    openPanel(survey());
    weighBy(6);
    choose({1}, {3});
    EXPECT_FALSE(checked(9115));  // its flag is on, but without continuous reviews it is left
    choose({}, {4, 5}, 9080);
    EXPECT_TRUE(checked(9115));
    const struct {
        int id;
        std::function<int()> flag;
        bool rescan;
    } options[] = {
        {9128, [this] { return analysis->GetMD(); }, true},
        {204, [this] { return analysis->GetWM(); }, true},
        {9107, [this] { return analysis->GetRVMD(); }, true},
        {9127, [this] { return analysis->GetCountMD(); }, true},
        {9106, [this] { return analysis->StandAloneResults; }, false},
        {9114, [this] { return int(analysis->BoxMedianQuartiles); }, false},
        {9115, [this] { return int(analysis->BoxMeanSeSd); }, false},
        {9116, [this] { return int(analysis->BoxMeanSdSd196); }, false},
        {9117, [this] { return int(analysis->BoxMeanSeSe196); }, false},
    };
    for (const auto& option : options)
        for (int round = 0; round < 2; ++round) {
            analysis->NeedsRescan = 0;
            const int before = option.flag();
            press(option.id);
            EXPECT_EQ(option.flag(), before == 0 ? 1 : 0) << option.id;
            startup->UpdateControls(window, 0);
            EXPECT_EQ(checked(option.id), option.flag() == 1) << option.id;
            EXPECT_EQ(analysis->NeedsRescan, option.rescan ? 1 : 0) << option.id;
        }
}

TEST_F(StartupPanel, DrillSession) {
    openPanel(survey());
    choose({1, 2}, {3, 4});
    EXPECT_EQ(text(9052), "REGION SEX");
    EXPECT_EQ(text(9085), "AGE INCOME");
    EXPECT_EQ(rows(9053), (std::vector<std::string>{"REGION", "SEX", "AGE", "INCOME"}));

    press(9056);  // the category dialog is cancelled: nothing moves
    EXPECT_EQ(dialogs.modalDialogsOpened(), std::vector<int>{4818});
    EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
    EXPECT_EQ(analysis->GetDrillDownsSize(), 4);

    drillDown(1);
    EXPECT_EQ(variables(analysis->GetDrillUps()), std::vector<short>{1});
    EXPECT_EQ(upRecord(1).DrilledItem, 1);
    EXPECT_EQ(rows(9053), (std::vector<std::string>{"SEX", "AGE", "INCOME"}));
    EXPECT_EQ(rows(9054).at(0).rfind("REGION (", 0), 0u);
    EXPECT_EQ(analysis->GetCurrentDown(), 2);
    EXPECT_EQ(analysis->GetCurrentUp(), 1);
    EXPECT_EQ(analysis->GetSelected(), -1);
    const std::size_t tables = output.documents().size();
    press(9058);
    EXPECT_EQ(output.documents().size(), tables + 1);

    // The order dialog puts INCOME first.
    headless.setModalResponder([this](HWND dialog, int) {
        dialogs.chooseRow(dialog, 9089, 2);
        dialogs.click(dialog, 9091);
        dialogs.click(dialog, 1);
    });
    press(9055);
    headless.setModalResponder(nullptr);
    EXPECT_EQ(rows(9053), (std::vector<std::string>{"INCOME", "SEX", "AGE"}));
    EXPECT_EQ(variables(analysis->GetDrillDowns()), (std::vector<short>{4, 2, 3}));

    // Dragging rows moves the records with them, either way; a row dropped on itself stays.
    const struct {
        int source, target;
        std::vector<short> order;
    } drags[] = {{0, 3, {2, 3, 4}}, {2, 0, {4, 2, 3}}, {1, 1, {4, 2, 3}}};
    for (const auto& drag : drags) {
        ASSERT_TRUE(dialogs.dragRow(window, 9053, drag.source, drag.target));
        EXPECT_EQ(variables(analysis->GetDrillDowns()), drag.order);
        ASSERT_EQ(rows(9053).size(), drag.order.size());
        for (std::size_t i = 0; i < drag.order.size(); ++i) {
            EXPECT_EQ(rows(9053)[i], downRecord(drag.order[i]).Name);
            EXPECT_EQ(downRecord(drag.order[i]).Order, int(i));
        }
    }

    ASSERT_TRUE(dialogs.chooseRow(window, 9053, 0));  // INCOME becomes current
    EXPECT_EQ(analysis->GetCurrentDown(), 4);
    drillDown(0);
    drillDown(0);
    EXPECT_EQ(variables(analysis->GetDrillUps()), (std::vector<short>{2, 4, 1}));
    ASSERT_TRUE(dialogs.dragRow(window, 9054, 2, 0));
    EXPECT_EQ(variables(analysis->GetDrillUps()), (std::vector<short>{1, 2, 4}));
    EXPECT_EQ(rows(9054).at(0).rfind("REGION (", 0), 0u);

    // Undo the middle step.
    ASSERT_TRUE(dialogs.chooseRow(window, 9054, 1));
    press(9057);
    EXPECT_EQ(variables(analysis->GetDrillUps()), (std::vector<short>{1, 4}));
    EXPECT_EQ(variables(analysis->GetDrillDowns()), (std::vector<short>{2, 3}));
    EXPECT_EQ(rows(9054).size(), 2u);
    EXPECT_EQ(rows(9053), (std::vector<std::string>{"SEX", "AGE"}));
}

TEST_F(StartupPanel, UserCategoriesWithoutLimitsAskForThemInstead) {
    const struct {
        const char* what;
        bool accept;
        int limits;
        int method;
        int radio;  // checked afterwards
    } cases[] = {{"limits given", true, 2, 5, 9069}, {"limits dialog cancelled", false, 0, 2, 9066}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        openPanel(survey());
        choose({}, {3});
        press(9069);
        const std::size_t opened = dialogs.modalDialogsOpened().size();
        headless.setModalResponder([&](HWND dialog, int id) {
            if (id == 4820 && c.accept) {
                dialogs.typeText(dialog, 9093, "30 50");
                dialogs.click(dialog, 1);
            }
        });
        press(9056);
        EXPECT_EQ(std::vector<int>(dialogs.modalDialogsOpened().begin() + opened,
                                   dialogs.modalDialogsOpened().end()),
                  std::vector<int>{4820});
        EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
        EXPECT_EQ(downRecord(3).NU, c.limits);
        EXPECT_EQ(downRecord(3).Method, c.method);
        EXPECT_TRUE(checked(c.radio));
        press(9056);  // the drill is not resumed: the user presses again
        EXPECT_EQ(dialogs.modalDialogsOpened().back(), 4818);
        headless.setModalResponder(nullptr);
    }
}

// An empty choice is refused with its message and the dialog asked again. A host that cannot
// run the dialog throws through the panel's command: the results lock is released on the way
// out and the panel goes on taking commands.
TEST_F(StartupPanel, VariableDialogsRefuseAnEmptyChoiceAndLeaveNoLockWhenTheyThrow) {
    openPanel(survey());
    for (const int button : {9050, 9080}) { // drill-down and review variables
        SCOPED_TRACE(button);
        headless.presetVariableChoice({99}, {}); // no such variable: the test's own error
        EXPECT_THROW(dialogs.click(window, button), std::invalid_argument);
        EXPECT_EQ(dialogs.resultsLockDepth(window), 0);
        headless.presetVariableChoice({}, {});
        headless.presetVariableChoice({2}, {5});
        press(button);
        EXPECT_EQ(takeMessages(),
                  std::vector<std::string>{ModuleString(button == 9050 ? 10060 : 10059)});
    }
    EXPECT_EQ(text(9052), "SEX");
    EXPECT_EQ(text(9113), "SPEND");
}

TEST_F(StartupPanel, WeightsAndFileDialogs) {
    openPanel(survey());
    choose({1}, {3});
    analysis->NeedsRescan = 0;
    headless.setWeightDialog([] { return 1; });  // the weight stays as it was
    press(202);
    EXPECT_EQ(analysis->NeedsRescan, 0);
    headless.setWeightDialog([this] { weighBy(6); return 1; });
    press(202);
    EXPECT_EQ(analysis->NeedsRescan, 1);
    EXPECT_TRUE(enabled(204));

    press(9106);
    headless.setOpenFileDialog([] { return 1; });
    press(203);  // a fresh start on the file
    EXPECT_EQ(analysis->GetDrillDownsSize(), 0);
    EXPECT_TRUE(rows(9053).empty());
    EXPECT_EQ(text(9052), "");
    EXPECT_FALSE(checked(9106));
}

// Storing the choice when the panel closes is checked by
// StartupAutomation.AfterOKOrCancelEveryMemberButApplicationFails.
TEST_F(StartupPanel, StandAloneChoiceIsReadAtStart) {
    open(survey());
    for (std::optional<int> stored : {std::optional<int>(), std::optional<int>(1),
                                      std::optional<int>(0)}) {
        if (stored)
            session.keywords().put(0, "StandAloneResults", *stored);
        startPanel();
        EXPECT_EQ(analysis->StandAloneResults, stored.value_or(0));
        EXPECT_EQ(checked(9106), stored.value_or(0) == 1);
    }
}

TEST_F(StartupPanel, MessagesOutsideTheCommands) {
    openPanel(survey());
    const struct {
        unsigned message;
        unsigned long wParam;
        long lParam;
        bool answered;
    } messages[] = {{25, 0, 9053, true},   {25, 0, 9113, true}, {25, 0, 9056, false},
                    {273, 10710, 0, true}, {273, 9061, 0, false}, {1024, 0, 0, false}};
    for (const auto& m : messages)
        EXPECT_EQ(dialogs.send(window, m.message, m.wParam, m.lParam) != 0, m.answered)
            << m.message << " " << m.wParam << " " << m.lParam;
}

TEST_F(StartupPanel, ClosingTheAnalysisEndsItsWindow) {
    openPanel(survey());
    session.closeAnalysis();
    EXPECT_FALSE(dialogs.isOpen(window));
}

} // namespace
