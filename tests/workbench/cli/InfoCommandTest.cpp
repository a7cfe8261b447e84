// Runs the built `drilldown` command as a user would.

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/TempDir.h"

namespace {

struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
};

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// `arguments` are given to the shell as they are; the tests pass no special characters.
CliRun runCli(const std::string& arguments) {
    const wb::testing::TempDir dir;
    const std::string out = dir.path("out");
    const std::string err = dir.path("err");
    const std::string command =
        std::string(DD_CLI_PATH) + " " + arguments + " >" + out + " 2>" + err;
    const int raw = std::system(command.c_str());
    CliRun run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = readFile(out);
    run.err = readFile(err);
    return run;
}

TEST(InfoCommandTest, DescribesTheSampleData) {
    const CliRun run = runCli("info " DD_SOURCE_DIR "/examples/sample.csv");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_NE(run.out.find("Cases:       1500\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Weight:      WEIGHT\n"), std::string::npos) << run.out;
    // Number, name, long name, missing code, labels, format; long names with accents align.
    EXPECT_NE(run.out.find(" 1  REGION        Région de résidence  "), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("  13  plain\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(" 9  SATISFACTION  Satisfaction globale (1 à 10)"), std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("  -1       0  plain\n"), std::string::npos) << run.out;
}

TEST(InfoCommandTest, ReportsABadFileWithLineAndColumn) {
    const wb::testing::TempDir dir;
    const std::string path = dir.write("bad.csv", "A,B\n1,2\n3,x\n");
    const CliRun run = runCli("info " + path);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              path +
                  ":3:3: \"x\" in variable \"B\" is not a number, a label of the variable or NA\n");
}

struct UsageCase {
    const char* comment;
    std::string arguments;
    std::string firstLine;
};

TEST(InfoCommandTest, RefusesWrongArgumentsWithUsage) {
    const UsageCase cases[] = {
        {"no command", "", "usage: drilldown COMMAND [ARGUMENTS]"},
        {"unknown command", "frobnicate", "drilldown: unknown command \"frobnicate\""},
        {"info without a file", "info", "drilldown info: a data file is needed"},
        {"info with two files", "info a.csv b.csv", "drilldown info: one data file only"},
    };
    for (const UsageCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const CliRun run = runCli(c.arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err.substr(0, run.err.find('\n')), c.firstLine);
        EXPECT_NE(run.err.find("usage: drilldown"), std::string::npos);
    }
}

} // namespace
