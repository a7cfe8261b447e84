// drilldown info FILE: what the workbench makes of a data file, without analysing it.

#include <charconv>
#include <iostream>

#include "workbench/cli/Commands.h"
#include "workbench/cli/TextTable.h"
#include "workbench/data/DataFileLoader.h"

namespace wb::cli {

namespace {

std::string numberText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

void printSettings(std::ostream& out, const DataFile& file) {
    TextTable settings({{""}, {""}});
    settings.addRow({"File:", file.path()});
    settings.addRow({"Cases:", std::to_string(file.caseCount())});
    settings.addRow({"Variables:", std::to_string(file.variableCount())});
    if (!file.headerText().empty())
        settings.addRow({"Header:", file.headerText()});
    if (file.hasCaseNames())
        settings.addRow(
            {"Case names:", "up to " + std::to_string(file.caseNameWidth()) + " bytes"});
    if (file.weightVariable() != 0)
        settings.addRow({"Weight:", file.variable(file.weightVariable()).name});
    if (!file.selectionText().empty())
        settings.addRow({"Selection:", file.selectionText()});
    settings.print(out);
}

void printVariables(std::ostream& out, const DataFile& file) {
    using Align = TextTable::Align;
    TextTable variables({{"#", Align::Right},
                         {"Name"},
                         {"Long name"},
                         {"Missing code", Align::Right},
                         {"Labels", Align::Right},
                         {"Format"}});
    for (int var = 1; var <= file.variableCount(); ++var) {
        const Variable& variable = file.variable(var);
        variables.addRow({std::to_string(var), variable.name, variable.longName,
                          numberText(variable.missingCode), std::to_string(variable.labels.size()),
                          displayFormatName(variable.format)});
    }
    variables.print(out);
}

} // namespace

int runInfo(const Arguments& arguments) {
    if (arguments.size() != 1)
        throw UsageError(arguments.empty() ? "a data file is needed" : "one data file only");
    const DataFile file = loadDataFile(arguments[0]);
    printSettings(std::cout, file);
    std::cout << '\n';
    printVariables(std::cout, file);
    return ExitSuccess;
}

} // namespace wb::cli
