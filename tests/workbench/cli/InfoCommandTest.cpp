// Runs the built `drilldown` command as a user would.

#include <gtest/gtest.h>

#include "support/CliRun.h"

namespace {

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

} // namespace
