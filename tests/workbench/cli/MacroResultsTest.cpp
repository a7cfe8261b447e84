// A macro that drills into the sample survey and asks for results leaves documents whose
// numbers agree with a computation of its own, with the file's case weights.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include <nlohmann/json.hpp>

#include "support/CliRun.h"
#include "support/ReferenceScan.h"
#include "workbench/data/DataFileLoader.h"

namespace {

const std::string Sample = DD_SOURCE_DIR "/examples/sample.csv";

constexpr const char* Macro = "Variables = \"REGION SEX CHANNEL | AGE SPEND\"\n"
                              "DrillDownVariable = \"SEX\"\n"
                              "DrillDownCategory = \"Femme\"\n"
                              "DrillDown\n"
                              "DrillDownVariable = \"REGION\"\n"
                              "DrillDownCategory = \"Bretagne\"\n"
                              "DrillDown\n"
                              "Print Descriptives\n"
                              "Print Frequencies\n"
                              "Print Save\n";

void expectNear(const nlohmann::json& cell, double expected, const std::string& what) {
    ASSERT_TRUE(cell.is_number()) << what;
    EXPECT_NEAR(cell.get<double>(), expected, 1e-9 * std::max(1.0, std::fabs(expected))) << what;
}

TEST(MacroResults, TablesAgreeWithAnIndependentComputation) {
    const wb::testing::TempDir dir;
    const std::string macro = dir.path("results.ddm");
    std::ofstream(macro) << Macro;
    const std::string out = dir.path("out");
    const CliRun run = runCli("run " + Sample + " " + macro + " --out " + out);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.substr(0, run.out.find("\n\nWrote")),
              "Statistiques descriptives\nTableau de fréquence de CHANNEL: Canal d'achat principal\n" +
                  out + "/subset-001.ddf")
        << "a result member names its first document, Save the subset's file";

    const wb::DataFile file = wb::loadDataFile(Sample);
    const int region = file.findVariable("REGION"), sex = file.findVariable("SEX");
    const int channel = file.findVariable("CHANNEL"), age = file.findVariable("AGE");
    const int spend = file.findVariable("SPEND");
    const auto womenOfBrittany = [&](int c) {
        return file.value(c, sex) == 1 && file.value(c, region) == 53;
    };
    const std::vector<ref::Stats> stats =
        ref::compute(file, {channel, age, spend}, {}, {}, womenOfBrittany);

    // Descriptive statistics of the continuous variables left to drill.
    const auto descriptives =
        nlohmann::json::parse(readFile(out + "/001-statistiques-descriptives.json"));
    ASSERT_EQ(descriptives["rows"].size(), 2u);
    for (int i = 0; i < 2; ++i) {
        const ref::Stats& s = stats[i + 1];
        const auto& row = descriptives["rows"][i];
        EXPECT_EQ(row["name"], i == 0 ? "AGE" : "SPEND");
        const auto& cells = row["cells"];
        expectNear(cells[0], s.mean, "mean");
        // The weighted sum of squares over the unweighted count less one: the product's
        // definition of the standard deviation.
        expectNear(cells[1], std::sqrt(s.ss / (s.n - 1)), "standard deviation");
        expectNear(cells[2], s.min, "minimum");
        expectNear(cells[3], s.max, "maximum");
        expectNear(cells[4], s.weightedN, "weighted cases");
        expectNear(cells[5], s.mcount, "missing");
    }

    // The frequency table of CHANNEL: one row per channel in code order, weighted counts,
    // cumulative counts and both percentages.
    const auto frequencies = nlohmann::json::parse(
        readFile(out + "/002-tableau-de-frequence-de-channel-canal-d-achat-pr.json"));
    const ref::Stats& c = stats[0];
    ASSERT_EQ(frequencies["rows"].size(), c.valueCounts.size() + (c.mcount > 0 ? 1 : 0));
    double cumulative = 0;
    std::size_t row = 0;
    for (const auto& [code, count] : c.valueCounts) {
        const auto& cells = frequencies["rows"][row++]["cells"];
        cumulative += count;
        expectNear(cells[0], count, "count");
        expectNear(cells[1], cumulative, "cumulative count");
        expectNear(cells[2], 100 * count / c.weightedN, "percent");
        expectNear(cells[3], 100 * cumulative / c.weightedN, "cumulative percent");
    }
    EXPECT_EQ(frequencies["rows"][0]["name"], file.variable(channel).labels.begin()->second);
}

} // namespace
