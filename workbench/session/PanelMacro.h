#pragma once
// A macro run against the panel of a session's analysis, as a user's recorded macro runs:
// through the panel's automation object only, whichever front end shows the panel.
//
//   1. the session has an analysis (its panel is open);
//   2. runPanelMacro reads the whole macro first, so that a wrong line stops the run before
//      anything has happened, then runs its statements in order, writing what Print and
//      Dump show to `out`;
//   3. the run stops with MacroError ("MACRO:LINE: STATEMENT: reason") at a statement the
//      panel refuses, at lists the variable dialog refused, or when a modal dialog opened
//      that no macro can answer.
// endPanelAsOK ends a run as the user's OK does: the panel closes, its settings kept.

#include <iosfwd>
#include <string>

#include "workbench/automation/Macro.h"
#include "workbench/session/AnalysisSession.h"

namespace wb {

void runPanelMacro(AnalysisSession& session, std::istream& macro, const std::string& name,
                   std::ostream& out);
void endPanelAsOK(AnalysisSession& session);

} // namespace wb
