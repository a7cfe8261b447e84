// drilldown dump: chooses variables, drills down step by step as the panel's button does, and
// prints the analysis's state as JSON.

#include <charconv>
#include <iostream>
#include <optional>

#include "workbench/cli/Commands.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/host/DialogTemplates.h"
#include "workbench/host/HeadlessDialogs.h"
#include "workbench/host/HeadlessHost.h"
#include "workbench/host/KeywordStore.h"
#include "workbench/host/ModuleLoader.h"
#include "workbench/session/DrillSession.h"
#include "workbench/session/StateJson.h"
#include "workbench/session/VariableList.h"

namespace wb::cli {

namespace {

struct DumpOptions {
    std::string file;
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

} // namespace

int runDump(const Arguments& arguments) {
    const DumpOptions options = parseDumpArguments(arguments);
    DataFile file = loadDataFile(options.file);
    if (options.weight)
        file.setWeightVariable(parseVariable(*options.weight, file));
    if (options.selection)
        file.setSelection(*options.selection);
    const VariableChoice down = parseVariableList(options.down, file);
    if (down.categorical.empty() && down.continuous.empty())
        throw DataError("--down: no drill-down variable chosen");

    HeadlessHost host;
    host.messages().setEcho(stderr);
    host.setDataFile(&file);
    KeywordStore keywords;
    HeadlessDialogs dialogs(keywords, &file);
    host.setDialogs(&dialogs);
    ModuleLoader loader(host.services());
    loader.load(ModuleLoader::defaultModulePath());
    auto& analysis = dynamic_cast<CDrillDown&>(loader.openAnalysis());
    const HWND panel = createDialogFromTemplate(dialogs.model(), 4813);

    const int nv = file.variableCount();
    dialogs.presetVariableChoice(down.categorical, down.continuous);
    analysis.SetDDNVariable(panel, 1, 0, nv, 0, nv, nv);
    if (options.review) {
        const VariableChoice review = parseVariableList(*options.review, file);
        dialogs.presetVariableChoice(review.categorical, review.continuous);
        analysis.SetRVVariable(panel, 1, 0, nv);
    }
    DrillSession session(analysis, panel);
    for (const std::string& step : options.drills)
        applyDrill(step, file, session);
    std::cout << stateToJson(analysis).dump(2) << '\n';
    return ExitSuccess;
}

} // namespace wb::cli
