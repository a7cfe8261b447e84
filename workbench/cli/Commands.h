#pragma once
// The subcommands of `drilldown`. Each gets the arguments that follow its name and gives
// the exit status; main.cpp maps names to them and turns their exceptions into messages:
//   - UsageError (wrong arguments): the message and the usage text on stderr, exit 2;
//   - DataError (bad input file): its message on stderr, exit 1.
// A new subcommand is a function here, a file of its own, and a row in main.cpp's table.

#include <stdexcept>
#include <string>
#include <vector>

namespace wb::cli {

inline constexpr int ExitSuccess = 0;
inline constexpr int ExitDataError = 1;
inline constexpr int ExitUsage = 2;

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

using Arguments = std::vector<std::string>;

// drilldown info FILE: the dictionary of a data file.
int runInfo(const Arguments& arguments);

// drilldown dump FILE --down LIST [--review LIST] [--weight VAR] [--select EXPR]
//                     [--drill VAR=CATEGORY ...]: the analysis's state after those steps.
int runDump(const Arguments& arguments);

// drilldown report, with the arguments of dump and [--out DIR]: the result tables and the
// current subset as files in the output folder (default ./drilldown-out).
int runReport(const Arguments& arguments);

// drilldown run FILE MACRO [--out DIR] [--weight VAR] [--select EXPR]: a macro against a
// new analysis on FILE, through the panel's automation object.
int runMacro(const Arguments& arguments);

// drilldown demo [--out DIR]: the tour macro of the examples on the sample data.
int runDemo(const Arguments& arguments);

// drilldown export FILE OUT.csv [--force]: the data file as CSV with its dictionary.
int runExport(const Arguments& arguments);

} // namespace wb::cli
