// The start-up panel's automation object DDNStartup, driven by member name as a macro drives
// it: the current variables, the category of the next drill step, the listing of categories,
// user-defined boundaries, the members that stand for controls, and the object's life.

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "drilldown/automation/TypeLibrary.h"
#include "drilldown/resources/StringTable.h"
#include "support/PanelFixture.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/session/StateJson.h"

namespace {

// The missing-data row of the category dialog.
constexpr const char* Missing = "Manquante(s)";
constexpr const char* Closed = "The dialog has been closed.";

// The panel's lists of drill-down and drill-up variables.
constexpr int ListDrillDowns = 9053;
constexpr int ListDrillUps = 9054;

class StartupAutomation : public test::PanelFixture {
protected:
    StartupAutomation() {
        host.setAutomation(&automation);
        dialogs.setAutomation(&automation);
        ModuleContext()->Host = host.services();
        EXPECT_EQ(RegisterDrillDownTypeLib(automation), S_OK);
    }
    ~StartupAutomation() override {
        // The panel goes with the analysis, before the runtime its strings came from.
        analysis.reset();
        EXPECT_EQ(automation.outstandingStrings(), 0u) << "a string of the object was not freed";
    }

    // The survey of PanelFixture with text labels and a variable that is all missing:
    // REGION (Nord, Sud, Est), SEX (Femme, Homme; one case missing), AGE, INCOME, SPEND, W,
    // NOTE. AGE's neat intervals leave 55<x<=60 empty.
    static wb::DataFile labelled() {
        return test::makeFile({{"REGION", -999, {{1, "Nord"}, {2, "Sud"}, {3, "Est"}}},
                               {"SEX", -999, {{1, "Femme"}, {2, "Homme"}}},
                               {"AGE"},
                               {"INCOME"},
                               {"SPEND"},
                               {"W"},
                               {"NOTE"}},
                              {{1, 1, 25, 1000, 100, 1, -999},
                               {1, 2, 35, 2000, 200, 2, -999},
                               {2, 1, 45, 3000, 300, 1, -999},
                               {2, 2, 55, 4000, 400, 1, -999},
                               {3, 1, 65, 5000, 500, 1, -999},
                               {3, -999, 30, 1500, 150, 1, -999},
                               {1, 1, 40, 2500, 250, 1, -999},
                               {2, 2, 50, 3500, 350, 2, -999}});
    }

    COleVariant text(const std::string& value) { return COleVariant::Text(automation, value); }

    std::string getText(const char* member) {
        const COleVariant value = macro.get(startup, member);
        EXPECT_EQ(value.vt, VT_BSTR) << member;
        return value.vt == VT_BSTR ? std::string(BstrView(value.bstrVal)) : std::string();
    }
    double getNumber(const char* member) {
        const COleVariant value = macro.get(startup, member);
        if (value.vt == VT_R8)
            return value.dblVal;
        EXPECT_EQ(value.vt, VT_I4) << member;
        return value.lVal;
    }
    void put(const char* member, const std::string& value) {
        macro.put(startup, member, text(value));
    }
    void putNumber(const char* member, double value) {
        macro.put(startup, member, COleVariant(value));
    }

    // The error of a call that must fail; a call that succeeds is reported and gives nothing.
    std::optional<wb::AutomationError> failure(const std::function<void()>& call) {
        try {
            call();
        } catch (const wb::AutomationError& error) {
            return error;
        }
        ADD_FAILURE() << "the call succeeded";
        return std::nullopt;
    }
    HRESULT failedWith(const std::function<void()>& call) {
        const std::optional<wb::AutomationError> error = failure(call);
        return error ? error->result() : S_OK;
    }

    // Everything a refused call must leave as it was.
    struct Snapshot {
        std::string records;
        short down, up;
        int selected, downRow, upRow;
        bool operator==(const Snapshot&) const = default;
    };
    Snapshot snapshot() const {
        return {wb::stateToJson(*analysis).dump(), analysis->GetCurrentDown(),
                analysis->GetCurrentUp(), analysis->GetSelected(),
                dialogs.model().selection(window, ListDrillDowns),
                dialogs.model().selection(window, ListDrillUps)};
    }

    // Drills the variable into a category as a macro does.
    void drillByMacro(const std::string& variable, const std::string& category) {
        put("DrillDownVariable", variable);
        put("DrillDownCategory", category);
        macro.call(startup, "DrillDown");
    }

    // The name of the category a drill step pinned, the missing-data row included.
    static std::string drilledName(const Drill& record) {
        if (record.DrilledItem == static_cast<int>(record.Categories.size()))
            return Missing;
        return std::next(record.Categories.begin(), record.DrilledItem)->Name;
    }

    wb::HeadlessAutomation automation;
    wb::Dispatcher macro{automation};
};

// ---- The current variables ------------------------------------------------------------------

TEST_F(StartupAutomation, DrillDownVariableByNumberOrNamePrefix) {
    openPanel(labelled());
    put("Variables", "SPEND SEX | AGE INCOME");  // SPEND comes before SEX in the set
    ASSERT_EQ(rows(ListDrillDowns), (std::vector<std::string>{"SPEND", "SEX", "AGE", "INCOME"}));
    EXPECT_EQ(getText("DrillDownVariable"), "SPEND");

    const struct {
        const char* written;
        short variable;  // 0: refused
    } cases[] = {
        {"2", 2},         {"4", 4},        {"s", 5},     // the first of the set, not by number
        {"se", 2},        {"age", 3},      {"  Inc  ", 4}, {"'sEx'", 2},
        {"1", 0},         {"6", 0},        {"99", 0},      // chosen by no list
        {"AGEX", 0},      {"Z", 0},        {":", 0},       {"", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        put("DrillDownVariable", "AGE");
        const Snapshot before = snapshot();
        if (c.variable == 0) {
            EXPECT_EQ(failedWith([&] { put("DrillDownVariable", c.written); }), E_FAIL);
            EXPECT_EQ(snapshot(), before);
            continue;
        }
        put("DrillDownVariable", c.written);
        EXPECT_EQ(analysis->GetCurrentDown(), c.variable);
        const std::string name = downRecord(c.variable).Name;
        EXPECT_EQ(getText("DrillDownVariable"), name);
        const int row = dialogs.model().selection(window, ListDrillDowns);
        ASSERT_GE(row, 0);
        EXPECT_EQ(rows(ListDrillDowns).at(row), name);
    }

    // The error text of an unknown name is cut to 255 characters.
    const std::optional<wb::AutomationError> error =
        failure([&] { put("DrillDownVariable", std::string(300, 'Z')); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description().size(), 255u);
}

TEST_F(StartupAutomation, DrillUpVariableByNumberOrNamePrefix) {
    openPanel(labelled());
    put("Variables", "REGION SEX SPEND | AGE");
    drillByMacro("REGION", "0");
    drillByMacro("SEX", "0");
    drillByMacro("SPEND", "0");
    // The newest step comes first: SPEND, SEX, REGION.
    ASSERT_EQ(variables(analysis->GetDrillUps()), (std::vector<short>{5, 2, 1}));

    const struct {
        const char* written;
        short variable;  // 0: refused; -1: taken and nothing changes
    } cases[] = {
        {"1", 1},   {"2", 2},     {"s", 5},   {"se", 2}, {"REG", 1}, {"region", 1},
        {"3", 0},   {"AGE", 0},   {"SEXY", 0}, {"", 0},
        {":", -1},  {"-", -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        put("DrillUpVariable", "SEX");
        const Snapshot before = snapshot();
        if (c.variable == 0) {
            EXPECT_EQ(failedWith([&] { put("DrillUpVariable", c.written); }), E_FAIL);
            EXPECT_EQ(snapshot(), before);
            continue;
        }
        put("DrillUpVariable", c.written);
        if (c.variable == -1) {
            EXPECT_EQ(snapshot(), before);
            continue;
        }
        EXPECT_EQ(analysis->GetCurrentUp(), c.variable);
        EXPECT_EQ(getText("DrillUpVariable"), upRecord(c.variable).Name);
        const int row = dialogs.model().selection(window, ListDrillUps);
        ASSERT_GE(row, 0);
        EXPECT_EQ(rows(ListDrillUps).at(row).rfind(upRecord(c.variable).Name + " (", 0), 0u);
    }

    // The drill-up takes back the step of the variable named, not the newest.
    put("DrillUpVariable", "reg");
    macro.call(startup, "DrillUp");
    EXPECT_EQ(variables(analysis->GetDrillUps()), (std::vector<short>{5, 2}));
    EXPECT_NO_THROW(downRecord(1));
}

// ---- The category of the next drill step ----------------------------------------------------

TEST_F(StartupAutomation, DrillDownCategoryTakesAPositionOrAText) {
    openPanel(labelled());
    put("Variables", "REGION SEX | AGE");
    // AGE's rows: the eight non-empty intervals, 55<x<=60 being empty; SEX's: Femme, Homme,
    // then the missing-data row.
    const struct {
        const char* variable;
        const char* written;
        int selected;  // -2: refused
    } cases[] = {
        {"AGE", "3", 3},
        {"AGE", "3:", 3},
        {"AGE", "3: x", 3},
        {"AGE", "3 x", -2},
        {"AGE", "'60<X<=65'", 7},  // a label that is no bare text goes in quotes
        {"AGE", "'55<x<=60'", -2}, // an empty category has no row
        {"AGE", Missing, 8},       // after the last row, whatever the variable holds
        {"SEX", "homme", 1},
        {"SEX", "'FEMME'", 0},
        {"SEX", "manquante(s)", 2},
        {"SEX", "", 0},
        {"SEX", "Inconnu", -2},
        {"SEX", ":", -2},
        {"SEX", "4294967296", -2},  // no position, and no row 0 either
        {"REGION", "Est", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variable) + " = " + c.written);
        put("DrillDownVariable", c.variable);
        analysis->SetSelected(5);
        const Snapshot before = snapshot();
        if (c.selected == -2) {
            EXPECT_EQ(failedWith([&] { put("DrillDownCategory", c.written); }), E_FAIL);
            EXPECT_EQ(snapshot(), before);
            continue;
        }
        put("DrillDownCategory", c.written);
        EXPECT_EQ(analysis->GetSelected(), c.selected);
    }
}

TEST_F(StartupAutomation, DrillDownCategoryReadsANameUnderDistinctValuesElseThePosition) {
    openPanel(labelled());
    put("Variables", "SEX | AGE");
    const struct {
        const char* variable;
        const char* written;
        const char* read;
    } cases[] = {
        {"SEX", "1", "Homme"},
        {"SEX", "'femme'", "Femme"},
        {"SEX", "2", Missing},
        {"AGE", "3", "3"},
        {"AGE", "'60<x<=65'", "7"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variable) + " = " + c.written);
        put("DrillDownVariable", c.variable);
        put("DrillDownCategory", c.written);
        EXPECT_EQ(getText("DrillDownCategory"), c.read);
    }
}

TEST_F(StartupAutomation, CategorySelectionsListTheRowsOfTheCategoryDialog) {
    const struct {
        const char* variable;
        int countMissing;
        const char* listing;
    } cases[] = {
        {"SEX", 1, "0 Femme | 1 Homme | 2 Manquante(s)"},
        {"SEX", 0, "0 Femme | 1 Homme"},
        {"REGION", 1, "0 Nord | 1 Sud | 2 Est"},
        {"AGE", 1,
         "0 20<x<=25 | 1 25<x<=30 | 2 30<x<=35 | 3 35<x<=40 | 4 40<x<=45 | 5 45<x<=50 | "
         "6 50<x<=55 | 7 60<x<=65"},
        {"NOTE", 1, "0 Manquante(s)"},
        {"NOTE", 0, Missing},  // nothing to list
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variable) + " CountMD " + std::to_string(c.countMissing));
        openPanel(labelled());
        put("Variables", "REGION SEX NOTE | AGE");
        putNumber("CountMD", c.countMissing);
        put("DrillDownVariable", c.variable);
        put("DrillDownCategory", "0");
        EXPECT_EQ(getText("CategorySelections"), c.listing);
    }
}

// Each position that the listing prints, written back, drills into the category printed
// beside it; so does its text.
TEST_F(StartupAutomation, PrintedPositionsDrillIntoThePrintedCategories) {
    openPanel(labelled());
    put("Variables", "SEX NOTE | AGE");
    for (const char* variable : {"AGE", "SEX", "NOTE"}) {
        put("DrillDownVariable", variable);
        put("DrillDownCategory", "0");
        std::vector<std::pair<int, std::string>> entries;
        std::istringstream listing(getText("CategorySelections"));
        for (std::string entry; std::getline(listing, entry, '|');) {
            std::istringstream fields(entry);
            int position = -1;
            std::string name;
            fields >> position >> name;
            entries.emplace_back(position, name);
        }
        ASSERT_GE(entries.size(), 1u) << variable;
        const short number = analysis->GetCurrentDown();
        for (const auto& [position, name] : entries) {
            SCOPED_TRACE(std::string(variable) + ": " + std::to_string(position) + " " + name);
            put("DrillDownVariable", variable);
            put("DrillDownCategory", "'" + name + "'");
            EXPECT_EQ(analysis->GetSelected(), position);
            put("DrillDownCategory", std::to_string(position));
            macro.call(startup, "DrillDown");
            ASSERT_EQ(analysis->GetDrillUpsSize(), 1);
            EXPECT_EQ(drilledName(upRecord(number)), name);
            put("DrillUpVariable", variable);
            macro.call(startup, "DrillUp");
        }
    }
}

TEST_F(StartupAutomation, WritingCategorySelectionsChangesNothing) {
    openPanel(labelled());
    for (bool chosen : {false, true}) {
        if (chosen) {
            put("Variables", "SEX | AGE");
            put("DrillDownCategory", "1");
        }
        const Snapshot before = snapshot();
        for (const char* written : {"0 Femme | 1 Homme", "", ": x"})
            put("CategorySelections", written);
        EXPECT_EQ(snapshot(), before);
    }
}

// ---- User-defined boundaries ---------------------------------------------------------------

TEST_F(StartupAutomation, UserDefinedBoundaries) {
    openPanel(labelled());
    put("Variables", "REGION | AGE INCOME");
    // User-defined categories without boundaries have none to read.
    put("DrillDownVariable", "INCOME");
    putNumber("UserSpecifiedCategories", 1);
    macro.get(startup, "Frequencies");
    ASSERT_EQ(downRecord(4).Method, 5);
    EXPECT_EQ(failedWith([&] { getText("UserDefinedBoundaries"); }), E_FAIL);

    // Boundaries are kept under any method, but read only under user-defined categories.
    put("DrillDownVariable", "AGE");
    put("UserDefinedBoundaries", "30 50");
    EXPECT_EQ(downRecord(3).NU, 2);
    EXPECT_EQ(failedWith([&] { getText("UserDefinedBoundaries"); }), E_FAIL);

    putNumber("UserSpecifiedCategories", 1);
    macro.get(startup, "Frequencies");  // applies the method
    ASSERT_EQ(downRecord(3).Method, 5);
    EXPECT_EQ(getText("UserDefinedBoundaries"), " 30 50");

    const struct {
        std::string written;
        const char* read;  // nullptr: refused, the boundaries stay as they were
    } cases[] = {
        {"30 12.5 -2.25 0", " 30 12.5 -2.25 0"},  // neither sorted nor checked
        {"1e3 0.125", " 1000 0.125"},
        {"40", " 40"},
        {"1 x", nullptr},
        {"1, 2", nullptr},
        {"1 : 2", nullptr},
        {"", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        put("UserDefinedBoundaries", "60");
        if (c.read == nullptr) {
            EXPECT_EQ(failedWith([&] { put("UserDefinedBoundaries", c.written); }), E_FAIL);
            EXPECT_EQ(getText("UserDefinedBoundaries"), " 60");
            continue;
        }
        put("UserDefinedBoundaries", c.written);
        EXPECT_EQ(getText("UserDefinedBoundaries"), c.read);
    }

    // A record has room for 100 boundaries.
    std::string hundred;
    for (int i = 1; i <= 100; ++i)
        hundred += std::to_string(i) + " ";
    put("UserDefinedBoundaries", hundred);
    EXPECT_EQ(downRecord(3).NU, 100);
    EXPECT_EQ(failedWith([&] { put("UserDefinedBoundaries", hundred + "101"); }), E_FAIL);
    EXPECT_EQ(downRecord(3).NU, 100);
    EXPECT_EQ(downRecord(3).UserInterv[99], 100.0);
}

TEST_F(StartupAutomation, BoundariesWrittenFirstSpareTheLimitsDialog) {
    openPanel(labelled());
    put("Variables", "REGION | AGE");
    put("DrillDownVariable", "AGE");
    putNumber("UserSpecifiedCategories", 1);
    put("UserDefinedBoundaries", "30 50");
    put("DrillDownCategory", "1");
    macro.call(startup, "DrillDown");
    EXPECT_TRUE(dialogs.modalDialogsOpened().empty());
    const Drill& drilled = upRecord(3);
    EXPECT_EQ(drilled.Method, 5);
    const Categories& pinned = *std::next(drilled.Categories.begin(), drilled.DrilledItem);
    EXPECT_EQ(pinned.Lower, 30.0);
    EXPECT_EQ(pinned.Upper, 50.0);
    EXPECT_EQ(analysis->GetValidVar(), 4);  // ages 35, 45, 40, 50
}

// ---- Failures without a current variable or category ----------------------------------------

TEST_F(StartupAutomation, MembersWithoutTheirVariableOrCategoryFail) {
    struct Access {
        const char* member;
        const char* written;  // nullptr: a read
    };
    const struct {
        const char* state;
        std::function<void()> reach;
        std::vector<Access> calls;
    } cases[] = {
        {"no variable chosen", [] {},
         {{"DrillDownVariable", nullptr},
          {"DrillUpVariable", nullptr},
          {"DrillDownCategory", nullptr},
          {"CategorySelections", nullptr},
          {"UserDefinedBoundaries", nullptr},
          {"DrillDownVariable", "1"},
          {"DrillDownVariable", "REGION"},
          {"DrillUpVariable", "1"},
          {"DrillUpVariable", "REGION"},
          {"DrillDownCategory", "Nord"},
          {"UserDefinedBoundaries", "1 2"}}},
        {"every variable drilled",
         [this] {
             put("Variables", "REGION");
             drillByMacro("REGION", "0");
         },
         {{"DrillDownVariable", nullptr},
          {"DrillDownCategory", nullptr},
          {"CategorySelections", nullptr},
          {"UserDefinedBoundaries", nullptr},
          {"DrillDownVariable", "REGION"},
          {"DrillDownCategory", "Nord"},
          {"UserDefinedBoundaries", "1 2"}}},
        {"a drill step since the category was chosen",
         [this] {
             put("Variables", "REGION SEX | AGE");
             drillByMacro("REGION", "0");
         },
         {{"DrillDownCategory", nullptr}, {"CategorySelections", nullptr}}},
    };
    for (const auto& c : cases) {
        openPanel(labelled());
        c.reach();
        for (const Access& call : c.calls) {
            SCOPED_TRACE(std::string(c.state) + ": " + call.member +
                         (call.written ? std::string(" = ") + call.written : std::string()));
            const Snapshot before = snapshot();
            const std::optional<wb::AutomationError> error = failure([&] {
                if (call.written == nullptr)
                    getText(call.member);
                else
                    put(call.member, call.written);
            });
            ASSERT_TRUE(error);
            EXPECT_EQ(error->result(), E_FAIL);
            EXPECT_FALSE(error->description().empty());
            EXPECT_EQ(snapshot(), before);
        }
    }
}

// ---- Members that stand for controls --------------------------------------------------------

TEST_F(StartupAutomation, OptionMembersWorkTheirControls) {
    openPanel(labelled());
    // Weighted moments need a case weight.
    put("Variables", "REGION SEX | AGE");
    const std::optional<wb::AutomationError> refused =
        failure([&] { putNumber("WeightedMoments", 1); });
    ASSERT_TRUE(refused);
    EXPECT_NE(refused->description().find("204"), std::string::npos);
    EXPECT_EQ(analysis->GetWM(), 0);

    weighBy(6);
    put("Variables", "REGION SEX | AGE");
    for (int value : {1, 0}) {
        putNumber("WeightedMoments", value);
        EXPECT_EQ(analysis->GetWM(), value);
        EXPECT_EQ(getNumber("WeightedMoments"), value);
    }
    putNumber("CountMD", 0);
    EXPECT_EQ(analysis->GetCountMD(), 0);
    EXPECT_EQ(getNumber("CountMD"), 0);
    EXPECT_EQ(analysis->NeedsRescan, 1);

    // Once drilled, missing-data counting is fixed.
    putNumber("CountMD", 1);
    drillByMacro("REGION", "0");
    EXPECT_EQ(failedWith([&] { putNumber("CountMD", 0); }), E_FAIL);
    EXPECT_EQ(analysis->GetCountMD(), 1);
}

TEST_F(StartupAutomation, MethodMembersTakeEffectAtTheNextResultOrDrill) {
    using Settings = std::vector<std::pair<const char*, double>>;
    const struct {
        const char* radio;
        Settings settings;
        const char* apply;  // a result, or DrillDown into row 0
        int method;
        std::function<void(const Drill&)> check;
    } cases[] = {
        {"NoOfExactIntervals", {{"ValueNoOfExactIntervals", 4}}, "Frequencies", 1,
         [](const Drill& d) {
             EXPECT_EQ(d.ExactN, 4);
             EXPECT_EQ(d.Categories.size(), 4u);
         }},
        {"NoOfExactIntervals", {{"ValueNoOfExactIntervals", 4}}, "DrillDown", 1,
         [](const Drill& d) { EXPECT_EQ(d.ExactN, 4); }},
        {"StepSize",
         {{"ValueStepSize", 10}, {"StartingAtMinimum", 0}, {"ValueStartingFrom", 20}},
         "Frequencies", 3,
         [](const Drill& d) {
             EXPECT_EQ(d.Step, 10.0);
             EXPECT_EQ(d.Start, 20.0);
             EXPECT_EQ(d.AtMinimum, 0);
         }},
        {"IntegerCategories", {}, "Descriptives", 4, [](const Drill&) {}},
        {"AllDistinctValues", {}, "DrillDown", 0, [](const Drill&) {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.radio) + " then " + c.apply);
        openPanel(labelled());
        put("Variables", "REGION | AGE");
        put("DrillDownVariable", "AGE");
        putNumber(c.radio, 1);
        for (const auto& [member, value] : c.settings)
            putNumber(member, value);
        EXPECT_EQ(getNumber(c.radio), 1);
        for (const auto& [member, value] : c.settings)
            EXPECT_EQ(getNumber(member), value) << member;
        EXPECT_EQ(downRecord(3).Method, 2) << "the method is applied before its time";

        if (std::string(c.apply) == "DrillDown") {
            put("DrillDownCategory", "0");
            macro.call(startup, "DrillDown");
            c.check(upRecord(3));
            EXPECT_EQ(upRecord(3).Method, c.method);
        } else {
            macro.get(startup, c.apply);
            c.check(downRecord(3));
            EXPECT_EQ(downRecord(3).Method, c.method);
        }
    }
}

TEST_F(StartupAutomation, CountsOutsideTheEditRangeAreRefused) {
    openPanel(labelled());
    put("Variables", "REGION | AGE");
    put("DrillDownVariable", "AGE");
    // The count edit is disabled until its method is chosen.
    EXPECT_EQ(failedWith([&] { putNumber("ValueNoOfExactIntervals", 4); }), E_FAIL);
    putNumber("NoOfExactIntervals", 1);
    putNumber("ValueNoOfExactIntervals", 4);
    for (double wrong : {1000.0, 1.0}) {
        EXPECT_NE(failedWith([&] { putNumber("ValueNoOfExactIntervals", wrong); }), S_OK) << wrong;
        EXPECT_EQ(getNumber("ValueNoOfExactIntervals"), 4);
    }
    putNumber("ValueNoOfExactIntervals", 999);
    EXPECT_EQ(getNumber("ValueNoOfExactIntervals"), 999);
    // A categorical variable has no choice of method.
    put("DrillDownVariable", "REGION");
    EXPECT_EQ(failedWith([&] { putNumber("NoOfExactIntervals", 1); }), E_FAIL);
}

// ---- Drill steps ------------------------------------------------------------------------------

// The same steps through the panel's buttons and through the object leave the same records
// after each step.
TEST_F(StartupAutomation, DrillStepsMatchThoseOfThePanel) {
    auto record = [this] {
        return wb::stateToJson(*analysis).dump() + "\n" + ::testing::PrintToString(rows(ListDrillDowns)) +
               ::testing::PrintToString(rows(ListDrillUps));
    };
    std::vector<std::string> byPanel;
    openPanel(labelled());
    choose({1, 2}, {3, 4});
    drillDown(1);  // REGION: Sud
    byPanel.push_back(record());
    ASSERT_TRUE(dialogs.chooseRow(window, ListDrillDowns, 1));  // SEX, AGE, INCOME
    drillDown(1);
    byPanel.push_back(record());
    ASSERT_TRUE(dialogs.chooseRow(window, ListDrillUps, 1));  // AGE, REGION
    press(9057);
    byPanel.push_back(record());

    std::vector<std::string> byMacro;
    openPanel(labelled());
    put("Variables", "REGION SEX | AGE INCOME");
    put("DrillDownCategory", "1");
    macro.call(startup, "DrillDown");
    byMacro.push_back(record());
    put("DrillDownVariable", "AGE");
    put("DrillDownCategory", "1");
    macro.call(startup, "DrillDown");
    byMacro.push_back(record());
    put("DrillUpVariable", "REGION");
    macro.call(startup, "DrillUp");
    byMacro.push_back(record());

    ASSERT_EQ(byMacro.size(), byPanel.size());
    for (std::size_t step = 0; step < byPanel.size(); ++step)
        EXPECT_EQ(byMacro[step], byPanel[step]) << "step " << step;
    EXPECT_EQ(variables(analysis->GetDrillUps()), std::vector<short>{3});
}

TEST_F(StartupAutomation, DrillDownWithoutAnOfferedCategoryDrillsNothing) {
    const struct {
        const char* category;  // nullptr: none chosen
    } cases[] = {{nullptr}, {"3"}, {Missing}, {"-1"}, {"-3"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.category ? c.category : "none");
        openPanel(labelled());
        put("Variables", "REGION SEX | AGE");  // REGION: three rows, no missing data
        if (c.category != nullptr)
            put("DrillDownCategory", c.category);
        const std::string before = wb::stateToJson(*analysis).dump();
        const std::optional<wb::AutomationError> error =
            failure([&] { macro.call(startup, "DrillDown"); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->result(), E_FAIL);
        EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
        EXPECT_EQ(wb::stateToJson(*analysis).dump(), before);
        EXPECT_TRUE(dialogs.modalDialogsOpened().empty());
        EXPECT_EQ(dialogs.resultsLockDepth(window), 0);
    }
}

// ---- The object's life ------------------------------------------------------------------------

TEST_F(StartupAutomation, OKAndCancelCloseThePanelAndStoreTheStandAloneChoice) {
    const struct {
        const char* member;
        int standAlone;
    } cases[] = {{"OK", 1}, {"Cancel", 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.member);
        keywords.put(0, "StandAloneResults", 1 - c.standAlone);
        openPanel(labelled());
        putNumber("StandAloneResults", c.standAlone);
        EXPECT_EQ(analysis->StandAloneResults, c.standAlone);
        const COleVariant result = macro.call(startup, c.member);
        if (std::string(c.member) == "OK") {
            ASSERT_EQ(result.vt, VT_I4);
            EXPECT_EQ(result.lVal, 1);
        }
        EXPECT_FALSE(dialogs.isOpen(window));
        EXPECT_EQ(keywords.get(0, "StandAloneResults"), c.standAlone);
    }
}

TEST_F(StartupAutomation, AfterTheCloseEveryMemberButApplicationFails) {
    openPanel(labelled());
    put("Variables", "REGION SEX | AGE");
    startup->AddRef();  // as a macro that keeps the object
    macro.call(startup, "OK");
    ASSERT_FALSE(dialogs.isOpen(window));

    auto callEach = [this] {
        int members = 0;
        for (const InterfaceDescription& face : DrillDownTypeLib().Interfaces)
            for (const MemberDescription& member : face.Members) {
                const std::string name = member.Name;
                SCOPED_TRACE(name);
                ++members;
                auto call = [&] {
                    switch (member.Access) {
                    case MemberAccess::Get:
                        return void(macro.get(startup, name));
                    case MemberAccess::Method:
                        return void(macro.call(startup, name));
                    case MemberAccess::Put:
                        if (member.Type == MemberType::Int || member.Type == MemberType::Double)
                            return macro.put(startup, name, COleVariant(1.0));
                        return macro.put(startup, name, text("1"));
                    }
                };
                if (name == "Application") {
                    EXPECT_NO_THROW(call());
                    continue;
                }
                const std::optional<wb::AutomationError> error = failure(call);
                ASSERT_TRUE(error);
                EXPECT_EQ(error->result(), E_FAIL);
                EXPECT_EQ(error->description(), Closed);
            }
        EXPECT_GT(members, 80);
    };
    callEach();
    // With the analysis gone the object lives on by the macro's reference alone.
    analysis.reset();
    callEach();
    EXPECT_EQ(startup->Release(), 0u);
    startup = nullptr;
}

// ---- Interfaces and the base members ----------------------------------------------------------

TEST_F(StartupAutomation, QueryInterfaceAndErrorInfoSupport) {
    openPanel(labelled());
    const struct {
        const char* name;
        IID iid;
        void* expected;  // nullptr: not answered
        HRESULT errorInfo;
    } cases[] = {
        {"IUnknown", IID_IUnknown, static_cast<IDispatch*>(startup), S_FALSE},
        {"IDispatch", IID_IDispatch, static_cast<IDispatch*>(startup), S_FALSE},
        {"DDNStartup", IID_DDNStartup, static_cast<IDispatch*>(startup), S_OK},
        {"ISupportErrorInfo", IID_ISupportErrorInfo, static_cast<ISupportErrorInfo*>(startup),
         S_FALSE},
        {"QrxAnalysisDialog", IID_QrxAnalysisDialog, nullptr, S_FALSE},
    };
    const ULONG references = startup->AddRef() - 1;
    startup->Release();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        void* found = reinterpret_cast<void*>(1);
        const HRESULT answered = startup->QueryInterface(c.iid, &found);
        EXPECT_EQ(found, c.expected);
        if (c.expected == nullptr) {
            EXPECT_EQ(answered, E_NOINTERFACE);
        } else {
            EXPECT_EQ(answered, S_OK);
            EXPECT_EQ(startup->Release(), references);  // the answer held one reference
        }
        EXPECT_EQ(startup->InterfaceSupportsErrorInfo(c.iid), c.errorInfo);
    }
}

TEST_F(StartupAutomation, BaseMembers) {
    openPanel(labelled());
    EXPECT_EQ(getText("Name"), ModuleString(10058));
    for (const char* member : {"Application", "Parent"}) {
        const COleVariant object = macro.get(startup, member);
        EXPECT_EQ(object.vt, VT_DISPATCH) << member;
        EXPECT_EQ(object.pdispVal, nullptr) << member;
    }
    // The result-selection members of other dialogs are not served.
    EXPECT_EQ(failedWith([&] { putNumber("ResultsOption", 1); }), E_NOTIMPL);
    EXPECT_TRUE(dialogs.isOpen(window));
}

} // namespace
