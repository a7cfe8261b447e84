// The dialog templates: the controls that the code and the front ends rely on, their exact
// captions, and a layout that fits.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "drilldown/resources/Dialogs.h"

namespace {

using K = DialogControlKind;

const DialogTemplate& Dialog(int id) {
    const DialogTemplate* dialog = FindDialogTemplate(id);
    EXPECT_NE(dialog, nullptr) << id;
    return dialog != nullptr ? *dialog : AllDialogTemplates().front();
}

// Ids that the module's code addresses, with the dialog or page that holds them.
TEST(DialogTemplates, ControlsThatTheCodeUses) {
    struct Row {
        int dialog, control, owner;
        DialogControlKind kind;
    };
    const Row rows[] = {
        {4813, 9053, 4813, K::ListBox},    // drill-down list
        {4813, 9054, 4813, K::ListBox},    // drill-up list
        {4813, 9103, 4813, K::PushButton}, // brushing, enabled with the drill-down list
        {4813, 9106, 4813, K::CheckBox},   // the panel's own, ahead of the Options page's
        {4813, 9069, 4815, K::RadioButton}, {4813, 9070, 4815, K::IntEdit},
        {4813, 9072, 4815, K::RealEdit},    {4813, 9107, 4816, K::CheckBox},
        {4818, 9102, 4818, K::ListView},    {4819, 9089, 4819, K::ListBox}, // unplaced variables
        {4819, 9090, 4819, K::ListBox},                                     // placed variables
        {4819, 9091, 4819, K::PushButton},                                  // place
        {4819, 9092, 4819, K::PushButton},                                  // take back
        {4820, 1, 4820, K::DefaultButton},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.dialog) + "/" + std::to_string(row.control));
        const DialogControlPlace place = FindDialogControl(Dialog(row.dialog), row.control);
        ASSERT_NE(place.Control, nullptr);
        EXPECT_EQ(place.Owner->Id, row.owner);
        EXPECT_EQ(place.Control->Kind, row.kind);
    }
    EXPECT_EQ(FindDialogControl(Dialog(4819), 9053).Control, nullptr);
    EXPECT_EQ(FindDialogControl(Dialog(4813), NoControlId).Control, nullptr);
}

bool Inside(const DialogRect& r, int width, int height) {
    return r.X >= 0 && r.Y >= 0 && r.Width > 0 && r.Height > 0 && r.X + r.Width <= width &&
           r.Y + r.Height <= height;
}

bool Overlap(const DialogRect& a, const DialogRect& b) {
    return a.X < b.X + b.Width && b.X < a.X + a.Width && a.Y < b.Y + b.Height &&
           b.Y < a.Y + a.Height;
}

// Controls lie inside their dialog, a page's inside the tab control's display area, and
// apart from the frames no two controls cover each other.
TEST(DialogTemplates, LayoutFits) {
    const DialogTemplate& panel = Dialog(DlgStartupPanel);
    const DialogRect tab = FindDialogControl(panel, panel.TabControlId).Control->Rect;
    const std::set<int> pages(panel.Pages.begin(), panel.Pages.end());
    for (const DialogTemplate& dialog : AllDialogTemplates()) {
        const bool isPage = pages.contains(dialog.Id);
        const int width = isPage ? tab.Width - 4 : dialog.Width;
        const int height = isPage ? tab.Height - 14 - 4 : dialog.Height;
        for (const DialogControl& a : dialog.Controls) {
            SCOPED_TRACE(std::to_string(dialog.Id) + "/" + std::string(a.Caption));
            EXPECT_TRUE(Inside(a.Rect, width, height));
            if (a.Kind == K::GroupBox)
                continue;
            for (const DialogControl& b : dialog.Controls) {
                if (&a == &b || b.Kind == K::GroupBox)
                    continue;
                EXPECT_FALSE(Overlap(a.Rect, b.Rect)) << b.Caption;
            }
        }
    }
}

} // namespace
