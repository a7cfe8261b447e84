// The commands that drill into a data file: the state as JSON, and a report of tables and the
// saved subset in an output folder.

#include <gtest/gtest.h>

#include <filesystem>

#include <nlohmann/json.hpp>

#include "support/CliRun.h"
#include "workbench/data/DataFileLoader.h"

namespace {

const std::string Sample = DD_SOURCE_DIR "/examples/sample.csv";

// A weight variable with value labels is used, with a warning: its codes are likely categories.
TEST(RunCommands, AWeightWithValueLabelsIsUsedWithAWarning) {
    const CliRun run = runCli("dump " + Sample + " --down REGION --weight SEX");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.err.find("warning: the weight variable SEX has value labels"), std::string::npos)
        << run.err;
    const CliRun plain = runCli("dump " + Sample + " --down REGION --weight WEIGHT");
    EXPECT_EQ(plain.err.find("warning"), std::string::npos) << plain.err;
}

TEST(RunCommands, ReportWritesTablesAndTheSubset) {
    const wb::testing::TempDir dir;
    const std::string out = dir.path("report");
    const CliRun run =
        runCli("report " + Sample + " --down 'SEX | AGE' --review '| SPEND' --drill SEX=@0 --out " +
               out);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(std::filesystem::exists(out + "/index.html"));
    EXPECT_TRUE(std::filesystem::exists(out + "/001-synthese-de-l-analyse-drill-down.json"));
    const wb::DataFile saved = wb::loadDataFile(out + "/subset-001.ddf");
    const wb::DataFile sample = wb::loadDataFile(Sample);
    int women = 0;  // SEX = @0, the first category: code 1
    for (int c = 1; c <= sample.caseCount(); ++c)
        women += sample.value(c, sample.findVariable("SEX")) == 1;
    EXPECT_EQ(saved.caseCount(), women);
    EXPECT_EQ(saved.variableCount(), 3);  // SEX, AGE, SPEND in file order
}

} // namespace

// A write that fails ends the command with an error that names the first failure; what the
// folder keeps is whole: every document it lists has all its files, and no other is left.
// A file size limit plays the full disk (SIGXFSZ ignored, so writes fail with EFBIG).
TEST(RunCommands, AFailedWriteIsNeverReportedAsSuccess) {
    const wb::testing::TempDir dir;
    const std::string plainFile = dir.write("plain", "x");
    struct Case {
        const char* what;
        std::string command;
        std::string folder;
        const char* error;
        bool documentsWritten = false; // the documents were, only the subset failed
    };
    const Case cases[] = {
        {"output folder is a file", "demo --out " + plainFile, plainFile,
         "cannot create the output folder"},
        {"pictures beyond the size limit",
         "sh -c \"trap '' XFSZ; ulimit -f 100; exec " DD_CLI_PATH " demo --out " +
             dir.path("demo") + "\"",
         dir.path("demo"), "File too large"},
        {"the saved subset beyond the size limit",
         "sh -c \"trap '' XFSZ; ulimit -f 30; exec " DD_CLI_PATH " report " + Sample +
             " --down 'SEX | AGE' --out " + dir.path("report") + "\"",
         dir.path("report"), "subset-001.ddf: cannot write the file: File too large", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const CliRun run = c.command.starts_with("sh ") ? runShell(c.command) : runCli(c.command);
        EXPECT_NE(run.status, 0);
        EXPECT_EQ(run.out.find("Wrote") != std::string::npos, c.documentsWritten) << run.out;
        EXPECT_NE(run.err.find(c.error), std::string::npos) << run.err;
        if (!std::filesystem::is_directory(c.folder))
            continue;
        for (const auto& entry : std::filesystem::directory_iterator(c.folder)) {
            const std::filesystem::path file = entry.path();
            EXPECT_NE(file.filename().string().front(), '.') << "a temporary file is left";
            if (file.extension() != ".json")
                continue;
            const bool table = std::filesystem::exists(
                std::filesystem::path(file).replace_extension(".html"));
            for (const char* companion : table ? std::vector{".html"} : std::vector{".svg", ".png"})
                EXPECT_TRUE(std::filesystem::exists(
                    std::filesystem::path(file).replace_extension(companion)))
                    << file << " stands without its " << companion;
        }
    }
}

// Moments of values near 1e308 overflow in the module's arithmetic; the dump says so with
// JSON strings where null would read as "no value".
TEST(RunCommands, DumpWritesOverflowedMomentsAsWords) {
    const wb::testing::TempDir dir;
    const std::string data = dir.write("big.csv", "X\n1e308\n-1.5e308\n1.7e308\n");
    const CliRun run = runCli("dump " + data + " --down '| X'");
    ASSERT_EQ(run.status, 0) << run.err;
    const nlohmann::json record = nlohmann::json::parse(run.out)["DrillDowns"][0];
    EXPECT_EQ(record["Max"], 1.7e308);
    for (const char* moment : {"Mean", "SS"}) {
        ASSERT_TRUE(record[moment].is_string()) << moment << ": " << record[moment];
        EXPECT_TRUE(record[moment] == "NaN" || record[moment].get<std::string>().ends_with("Infinity"))
            << moment << ": " << record[moment];
    }
}
