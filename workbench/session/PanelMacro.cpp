#include "workbench/session/PanelMacro.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include "drilldown/resources/ControlIds.h"
#include "drilldown/resources/Dialogs.h"
#include "workbench/session/StateJson.h"
#include "workbench/stats/SubsetContrast.h"

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

bool isMember(const MacroStatement& statement, std::string_view member) {
    return std::equal(statement.member.begin(), statement.member.end(), member.begin(),
                      member.end(), [](char a, char b) {
                          return std::tolower(static_cast<unsigned char>(a)) ==
                                 std::tolower(static_cast<unsigned char>(b));
                      });
}

// The number a put gives, when it is one (the panel reads "500" as 500 too).
std::optional<double> putNumber(const MacroStatement& statement) {
    const std::string text = macroValueText(statement.value);
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// A number as a macro writes it: 2.5, 500.
std::string macroNumberText(double number) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, number);
    return std::string(text, error == std::errc() ? end : text);
}

// A category number that the panel keeps as it stands, though it names no category or
// loses its fraction.
std::string categoryCaution(const CDrillDown& analysis, double number) {
    const CategorySet* categories = analysis.GetCurrentCategories();
    if (categories == nullptr)
        return {};
    const auto count = static_cast<double>(categories->size());
    if (number < 0 || number > count)
        return "the current variable has categories 0 to " + macroNumberText(count - 1) +
               " and the missing-data row " + macroNumberText(count) + "; " +
               macroNumberText(number) + " names none of them";
    if (number != std::trunc(number))
        return macroNumberText(number) + " is no whole number; the panel takes category " +
               macroNumberText(std::trunc(number));
    return {};
}

// Boundaries that the panel stores unchecked, as a macro gives them, though categories
// of boundaries out of order overlap.
std::string boundariesCaution(const CDrillDown& analysis) {
    const DrillSet* downs = analysis.GetDrillDowns();
    const short variable = analysis.GetCurrentDrillDown();
    if (downs == nullptr)
        return {};
    for (const Drill& record : *downs)
        if (record.Variable == variable &&
            std::adjacent_find(record.UserInterv.begin(), record.UserInterv.begin() + record.NU,
                               std::greater_equal<double>()) !=
                record.UserInterv.begin() + record.NU)
            return "the boundaries are not in strictly ascending order; the panel keeps them as "
                   "they are, and their categories overlap";
    return {};
}

std::string putCaution(AnalysisSession& session, const MacroStatement& statement) {
    if (isMember(statement, "DrillDownCategory"))
        if (const std::optional<double> number = putNumber(statement))
            return categoryCaution(session.analysis(), *number);
    if (isMember(statement, "UserDefinedBoundaries"))
        return boundariesCaution(session.analysis());
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
    MacroRunner::Hooks hooks{
        .dump = [&] { return stateText(session.analysis()); },
        .contrast =
            [&] {
                const std::string text =
                    contrastText(contrastSubset(session.analysis(), session.file()));
                return text.substr(0, text.size() - 1); // the runner ends the line
            },
        .problem = [&] { return statementProblem(session, modalsSeen); },
        .close =
            [&](int number) {
                if (session.documents().find(number) == nullptr)
                    return false;
                session.documents().close(number);
                return true;
            },
        .brush = [&](const std::vector<BrushingStep>& steps) { return brushByMacro(session, steps); },
        .caution = [&](const MacroStatement& statement) { return putCaution(session, statement); }};
    MacroRunner(dispatcher, panel, name, hooks, out).run(statements);
}

void endPanelAsOK(AnalysisSession& session) {
    if (session.dialogs().isOpen(session.panel()))
        Dispatcher(session.automation()).call(session.panelObject(), "OK");
}

} // namespace wb
