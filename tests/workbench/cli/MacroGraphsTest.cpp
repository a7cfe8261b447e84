// A macro that asks for graphs: each result member gives back the first graph its command
// made, every graph has its JSON, SVG and PNG beside the tables, and the graphs the host
// draws from the cases agree with a computation of their own over the module's subset.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "support/CliRun.h"
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
                              "Print ReviewScatterplot\n";

struct Moments {
    int cases = 0;
    double weight = 0, mean = 0, sd = 0;
};

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

    // The subset by hand: the women, weighted by the file's weights rounded to whole numbers
    // (halves up), as the module's tables count them while weighted moments are off.
    const wb::DataFile file = wb::loadDataFile(Sample);
    const auto weightOf = [&](int c) {
        const double w = file.caseWeight(c);
        return w > 0 ? std::floor(w + 0.5) : 0.0;
    };
    const int sex = file.findVariable("SEX");
    double women = 0;
    for (const auto& [code, label] : file.variable(sex).labels)
        if (label == "Femme")
            women = code;
    const auto moments = [&](int var) {
        Moments m;
        double sum = 0;
        for (int c = 1; c <= file.caseCount(); ++c) {
            const double x = file.value(c, var), w = weightOf(c);
            if (file.value(c, sex) != women || w <= 0 || file.isMissing(var, x))
                continue;
            ++m.cases;
            m.weight += w;
            sum += w * x;
        }
        m.mean = sum / m.weight;
        double squares = 0;
        for (int c = 1; c <= file.caseCount(); ++c) {
            const double x = file.value(c, var), w = weightOf(c);
            if (file.value(c, sex) == women && w > 0 && !file.isMissing(var, x))
                squares += w * (x - m.mean) * (x - m.mean);
        }
        m.sd = std::sqrt(squares / (m.weight - 1));
        return m;
    };

    const auto boxes = nlohmann::json::parse(readFile(out + "/" + stems[2] + ".json"));
    EXPECT_EQ(boxes["type"], "boxplot");
    EXPECT_EQ(boxes["boxes"]["style"], 54) << "the one style on by default";
    ASSERT_EQ(boxes["boxes"]["variables"].size(), 3u);
    for (const auto& box : boxes["boxes"]["variables"]) {
        const std::string name = box["name"];
        SCOPED_TRACE(name);
        const Moments m = moments(file.findVariable(name));
        const double se = m.sd / std::sqrt(m.weight);
        EXPECT_EQ(box["cases"], m.cases);
        EXPECT_NEAR(box["weight"].get<double>(), m.weight, 1e-9 * m.weight);
        EXPECT_NEAR(box["centre"].get<double>(), m.mean, 1e-9 * std::fabs(m.mean));
        EXPECT_NEAR(box["boxHigh"].get<double>() - m.mean, se, 1e-6 * se);
        EXPECT_NEAR(box["whiskerLow"].get<double>(), m.mean - m.sd, 1e-9 * std::fabs(m.mean));
    }

    const auto matrix = nlohmann::json::parse(readFile(out + "/" + stems[3] + ".json"));
    ASSERT_EQ(matrix["scatter"]["cells"].size(), 6u);
    for (const auto& cell : matrix["scatter"]["cells"]) {
        const int x = file.findVariable(matrix["scatter"]["columns"][cell["column"].get<int>()]["name"]);
        const int y = file.findVariable(matrix["scatter"]["rows"][cell["row"].get<int>()]["name"]);
        int cases = 0;
        for (int c = 1; c <= file.caseCount(); ++c)
            cases += file.value(c, sex) == women && weightOf(c) > 0 &&
                     !file.isMissing(x, file.value(c, x)) && !file.isMissing(y, file.value(c, y));
        EXPECT_EQ(cell["cases"], cases);
    }
}

// One weight rule for tables and graphs: the box plots of a subset count the same weighted
// cases, and find the same means, as the module's descriptive statistics of that subset.
TEST(MacroGraphs, BoxPlotsAgreeWithTheDescriptivesOfTheSameSubset) {
    const wb::testing::TempDir dir;
    const std::string macro = dir.path("both.ddm");
    std::ofstream(macro) << "Variables = \"REGION SEX | AGE\"\n"
                            "ReviewVariables = \"| INCOME SPEND\"\n"
                            "DrillDownVariable = \"SEX\"\nDrillDownCategory = \"Femme\"\nDrillDown\n"
                            "ReviewDescriptives\nReviewBoxWhisker\n";
    const std::string out = dir.path("out");
    const CliRun run = runCli("run " + Sample + " " + macro + " --out " + out);
    ASSERT_EQ(run.status, 0) << run.err;
    const auto table = nlohmann::json::parse(readFile(out + "/001-statistiques-descriptives.json"));
    const auto boxes = nlohmann::json::parse(
        readFile(out + "/002-boites-a-moustaches-des-variables-etudiees.json"));
    ASSERT_EQ(table["rows"].size(), boxes["boxes"]["variables"].size());
    for (std::size_t k = 0; k < table["rows"].size(); ++k) {
        const auto& row = table["rows"][k];
        const auto& box = boxes["boxes"]["variables"][k];
        SCOPED_TRACE(row["name"].get<std::string>());
        EXPECT_EQ(row["name"], box["name"]);
        const double mean = row["cells"][0].get<double>();
        EXPECT_NEAR(box["centre"].get<double>(), mean, 1e-9 * std::fabs(mean));
        EXPECT_EQ(box["weight"].get<double>(), row["cells"][4].get<double>());
    }
}

} // namespace
