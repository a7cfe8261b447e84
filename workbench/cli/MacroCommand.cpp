// drilldown run and drilldown demo: a macro against a new Drill-Down analysis, through the
// panel's automation object only.

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>

#include "workbench/cli/Commands.h"
#include "workbench/cli/HeadlessRun.h"
#include "workbench/data/WholeFile.h"
#include "workbench/session/MacroRecorder.h"
#include "workbench/session/PanelMacro.h"
#include "workbench/session/WindowLayout.h"

namespace wb::cli {

namespace {

struct MacroOptions {
    RunSetup setup;
    std::string macro;
    std::optional<std::string> layout;     // restored before the macro
    std::optional<std::string> saveLayout; // written after it
    std::optional<std::string> record;     // the macro that the run records
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
        else if (argument == "--layout")
            options.layout = value();
        else if (argument == "--save-layout")
            options.saveLayout = value();
        else if (argument == "--record")
            options.record = value();
        else if (argument == "--no-parent-shares")
            options.setup.parentShares = false;
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

void restoreLayout(AnalysisSession& session, const std::string& path) {
    std::ifstream input(path);
    std::string text;
    if (!input || !std::getline(input, text))
        throw DataError(path + ": cannot be read: " + std::strerror(errno));
    try {
        restoreWindowLayout(session, text);
    } catch (const LayoutError& error) {
        throw DataError(path + ": " + error.what());
    }
}

void writeText(const std::string& path, const std::string& text) {
    if (const std::string reason = writeWholeFile(path, text); !reason.empty())
        throw DataError(path + ": cannot be written: " + reason);
}

void saveLayout(AnalysisSession& session, const std::string& path) {
    std::string layout;
    try {
        layout = windowLayout(session);
    } catch (const LayoutError& error) {
        throw DataError(path + ": " + error.what());
    }
    writeText(path, layout + '\n');
}

int runMacroFile(const MacroOptions& options, std::ostream& out) {
    std::ifstream input(options.macro);
    if (!input)
        throw DataError(options.macro + ": cannot be read: " + std::strerror(errno));
    HeadlessRun run(options.setup);
    AnalysisSession& session = run.session();
    MacroRecorder recorder(session);
    if (options.record)
        recorder.start();
    try {
        runPanelMacro(session, input, options.macro, out);
    } catch (const MacroError& error) {
        std::cerr << error.what() << '\n';
        return ExitDataError;
    }
    recorder.stop();
    if (options.record)
        writeText(*options.record, recorder.text(options.setup.file));
    // The windows of a layout come back for the variables and subset the macro set up.
    if (options.layout)
        restoreLayout(session, *options.layout);
    if (options.saveLayout)
        saveLayout(session, *options.saveLayout);
    // A macro of the command ends as the user's OK does.
    endPanelAsOK(session);
    run.reportWritten(out);
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
