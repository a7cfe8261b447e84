// drilldown run and drilldown demo: a macro against a new Drill-Down analysis, through the
// panel's automation object only.

#include <fstream>
#include <iostream>

#include "drilldown/resources/Dialogs.h"
#include "workbench/automation/Macro.h"
#include "workbench/cli/Commands.h"
#include "workbench/cli/HeadlessRun.h"
#include "workbench/session/StateJson.h"

namespace wb::cli {

namespace {

struct MacroOptions {
    RunSetup setup;
    std::string macro;
};

MacroOptions parseMacroArguments(const Arguments& arguments) {
    MacroOptions options;
    std::vector<std::string> files;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size())
                throw UsageError(argument + " needs a value");
            return arguments[++i];
        };
        if (argument == "--out")
            options.setup.out = value();
        else if (argument == "--weight")
            options.setup.weight = value();
        else if (argument == "--select")
            options.setup.selection = value();
        else if (argument.starts_with("--"))
            throw UsageError("unknown option " + argument);
        else
            files.push_back(argument);
    }
    if (files.size() != 2)
        throw UsageError("give the data file and the macro");
    options.setup.file = files[0];
    options.macro = files[1];
    return options;
}

// Why the run cannot go on after a statement: lists that the variable dialog refused, or a
// modal dialog that nobody can answer.
std::string statementProblem(DialogHost& dialogs, std::size_t& seen) {
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

int runMacroFile(const MacroOptions& options, std::ostream& out) {
    std::ifstream input(options.macro);
    if (!input)
        throw DataError(options.macro + ": cannot be read");
    HeadlessRun run(options.setup);
    AnalysisSession& session = run.session();
    try {
        const std::vector<MacroStatement> statements =
            parseMacro(input, options.macro, session.automation());
        Dispatcher dispatcher(session.automation());
        IDispatch* panel = session.panelObject();
        // The macro holds the panel like any automation client, past the end of its window.
        panel->AddRef();
        struct Hold {
            IDispatch* object;
            ~Hold() { object->Release(); }
        } hold{panel};
        std::size_t modalsSeen = session.dialogs().modalDialogsOpened().size();
        MacroRunner::Hooks hooks{[&] { return stateToJson(run.analysis()).dump(2); },
                                 [&] { return statementProblem(session.dialogs(), modalsSeen); }};
        MacroRunner(dispatcher, panel, options.macro, hooks, out).run(statements);
        // A macro ends as the user's OK does: the panel closes and its settings are kept.
        if (session.dialogs().isOpen(session.panel()))
            dispatcher.call(panel, "OK");
    } catch (const MacroError& error) {
        std::cerr << error.what() << '\n';
        return ExitDataError;
    }
    if (!session.output().documents().empty()) {
        out << "\nWrote " << documentCount(session.output().documents()) << " to "
            << run.folder().folder().string() << "/index.html:\n";
        for (const std::string& file : run.folder().shownFiles())
            out << "  " << file << '\n';
    }
    return ExitSuccess;
}

} // namespace

int runMacro(const Arguments& arguments) {
    return runMacroFile(parseMacroArguments(arguments), std::cout);
}

int runDemo(const Arguments& arguments) {
    MacroOptions options;
    options.setup.file = std::string(DD_EXAMPLES_DIR) + "/sample.csv";
    options.macro = std::string(DD_EXAMPLES_DIR) + "/tour.ddm";
    if (arguments.size() == 2 && arguments[0] == "--out")
        options.setup.out = arguments[1];
    else if (!arguments.empty())
        throw UsageError("demo takes only --out DIR");
    std::cout << "Running " << options.macro << " on " << options.setup.file << "\n\n";
    return runMacroFile(options, std::cout);
}

} // namespace wb::cli
