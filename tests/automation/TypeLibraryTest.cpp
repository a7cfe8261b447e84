// The type library of the panel's automation object: its table and its registration.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <utility>

#include "drilldown/automation/TypeLibrary.h"
#include "workbench/automation/AutomationRuntime.h"

namespace {

const InterfaceDescription& interfaceNamed(const char* name) {
    for (const InterfaceDescription& interface : DrillDownTypeLib().Interfaces)
        if (std::string(interface.Name) == name)
            return interface;
    throw std::logic_error(std::string("no interface ") + name);
}

TEST(DrillDownTypeLib, LibraryAndInterfaceAttributes) {
    const TypeLibDescription& library = DrillDownTypeLib();
    EXPECT_STREQ(library.Name, "QRXDrillDown");
    // The registry form, field by field: 8-4-4-2+2-12 hexadecimal digits.
    EXPECT_EQ(library.LibId.Data1, 0xC9E2902Bu);
    EXPECT_EQ(library.LibId.Data3, 0x11D4u);
    EXPECT_EQ(library.LibId.Data4[1], 0xF4u);
    EXPECT_EQ(library.LibId.Data4[7], 0x40u);
    EXPECT_STREQ(library.HelpString, "QUORIX 6 Drill-Down Explorer Library");

    const InterfaceDescription& base = interfaceNamed("QrxAnalysisDialog");
    EXPECT_EQ(base.Iid, MakeGuid("C9E2A04E-3D45-11D4-9FF4-00C04FA0D540"));
    EXPECT_EQ(base.Base, IID_IDispatch);
    EXPECT_EQ(base.Members.size(), 13u);

    const InterfaceDescription& startup = interfaceNamed("DDNStartup");
    EXPECT_EQ(startup.Iid, MakeGuid("C9E2C2DB-3D45-11D4-9FF4-00C04FA0D540"));
    EXPECT_EQ(startup.Base, base.Iid);
    EXPECT_STREQ(startup.HelpString, "Drill-Down analysis startup dialog");
    EXPECT_EQ(startup.Members.size(), 71u); // 44 members, 27 of them with a get and a put
}

TEST(DrillDownTypeLib, IdentifiersAreUniqueAndPropertiesPairUp) {
    for (const InterfaceDescription& interface : DrillDownTypeLib().Interfaces) {
        SCOPED_TRACE(interface.Name);
        std::set<std::pair<DISPID, MemberAccess>> entries;
        std::map<DISPID, std::string> names;
        for (std::size_t i = 0; i < interface.Members.size(); ++i) {
            const MemberDescription& member = interface.Members[i];
            SCOPED_TRACE(member.Name);
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

struct SpotRow {
    const char* interface;
    const char* name;
    MemberAccess access;
    DISPID id;
    MemberType type;
    const char* help;
};

const SpotRow SpotRows[] = {
    // a text property read as text...
    {"DDNStartup", "CategorySelections", MemberAccess::Get, 0x60030041, MemberType::Text,
     "Category selections of current drill-down variable"},
    // ...and written from any value
    {"DDNStartup", "CategorySelections", MemberAccess::Put, 0x60030041, MemberType::Variant,
     "Category selections of current drill-down variable"},
    // an action
    {"DDNStartup", "DrillDown", MemberAccess::Method, 0x6003003f, MemberType::None,
     "Drill down on selected variable and category"},
    // one of the two real values
    {"DDNStartup", "ValueStartingFrom", MemberAccess::Put, 0x6003001d, MemberType::Double,
     "Lower boundary (start value) for fixed-stepsize method of categorization"},
    // the base's value member has no help string
    {"QrxAnalysisDialog", "Name", MemberAccess::Get, 0x0, MemberType::Text, ""},
    // a method with a result
    {"QrxAnalysisDialog", "OK", MemberAccess::Method, 0x3, MemberType::Int, ""},
    // a put that takes text only
    {"QrxAnalysisDialog", "ResultsSaveFileName", MemberAccess::Put, 0xa, MemberType::Text, ""},
};

TEST(DrillDownTypeLib, SpotChecksOfTheTable) {
    for (const SpotRow& row : SpotRows) {
        SCOPED_TRACE(std::string(row.interface) + "." + row.name);
        const MemberDescription* found = nullptr;
        for (const MemberDescription& member : interfaceNamed(row.interface).Members)
            if (std::string(member.Name) == row.name && member.Access == row.access)
                found = &member;
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->Id, row.id);
        EXPECT_EQ(found->Type, row.type);
        EXPECT_STREQ(found->HelpString, row.help);
    }
}

TEST(DrillDownTypeLib, PanelControlsOfMembers) {
    EXPECT_EQ(PanelControlOf(0x60030000), 9050); // Variables
    EXPECT_EQ(PanelControlOf(0x6003003f), 9056); // DrillDown
    EXPECT_EQ(PanelControlOf(0x60030045), 9112); // UserDefinedBoundaries
    EXPECT_EQ(PanelControlOf(0x60030001), 0);    // between two members
    EXPECT_EQ(PanelControlOf(0x3), 0);           // OK has no control
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
