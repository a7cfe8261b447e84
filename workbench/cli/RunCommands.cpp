// drilldown dump and drilldown report: choose variables, drill down step by step as the
// panel's button does, then print the analysis's state as JSON (dump) or write its result
// tables and the current subset into an output folder (report).

#include <charconv>
#include <iostream>
#include <memory>
#include <optional>

#include "drilldown/resources/ControlIds.h"
#include "workbench/cli/Commands.h"
#include "workbench/cli/HeadlessRun.h"
#include "workbench/data/VariableList.h"
#include "workbench/session/DrillCondition.h"
#include "workbench/session/StateJson.h"
#include "workbench/stats/SubsetContrast.h"
#include "workbench/text/Blanks.h"
#include "workbench/text/Spelling.h"

namespace wb::cli {

namespace {

struct DumpOptions {
    std::string file;
    std::string out = "drilldown-out";
    std::optional<std::string> weight;
    std::optional<std::string> selection;
    std::string down;
    std::optional<std::string> review;
    std::vector<std::string> drills;
    bool condition = false; // dump prints the drill path as a selection condition
    bool contrast = false;  // dump prints the subset against the rest of the level above
    bool parentShares = true;
};

DumpOptions parseDumpArguments(const Arguments& arguments) {
    DumpOptions options;
    bool haveDown = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size())
                throw UsageError(argument + " needs a value");
            return arguments[++i];
        };
        if (argument == "--weight")
            options.weight = value();
        else if (argument == "--select")
            options.selection = value();
        else if (argument == "--down") {
            options.down = value();
            haveDown = true;
        } else if (argument == "--review")
            options.review = value();
        else if (argument == "--drill")
            options.drills.push_back(value());
        else if (argument == "--out")
            options.out = value();
        else if (argument == "--condition")
            options.condition = true;
        else if (argument == "--contrast")
            options.contrast = true;
        else if (argument == "--no-parent-shares")
            options.parentShares = false;
        else if (argument.starts_with("--"))
            throw UsageError("unknown option " + argument);
        else if (options.file.empty())
            options.file = argument;
        else
            throw UsageError("one data file only");
    }
    if (options.file.empty())
        throw UsageError("no data file");
    if (!haveDown)
        throw UsageError("--down is required");
    return options;
}

// The row of the category dialog that CATEGORY names: "@n", or a label.
int categoryRow(const std::string& category, const std::vector<std::string>& rows,
                const std::string& step) {
    if (category.starts_with('@')) {
        int row = -1;
        const char* end = category.data() + category.size();
        const auto [stop, error] = std::from_chars(category.data() + 1, end, row);
        if (error == std::errc() && stop == end && row >= 0 && row < static_cast<int>(rows.size()))
            return row;
    } else {
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (rows[row] == category)
                return static_cast<int>(row);
    }
    std::string offered;
    for (const std::string& row : rows)
        offered += (offered.empty() ? "\"" : ", \"") + row + "\"";
    const std::string closest = closestWord(category, rows);
    throw DataError("--drill " + step + ": no category \"" + category + "\"" +
                    (closest.empty() ? "" : " (did you mean \"" + closest + "\"?)") +
                    "; the rows are " + (offered.empty() ? std::string("none") : offered));
}

void applyDrill(const std::string& step, AnalysisSession& session) {
    const auto equals = step.find('=');
    if (equals == std::string::npos)
        throw UsageError("--drill takes VARIABLE=CATEGORY, not \"" + step + "\"");
    const short variable =
        parseVariable(std::string(withoutOuterBlanks(step.substr(0, equals))), session.file());
    try {
        const std::vector<std::string> rows = session.categoryRows(variable);
        session.drillDown(
            variable,
            categoryRow(std::string(withoutOuterBlanks(step.substr(equals + 1))), rows, step));
    } catch (const DrillError& error) {
        throw DataError("--drill " + step + ": " + error.what());
    }
}

// The analysis of a dump or report with the command line's variables chosen and its
// steps taken, each through the panel as a macro takes it.
class DrilledRun : public HeadlessRun {
public:
    explicit DrilledRun(const DumpOptions& options)
        : HeadlessRun(RunSetup{options.file, options.out, options.weight, options.selection,
                               options.parentShares}) {
        // The lists are read here first, so that a wrong one is named as the user wrote it.
        const VariableChoice down = parseVariableList(options.down, session().file());
        if (down.categorical.empty() && down.continuous.empty())
            throw DataError("--down: no drill-down variable chosen");
        if (options.review)
            parseVariableList(*options.review, session().file());
        try {
            session().chooseVariables(options.down, options.review.value_or(""));
        } catch (const DrillError& error) {
            throw DataError(error.what());
        }
        for (const std::string& step : options.drills)
            applyDrill(step, session());
    }
};

} // namespace

int runDump(const Arguments& arguments) {
    const DumpOptions options = parseDumpArguments(arguments);
    DrilledRun run(options);
    if (options.contrast) {
        std::cout << contrastText(contrastSubset(run.analysis(), run.session().file()));
        return ExitSuccess;
    }
    if (!options.condition) {
        std::cout << stateText(run.analysis()) << '\n';
        return ExitSuccess;
    }
    const std::string condition = drillPathCondition(run.analysis(), run.session().file());
    if (condition.empty())
        std::cerr << "the subset is the whole file: no condition narrows it\n";
    std::cout << condition << '\n';
    return ExitSuccess;
}

int runReport(const Arguments& arguments) {
    const DumpOptions options = parseDumpArguments(arguments);
    DrilledRun run(options);
    CDrillDown& analysis = run.analysis();
    // Each result as its button on the panel makes it, tagged with that button's id.
    const std::pair<int, short (CDrillDown::*)(HWND)> results[] = {
        {ButtonSummary, &CDrillDown::DDNSummary},
        {ButtonDescriptives, &CDrillDown::DDNDescriptive},
        {ButtonFrequencies, &CDrillDown::DDNFrequency},
        {ButtonReviewDescriptives, &CDrillDown::RVSummary},
        {ButtonReviewFrequencies, &CDrillDown::RVFrequency},
        {ButtonSaveData, &CDrillDown::DDNSaveData},
    };
    for (const auto& [command, result] : results) {
        const bool review =
            command == ButtonReviewDescriptives || command == ButtonReviewFrequencies;
        if (review && analysis.GetDrillReviewsSize() == 0)
            continue;
        OutputService& output = run.session().output();
        output.store().beginCommand(command);
        (analysis.*result)(run.session().panel());
        output.store().endCommand();
        run.throwIfWriteFailed();
        if (!output.lastError().empty())
            throw DataError(output.lastError());
    }
    run.reportWritten(std::cout);
    const NewFileService& saved = run.session().newFile();
    if (saved.finishedFiles().empty())
        throw DataError(saved.lastError().empty() ? "the subset was not saved" : saved.lastError());
    std::cout << "Saved the subset as " << saved.lastFinishedPath() << '\n';
    return ExitSuccess;
}

} // namespace wb::cli
