// What the panel gives the host's macro recorder: its table of recordable controls, and the
// values of the controls the host cannot read, which exist only once there is one to give.

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "drilldown/resources/ControlIds.h"
#include "drilldown/resources/Dialogs.h"
#include "support/PanelFixture.h"

namespace {

TEST(RecordingTable, EveryEntryIsAControlOfThePanelAndOnlyTheDrillActionsAreNotRecorded) {
    const DialogTemplate* panel = FindDialogTemplate(DlgStartupPanel);
    ASSERT_NE(panel, nullptr);
    std::set<int> ids;
    std::set<int> unrecorded;
    const CDialogControlDescr* entry = DDNControlDescriptions;
    for (; entry->controlId != 0; ++entry) {
        SCOPED_TRACE(entry->controlId);
        EXPECT_TRUE(ids.insert(entry->controlId).second) << "twice in the table";
        EXPECT_NE(FindDialogControl(*panel, entry->controlId).Control, nullptr);
        if (!entry->recorded)
            unrecorded.insert(entry->controlId);
        // A value control has a kind of value; an action that is recorded is a result.
        EXPECT_EQ(entry->accessKind == 1 && entry->recorded, entry->controlClass >= 4);
    }
    EXPECT_EQ(ids.size(), 44u);
    EXPECT_EQ(unrecorded, (std::set<int>{ButtonDrillDown, ButtonDrillUp}));
}

class RecordedValues : public test::PanelFixture {
protected:
    // The value the panel gives for control `id`; "(none)" when it gives none.
    std::string given(int id) {
        const std::unique_ptr<COleAConstant> value(startup->RecordControlValue(id));
        return value != nullptr ? value->Text() : "(none)";
    }
};

TEST_F(RecordedValues, TheFiveControlsGiveTheirMembersValueOnceItExists) {
    openPanel(survey());
    EXPECT_EQ(given(GroupDrillVariables), "(none)") << "no category listing without variables";
    EXPECT_EQ(given(GroupDrillOperations), "(none)");
    choose({1, 2}, {3});
    EXPECT_EQ(given(ListDrillDowns), "REGION");
    EXPECT_EQ(given(ListDrillUps), "(none)") << "nothing drilled yet";
    EXPECT_EQ(given(GroupDrillOperations), "(none)") << "no category chosen yet";
    drillDown(1);
    EXPECT_EQ(given(ListDrillUps), "REGION");
    EXPECT_EQ(given(ListDrillDowns), "SEX");
    EXPECT_EQ(given(CheckStandAlone), "(none)") << "the host reads a check box itself";
}

} // namespace
