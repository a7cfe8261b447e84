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
#include "workbench/session/DrillSession.h"
#include "workbench/session/StateJson.h"
#include "workbench/data/VariableList.h"

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
    throw DataError("--drill " + step + ": no category \"" + category + "\"; the rows are " +
                    (offered.empty() ? std::string("none") : offered));
}

void applyDrill(const std::string& step, const DataFile& file, DrillSession& session) {
    const auto equals = step.find('=');
    if (equals == std::string::npos)
        throw UsageError("--drill takes VARIABLE=CATEGORY, not \"" + step + "\"");
    const short variable = parseVariable(step.substr(0, equals), file);
    std::vector<std::string> rows;
    try {
        rows = session.categoryRows(variable);
    } catch (const DrillError& error) {
        throw DataError("--drill " + step + ": " + error.what());
    }
    session.drillDown(variable, categoryRow(step.substr(equals + 1), rows, step));
}

// The analysis of a dump or report with the command line's variables chosen and its
// steps taken.
class DrilledRun : public HeadlessRun {
public:
    explicit DrilledRun(const DumpOptions& options)
        : HeadlessRun(RunSetup{options.file, options.out, options.weight, options.selection}) {
        const VariableChoice down = parseVariableList(options.down, file());
        if (down.categorical.empty() && down.continuous.empty())
            throw DataError("--down: no drill-down variable chosen");
        const int nv = file().variableCount();
        dialogs().presetVariableChoice(down.categorical, down.continuous);
        analysis().SetDDNVariable(panel(), 1, 0, nv, 0, nv, nv);
        if (options.review) {
            const VariableChoice review = parseVariableList(*options.review, file());
            dialogs().presetVariableChoice(review.categorical, review.continuous);
            analysis().SetRVVariable(panel(), 1, 0, nv);
        }
        DrillSession session(analysis(), panel());
        for (const std::string& step : options.drills)
            applyDrill(step, file(), session);
    }
};

} // namespace

int runDump(const Arguments& arguments) {
    DrilledRun run(parseDumpArguments(arguments));
    std::cout << stateToJson(run.analysis()).dump(2) << '\n';
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
        const bool review = command == ButtonReviewDescriptives || command == ButtonReviewFrequencies;
        if (review && analysis.GetDrillReviewsSize() == 0)
            continue;
        run.output().setCurrentCommand(command);
        (analysis.*result)(run.panel());
        if (!run.output().lastError().empty())
            throw DataError(run.output().lastError());
    }
    std::cout << "Wrote " << documentCount(run.output().documents()) << " to "
              << run.folder().folder().string() << "/index.html\n";
    if (!run.newFile().finishedFiles().empty())
        std::cout << "Saved the subset as " << run.newFile().lastFinishedPath() << '\n';
    else if (!run.newFile().lastError().empty())
        std::cerr << run.newFile().lastError() << '\n';
    return ExitSuccess;
}

} // namespace wb::cli
