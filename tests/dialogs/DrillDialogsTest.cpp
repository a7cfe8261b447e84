// The category, order and limits dialogs, played through the headless host: what they show
// and what the analysis gets from them.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "drilldown/dialogs/DrillDialogs.h"
#include "drilldown/host/framework/TextHelpers.h"
#include "drilldown/resources/StringTable.h"
#include "support/AnalysisFixture.h"

namespace {

constexpr double M = -9;
constexpr int List = 9102;
constexpr int Left = 9089, Right = 9090, Place = 9091, Unplace = 9092;
constexpr int Edit = 9093;
using Texts = std::vector<std::string>;

// "1 2 3 ... count" with `separator` after each number.
std::string numbers(int count, char separator) {
    std::string text;
    for (int i = 1; i <= count; ++i)
        text += std::to_string(i) + separator;
    return text;
}

class DrillDialogs : public test::AnalysisFixture {
protected:
    // R: categorical with a long formatted label and a short one; X: continuous; W: weight;
    // E: always missing. Drill-down variables in set order: R, W, E, X.
    void openFile(bool weighted) {
        wb::DataFile f = test::makeFile(
            {{"R", M, {{1, "<b>Île-de-France</b>"}, {2, "Nord"}}}, {"X", M}, {"W", M}, {"E", M}},
            {{1, 1, 2.5, M}, {1, 2, 10, M}, {2, 9, 1, M}, {M, 10, 1, M}});
        if (weighted)
            f.setWeightVariable(3);
        open(std::move(f));
        analysis->SetWM(1); // weights count as they are, not rounded
        ASSERT_EQ(chooseDrillVariables({1, 3, 4}, {2}), 1);
    }
    // Runs a dialog with `play` as its user; gives its answer.
    template <typename Dialog> int run(std::function<void(HWND)> play) {
        headless.setModalResponder([&](HWND dialog, int) { play(dialog); });
        Dialog dialog(analysis);
        COpDllResource resource(nullptr);
        return dialog.DoModal(resource);
    }
    // The category list: its headings, then its rows.
    std::vector<Texts> categoryList(HWND dialog) const {
        const wb::ControlModel& model = dialogs.model();
        std::vector<Texts> list(1);
        for (const wb::ListColumn& column : model.columns(dialog, List))
            list[0].push_back(column.heading);
        for (std::size_t row = 0; row < model.rows(dialog, List).size(); ++row) {
            list.emplace_back();
            for (std::size_t col = 0; col < list[0].size(); ++col)
                list.back().push_back(model.cell(dialog, List, int(row), int(col)));
        }
        return list;
    }
    Texts downNames() const {
        Texts names;
        for (const Drill& record : *analysis->GetDrillDowns())
            names.push_back(record.Name);
        return names;
    }
};

TEST_F(DrillDialogs, CategoryListShowsNonEmptyCategoriesThenMissingData) {
    struct Case {
        const char* what;
        bool weighted;
        short countMD;
        short variable;
        std::vector<Texts> list;
    };
    // clang-format off
    const std::vector<Case> cases = {
        {"counts, a description where a long label exists, the missing row", false, 1, 1,
         {{"Category", "Count", "Description"}, {"Île-de-France", "2", "Île-de-France"},
          {"Nord", "1", ""}, {"Manquante(s)", "1", ""}}},
        {"weighted sums without trailing zeros, missing data not counted", true, 0, 1,
         {{"Category", "Weight", "Description"}, {"Île-de-France", "12.5", "Île-de-France"},
          {"Nord", "1", ""}}},
        {"user limits 2.5 5 8: the two empty intervals get no row", false, 1, 2,
         {{"Category", "Count"}, {"x<=2.5", "2"}, {"8<x", "2"}}},
        {"always missing, missing data not counted: no row", false, 0, 4, {{"Category", "Count"}}},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        openFile(c.weighted);
        analysis->SetCountMD(c.countMD);
        analysis->SetCurrentDown(c.variable);
        if (c.variable == 2) {
            const double limits[] = {2.5, 5, 8};
            analysis->SetUserIntervals(limits, 3);
            Mutable(downRecord(2)).SetMethod(MethodUserLimits, 10, 1, 1, 0);
            ASSERT_EQ(analysis->ReadAfterDrill(0), 1);
            ASSERT_EQ(analysis->ReadBeforeDrill(0), 1);
        }
        analysis->SetSelected(-1);
        std::vector<Texts> list;
        std::string caption;
        // OK at once takes the first row, which starts selected; with no row it is refused.
        const int answer = run<CDDNCategoryDlg>([&](HWND dialog) {
            list = categoryList(dialog);
            caption = dialogs.model().text(dialog, 9088);
            dialogs.click(dialog, 1);
        });
        EXPECT_EQ(list, c.list);
        EXPECT_EQ(caption, downRecord(c.variable).Name);
        EXPECT_EQ(answer, c.list.size() > 1 ? 1 : 0);
        EXPECT_EQ(analysis->GetSelected(), c.list.size() > 1 ? 0 : -1);
    }
}

TEST_F(DrillDialogs, CategoryChosenByTheUser) {
    struct Case {
        const char* what;
        int row;
        int button; // 0: a double click on the row
        int answer;
        int selected;
    };
    const std::vector<Case> cases = {
        {"a row chosen, then OK", 1, IDOK, 1, 1},
        {"a double click on the missing row", 2, 0, 1, 2},
        {"a row chosen, then Annuler", 1, IDCANCEL, 0, -1},
    };
    openFile(false);
    analysis->SetCountMD(1);
    analysis->SetCurrentDown(1);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        analysis->SetSelected(-1);
        EXPECT_EQ(run<CDDNCategoryDlg>([&](HWND dialog) {
                      if (c.button == 0) {
                          dialogs.doubleClickRow(dialog, List, c.row);
                      } else {
                          dialogs.chooseRow(dialog, List, c.row);
                          dialogs.click(dialog, c.button);
                      }
                  }),
                  c.answer);
        EXPECT_EQ(analysis->GetSelected(), c.selected);
    }
}

TEST_F(DrillDialogs, OrderBuiltByMovingVariables) {
    // One move: a row chosen in one list (-1: none), then the button that moves it across.
    struct Move {
        int list;
        int row;
    };
    struct Case {
        const char* what;
        std::vector<Move> moves;
        bool accept;
        Texts left, right, order;
    };
    // clang-format off
    const std::vector<Case> cases = {
        {"nothing placed", {}, true, {"R", "W", "E", "X"}, {}, {"R", "W", "E", "X"}},
        {"two placed, a click without a row ignored, the rest follow in their order",
         {{Left, 3}, {Left, -1}, {Left, 1}}, true, {"R", "E"}, {"X", "W"}, {"X", "W", "R", "E"}},
        {"a variable taken back closes the gap", {{Left, 3}, {Left, 0}, {Left, 1}, {Right, 1}},
         true, {"R", "W"}, {"X", "E"}, {"X", "E", "R", "W"}},
        {"all placed", {{Left, 3}, {Left, 2}, {Left, 1}, {Left, 0}}, true, {},
         {"X", "E", "W", "R"}, {"X", "E", "W", "R"}},
        {"cancelled", {{Left, 3}}, false, {"R", "W", "E"}, {"X"}, {"R", "W", "E", "X"}},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        openFile(false);
        analysis->SetCurrentDown(2); // X, whose place most orders change
        Texts left, right;
        bool leftEnabled = false, rightEnabled = false, placeEnabled = false,
             unplaceEnabled = false;
        const int answer = run<CDDNOrderDlg>([&](HWND dialog) {
            for (const Move& move : c.moves) {
                if (move.row >= 0) {
                    ASSERT_TRUE(dialogs.chooseRow(dialog, move.list, move.row));
                }
                ASSERT_TRUE(dialogs.click(dialog, move.list == Left ? Place : Unplace));
            }
            const wb::ControlModel& model = dialogs.model();
            left = model.rows(dialog, Left);
            right = model.rows(dialog, Right);
            leftEnabled = model.isEnabled(dialog, Left);
            rightEnabled = model.isEnabled(dialog, Right);
            placeEnabled = model.isEnabled(dialog, Place);
            unplaceEnabled = model.isEnabled(dialog, Unplace);
            dialogs.click(dialog, c.accept ? 1 : 2);
        });
        EXPECT_EQ(answer, c.accept ? 1 : 0);
        EXPECT_EQ(left, c.left);
        EXPECT_EQ(right, c.right);
        EXPECT_EQ(leftEnabled, !c.left.empty());
        EXPECT_EQ(rightEnabled, !c.right.empty());
        EXPECT_EQ(placeEnabled, !c.left.empty());
        EXPECT_EQ(unplaceEnabled, !c.right.empty());
        EXPECT_EQ(downNames(), c.order);
        EXPECT_EQ(analysis->GetCurrentDrillDown(), 2); // the current variable, not its place
    }
}

TEST_F(DrillDialogs, OrderDialogWithoutMemoryEndsAtOnce) {
    openFile(false);
    session.memory().failAllocation(1);
    EXPECT_EQ(run<CDDNOrderDlg>([](HWND) { ADD_FAILURE() << "the dialog was left open"; }), 0);
    EXPECT_EQ(takeMessages(), Texts{ModuleString(10005)});
    EXPECT_EQ(downNames(), (Texts{"R", "W", "E", "X"}));
}

TEST_F(DrillDialogs, LimitsRefusedWithTheirMessage) {
    openFile(false);
    analysis->SetCurrentDown(2);
    Mutable(downRecord(2)).Isset = 1;
    const Texts typed = {"", "1 deux 3", "2 2", "5 4", numbers(100, ' ')};
    const Texts refusals = {ModuleString(10014), ModuleString(10012), ModuleString(10013),
                            ModuleString(10013), ModuleString(10011)};
    Texts shown;
    std::string caption;
    // The dialog stays open through every refusal, until the host cancels it.
    EXPECT_EQ(run<CDDNLimitsDlg>([&](HWND dialog) {
                  caption = dialogs.model().text(dialog, 9101);
                  for (const std::string& text : typed) {
                      dialogs.typeText(dialog, Edit, text);
                      dialogs.click(dialog, 1);
                      for (const std::string& message : takeMessages())
                          shown.push_back(message);
                  }
              }),
              0);
    EXPECT_EQ(caption, "X");
    EXPECT_EQ(shown, refusals);
    EXPECT_EQ(downRecord(2).NU, 0);
    EXPECT_EQ(downRecord(2).Isset, 1);
}

TEST_F(DrillDialogs, LimitsKeptOnlyWhenAccepted) {
    openFile(false);
    analysis->SetCurrentDown(2);
    Mutable(downRecord(2)).Isset = 1;
    // A host short of memory refuses the first OK without a message; the second goes through.
    session.memory().failAllocation(1);
    EXPECT_EQ(run<CDDNLimitsDlg>([&](HWND dialog) {
                  dialogs.typeText(dialog, Edit, numbers(99, GetListSep()));
                  dialogs.click(dialog, 1);
                  EXPECT_EQ(downRecord(2).NU, 0);
                  EXPECT_TRUE(takeMessages().empty());
                  dialogs.click(dialog, 1);
              }),
              1);
    const Drill& x = downRecord(2);
    ASSERT_EQ(x.NU, 99);
    EXPECT_EQ(x.UserInterv[0], 1);
    EXPECT_EQ(x.UserInterv[98], 99);
    EXPECT_EQ(x.Isset, 0) << "the categories must be built again";
    EXPECT_EQ(downRecord(1).NU, 0) << "another variable got the limits";

    EXPECT_EQ(run<CDDNLimitsDlg>([&](HWND dialog) {
                  EXPECT_EQ(dialogs.model().text(dialog, Edit), "") << "stored limits shown";
                  dialogs.typeText(dialog, Edit, "3 4");
                  dialogs.click(dialog, 2);
              }),
              0);
    EXPECT_EQ(downRecord(2).NU, 99);
}

} // namespace
