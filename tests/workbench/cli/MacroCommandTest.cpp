// drilldown run and drilldown demo: macros through the panel's automation object, as a user
// runs them from the command line.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "support/CliRun.h"

namespace {

namespace fs = std::filesystem;

const std::string Sample = DD_SOURCE_DIR "/examples/sample.csv";

class MacroCommand : public ::testing::Test {
protected:
    // Writes the macro and runs it on the sample data, with the user's settings kept in the
    // test's own folder.
    CliRun run(const std::string& macro, const std::string& options = "") {
        const std::string path = dir.path("test.ddm");
        std::ofstream(path) << macro;
        return runCli("run " + Sample + " " + path + " --out " + dir.path("out") + " " + options);
    }
    MacroCommand() { setenv("XDG_CONFIG_HOME", dir.path("config").c_str(), 1); }
    ~MacroCommand() override { unsetenv("XDG_CONFIG_HOME"); }

    wb::testing::TempDir dir;
};

// Drill steps taken by a macro and by drilldown dump leave the same state (the blanks around
// "=" in --drill do not matter). Brushing bars 2 and 1 drills as picking rows 1 and 0 of the
// category dialog does; the pass on AGE that follows has counted AGE's categories before it
// left, so there only the steps and the next variable are compared.
TEST_F(MacroCommand, MacroStepsDrillAsTheProgramDoes) {
    const struct {
        const char *macro, *drills;
        bool whole;
    } cases[] = {
        {"DrillDownVariable = \"sex\"\nDrillDownCategory = 1\nDrillDown\n"
         "DrillDownVariable = \"REG\"  ' a prefix names REGION\n"
         "DrillDownCategory = \"Bretagne\"\nDrillDown\n",
         "--drill 'SEX = @1' --drill REGION=Bretagne", true},
        {"Brush 2, 1\n", "--drill REGION=@1 --drill SEX=@0", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.macro);
        const CliRun macro =
            run("Variables = \"REGION SEX | AGE\"\n" + std::string(c.macro) + "Dump\n");
        ASSERT_EQ(macro.status, 0) << macro.err;
        const CliRun dump = runCli("dump " + Sample + " --down 'REGION SEX | AGE' " + c.drills);
        ASSERT_EQ(dump.status, 0) << dump.err;
        const auto state = nlohmann::json::parse(macro.out.substr(0, macro.out.find("\nWrote")));
        const auto expected = nlohmann::json::parse(dump.out);
        EXPECT_EQ(state["DrillUps"].size(), 2u);
        EXPECT_EQ(state["DrillUps"], expected["DrillUps"]);
        EXPECT_EQ(state["DrillDowns"][0]["Variable"], expected["DrillDowns"][0]["Variable"]);
        if (c.whole) {
            EXPECT_EQ(state, expected);
        }
    }
}

// Contrast prints where to drill next and the review variables compared, once a step is
// drilled, and says that there is nothing to compare before.
TEST_F(MacroCommand, ContrastSetsTheSubsetAgainstTheRest) {
    const CliRun result = run("Variables = \"SEX REGION | AGE\"\nReviewVariables = \"| INCOME\"\n"
                              "Contrast\nDrillDownVariable = \"SEX\"\nDrillDownCategory = 0\n"
                              "DrillDown\nContrast\n");
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("No drill step yet"), std::string::npos) << result.out;
    const std::size_t next = result.out.find("Where to drill next");
    ASSERT_NE(next, std::string::npos) << result.out;
    EXPECT_NE(result.out.find("  REGION: V = ", next), std::string::npos);
    EXPECT_NE(result.out.find("  INCOME: subset mean ", next), std::string::npos);
}

// A failing statement stops the run with the macro's name, line and statement, and exit 1.
TEST_F(MacroCommand, ErrorsNameTheLineAndStatement) {
    const struct {
        const char* macro;
        const char* message;
    } cases[] = {
        {"Variables = \"SEX\"\nNope\n", "test.ddm:2: Nope: no member is named \"Nope\""},
        {"DrilDown\n", "test.ddm:1: DrilDown: no member is named \"DrilDown\"; did you mean "
                       "\"DrillDown\"?"},
        {"Variables = \"SEX | NOPE\"\n",
         "test.ddm:1: Variables = \"SEX | NOPE\": variable list: there is no variable named "
         "\"NOPE\""},
        {"Variables = \"SEX\"\nDrillDownVariable = \"AGE\"\n",
         "test.ddm:2: DrillDownVariable = \"AGE\": \"AGE\" names no drill-down variable."},
        {"Variables = \"SEX\"\n\nDrillDown\n",
         "test.ddm:3: DrillDown: No drill-down: DrillDownCategory names no category"},
        {"Variables = \"| AGE\"\nUserSpecifiedCategories = True\nDrillDownCategory = 0\nDrillDown\n",
         "test.ddm:4: DrillDown: the dialog \"Spécifiez les Limites de \" opened, which a "
         "macro cannot answer"},
        {"Variables = \"| AGE\"\nNoOfExactIntervals = True\nValueNoOfExactIntervals = 1000\n",
         "test.ddm:3: ValueNoOfExactIntervals = 1000: The value 1000 of control 9070 is outside "
         "2 to 999."},
        {"Variables = \"SEX\"\nDrillUp\n",
         "test.ddm:2: DrillUp: \"Haut\" cannot be used at this step of the analysis (the panel "
         "disables it; control 9057)."},
        {"Close 3\n", "test.ddm:1: Close 3: no document 3 is open"},
        {"Variables = \"SEX\"\nBrush 1, down\n",
         "test.ddm:2: Brush 1, down: \"down\" is neither a bar number nor Up"},
        {"Variables = \"SEX | AGE\"\nBrush 1, 1, 1\n",
         "test.ddm:2: Brush 1, 1, 1: the brushing ended with 1 of its 3 steps unused"},
        {"Brush 1\n", "test.ddm:1: Brush 1: the brushing button is disabled now"},
        {"Close three\n", "test.ddm:1: Close three: Close needs a document number"},
        {"Variables = \"SEX\"\nReviewVariables = \"| INCOME SPEND\"\n"
         "ResultsVariables = \"AGE | INCOME\"\nReview3DHistograms\n",
         "test.ddm:4: Review3DHistograms: variable dialog \"Sélectionnez deux listes de var. "
         "(var. horizontales et verticales des tracés) :\": variable AGE of the first list is not "
         "among the choices"},
    };
    for (const auto& c : cases) {
        const CliRun result = run(c.macro);
        EXPECT_EQ(result.status, 1) << c.macro;
        // The macro is named by its path, which ends in test.ddm.
        EXPECT_NE(result.err.find("/" + std::string(c.message) ), std::string::npos)
            << c.macro << "\ngave: " << result.err;
    }
}

// Values that the panel takes as they stand, though they surprise: the run goes on and says
// what the panel made of them.
TEST_F(MacroCommand, ValuesTakenAsTheyStandAreWarnedOf) {
    const struct {
        const char* macro;
        const char* warning; // empty: none
    } cases[] = {
        {"DrillDownCategory = 500", "500 names none of them"},
        {"DrillDownCategory = \"7\"", "the current variable has categories 0 to 1 and the "
                                       "missing-data row 2; 7 names none of them"},
        {"DrillDownCategory = 1.7", "1.7 is no whole number; the panel takes category 1"},
        {"DrillDownCategory = 2", ""},
        {"DrillDownCategory = \"Homme\"", ""},
        {"DrillDownVariable = 3\nUserDefinedBoundaries = \"3000 100\"",
         "the boundaries are not in strictly ascending order"},
        {"DrillDownVariable = 3\nUserDefinedBoundaries = \"10 10\"",
         "the boundaries are not in strictly ascending order"},
        {"DrillDownVariable = 3\nUserDefinedBoundaries = \"10 20.5 30\"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.macro);
        const CliRun result = run("Variables = \"SEX | AGE\"\nDrillDownVariable = 2\n" +
                                  std::string(c.macro) + "\n");
        ASSERT_EQ(result.status, 0) << result.err;
        const std::size_t warning = result.out.find("warning: ");
        if (*c.warning == '\0')
            EXPECT_EQ(warning, std::string::npos) << result.out;
        else
            EXPECT_NE(result.out.find(c.warning, warning), std::string::npos) << result.out;
    }
}

// Wrong arguments, and drill steps of dump that name what is wrong.
TEST_F(MacroCommand, WrongCommandLines) {
    const std::string dump = "dump " + Sample + " --down 'REGION";
    const struct {
        std::string arguments;
        int status;
        const char* message;
    } cases[] = {
        {"", 2, "usage: drilldown COMMAND [ARGUMENTS]"},
        {"frobnicate", 2, "drilldown: unknown command \"frobnicate\""},
        {"info", 2, "drilldown info: a data file is needed"},
        {"info a.csv b.csv", 2, "drilldown info: one data file only"},
        {"run", 2, "give the data file and the macro"},
        {"run data.csv", 2, "give the data file and the macro"},
        {"run /nonexistent.csv /nonexistent.ddm", 1,
         "/nonexistent.ddm: cannot be read: No such file or directory"},
        {"demo extra", 2, "demo takes only --out DIR"},
        {"--version", 0, "drilldown 0."},
        {"run --help", 0, "usage: drilldown run FILE MACRO"},
        {"dump data.csv -h", 0, "usage: drilldown dump FILE"},
        {"dumb", 2, "unknown command \"dumb\" (did you mean \"dump\"?)"},
        {"run " + Sample + " " DD_SOURCE_DIR "/examples/tour.ddm --layout " DD_SOURCE_DIR
         "/examples/tour.ddm",
         1, "tour.ddm: not a window layout: character 1 is no upper-case hexadecimal digit"},
        {dump + " | NOPE'", 1, "no variable named \"NOPE\""},
        {dump + "' --drill REGION=Nowhere", 1, "no category \"Nowhere\"; the rows are"},
        {dump + "' --drill AGE=@0", 1, "not among the drill-down variables"},
        {"dump " + Sample + " --down 'REGOIN'", 1,
         "no variable named \"REGOIN\"; did you mean \"REGION\"?"},
        {dump + "' --drill 'REGION=ile-de-france'", 1,
         "no category \"ile-de-france\" (did you mean \"Île-de-France\"?)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        const CliRun result = runCli(c.arguments);
        EXPECT_EQ(result.status, c.status);
        const std::string& shown = c.status == 0 ? result.out : result.err;
        EXPECT_NE(shown.find(c.message), std::string::npos) << shown;
        if (c.status == 2) {
            EXPECT_NE(result.err.find("usage: drilldown"), std::string::npos) << result.err;
        }
    }
}

// The stand-alone example: after two drill steps one window per output that the last level
// still makes, each showing that level, and the one the user closed absent. Its layout,
// restored by a run that takes the same steps, makes the same windows again.
TEST_F(MacroCommand, StandAloneWindowsFollowTheDrillAndTheirLayoutComesBack) {
    const std::string layout = dir.path("layout.txt");
    const CliRun first = runCli("run " + Sample + " " DD_SOURCE_DIR "/examples/standalone.ddm --out " +
                                dir.path("first") + " --save-layout " + layout);
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_NE(first.out.find("Wrote 3 tables and 3 graphs"), std::string::npos) << first.out;
    const std::string index = readFile(dir.path("first") + "/index.html");
    for (const char* variable : {"CHANNEL", "AGE", "SPEND"})
        EXPECT_NE(index.find(std::string("Tableau de fréquence de ") + variable),
                  std::string::npos) << variable;
    EXPECT_EQ(index.find("Tableau de fréquence de REGION"), std::string::npos);
    // The closed window was the histogram of AGE's key: the histogram that took its key goes.
    EXPECT_EQ(index.find("graph-9"), std::string::npos);

    const std::string steps = "Variables = \"REGION SEX CHANNEL | AGE SPEND\"\n"
                              "DrillDownVariable = \"REGION\"\nDrillDownCategory = \"Bretagne\"\n"
                              "DrillDown\nDrillDownVariable = \"SEX\"\n"
                              "DrillDownCategory = \"Femme\"\nDrillDown\n";
    const CliRun again = run(steps, "--layout " + layout + " --save-layout " + layout + ".2");
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_NE(again.out.find("Wrote 3 tables and 3 graphs"), std::string::npos) << again.out;
    EXPECT_EQ(readFile(layout), readFile(layout + ".2"));
}

// A run recorded and the recording replayed on the same file: the same state, and the same
// documents. Brushing is recorded as its drill steps: the same drill state, without the
// brushing graphs (and without the counts of the variable the last pass showed).
TEST_F(MacroCommand, ARecordingReplaysToTheSameStateAndDocuments) {
    std::ifstream tourFile(DD_SOURCE_DIR "/examples/tour.ddm");
    const std::string tour((std::istreambuf_iterator<char>(tourFile)), {});
    const struct {
        std::string macro;
        bool brushed;
    } cases[] = {{tour, false},
                 {"Variables = \"REGION SEX CHANNEL | AGE\"\nBrush 3, 2, Up, 1\n", true}};
    const auto lastDump = [](std::string out) {
        out.insert(0, "\n");
        const std::size_t start = out.rfind("\n{\n");
        return nlohmann::json::parse(out.substr(start, out.find("\n}\n", start) + 3 - start));
    };
    const auto documents = [](const std::string& folder) {
        std::vector<std::string> texts;
        if (fs::exists(folder))
            for (const auto& entry : fs::directory_iterator(folder))
                if (entry.path().extension() == ".json")
                    texts.push_back(readFile(entry.path().string()));
        std::sort(texts.begin(), texts.end());
        return texts;
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.macro.substr(0, 60));
        fs::remove_all(dir.path("out"));
        const std::string recording = dir.path("recorded.ddm");
        const CliRun original = run(c.macro + "Dump\n", "--record " + recording);
        ASSERT_EQ(original.status, 0) << original.err;
        const std::string recorded = readFile(recording);
        std::ofstream(dir.path("replay.ddm")) << recorded << "Dump\n";
        const std::string replayed = dir.path("replayed-" + std::to_string(c.brushed));
        const CliRun replay = runCli("run " + Sample + " " + dir.path("replay.ddm") + " --out " +
                                     replayed);
        ASSERT_EQ(replay.status, 0) << replay.err << recorded;
        const auto state = lastDump(original.out), again = lastDump(replay.out);
        if (c.brushed) {
            EXPECT_EQ(state["DrillUps"], again["DrillUps"]) << recorded;
            EXPECT_EQ(state["DrillUps"].size(), 2u);
            EXPECT_EQ(documents(replayed), std::vector<std::string>{});
        } else {
            EXPECT_EQ(state, again) << recorded;
            EXPECT_EQ(documents(dir.path("out")).size(), 21u);
            EXPECT_EQ(documents(dir.path("out")), documents(replayed));
        }
    }
}

// The end of a run is the user's OK: the panel's setting is stored for the next analysis.
TEST_F(MacroCommand, TheRunEndsAsOKDoes) {
    const CliRun result = run("StandAloneResults = 1\n");
    ASSERT_EQ(result.status, 0) << result.err;
    const auto settings =
        nlohmann::json::parse(readFile(dir.path("config") + "/drilldown/settings.json"));
    EXPECT_EQ(settings["0"]["StandAloneResults"], 1);
    const CliRun next = run("Print StandAloneResults\n");
    EXPECT_EQ(next.out, "1\n");
}

TEST_F(MacroCommand, DemoTakesTheTour) {
    const std::string out = dir.path("demo");
    const CliRun result = runCli("demo --out " + out);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("7 Bretagne"), std::string::npos) << result.out;
    // The pair given by ResultsVariables answers the 3D histogram's variable dialog.
    EXPECT_NE(result.out.find("Histogramme 3D des variables : INCOME et SATISFACTION"),
              std::string::npos);
    EXPECT_NE(result.out.find("Wrote"), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(out + "/index.html"));
}

} // namespace
