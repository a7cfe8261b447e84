// Brushing: drilling by picking a bar of the current drill-down variable's graph. The passes
// are answered by a stand-in for the host's modal brushing, which also keeps what each pass
// was offered; the loop is driven through the panel's button as a user drives it.

#include <gtest/gtest.h>

#include <deque>

#include "drilldown/outputs/OutputTracker.h"
#include "drilldown/resources/ControlIds.h"
#include "support/AnalysisFixture.h"

namespace {

constexpr double M = -9;

// Answers each pass with the next choice (nothing: the user leaves) and keeps the passes.
struct ScriptedBrushing final : HostBrushing {
    struct Pass {
        std::vector<CBrushRegion> regions;
        int offered = -1;
        std::vector<std::string> commands;
        bool documentGiven = false;
    };
    bool DoBrushing(COutDocument* document, const std::vector<CBrushRegion>& regions,
                    int* selected, const char* const* commands, int* command) override {
        Pass& pass = passes.emplace_back();
        pass.regions = regions;
        pass.offered = *selected;
        pass.documentGiven = document != nullptr;
        for (const char* const* text = commands; *text != nullptr; ++text)
            pass.commands.emplace_back(*text);
        if (choices.empty())
            return false;
        const wb::BrushingChoice choice = choices.front();
        choices.pop_front();
        *selected = choice.selected;
        *command = choice.command;
        return true;
    }
    std::deque<wb::BrushingChoice> choices;
    std::vector<Pass> passes;
};

class Brushing : public test::AnalysisFixture {
protected:
    // X, brushed, and Y; drilling Y = 2 leaves X with 3 cases of "Deux" and 4 missing.
    void SetUp() override {
        open(test::makeFile({{"X", M, {{1, "Un"}, {2, "Deux"}, {3, "Trois"}}}, {"Y", M}},
                            {{1, 1}, {2, 2}, {2, 2}, {2, 2}, {3, 1}, {M, 2}, {M, 2}, {M, 2},
                             {M, 2}, {3, 1}}));
        ModuleContext()->Host.Brushing = &brushing;
        session.chooseVariables("X Y");
    }
    void drillY() { session.drillDown(2, 1); } // Y = 2
    // X's categories with these counts, as counted, and its missing data.
    void countX(const std::vector<double>& counts, double missing) {
        Drill& x = Mutable(*analysis->LookFor(1, analysis->DrillDowns.get()));
        x.Categories.clear();
        for (std::size_t i = 0; i < counts.size(); ++i)
            x.Categories.emplace(0, counts[i], i + 1.0, "c" + std::to_string(i + 1), i + 1.0);
        x.MCount = missing;
        for (const Drill& record : *analysis->DrillDowns)
            Mutable(record).Isset = 1;
        analysis->NeedsRescan = 0;
    }
    // One pass of the module's brushing with the answer.
    short pass(wb::BrushingChoice choice, int* picked, int* direction) {
        brushing.choices.push_back(choice);
        *picked = *direction = -1;
        analysis->DDNGraphForBrushing(nullptr);
        return analysis->DDNBrushing(picked, direction);
    }
    ScriptedBrushing brushing;
};

// Bars keep their places, empty ones included; the missing data stand last when counted.
// The first bar with cases is offered; an empty bar cannot be drilled; `Selected` is the row
// that the category dialog, which offers no empty category, gives the bar's category.
TEST_F(Brushing, APickedBarNamesItsCategoryRow) {
    const struct {
        std::vector<double> counts;
        double missing;
        wb::BrushingChoice choice;
        short result;
        int picked, selected, offered;
        std::size_t bars;
    } cases[] = {
        {{0, 3}, 0, {1, 0}, 1, 1, 0, 1, 2},
        {{0, 3}, 0, {0, 0}, -1, -1, -1, 1, 2},   // the empty bar
        {{1.5, 0, 100}, 0, {2, 0}, 1, 2, 1, 0, 3}, // counts without trailing zeros in the tips
        {{2, 0}, 4, {2, 0}, 1, 2, 1, 0, 3},      // the missing bar, behind both categories
        {{2, 0}, 4, {-1, 0}, -1, -1, -1, 0, 3},  // no bar and no drill up
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << ::testing::PrintToString(c.counts) << " bar "
                                          << c.choice.selected);
        countX(c.counts, c.missing);
        analysis->SetSelected(-1);
        int picked = 0, direction = 0;
        EXPECT_EQ(pass(c.choice, &picked, &direction), c.result);
        EXPECT_EQ(picked, c.picked);
        EXPECT_EQ(direction, c.result == 1 ? 0 : -1);
        EXPECT_EQ(analysis->GetSelected(), c.selected);
        const ScriptedBrushing::Pass& offered = brushing.passes.back();
        EXPECT_TRUE(offered.documentGiven);
        EXPECT_EQ(offered.offered, c.offered);
        ASSERT_EQ(offered.regions.size(), c.bars);
        for (std::size_t i = 0; i < c.counts.size(); ++i) {
            EXPECT_EQ(offered.regions[i].Left, i + 1 - 0.45);
            EXPECT_EQ(offered.regions[i].Right, i + 1 + 0.45);
            EXPECT_EQ(offered.regions[i].Top, c.counts[i]);
            const std::string tip = "CATEGORY: c" + std::to_string(i + 1) + "\nCOUNT: ";
            EXPECT_EQ(offered.regions[i].Tip, tip + testing::PrintToString(c.counts[i]));
        }
        EXPECT_EQ(offered.commands, std::vector<std::string>{"!372&Drill down"});
    }
    analysis->SetCountMD(0);
    int picked = 0, direction = 0;
    countX({2, 0}, 4);
    pass({0, 0}, &picked, &direction);
    EXPECT_EQ(brushing.passes.back().regions.size(), 2u) << "missing data not counted";
}

// With a step to undo, drill up is offered; chosen with no bar, it is the pass's answer.
TEST_F(Brushing, DrillUpFromTheGraph) {
    drillY();
    int picked = 0, direction = 0;
    EXPECT_EQ(pass({-1, 1}, &picked, &direction), 1);
    EXPECT_EQ(direction, 1);
    EXPECT_EQ(brushing.passes.back().commands,
              (std::vector<std::string>{"!372&Drill down", "!373Drill &up"}));
}

// The loop through the panel's button: each pass drills and posts the next, until the user
// leaves or no variable is left; a drill up from the graph undoes the current step.
TEST_F(Brushing, ThePanelsLoopDrillsUntilTheUserLeavesOrNoVariableIsLeft) {
    const struct {
        std::vector<wb::BrushingChoice> choices;
        std::size_t passes;
        int drilledUp;
    } cases[] = {
        {{}, 1, 0},                        // leaves at once
        {{{1, 0}}, 2, 1},                  // X = Deux, then leaves on Y
        {{{1, 0}, {0, 0}}, 2, 2},          // X, then Y: nothing left, the loop ends
        {{{1, 0}, {-1, 1}}, 3, 0},         // X, undone from Y's graph, then leaves on X
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.choices.size());
        SetUp();
        brushing.passes.clear();
        brushing.choices.assign(c.choices.begin(), c.choices.end());
        ASSERT_TRUE(dialogs.click(panel, ButtonBrushing));
        EXPECT_EQ(brushing.passes.size(), c.passes);
        EXPECT_EQ(analysis->GetDrillUpsSize(), c.drilledUp);
        EXPECT_EQ(dialogs.resultsLockDepth(panel), 0);
    }
}

// With stand-alone results the brushing graph is one tracked output, (9111, 1): refreshed
// in place at each pass, and gone when brushing ends.
TEST_F(Brushing, WithStandAloneResultsTheGraphIsOneWindowThatGoesAtTheEnd) {
    ASSERT_TRUE(dialogs.click(panel, CheckStandAlone));
    brushing.choices = {{1, 0}};
    struct Count final : wb::DocumentObserver {
        int adds = 0, refreshes = 0, closes = 0;
        void added(const wb::Document&) override { ++adds; }
        void replaced(const wb::Document&) override { ++refreshes; }
        void closed(const wb::Document&) override { ++closes; }
        void stateChanged(const wb::Document&) override {}
    } count;
    session.documents().addObserver(count);
    ASSERT_TRUE(dialogs.click(panel, ButtonBrushing));
    session.documents().removeObserver(count);
    EXPECT_EQ(brushing.passes.size(), 2u);
    EXPECT_EQ(count.adds, 1);
    EXPECT_EQ(count.refreshes, 1);
    EXPECT_EQ(count.closes, 1);
    EXPECT_FALSE(analysis->OutputExists(CommandBrushingGraph, 1));
    EXPECT_TRUE(session.documents().documents().empty());
}

} // namespace
