// drilldown: the workbench's command line.

#include <array>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/cli/Commands.h"
#include "workbench/data/DataFile.h"
#include "workbench/text/Spelling.h"

namespace {

using namespace wb::cli;

struct Command {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
    int (*run)(const Arguments&);
};

constexpr std::array Commands{
    Command{"info", "FILE", "show the variables and settings of a data file", runInfo},
    Command{"dump",
            "FILE --down \"LIST\" [--review \"LIST\"] [--weight VAR] [--select EXPR] "
            "[--drill \"VAR=CATEGORY\" ...] [--condition | --contrast]",
            "drill down step by step and print the analysis's state as JSON; LIST holds "
            "numbers, ranges a-b and names, with | between the categorical and the continuous "
            "variables; CATEGORY is a label or @n, the n-th row of the category dialog. "
            "--condition prints instead the subset reached as a selection condition, which "
            "--select takes back; --contrast the subset against the rest of the level above: "
            "where to drill next (Cramér's V, chi-square) and the review variables compared "
            "(Welch's t, Hedges' g)",
            runDump},
    Command{"report",
            "FILE --down \"LIST\" [--review \"LIST\"] [--weight VAR] [--select EXPR] "
            "[--drill \"VAR=CATEGORY\" ...] [--out DIR] [--no-parent-shares]",
            "the same steps as dump; writes the summary, descriptive statistics and "
            "frequency tables of both levels as JSON and HTML with an index page, and saves "
            "the current subset as a data file, into DIR (default ./drilldown-out); after a "
            "drill step the frequency tables show the level above's shares in a last column, "
            "which --no-parent-shares leaves out",
            runReport},
    Command{"run",
            "FILE MACRO [--out DIR] [--weight VAR] [--select EXPR] [--layout FILE] "
            "[--save-layout FILE] [--record OUT.ddm] [--no-parent-shares]",
            "run a macro against a new Drill-Down analysis on FILE, one statement a line: "
            "Member = value, Member, Print Member, Dump, Close N, Brush S, ...; ' starts a "
            "comment. --record writes what the macro did as a macro of its own. "
            "--layout then makes the stand-alone result windows of a saved layout again for "
            "the subset the macro reached, --save-layout writes where they stand",
            runMacro},
    Command{"demo", "[--out DIR]",
            "run the tour macro examples/tour.ddm on the sample data, writing its tables "
            "into DIR (default ./drilldown-out)",
            runDemo},
    Command{"export", "FILE OUT.csv [--force]",
            "write a data file (CSV, SPSS, Stata or SAS) as OUT.csv with its dictionary "
            "OUT.csv.dict.json; --force replaces existing files",
            runExport},
};

void printUsage(std::ostream& out) {
    out << "usage: drilldown COMMAND [ARGUMENTS]\n\ncommands:\n";
    for (const Command& command : Commands)
        out << "  " << command.name << ' ' << command.arguments << "\n      " << command.summary
            << '\n';
}

const Command* findCommand(std::string_view name) {
    for (const Command& command : Commands)
        if (command.name == name)
            return &command;
    return nullptr;
}

// " (did you mean \"dump\"?)" for a command name two edits away or less; empty otherwise.
std::string suggestion(std::string_view name) {
    std::vector<std::string> names;
    for (const Command& command : Commands)
        names.emplace_back(command.name);
    const std::string closest = wb::closestWord(name, names);
    return closest.empty() ? std::string() : " (did you mean \"" + closest + "\"?)";
}

void printCommandUsage(std::ostream& out, const Command& command) {
    out << "usage: drilldown " << command.name << ' ' << command.arguments << "\n\n"
        << command.summary << '\n';
}

bool asksForHelp(int argc, char** argv) {
    for (int i = 2; i < argc; ++i)
        if (std::string_view(argv[i]) == "--help" || std::string_view(argv[i]) == "-h")
            return true;
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        printUsage(std::cerr);
        return ExitUsage;
    }
    const std::string_view name = argv[1];
    if (name == "help" || name == "--help" || name == "-h") {
        printUsage(std::cout);
        return ExitSuccess;
    }
    if (name == "--version") {
        std::cout << "drilldown " << DD_VERSION << '\n';
        return ExitSuccess;
    }
    const Command* command = findCommand(name);
    if (command == nullptr) {
        std::cerr << "drilldown: unknown command \"" << name << "\"" << suggestion(name) << "\n";
        printUsage(std::cerr);
        return ExitUsage;
    }
    if (asksForHelp(argc, argv)) {
        printCommandUsage(std::cout, *command);
        return ExitSuccess;
    }
    try {
        return command->run(Arguments(argv + 2, argv + argc));
    } catch (const UsageError& error) {
        std::cerr << "drilldown " << command->name << ": " << error.what() << "\nusage: drilldown "
                  << command->name << ' ' << command->arguments << '\n';
        return ExitUsage;
    } catch (const wb::DataError& error) {
        std::cerr << error.what() << '\n';
        return ExitDataError;
    } catch (const std::exception& error) {
        std::cerr << "drilldown: " << error.what() << '\n';
        return ExitDataError;
    }
}
