// Stand-alone result windows: outputs that follow the drill in their own windows, the ones
// the user closed staying closed, and the layout of the windows kept and restored.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "drilldown/outputs/OutputTracker.h"
#include "drilldown/resources/ControlIds.h"
#include "support/AnalysisFixture.h"
#include "workbench/session/WindowLayout.h"

namespace {

// Four categorical variables; A has three categories, B two, C three, D two.
const std::vector<std::vector<double>> Cases = {
    {1, 1, 1, 1}, {1, 2, 2, 1}, {1, 1, 3, 2}, {2, 2, 1, 2}, {2, 1, 2, 1},
    {3, 2, 3, 2}, {3, 1, 1, 1}, {3, 2, 2, 2}, {1, 1, 1, 2}, {2, 2, 2, 1},
};

struct Shown {
    int id;
    std::string name;
    bool operator==(const Shown&) const = default;
};

class StandAloneResultsTest : public test::AnalysisFixture {
protected:
    void SetUp() override {
        start();
    }
    // A fresh analysis with the four variables to drill, chosen through the panel.
    void start() {
        open(test::makeFile({{"A"}, {"B"}, {"C"}, {"D"}}, Cases));
        session.chooseVariables("A B C D");
    }

    void standAlone(bool on) {
        if ((analysis->StandAloneResults != 0) != on) {
            ASSERT_TRUE(dialogs.click(panel, CheckStandAlone));
        }
    }
    void press(int button) { ASSERT_TRUE(dialogs.click(panel, button)); }

    // The live documents, in window order.
    std::vector<Shown> shown() const {
        std::vector<Shown> all;
        for (const wb::Document& document : store.documents())
            all.push_back({document.id, document.name()});
        return all;
    }
    // The bar heights of a live histogram.
    std::vector<double> bars(int id) const {
        return store.find(id)->graph().series.at(0).y;
    }
    static double casesWhere(int variable, double value) {
        return static_cast<double>(std::count_if(Cases.begin(), Cases.end(), [&](const auto& c) {
            return c[variable - 1] == value;
        }));
    }

    wb::DocumentStore& store = session.documents();
};

bool names(const Shown& document, const std::string& variable) {
    return document.name.find(": " + variable) != std::string::npos ||
           document.name.find(" " + variable) != std::string::npos;
}

TEST_F(StandAloneResultsTest, WithTheOptionOffOutputsAreNotTrackedAndNothingRefreshes) {
    press(ButtonHistograms);
    const std::vector<Shown> before = shown();
    ASSERT_EQ(before.size(), 4u);
    EXPECT_FALSE(analysis->OutputExists(ButtonHistograms, 1));
    EXPECT_EQ(analysis->AutoUpdate(0), 0);
    session.drillDown(1, 0);
    EXPECT_EQ(shown(), before);
}

TEST_F(StandAloneResultsTest, AButtonPressedTwiceRefreshesItsWindowsAndBringsThemUp) {
    standAlone(true);
    press(ButtonFrequencies);
    const std::vector<Shown> first = shown();
    ASSERT_EQ(first.size(), 4u);
    EXPECT_TRUE(analysis->OutputExists(ButtonFrequencies, 4));
    store.state(first[0].id)->window.state = wb::MinimisedWindow;

    press(ButtonFrequencies);
    EXPECT_EQ(shown(), first);
    EXPECT_EQ(store.state(first[0].id)->window.state, wb::NormalWindow);
    EXPECT_EQ(store.activeDocument(), first.back().id);
    EXPECT_EQ(store.windowPlace(first.back().id), 0);
}

// After a drill step the tracked histograms show the next level: output i of the button goes
// into the window that output i had. The second window was closed and stays closed; the
// fourth has no output any more and goes.
TEST_F(StandAloneResultsTest, ADrillStepRefreshesTheOpenWindowsOnly) {
    standAlone(true);
    press(ButtonHistograms);
    const std::vector<Shown> before = shown();
    ASSERT_EQ(before.size(), 4u);
    store.close(before[1].id);

    session.drillDown(1, 0); // A = 1: B, C and D are left
    const std::vector<Shown> after = shown();
    ASSERT_EQ(after.size(), 2u);
    EXPECT_EQ(after[0].id, before[0].id);
    EXPECT_EQ(after[1].id, before[2].id);
    EXPECT_TRUE(names(after[0], "B")) << after[0].name;
    EXPECT_TRUE(names(after[1], "D")) << after[1].name;
    const std::vector<double> b = bars(after[0].id);
    EXPECT_EQ(std::accumulate(b.begin(), b.end(), 0.0), casesWhere(1, 1));
    EXPECT_FALSE(analysis->OutputExists(ButtonHistograms, 2));
    EXPECT_FALSE(analysis->OutputExists(ButtonHistograms, 4));
}

TEST_F(StandAloneResultsTest, TurningTheOptionOffStopsRefreshingAndOnAgainResumes) {
    standAlone(true);
    press(ButtonHistograms);
    standAlone(false);
    session.drillDown(1, 0);
    std::vector<Shown> windows = shown();
    ASSERT_EQ(windows.size(), 4u);
    EXPECT_TRUE(names(windows[0], "A")) << windows[0].name;

    standAlone(true);
    session.drillDown(2, 0); // B = 1: C and D are left
    windows = shown();
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_TRUE(names(windows[0], "C")) << windows[0].name;
}

// A refresh delivers messages; one that asks for a refresh meanwhile changes nothing.
TEST_F(StandAloneResultsTest, ARefreshAskedForDuringARefreshIsIgnored) {
    standAlone(true);
    press(ButtonFrequencies);
    struct Nested final : wb::DocumentObserver {
        CDrillDown* analysis;
        int refreshed = 0;
        int nestedAnswers = 0;
        void added(const wb::Document&) override {}
        void closed(const wb::Document&) override {}
        void stateChanged(const wb::Document&) override {}
        void replaced(const wb::Document&) override {
            ++refreshed;
            nestedAnswers += analysis->AutoUpdate(0);
        }
    } nested;
    nested.analysis = analysis;
    store.addObserver(nested);
    EXPECT_EQ(analysis->AutoUpdate(0), 1);
    store.removeObserver(nested);
    EXPECT_EQ(nested.refreshed, 4);
    EXPECT_EQ(nested.nestedAnswers, 4); // each answered 1 at once and replayed nothing
}

// Closed by the user the tracked windows go with the analysis; closed by a macro they stay.
TEST_F(StandAloneResultsTest, ClosingTheAnalysisHidesItsWindowsUnlessAMacroDrivesIt) {
    for (const bool automated : {false, true}) {
        SCOPED_TRACE(automated ? "automated" : "interactive");
        start();
        standAlone(true);
        press(ButtonFrequencies);
        const std::size_t open = store.documents().size();
        session.analysisDocument().setAutomated(automated);
        session.closeAnalysis();
        EXPECT_EQ(store.documents().size(), automated ? open : open - 4);
        session.analysisDocument().setAutomated(false);
    }
}

// The layout stores each tracked window's key, rectangle and place in the stacking order;
// restored in a new analysis, the buttons are pressed again and each output goes back to its
// window's place, in the same order.
TEST_F(StandAloneResultsTest, AStoredLayoutPutsTheWindowsBackInTheirPlacesAndOrder) {
    standAlone(true);
    press(ButtonFrequencies);
    press(ButtonHistograms);
    struct Place {
        int command, output;
        wb::DocumentWindowState window;
        int stacking;
        bool operator==(const Place& o) const {
            return command == o.command && output == o.output && stacking == o.stacking &&
                   window.left == o.window.left && window.top == o.window.top &&
                   window.width == o.window.width && window.height == o.window.height;
        }
    };
    for (int shift = 0; const wb::Document& document : store.documents()) {
        store.state(document.id)->window = {10 * shift, 5 * shift, 300, 200, wb::NormalWindow};
        ++shift;
    }
    store.activate(store.documents()[2].id);
    const auto places = [&] {
        std::vector<Place> all;
        for (const wb::Document& document : store.documents())
            all.push_back({document.command, document.output, store.state(document.id)->window,
                           store.windowPlace(document.id)});
        std::sort(all.begin(), all.end(), [](const Place& a, const Place& b) {
            return std::tie(a.command, a.output) < std::tie(b.command, b.output);
        });
        return all;
    };
    const std::vector<Place> stored = places();
    const std::string layout = wb::windowLayout(session);
    ASSERT_EQ(layout.size(), 2 * (8 + 28 * stored.size()));

    session.closeAnalysis(); // interactive: the windows go
    ASSERT_TRUE(store.documents().empty());
    start();
    wb::restoreWindowLayout(session, layout);
    EXPECT_EQ(analysis->StandAloneResults, 1);
    EXPECT_EQ(places(), stored);
}

TEST_F(StandAloneResultsTest, ArchivesOfNoWindowAndOfWindowsGone) {
    CDDNOutputTracker& tracker = *analysis->Outputs;
    std::string text;
    ASSERT_TRUE(tracker.SaveToText(text));
    EXPECT_EQ(text, "0100000000000000");

    // A buffer one byte short is left alone; the size needed is given.
    const std::string oneWindow = "0100000001000000"
                                  "5423000001000000"
                                  "0A000000140000001E00000028000000"
                                  "03000000";
    ASSERT_TRUE(tracker.LoadFromText(oneWindow));
    EXPECT_TRUE(analysis->OutputExists(0x2354, 1));
    unsigned char buffer[36];
    std::fill(std::begin(buffer), std::end(buffer), 0xAA);
    int size = 35;
    EXPECT_FALSE(tracker.SaveToBuffer(buffer, &size));
    EXPECT_EQ(size, 36);
    EXPECT_TRUE(std::all_of(std::begin(buffer), std::end(buffer), [](auto b) { return b == 0xAA; }));

    // A loaded record has no window yet: it is stored with no rectangle, in front.
    ASSERT_TRUE(tracker.SaveToText(text));
    EXPECT_EQ(text, "0100000001000000"
                    "5423000001000000"
                    "00000000000000000000000000000000"
                    "00000000");

    // A damaged archive is refused, with the records read so far in place.
    EXPECT_FALSE(tracker.LoadFromText("0100000002000000" + oneWindow.substr(16)));
    EXPECT_EQ(tracker.Count(), 1u);
    EXPECT_THROW(wb::restoreWindowLayout(session, "01000000020000"), wb::LayoutError);
    EXPECT_THROW(wb::restoreWindowLayout(session, "01000000zz000000"), wb::LayoutError);
}

} // namespace
