// Data files built in memory, exported, and loaded back: they must come back the same.

#include "workbench/data/CsvExport.h"

#include <filesystem>
#include <limits>
#include <map>

#include <gtest/gtest.h>

#include "support/CliRun.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/data/DataChecks.h"

namespace {

using wb::DisplayFormat;
using wb::testing::expectSameFile;

// wb::Variable, with every member defaulted so that tables can name only what they set.
struct Var {
    std::string name = {};
    std::string longName = {};
    double missingCode = -99999999;
    std::map<double, std::string> labels = {};
    DisplayFormat format = DisplayFormat::Plain;
};

struct Contents {
    std::vector<Var> variables;
    std::vector<std::vector<double>> rows;
    std::vector<std::string> caseNames = {}; // none, or one per row
    std::string header = {};
    int weight = 0;
    std::string selection = {};
};

wb::DataFile build(const Contents& contents) {
    wb::DataFile file;
    for (const Var& v : contents.variables)
        file.addVariable({v.name, v.longName, v.missingCode, v.labels, v.format});
    for (std::size_t i = 0; i < contents.rows.size(); ++i)
        file.appendCase(contents.rows[i], contents.caseNames.empty() ? "" : contents.caseNames[i]);
    file.setHeaderText(contents.header);
    file.setWeightVariable(contents.weight);
    file.setSelection(contents.selection);
    return file;
}

struct RoundTripCase {
    const char* comment;
    Contents contents;
};

TEST(CsvExportTest, LoadsBackTheSameFile) {
    const double X = -99999999; // the default missing code
    // clang-format off
    const RoundTripCase cases[] = {
        {"numbers, missing cells, a missing code of its own",
         {{{.name = "A", .missingCode = -1}, {.name = "B"}},
          {{1.5, -0.25}, {-1, 1e20}, {0.1, X}, {-0.0, 123456789.123}}}},
        {"text that needs quotes in names, labels, case names and header",
         {{{.name = "a,b", .longName = "Région \"nord\", côte"},
           {.name = " padded ", .labels = {{1, "un, deux"}, {2, "say \"hi\""}, {3, "two\nlines"}, {4, "é\r\n"}}}},
          {{1, 1}, {2, 4}}, {"Dupont, Jean", "  \"quoted\"\nnext line "}, "Enquête, \"2024\""}},
        {"dates and times, also values no date or time text can hold",
         {{{.name = "D", .format = DisplayFormat::Date}, {.name = "T", .format = DisplayFormat::Time}},
          {{36526, 0}, {-1, 86399}, {36526.5, 86400}, {-700000, 45296.5}, {X, -5}}}},
        {"the first name begins with a byte order mark, which the loader would drop",
         {{{.name = "\xEF\xBB\xBF" "bom"}}, {{1}}}},
        {"names holding tabs and semicolons, which must not pass for the separator",
         {{{.name = "a\t\t\tb"}, {.name = "c;d;e"}, {.name = "f"}}, {{1, 2, 3}}}},
        {"one variable: a missing case is not an empty line", {{{.name = "ONLY"}}, {{X}, {1}, {X}}}},
        {"a variable takes the name of the case-name column",
         {{{.name = "CASE_NAME"}, {.name = "CASE_NAME_2"}}, {{1, 2}}, {"first"}}},
        {"weight and selection, case names empty at first",
         {{{.name = "AGE"}, {.name = "W", .labels = {{-2, "neg"}}}}, {{20, 1.5}, {15, 2}, {X, 0.5}},
          {"", "", "third"}, "", 2, "AGE >= 18 and not missing(AGE)"}},
    };
    // clang-format on
    for (const RoundTripCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::testing::TempDir dir;
        const wb::DataFile original = build(c.contents);
        wb::exportCsv(original, dir.path("out.csv"));
        expectSameFile(wb::loadDataFile(dir.path("out.csv")), original);
    }
}

// Dates and times as text, missing values empty, quotes where needed.
TEST(CsvExportTest, WritesTheLoadersFormat) {
    const wb::testing::TempDir dir;
    const wb::DataFile file =
        build({{{.name = "SEX", .labels = {{1, "F"}, {2, "M"}}},
                {.name = "BORN", .missingCode = -1, .format = DisplayFormat::Date},
                {.name = "AT", .format = DisplayFormat::Time}},
               {{1, 36526, 45296}, {-99999999, -1, 0.5}}, {"Ann", "Bob, Jr"}, "Test", 1});
    wb::exportCsv(file, dir.path("out.csv"));
    EXPECT_EQ(readFile(dir.path("out.csv")), "CASE_NAME,SEX,BORN,AT\n"
                                             "Ann,1,2000-01-01,12:34:56\n"
                                             "\"Bob, Jr\",,,0.5\n");
}

struct RefusalCase {
    const char* comment;
    Contents contents;
    std::string message;
};

TEST(CsvExportTest, RefusesWhatTheCsvFormCannotHold) {
    const double inf = std::numeric_limits<double>::infinity();
    // clang-format off
    const RefusalCase cases[] = {
        {"same name twice", {{{.name = "A"}, {.name = "B"}, {.name = "A"}}, {}},
         "variables 1 and 3 are both named \"A\""},
        {"infinite value", {{{.name = "A"}}, {{1}, {inf}}},
         "the value of variable \"A\" in case 2 is not a finite number"},
        {"label not UTF-8", {{{.name = "A", .labels = {{3, "caf\xE9"}}}}, {}},
         "the label of 3 in variable \"A\" is not valid UTF-8"},
    };
    // clang-format on
    for (const RefusalCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::testing::TempDir dir;
        const std::string path = dir.path("out.csv");
        EXPECT_EQ(wb::testing::dataError([&] { wb::exportCsv(build(c.contents), path); }),
                  path + ": cannot export: " + c.message);
        // Not even a temporary file is left behind.
        EXPECT_TRUE(std::filesystem::is_empty(dir.path("")));
    }
}

TEST(CsvExportTest, CommandReplacesFilesOnlyWhenForced) {
    const wb::testing::TempDir dir;
    const std::string input = dir.write("in.csv", "A,B\n1,x\n");
    const std::string out = dir.path("out.csv"), lost = dir.path("none/out.csv");
    const struct {
        const char* comment;
        std::string arguments;
        int status;
        std::string err;
    } cases[] = {
        {"first export", input + " " + out, 0, ""},
        {"the output exists", input + " " + out, 1,
         out + ": the file exists already; give --force to replace it\n"},
        {"forced", "--force " + input + " " + out, 0, ""},
        {"no such directory", input + " " + lost, 1,
         lost + ": cannot write the file: No such file or directory\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.comment);
        const CliRun run = runCli("export " + c.arguments);
        EXPECT_EQ(run.status, c.status);
        EXPECT_EQ(run.err.substr(0, run.err.find('\n') + 1), c.err);
    }
    expectSameFile(wb::loadDataFile(out), wb::loadDataFile(input));
}

} // namespace
