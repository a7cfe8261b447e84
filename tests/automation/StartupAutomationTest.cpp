// The start-up panel's automation object DDNStartup, driven by member name as a macro drives
// it: the current variables, the category of the next drill step, the listing of categories,
// user-defined boundaries, the members that stand for controls, and the object's life.

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "drilldown/automation/TypeLibrary.h"
#include "drilldown/resources/StringTable.h"
#include "support/PanelFixture.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/session/StateJson.h"

namespace {

// The missing-data row of the category dialog.
constexpr const char* Missing = "Manquante(s)";

// The panel's lists of drill-down and drill-up variables.
constexpr int ListDrillDowns = 9053;
constexpr int ListDrillUps = 9054;

class StartupAutomation : public test::PanelFixture {
protected:
    ~StartupAutomation() override {
        // The panel goes with the analysis, before the runtime its strings came from.
        session.closeAnalysis();
        EXPECT_EQ(automation.outstandingStrings(), 0u) << "a string of the object was not freed";
    }

    // The survey of PanelFixture with text labels and a variable that is all missing:
    // REGION (Nord, Sud, Est), SEX (Femme, Homme; one case missing), AGE, INCOME, SPEND, W,
    // NOTE. AGE's neat intervals leave 55<x<=60 empty.
    static wb::DataFile labelled() {
        return test::makeFile({{"REGION", -999, {{1, "Nord"}, {2, "Sud"}, {3, "Est"}}},
                               {"SEX", -999, {{1, "Femme"}, {2, "Homme"}}},
                               {"AGE"}, {"INCOME"}, {"SPEND"}, {"W"}, {"NOTE"}},
                              {{1, 1, 25, 1000, 100, 1, -999}, {1, 2, 35, 2000, 200, 2, -999},
                               {2, 1, 45, 3000, 300, 1, -999}, {2, 2, 55, 4000, 400, 1, -999},
                               {3, 1, 65, 5000, 500, 1, -999}, {3, -999, 30, 1500, 150, 1, -999},
                               {1, 1, 40, 2500, 250, 1, -999}, {2, 2, 50, 3500, 350, 2, -999}});
    }

    std::string getText(const char* member) {
        const COleVariant value = macro.get(startup, member);
        EXPECT_EQ(value.vt, VT_BSTR) << member;
        return value.vt == VT_BSTR ? std::string(BstrView(value.bstrVal)) : std::string();
    }
    double getNumber(const char* member) {
        const COleVariant value = macro.get(startup, member);
        EXPECT_TRUE(value.vt == VT_R8 || value.vt == VT_I4) << member;
        return value.vt == VT_R8 ? value.dblVal : value.lVal;
    }
    void put(const char* member, const std::string& value) {
        macro.put(startup, member, COleVariant::Text(automation, value));
    }
    void putNumber(const char* member, double value) {
        macro.put(startup, member, COleVariant(value));
    }

    // What a call that must fail gave; one that succeeds is reported and gives S_OK.
    struct Failure {
        HRESULT result = S_OK;
        std::string description;
    };
    Failure failure(const std::function<void()>& call) {
        try {
            call();
        } catch (const wb::AutomationError& error) {
            return {error.result(), error.description()};
        }
        ADD_FAILURE() << "the call succeeded";
        return {};
    }

    // Everything a refused call must leave as it was: the records, the current variables and
    // category, the rows chosen in the panel's lists.
    std::string snapshot() const {
        return wb::stateToJson(*analysis).dump() +
               ::testing::PrintToString(std::tuple(
                   analysis->GetCurrentDown(), analysis->GetCurrentUp(), analysis->GetSelected(),
                   dialogs.model().selection(window, ListDrillDowns),
                   dialogs.model().selection(window, ListDrillUps)));
    }

    // Drills the variable into a category as a macro does.
    void drillByMacro(const std::string& variable, const std::string& category) {
        put("DrillDownVariable", variable);
        put("DrillDownCategory", category);
        macro.call(startup, "DrillDown");
    }

    wb::AutomationRuntime& automation = session.automation();
    wb::Dispatcher macro{automation};
};

// A number names a variable of the member's list; a name or its start (case, quotes and
// spaces aside) the first of the list that it fits, in the list's order. The variable
// becomes current, is read back and is selected in the panel's list.
TEST_F(StartupAutomation, CurrentVariablesByNumberOrNamePrefix) {
    openPanel(labelled());
    put("Variables", "REGION SPEND SEX | AGE INCOME");
    drillByMacro("SEX", "0");
    drillByMacro("SPEND", "0");
    ASSERT_EQ(rows(ListDrillDowns), (std::vector<std::string>{"REGION", "AGE", "INCOME"}));
    ASSERT_EQ(variables(analysis->GetDrillUps()), (std::vector<short>{5, 2})); // newest first
    const bool Down = true, Up = false;
    const struct {
        bool down;
        const char* written;
        short variable; // 0: refused; -1: taken; either leaves everything as it was
    } cases[] = {
        {Down, "1", 1},     {Down, "3", 3}, {Down, "reg", 1},   {Down, "  Age  ", 3},
        {Down, "'iNc'", 4}, {Down, "2", 0}, {Down, "99", 0},    {Down, "AGEX", 0},
        {Down, ":", 0},     {Down, "", 0},  {Up, "2", 2},       {Up, "5", 5},
        {Up, "s", 5},       {Up, "se", 2},  {Up, "'SPEND'", 5}, {Up, "1", 0},
        {Up, "SEXY", 0},    {Up, "", 0},    {Up, ":", -1},      {Up, "-", -1},
    };
    for (const auto& c : cases) {
        const char* member = c.down ? "DrillDownVariable" : "DrillUpVariable";
        SCOPED_TRACE(std::string(member) + " = " + c.written);
        // Another variable current first, so that the write must change it.
        const DrillSet& records = *(c.down ? analysis->GetDrillDowns() : analysis->GetDrillUps());
        for (const Drill& other : records)
            if (other.Variable != c.variable) {
                put(member, other.Name);
                break;
            }
        const std::string before = snapshot();
        if (c.variable == 0)
            EXPECT_EQ(failure([&] { put(member, c.written); }).result, E_FAIL);
        else
            put(member, c.written);
        if (c.variable <= 0) {
            EXPECT_EQ(snapshot(), before);
            continue;
        }
        EXPECT_EQ(c.down ? analysis->GetCurrentDown() : analysis->GetCurrentUp(), c.variable);
        const std::string name = (c.down ? downRecord(c.variable) : upRecord(c.variable)).Name;
        EXPECT_EQ(getText(member), name);
        const int list = c.down ? ListDrillDowns : ListDrillUps;
        const int row = dialogs.model().selection(window, list);
        ASSERT_GE(row, 0);
        EXPECT_EQ(rows(list).at(row).substr(0, name.size()), name);
    }
    // The error text of an unknown name is cut to 255 characters.
    EXPECT_EQ(failure([&] { put("DrillDownVariable", std::string(300, 'Z')); }).description.size(),
              255u);
    // The drill-up takes back the step of the variable named, not the newest.
    put("DrillUpVariable", "sex");
    macro.call(startup, "DrillUp");
    EXPECT_EQ(variables(analysis->GetDrillUps()), std::vector<short>{5});
    EXPECT_NO_THROW(downRecord(2));
}

// A row of the category dialog by position or by its text; read back, the row's name under
// distinct values, else its position.
TEST_F(StartupAutomation, DrillDownCategoryTakesAPositionOrAText) {
    openPanel(labelled());
    put("Variables", "REGION SEX | AGE");
    // AGE's rows: the eight non-empty intervals, 55<x<=60 being empty; SEX's: Femme, Homme,
    // then the missing-data row.
    const struct {
        const char* variable;
        const char* written;
        int selected;     // -2: refused
        const char* read; // back from the member
    } cases[] = {
        {"AGE", "3", 3, "3"},              {"AGE", "3:", 3, "3"},
        {"AGE", "3: x", 3, "3"},           {"AGE", "3 x", -2, nullptr},
        {"AGE", "'60<X<=65'", 7, "7"},     // a label that is no bare text goes in quotes
        {"AGE", "'55<x<=60'", -2, nullptr}, // an empty category has no row
        {"AGE", Missing, 8, "8"},          // after the last row, whatever the variable holds
        {"SEX", "homme", 1, "Homme"},      {"SEX", "'FEMME'", 0, "Femme"},
        {"SEX", "manquante(s)", 2, Missing}, {"SEX", "", 0, "Femme"},
        {"SEX", "Inconnu", -2, nullptr},   {"SEX", ":", -2, nullptr},
        {"SEX", "4294967296", -2, nullptr}, // no position, and no row 0 either
        {"REGION", "Est", 2, "Est"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variable) + " = " + c.written);
        put("DrillDownVariable", c.variable);
        analysis->SetSelected(5);
        const std::string before = snapshot();
        if (c.selected == -2) {
            EXPECT_EQ(failure([&] { put("DrillDownCategory", c.written); }).result, E_FAIL);
            EXPECT_EQ(snapshot(), before);
            continue;
        }
        put("DrillDownCategory", c.written);
        EXPECT_EQ(analysis->GetSelected(), c.selected);
        EXPECT_EQ(getText("DrillDownCategory"), c.read);
    }
}

// CategorySelections lists the rows of the category dialog; a drill step on each position it
// prints pins the category printed beside it.
TEST_F(StartupAutomation, CategorySelectionsListTheRowsThatDrillDownCategoryTakes) {
    const struct {
        const char* variable;
        int countMissing;
        const char* listing;
    } cases[] = {
        {"SEX", 1, "0 Femme | 1 Homme | 2 Manquante(s)"}, {"SEX", 0, "0 Femme | 1 Homme"},
        {"REGION", 1, "0 Nord | 1 Sud | 2 Est"},
        {"AGE", 1,
         "0 20<x<=25 | 1 25<x<=30 | 2 30<x<=35 | 3 35<x<=40 | 4 40<x<=45 | 5 45<x<=50 | "
         "6 50<x<=55 | 7 60<x<=65"},
        {"NOTE", 1, "0 Manquante(s)"}, {"NOTE", 0, Missing}, // nothing to list
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variable) + " CountMD " + std::to_string(c.countMissing));
        openPanel(labelled());
        put("Variables", "REGION SEX NOTE | AGE");
        putNumber("CountMD", c.countMissing);
        put("DrillDownVariable", c.variable);
        put("DrillDownCategory", "0");
        const std::string listing = getText("CategorySelections");
        EXPECT_EQ(listing, c.listing);
        // Recorded macros write the listing back, which changes nothing.
        const std::string before = snapshot();
        for (const char* written : {listing.c_str(), "", ": x"})
            put("CategorySelections", written);
        EXPECT_EQ(snapshot(), before);
        const short number = analysis->GetCurrentDown();
        std::istringstream entries(listing);
        for (std::string entry; std::getline(entries, entry, '|');) {
            std::istringstream fields(entry);
            int position = -1;
            std::string name;
            if (!(fields >> position >> name))
                continue;
            SCOPED_TRACE(entry);
            drillByMacro(c.variable, std::to_string(position));
            ASSERT_EQ(analysis->GetDrillUpsSize(), 1);
            const Drill& drilled = upRecord(number);
            const auto pinned = std::next(drilled.Categories.begin(), drilled.DrilledItem);
            EXPECT_EQ(pinned == drilled.Categories.end() ? Missing : pinned->Name, name);
            put("DrillUpVariable", c.variable);
            macro.call(startup, "DrillUp");
        }
    }
}

TEST_F(StartupAutomation, UserDefinedBoundaries) {
    openPanel(labelled());
    put("Variables", "REGION | AGE INCOME");
    // User-defined categories without boundaries have none to read.
    put("DrillDownVariable", "INCOME");
    putNumber("UserSpecifiedCategories", 1);
    macro.get(startup, "Frequencies");
    EXPECT_EQ(failure([&] { getText("UserDefinedBoundaries"); }).result, E_FAIL);
    // Boundaries are kept under any method, but read only under user-defined categories.
    put("DrillDownVariable", "AGE");
    put("UserDefinedBoundaries", "30 50");
    EXPECT_EQ(downRecord(3).NU, 2);
    EXPECT_EQ(failure([&] { getText("UserDefinedBoundaries"); }).result, E_FAIL);
    putNumber("UserSpecifiedCategories", 1);
    macro.get(startup, "Frequencies"); // applies the method
    EXPECT_EQ(getText("UserDefinedBoundaries"), " 30 50");

    const struct {
        const char* written;
        const char* read; // nullptr: refused, the boundaries stay as they were
    } cases[] = {
        {"30 12.5 -2.25 0", " 30 12.5 -2.25 0"}, // neither sorted nor checked
        {"1e3 0.125", " 1000 0.125"}, {"1 x", nullptr}, {"1, 2", nullptr}, {"", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        put("UserDefinedBoundaries", "60");
        if (c.read == nullptr)
            EXPECT_EQ(failure([&] { put("UserDefinedBoundaries", c.written); }).result, E_FAIL);
        else
            put("UserDefinedBoundaries", c.written);
        EXPECT_EQ(getText("UserDefinedBoundaries"), c.read ? c.read : " 60");
    }

    // A record has room for 100 boundaries.
    std::string hundred;
    for (int i = 1; i <= 100; ++i)
        hundred += std::to_string(i) + " ";
    put("UserDefinedBoundaries", hundred);
    EXPECT_EQ(failure([&] { put("UserDefinedBoundaries", hundred + "101"); }).result, E_FAIL);
    EXPECT_EQ(downRecord(3).NU, 100);
    EXPECT_EQ(downRecord(3).UserInterv[99], 100.0);

    // Boundaries written first spare a drill step the limits dialog.
    const std::size_t opened = dialogs.modalDialogsOpened().size();
    put("UserDefinedBoundaries", "30 50");
    drillByMacro("AGE", "1");
    EXPECT_EQ(dialogs.modalDialogsOpened().size(), opened);
    const Drill& drilled = upRecord(3);
    const Categories& pinned = *std::next(drilled.Categories.begin(), drilled.DrilledItem);
    EXPECT_EQ(pinned.Lower, 30.0);
    EXPECT_EQ(pinned.Upper, 50.0);
    EXPECT_EQ(analysis->GetValidVar(), 4); // ages 35, 45, 40, 50
}

TEST_F(StartupAutomation, MembersWithoutTheirVariableOrCategoryFail) {
    const struct {
        const char* variables;          // chosen, then REGION drilled; "": none chosen
        std::vector<std::string> calls; // "Member" reads it, "Member=text" writes it
    } cases[] = {
        {"",
         {"DrillDownVariable", "DrillUpVariable", "DrillDownCategory", "CategorySelections",
          "UserDefinedBoundaries", "DrillDownVariable=1", "DrillUpVariable=REGION",
          "DrillDownCategory=Nord", "UserDefinedBoundaries=1 2"}},
        {"REGION", // every variable drilled
         {"DrillDownVariable", "DrillDownCategory", "CategorySelections", "UserDefinedBoundaries",
          "DrillDownVariable=REGION", "DrillDownCategory=Nord", "UserDefinedBoundaries=1 2"}},
        {"REGION SEX | AGE", {"DrillDownCategory", "CategorySelections"}}, // none chosen since
    };
    for (const auto& c : cases) {
        openPanel(labelled());
        if (*c.variables != '\0') {
            put("Variables", c.variables);
            drillByMacro("REGION", "0");
        }
        for (const std::string& call : c.calls) {
            SCOPED_TRACE(std::string(c.variables) + ": " + call);
            const std::size_t equals = call.find('=');
            const std::string member = call.substr(0, equals);
            const std::string before = snapshot();
            const Failure error = failure([&] {
                if (equals == std::string::npos)
                    getText(member.c_str());
                else
                    put(member.c_str(), call.substr(equals + 1));
            });
            EXPECT_EQ(error.result, E_FAIL);
            EXPECT_FALSE(error.description.empty());
            EXPECT_EQ(snapshot(), before);
        }
    }
}

// The members of the "Catégorisation" page write its controls as the user would, not while a
// control is disabled; the method takes effect at the variable's next result or drill step.
TEST_F(StartupAutomation, MethodMembersTakeEffectAtTheNextResultOrDrill) {
    openPanel(labelled());
    put("Variables", "REGION | AGE");
    put("DrillDownVariable", "AGE");
    // The count edit is disabled until its method is chosen.
    EXPECT_EQ(failure([&] { putNumber("ValueNoOfExactIntervals", 4); }).result, E_FAIL);
    const struct {
        const char* radio;
        std::vector<std::pair<const char*, double>> settings;
        const char* apply; // a result, or DrillDown into row 0
        int method;
        std::function<void(const Drill&)> check;
    } cases[] = {
        {"NoOfExactIntervals", {{"ValueNoOfExactIntervals", 4}}, "Frequencies", 1,
         [](const Drill& d) { EXPECT_EQ(d.ExactN, 4); }},
        {"StepSize", {{"ValueStepSize", 10}, {"StartingAtMinimum", 0}, {"ValueStartingFrom", 20}},
         "Descriptives", 3,
         [](const Drill& d) {
             EXPECT_EQ(std::tuple(d.Step, d.Start, d.AtMinimum), std::tuple(10.0, 20.0, 0));
         }},
        {"IntegerCategories", {}, "Frequencies", 4, [](const Drill&) {}},
        {"AllDistinctValues", {}, "DrillDown", 0, [](const Drill&) {}},
    };
    int applied = 2; // AGE's neat intervals
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.radio) + " then " + c.apply);
        putNumber(c.radio, 1);
        for (const auto& [member, value] : c.settings)
            putNumber(member, value);
        EXPECT_EQ(getNumber(c.radio), 1);
        for (const auto& [member, value] : c.settings)
            EXPECT_EQ(getNumber(member), value) << member;
        EXPECT_EQ(downRecord(3).Method, applied) << "the method is applied before its time";
        const bool drill = std::string(c.apply) == "DrillDown";
        put("DrillDownCategory", "0");
        if (drill)
            macro.call(startup, "DrillDown");
        else
            macro.get(startup, c.apply);
        const Drill& record = drill ? upRecord(3) : downRecord(3);
        EXPECT_EQ(record.Method, c.method);
        c.check(record);
        applied = c.method;
    }
    // Once drilled, missing-data counting is fixed.
    EXPECT_EQ(failure([&] { putNumber("CountMD", 0); }).result, E_FAIL);
    EXPECT_EQ(analysis->GetCountMD(), 1);
}

TEST_F(StartupAutomation, DrillDownWithoutAnOfferedCategoryDrillsNothing) {
    // REGION: three rows, no missing data.
    for (const char* category : {"", "3", Missing, "-1", "-3"}) {
        SCOPED_TRACE(*category != '\0' ? category : "none chosen");
        openPanel(labelled());
        put("Variables", "REGION SEX | AGE");
        if (*category != '\0')
            put("DrillDownCategory", category);
        const std::string before = wb::stateToJson(*analysis).dump();
        EXPECT_EQ(failure([&] { macro.call(startup, "DrillDown"); }).result, E_FAIL);
        EXPECT_EQ(wb::stateToJson(*analysis).dump(), before);
        EXPECT_TRUE(dialogs.modalDialogsOpened().empty());
        EXPECT_EQ(dialogs.resultsLockDepth(window), 0);
    }
}

// OK and Cancel close the panel and store the stand-alone choice. After the close every
// member but Application fails, also once the analysis is gone and the object lives on by
// the macro's reference alone.
TEST_F(StartupAutomation, AfterOKOrCancelEveryMemberButApplicationFails) {
    const struct {
        const char* member;
        int result, standAlone;
        bool analysisGone;
    } cases[] = {{"OK", 1, 1, false}, {"Cancel", 0, 0, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.member);
        session.keywords().put(0, "StandAloneResults", 1 - c.standAlone);
        openPanel(labelled());
        put("Variables", "REGION SEX | AGE");
        putNumber("StandAloneResults", c.standAlone);
        EXPECT_EQ(analysis->StandAloneResults, c.standAlone);
        startup->AddRef(); // as a macro that keeps the object
        const COleVariant result = macro.call(startup, c.member);
        EXPECT_EQ(result.vt == VT_I4 ? result.lVal : 0, c.result);
        EXPECT_FALSE(dialogs.isOpen(window));
        EXPECT_EQ(session.keywords().get(0, "StandAloneResults"), c.standAlone);
        if (c.analysisGone)
            session.closeAnalysis();

        int members = 0;
        for (const InterfaceDescription& face : DrillDownTypeLib().Interfaces)
            for (const MemberDescription& member : face.Members) {
                const std::string name = member.Name;
                SCOPED_TRACE(name);
                ++members;
                const bool number =
                    member.Type == MemberType::Int || member.Type == MemberType::Double;
                auto call = [&] {
                    if (member.Access == MemberAccess::Get)
                        macro.get(startup, name);
                    else if (member.Access == MemberAccess::Method)
                        macro.call(startup, name);
                    else
                        macro.put(startup, name,
                                  number ? COleVariant(1.0) : COleVariant::Text(automation, "1"));
                };
                if (name == "Application") {
                    EXPECT_NO_THROW(call());
                    continue;
                }
                const Failure error = failure(call);
                EXPECT_EQ(error.result, E_FAIL);
                EXPECT_EQ(error.description, "The dialog has been closed.");
            }
        EXPECT_GT(members, 80);
        const ULONG left = startup->Release();
        if (c.analysisGone) {
            EXPECT_EQ(left, 0u);
        }
        startup = nullptr;
    }
}

TEST_F(StartupAutomation, InterfacesAndBaseMembers) {
    openPanel(labelled());
    IDispatch* const dispatch = startup;
    const struct {
        const char* name;
        IID iid;
        void* expected; // nullptr: not answered
        HRESULT errorInfo;
    } cases[] = {
        {"IUnknown", IID_IUnknown, dispatch, S_FALSE},
        {"IDispatch", IID_IDispatch, dispatch, S_FALSE},
        {"DDNStartup", IID_DDNStartup, dispatch, S_OK},
        {"ISupportErrorInfo", IID_ISupportErrorInfo, static_cast<ISupportErrorInfo*>(startup),
         S_FALSE},
        {"QrxAnalysisDialog", IID_QrxAnalysisDialog, nullptr, S_FALSE},
    };
    const ULONG references = startup->AddRef() - 1;
    startup->Release();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        void* found = reinterpret_cast<void*>(1);
        EXPECT_EQ(startup->QueryInterface(c.iid, &found), c.expected ? S_OK : E_NOINTERFACE);
        EXPECT_EQ(found, c.expected);
        if (c.expected != nullptr) {
            EXPECT_EQ(startup->Release(), references); // the answer held one reference
        }
        EXPECT_EQ(startup->InterfaceSupportsErrorInfo(c.iid), c.errorInfo);
    }

    EXPECT_EQ(getText("Name"), ModuleString(10058));
    for (const char* member : {"Application", "Parent"}) {
        const COleVariant object = macro.get(startup, member);
        EXPECT_EQ(object.vt, VT_DISPATCH) << member;
        EXPECT_EQ(object.pdispVal, nullptr) << member;
    }
    // The result-selection members of other dialogs are not served.
    EXPECT_EQ(failure([&] { putNumber("ResultsOption", 1); }).result, E_NOTIMPL);
    EXPECT_TRUE(dialogs.isOpen(window));
}

} // namespace
