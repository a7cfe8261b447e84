#include "workbench/session/PanelMacro.h"

#include <vector>

#include "drilldown/resources/ControlIds.h"
#include "drilldown/resources/Dialogs.h"
#include "workbench/session/StateJson.h"

namespace wb {

namespace {

// Why the run cannot go on after a statement: a document or file that could not be made,
// lists that the variable dialog refused, or a modal dialog that nobody can answer.
std::string statementProblem(AnalysisSession& session, std::size_t& seen) {
    if (std::string failed = session.takeFailure(); !failed.empty())
        return failed;
    DialogHost& dialogs = session.dialogs();
    if (std::string refused = dialogs.takeRefusedChoice(); !refused.empty())
        return refused;
    const std::vector<int>& opened = dialogs.modalDialogsOpened();
    if (opened.size() == seen)
        return {};
    seen = opened.size();
    const DialogTemplate* dialog = FindDialogTemplate(opened.back());
    const std::string title = dialog != nullptr ? std::string(dialog->Title) : "?";
    return "the dialog \"" + title + "\" opened, which a macro cannot answer";
}

// Presses the panel's brushing button with the macro's steps queued; why that failed, or
// empty.
std::string brushByMacro(AnalysisSession& session, const std::vector<BrushingStep>& steps) {
    session.brushing().queue(steps);
    const bool pressed = session.dialogs().click(session.panel(), ButtonBrushing);
    const std::size_t unused = session.brushing().takeUnused().size();
    if (!pressed)
        return "the brushing button is disabled now";
    if (unused != 0)
        return "the brushing ended with " + std::to_string(unused) + " of its " +
               std::to_string(steps.size()) + " steps unused";
    return {};
}

} // namespace

void runPanelMacro(AnalysisSession& session, std::istream& macro, const std::string& name,
                   std::ostream& out) {
    const std::vector<MacroStatement> statements = parseMacro(macro, name, session.automation());
    Dispatcher dispatcher(session.automation());
    IDispatch* panel = session.panelObject();
    // The macro holds the panel like any automation client, past the end of its window.
    panel->AddRef();
    struct Hold {
        IDispatch* object;
        ~Hold() { object->Release(); }
    } hold{panel};
    // The analysis knows that a macro drives it: closing it then leaves its windows open.
    struct Driving {
        AnalysisDocument& document;
        explicit Driving(AnalysisDocument& d) : document(d) { document.beginMacro(); }
        ~Driving() { document.endMacro(); }
    } driving(session.analysisDocument());
    std::size_t modalsSeen = session.dialogs().modalDialogsOpened().size();
    MacroRunner::Hooks hooks{[&] { return stateToJson(session.analysis()).dump(2); },
                             [&] { return statementProblem(session, modalsSeen); },
                             [&](int number) {
                                 if (session.documents().find(number) == nullptr)
                                     return false;
                                 session.documents().close(number);
                                 return true;
                             },
                             [&](const std::vector<BrushingStep>& steps) {
                                 return brushByMacro(session, steps);
                             }};
    MacroRunner(dispatcher, panel, name, hooks, out).run(statements);
}

void endPanelAsOK(AnalysisSession& session) {
    if (session.dialogs().isOpen(session.panel()))
        Dispatcher(session.automation()).call(session.panelObject(), "OK");
}

} // namespace wb
