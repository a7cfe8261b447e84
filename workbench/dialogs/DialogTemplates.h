#pragma once
// Dialogs of the control model made from the module's dialog templates
// (drilldown/resources/Dialogs.h), so that a dialog has exactly the controls that its
// resource has and a front end that asks for any other id finds none.

#include "workbench/dialogs/ControlModel.h"

namespace wb {

// Creates dialog `resourceId` in the model with ControlCreation::Declared and declares every
// control of its template that has an id, with its kind, the visible text of its caption and
// unchecked; controls made hidden by the resource are not shown. A panel's tab pages share
// its id space, so their controls are declared on the panel; an id that a page repeats
// (check box 9106) stays one control, with the text of its first declaration.
// Throws std::out_of_range for an id that has no template.
HWND createDialogFromTemplate(ControlModel& model, int resourceId);

} // namespace wb
