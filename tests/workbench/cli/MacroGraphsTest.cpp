// A macro that asks for graphs: each result member gives back the first graph its command
// made, every graph has its JSON, SVG and PNG beside the tables, and the graphs the host
// draws from the cases agree with a computation of their own over the module's subset.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "support/CliRun.h"
#include "support/ReferenceScan.h"
#include "workbench/data/DataFileLoader.h"

namespace {

const std::string Sample = DD_SOURCE_DIR "/examples/sample.csv";

constexpr const char* Macro = "Variables = \"REGION SEX | AGE\"\n"
                              "ReviewVariables = \"| INCOME SPEND VISITS\"\n"
                              "DrillDownVariable = \"SEX\"\n"
                              "DrillDownCategory = \"Femme\"\n"
                              "DrillDown\n"
                              "Print Histograms\n"
                              "Print Summary\n"
                              "Print ReviewBoxWhisker\n"
                              "Print ReviewScatterplot\n"
                              "ReviewDescriptives\n";

TEST(MacroGraphs, ResultMembersGiveGraphsAndTheCaseGraphsAgreeWithTheSubset) {
    const wb::testing::TempDir dir;
    const std::string macro = dir.path("graphs.ddm");
    std::ofstream(macro) << Macro;
    const std::string out = dir.path("out");
    const CliRun run = runCli("run " + Sample + " " + macro + " --out " + out);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.substr(0, run.out.find("\n\nWrote")),
              "Histogramme de la variable du drill-down : REGION: Région de résidence\n"
              "Synthèse de l'analyse drill-down\n"
              "Boîtes à Moustaches des Variables Etudiées\n"
              "Corrélations")
        << "each member names the first document its command made, graph or table";

    // Two histograms (REGION, AGE), the summary table, the box plots, the matrix.
    const std::string index = readFile(out + "/index.html");
    const char* stems[] = {"001-histogramme-de-la-variable-du-drill-down-region",
                           "002-histogramme-de-la-variable-du-drill-down-age-age",
                           "004-boites-a-moustaches-des-variables-etudiees",
                           "005-correlations"};
    std::size_t previous = 0;
    for (const char* stem : stems) {
        SCOPED_TRACE(stem);
        for (const char* extension : {".json", ".svg", ".png"})
            EXPECT_TRUE(std::filesystem::exists(out + "/" + stem + extension)) << extension;
        const std::size_t shown = index.find(std::string("<object data=\"") + stem + ".svg\"");
        ASSERT_NE(shown, std::string::npos);
        EXPECT_GT(shown, previous);
        previous = shown;
    }
    EXPECT_NE(index.find("id=\"table-3\""), std::string::npos) << "the summary among them";

    // The subset by hand: the women, weighted by the file's weights rounded to whole numbers,
    // as the module's tables count them while weighted moments are off.
    const wb::DataFile file = wb::loadDataFile(Sample);
    const int sex = file.findVariable("SEX");
    double women = 0;
    for (const auto& [code, label] : file.variable(sex).labels)
        if (label == "Femme")
            women = code;
    const auto inSubset = [&](int c) { return file.value(c, sex) == women; };

    const auto boxes = nlohmann::json::parse(readFile(out + "/" + stems[2] + ".json"));
    EXPECT_EQ(boxes["type"], "boxplot");
    EXPECT_EQ(boxes["boxes"]["style"], 54) << "the one style on by default";
    // One weight rule for tables and graphs: the module's descriptive statistics of the same
    // subset list the same variables, means and weighted cases.
    const auto table = nlohmann::json::parse(readFile(out + "/006-statistiques-descriptives.json"));
    ASSERT_EQ(boxes["boxes"]["variables"].size(), 3u);
    ASSERT_EQ(table["rows"].size(), 3u);
    for (std::size_t k = 0; k < 3; ++k) {
        const auto& box = boxes["boxes"]["variables"][k];
        const std::string name = box["name"];
        SCOPED_TRACE(name);
        const ref::Stats m = ref::compute(file, {file.findVariable(name)}, {}, {}, inSubset)[0];
        const double sd = std::sqrt(m.ss / (m.weightedN - 1)), se = sd / std::sqrt(m.weightedN);
        EXPECT_EQ(box["cases"], m.n);
        EXPECT_NEAR(box["weight"].get<double>(), m.weightedN, 1e-9 * m.weightedN);
        EXPECT_NEAR(box["centre"].get<double>(), m.mean, 1e-9 * std::fabs(m.mean));
        EXPECT_NEAR(box["boxHigh"].get<double>() - m.mean, se, 1e-6 * se);
        EXPECT_NEAR(box["whiskerLow"].get<double>(), m.mean - sd, 1e-9 * std::fabs(m.mean));
        const auto& row = table["rows"][k];
        EXPECT_EQ(row["name"], name);
        const double mean = row["cells"][0].get<double>();
        EXPECT_NEAR(box["centre"].get<double>(), mean, 1e-9 * std::fabs(mean));
        EXPECT_EQ(box["weight"].get<double>(), row["cells"][4].get<double>());
    }

    // A cell counts the cases valid in both of its variables.
    const auto matrix = nlohmann::json::parse(readFile(out + "/" + stems[3] + ".json"));
    ASSERT_EQ(matrix["scatter"]["cells"].size(), 6u);
    for (const auto& cell : matrix["scatter"]["cells"]) {
        const int x = file.findVariable(matrix["scatter"]["columns"][cell["column"].get<int>()]["name"]);
        const int y = file.findVariable(matrix["scatter"]["rows"][cell["row"].get<int>()]["name"]);
        ref::Options casewise;
        casewise.casewise = true;
        EXPECT_EQ(cell["cases"], ref::compute(file, {x}, {x, y}, casewise, inSubset)[0].n);
    }
}

} // namespace
