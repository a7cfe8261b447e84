#include "workbench/dialogs/DialogTemplates.h"

#include <stdexcept>
#include <string>

#include "drilldown/resources/Caption.h"
#include "drilldown/resources/Dialogs.h"

namespace wb {

namespace {

// The model knows fewer kinds than the resources: what matters to it is which state a
// control keeps. A group box, a label and help text are inert text; the whole-number and real
// edits are edits whose range the module sets; a list view holds rows and a selection as a
// list box does; the default button is a button.
ControlKind modelKind(DialogControlKind kind) {
    switch (kind) {
    case DialogControlKind::PushButton:
    case DialogControlKind::DefaultButton:
        return ControlKind::Button;
    case DialogControlKind::CheckBox:
        return ControlKind::CheckBox;
    case DialogControlKind::RadioButton:
        return ControlKind::Radio;
    case DialogControlKind::GroupBox:
    case DialogControlKind::Label:
    case DialogControlKind::HelpText:
        return ControlKind::Static;
    case DialogControlKind::Edit:
    case DialogControlKind::IntEdit:
    case DialogControlKind::RealEdit:
        return ControlKind::Edit;
    case DialogControlKind::ListBox:
    case DialogControlKind::ListView:
        return ControlKind::ListBox;
    case DialogControlKind::TabControl:
        return ControlKind::Tab;
    }
    return ControlKind::Undeclared;
}

void declareControls(ControlModel& model, HWND dialog, const DialogTemplate& source) {
    for (const DialogControl& control : source.Controls) {
        if (control.Id == NoControlId || model.controlHandle(dialog, control.Id) != nullptr)
            continue;
        model.addControl(dialog, control.Id, modelKind(control.Kind));
        model.setText(dialog, control.Id, ParseCaption(control.Caption).Text);
        model.setChecked(dialog, control.Id, false);
        model.setShown(dialog, control.Id, !control.HasStyle(ControlStyle::Hidden));
    }
}

} // namespace

HWND createDialogFromTemplate(ControlModel& model, int resourceId) {
    const DialogTemplate* source = FindDialogTemplate(resourceId);
    if (source == nullptr)
        throw std::out_of_range("no dialog template " + std::to_string(resourceId));
    const HWND dialog = model.createDialog(resourceId, ControlCreation::Declared);
    declareControls(model, dialog, *source);
    for (const int pageId : source->Pages) {
        if (const DialogTemplate* page = FindDialogTemplate(pageId))
            declareControls(model, dialog, *page);
    }
    return dialog;
}

} // namespace wb
