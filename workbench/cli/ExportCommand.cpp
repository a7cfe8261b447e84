// drilldown export FILE OUT.csv [--force]: writes any data file the workbench reads as a CSV
// file and its dictionary, which load back as the same file.

#include <filesystem>
#include <iostream>

#include "workbench/cli/Commands.h"
#include "workbench/data/CsvExport.h"
#include "workbench/data/DataFileLoader.h"

namespace wb::cli {

int runExport(const Arguments& arguments) {
    std::vector<std::string> files;
    bool force = false;
    for (const std::string& argument : arguments) {
        if (argument == "--force")
            force = true;
        else if (argument.starts_with("--"))
            throw UsageError("unknown option " + argument);
        else
            files.push_back(argument);
    }
    if (files.size() != 2)
        throw UsageError(files.size() < 2 ? "a data file and an output file are needed"
                                          : "one data file and one output file only");
    const std::string& output = files[1];
    // Checked before loading, so that a long load does not end in a refusal.
    if (!force)
        for (const std::string& path : {output, output + ".dict.json"})
            if (std::filesystem::exists(path))
                throw DataError(path + ": the file exists already; give --force to replace it");
    const DataFile file = loadDataFile(files[0]);
    exportCsv(file, output);
    const auto count = [](int n, const char* what) {
        return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
    };
    std::cout << "Wrote " << output << " and " << output
              << ".dict.json: " << count(file.variableCount(), "variable") << ", "
              << count(file.caseCount(), "case") << '\n';
    return ExitSuccess;
}

} // namespace wb::cli
