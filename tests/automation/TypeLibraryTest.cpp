// The type library of the panel's automation object: its table and its registration.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <utility>

#include "drilldown/automation/TypeLibrary.h"
#include "drilldown/resources/Dialogs.h"
#include "workbench/automation/AutomationRuntime.h"

namespace {

// A member that stands for a control names a control of the panel.
TEST(DrillDownTypeLib, IdentifiersAreUniquePropertiesPairUpAndControlsExist) {
    const DialogTemplate* panel = FindDialogTemplate(DlgStartupPanel);
    ASSERT_NE(panel, nullptr);
    for (const InterfaceDescription& interface : DrillDownTypeLib().Interfaces) {
        SCOPED_TRACE(interface.Name);
        std::set<std::pair<DISPID, MemberAccess>> entries;
        std::map<DISPID, std::string> names;
        for (std::size_t i = 0; i < interface.Members.size(); ++i) {
            const MemberDescription& member = interface.Members[i];
            SCOPED_TRACE(member.Name);
            if (const int control = PanelControlOf(member.Id); control != 0) {
                EXPECT_NE(FindDialogControl(*panel, control).Control, nullptr) << control;
            }
            EXPECT_TRUE(entries.insert({member.Id, member.Access}).second) << "entry twice";
            const auto [named, added] = names.emplace(member.Id, member.Name);
            EXPECT_EQ(named->second, member.Name) << "one identifier, two names";
            if (member.Access != MemberAccess::Put || !added)
                continue;
            // A put without a get: only the Results members of the base are write-only.
            EXPECT_EQ(std::string(member.Name).rfind("Results", 0), 0u);
        }
        // A get and its put take consecutive slots, the get first.
        for (std::size_t i = 1; i < interface.Members.size(); ++i) {
            const MemberDescription& put = interface.Members[i];
            if (put.Access != MemberAccess::Put || !entries.count({put.Id, MemberAccess::Get}))
                continue;
            EXPECT_EQ(interface.Members[i - 1].Id, put.Id) << put.Name;
            EXPECT_EQ(interface.Members[i - 1].Access, MemberAccess::Get) << put.Name;
        }
    }
}

TEST(DrillDownTypeLib, RegisteredNamesResolveThroughTheBase) {
    wb::AutomationRuntime automation;
    ASSERT_EQ(RegisterDrillDownTypeLib(automation), S_OK);

    struct NameRow {
        const char* name;
        HRESULT result;
        DISPID id;
    } const rows[] = {
        {"CategorySelections", S_OK, 0x60030041},
        {"categoryselections", S_OK, 0x60030041},         // case does not matter
        {"Name", S_OK, 0x0},                              // from QrxAnalysisDialog
        {"Category", DISP_E_UNKNOWNNAME, DISPID_UNKNOWN}, // a prefix is not a name
        {"", DISP_E_UNKNOWNNAME, DISPID_UNKNOWN},
    };
    for (const NameRow& row : rows) {
        SCOPED_TRACE(row.name);
        std::string name = row.name;
        LPOLESTR names[] = {name.data()};
        DISPID id = 42;
        EXPECT_EQ(automation.GetIDsOfNames(IID_DDNStartup, names, 1, &id), row.result);
        EXPECT_EQ(id, row.id);
    }
    // The base alone does not see the members of the panel.
    std::string drillDown = "DrillDown";
    LPOLESTR names[] = {drillDown.data()};
    DISPID id = 0;
    EXPECT_EQ(automation.GetIDsOfNames(IID_QrxAnalysisDialog, names, 1, &id), DISP_E_UNKNOWNNAME);
}

} // namespace
