// Dialogs of the control model made from the module's templates.

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "drilldown/resources/Caption.h"
#include "drilldown/resources/Dialogs.h"
#include "workbench/dialogs/DialogTemplates.h"

namespace {

using wb::ControlKind;

// The first declaration of each id of a dialog and its pages.
std::map<int, const DialogControl*> DeclaredControls(const DialogTemplate& dialog) {
    std::map<int, const DialogControl*> controls;
    std::vector<const DialogTemplate*> parts{&dialog};
    for (const int page : dialog.Pages)
        parts.push_back(FindDialogTemplate(page));
    for (const DialogTemplate* part : parts)
        for (const DialogControl& control : part->Controls)
            if (control.Id != NoControlId)
                controls.try_emplace(control.Id, &control);
    return controls;
}

TEST(DialogTemplatesModel, DeclaresExactlyTheTemplatesControls) {
    std::set<int> everyId{NoControlId, 0};
    for (const DialogTemplate& dialog : AllDialogTemplates())
        for (const auto& [id, control] : DeclaredControls(dialog))
            everyId.insert(id);

    for (const DialogTemplate& dialog : AllDialogTemplates()) {
        SCOPED_TRACE(dialog.Id);
        wb::ControlModel model;
        const HWND handle = wb::createDialogFromTemplate(model, dialog.Id);
        EXPECT_EQ(model.resourceId(handle), dialog.Id);
        const auto declared = DeclaredControls(dialog);
        for (const int id : everyId) {
            SCOPED_TRACE(id);
            const auto found = declared.find(id);
            if (found == declared.end()) {
                EXPECT_EQ(model.controlHandle(handle, id), nullptr);
                continue;
            }
            ASSERT_NE(model.controlHandle(handle, id), nullptr);
            EXPECT_NE(model.kind(handle, id), ControlKind::Undeclared);
            EXPECT_EQ(model.text(handle, id), ParseCaption(found->second->Caption).Text);
            EXPECT_FALSE(model.isChecked(handle, id));
            EXPECT_TRUE(model.isEnabled(handle, id));
        }
    }
}

// The texts are DeclaresExactlyTheTemplatesControls' concern.
TEST(DialogTemplatesModel, KindsAndVisibility) {
    struct Row {
        int dialog, control;
        ControlKind kind;
        bool shown;
    };
    const Row rows[] = {
        {4813, 9053, ControlKind::ListBox, true},
        {4813, 9056, ControlKind::Button, true},
        {4813, 9106, ControlKind::CheckBox, true},
        {4813, 9126, ControlKind::Static, true}, // group box
        {4813, 200, ControlKind::Tab, true},
        {4813, 9121, ControlKind::Button, false},
        {4813, 9064, ControlKind::Radio, true},
        {4813, 9070, ControlKind::Edit, true},
        {4818, 9102, ControlKind::ListBox, true}, // list view: rows and a selection
        {4820, 9096, ControlKind::Static, true},  // help text
    };
    wb::ControlModel model;
    std::map<int, HWND> dialogs;
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.dialog) + "/" + std::to_string(row.control));
        if (!dialogs.contains(row.dialog))
            dialogs[row.dialog] = wb::createDialogFromTemplate(model, row.dialog);
        const HWND dialog = dialogs[row.dialog];
        EXPECT_EQ(model.kind(dialog, row.control), row.kind);
        EXPECT_EQ(model.isShown(dialog, row.control), row.shown);
    }
}

TEST(DialogTemplatesModel, UnknownTemplateThrows) {
    wb::ControlModel model;
    EXPECT_THROW(wb::createDialogFromTemplate(model, 4821), std::out_of_range);
}

} // namespace
