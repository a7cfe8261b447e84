// The model of dialogs and controls: handles, creation rules and what observers hear.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <stdexcept>
#include <vector>

#include "workbench/dialogs/ControlModel.h"

namespace {

using wb::ControlKind;
using wb::ControlModel;

constexpr int Id = 9053;

TEST(ControlModel, HandlesAreDistinctAndDieWithTheirDialog) {
    ControlModel model;
    const HWND first = model.createDialog(4813);
    const HWND second = model.createDialog(4818);
    const HWND a = model.controlHandle(first, 1);
    const HWND b = model.controlHandle(first, 2);
    const HWND c = model.controlHandle(second, 1);
    EXPECT_EQ((std::set<HWND>{nullptr, first, second, a, b, c}.size()), 6u);
    EXPECT_EQ(model.controlHandle(first, 1), a);
    EXPECT_EQ(model.controlOf(c), (wb::ControlRef{second, 1}));
    EXPECT_FALSE(model.controlOf(first).has_value()); // a dialog is no control

    model.setText(first, 1, "gone with the dialog");
    model.destroyDialog(first);
    EXPECT_EQ(model.controlHandle(first, 1), nullptr);
    EXPECT_FALSE(model.controlOf(a).has_value());
    EXPECT_THROW(model.text(first, 1), std::out_of_range);
    EXPECT_THROW(model.setEnabled(first, 1, false), std::out_of_range);
    EXPECT_EQ(model.controlOf(c), (wb::ControlRef{second, 1}));

    // Handles are never given out again, so a stale one cannot reach a new control.
    const HWND third = model.createDialog(4813);
    EXPECT_FALSE((std::set<HWND>{first, a, b}.contains(model.controlHandle(third, 1))));
    EXPECT_EQ(model.text(third, 1), "");
}

TEST(ControlModel, DeclaredDialogHasOnlyItsControls) {
    ControlModel model;
    const HWND dialog = model.createDialog(4819, wb::ControlCreation::Declared);
    EXPECT_EQ(model.controlHandle(dialog, Id), nullptr);
    EXPECT_THROW(model.isEnabled(dialog, Id), std::out_of_range);

    const HWND list = model.addControl(dialog, Id, ControlKind::ListBox);
    model.setRows(dialog, Id, {"a"});
    EXPECT_EQ(model.controlHandle(dialog, Id), list);
    // Declaring again changes the kind, not the handle or the state.
    EXPECT_EQ(model.addControl(dialog, Id, ControlKind::Static), list);
    EXPECT_EQ(model.kind(dialog, Id), ControlKind::Static);
    EXPECT_EQ(model.rows(dialog, Id), std::vector<std::string>{"a"});
}

// One change to a list box that shows rows a, b, c with b selected and text "x", and how many
// reports observers get.
const struct {
    const char* comment;
    std::function<void(ControlModel&, HWND)> change;
    std::size_t reports;
} ChangeRows[] = {
    {"disable", [](ControlModel& m, HWND d) { m.setEnabled(d, Id, false); }, 1},
    {"enable an enabled control", [](ControlModel& m, HWND d) { m.setEnabled(d, Id, true); }, 0},
    {"check", [](ControlModel& m, HWND d) { m.setChecked(d, Id, true); }, 1},
    {"other text", [](ControlModel& m, HWND d) { m.setText(d, Id, "y"); }, 1},
    {"the same text", [](ControlModel& m, HWND d) { m.setText(d, Id, "x"); }, 0},
    {"select another row", [](ControlModel& m, HWND d) { m.select(d, Id, 2); }, 1},
    {"select the selected row", [](ControlModel& m, HWND d) { m.select(d, Id, 1); }, 0},
    {"a row past the end", [](ControlModel& m, HWND d) { EXPECT_FALSE(m.select(d, Id, 3)); }, 0},
    {"-1 clears", [](ControlModel& m, HWND d) { EXPECT_TRUE(m.select(d, Id, -1)); }, 1},
    {"the same rows drop the selection",
     [](ControlModel& m, HWND d) {
         m.setRows(d, Id, {"a", "b", "c"});
     },
     1},
};

TEST(ControlModel, ObserversHearEveryChangeAndNothingElse) {
    for (const auto& row : ChangeRows) {
        SCOPED_TRACE(row.comment);
        ControlModel model;
        const HWND dialog = model.createDialog(4813);
        model.setRows(dialog, Id, {"a", "b", "c"});
        model.select(dialog, Id, 1);
        model.setText(dialog, Id, "x");
        const wb::ControlState before = model.state(dialog, Id);
        std::vector<std::pair<HWND, int>> heard;
        model.subscribe([&](HWND d, int id) { heard.emplace_back(d, id); });

        row.change(model, dialog);
        EXPECT_EQ(heard.size(), row.reports);
        EXPECT_EQ(model.state(dialog, Id) != before, row.reports > 0);
        for (const auto& report : heard)
            EXPECT_EQ(report, std::make_pair(dialog, Id));
    }
}

TEST(ControlModel, ObserversMayChangeTheModelAndUnsubscribe) {
    ControlModel model;
    const HWND dialog = model.createDialog(4813);
    std::vector<int> heard;
    // A front end that disables button 9103 whenever list 9053 is emptied.
    const std::size_t mirror = model.subscribe([&](HWND d, int id) {
        heard.push_back(id);
        if (id == Id && model.rows(d, Id).empty())
            model.setEnabled(d, 9103, false);
    });
    // One that hears once, then leaves and brings in another one in its place.
    std::size_t once = 0;
    int onceHeard = 0;
    int lateHeard = 0;
    once = model.subscribe([&](HWND, int) {
        ++onceHeard;
        model.unsubscribe(once);
        model.subscribe([&](HWND, int) { ++lateHeard; });
    });

    model.setRows(dialog, Id, {"a"});
    model.setRows(dialog, Id, {});
    EXPECT_FALSE(model.isEnabled(dialog, 9103));
    EXPECT_EQ(heard, (std::vector<int>{Id, Id, 9103}));
    EXPECT_EQ(onceHeard, 1);
    EXPECT_EQ(lateHeard, 2); // the change to 9053 that emptied it and the one to 9103

    model.unsubscribe(mirror);
    model.setText(dialog, Id, "unheard");
    EXPECT_EQ(heard.size(), 3u);
}

} // namespace
