#pragma once
// One graph of each kind, made the way a session makes them: chart requests laid out as the
// module's chart builder lays them out, and the graphs drawn from the cases of the sample
// survey (examples/sample.csv), through the output service.

#include <string>
#include <vector>

#include "workbench/services/ModuleChart.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/services/OutputService.h"

namespace wb::testing {

inline const std::vector<std::string>& sampleRegions() {
    static const std::vector<std::string> regions = {
        "Auvergne-Rhône-Alpes", "Bourgogne-Franche-Comté", "Bretagne",     "Grand Est",
        "Hauts-de-France",      "Île-de-France",           "Normandie",    "Nouvelle-Aquitaine",
        "Occitanie",            "Provence-Alpes-Côte d'Azur", "Manquante(s)"};
    return regions;
}

inline const std::vector<double>& sampleRegionCounts() {
    static const std::vector<double> counts = {152, 47, 61, 98, 112, 187, 55, 104, 96, 121, 9};
    return counts;
}

inline constexpr const char* SampleDrill = "SEX = Femme ; AGEGROUP = 35-49";

// The histogram of REGION: one bar per category and one of missing data, the count axis of
// top 200 with 11 labels.
inline int sendSampleHistogram(OutputService& output, TokenTable& tokens) {
    const auto& regions = sampleRegions();
    const auto& counts = sampleRegionCounts();
    const int n = static_cast<int>(regions.size());
    ModuleChart chart(5, 1, n);
    for (int i = 0; i < n; ++i) {
        chart.point(0, i, i + 1, counts[i]);
        chart.xLabel(i + 1, i + 1,
                     regions[i].size() > 20 ? tokens.tokenFor(regions[i]) : regions[i]);
    }
    chart.title(0, tokens.tokenFor("Histogramme de la variable du drill-down : REGION: Région de résidence"));
    chart.title(1, tokens.tokenFor(SampleDrill));
    chart.xTitle = "REGION";
    chart.yTitle = "Effectif";
    chart.xMin = 0, chart.xMax = n + 1, chart.xStep = 1;
    chart.yMin = 0, chart.yMax = 200, chart.yStep = 20;
    for (int k = 0; k <= 10; ++k)
        chart.yLabel(k, 20.0 * k, std::to_string(20 * k));
    return chart.send(output);
}

inline int sendSamplePie(OutputService& output, TokenTable& tokens) {
    const auto& regions = sampleRegions();
    const auto& counts = sampleRegionCounts();
    const int n = static_cast<int>(regions.size());
    ModuleChart chart(3, 1, n + 1);
    for (int i = 0; i <= n; ++i)
        chart.point(0, i, i < n ? i + 1 : 0, i < n ? counts[i] : 0);
    for (int i = 0; i < n; ++i)
        chart.pointLabel(i, regions[i]); // cut to 12 bytes by the field, as the module does
    chart.title(0, tokens.tokenFor("Camembert pour la variable de drill-down : REGION: Région de résidence"));
    chart.title(1, tokens.tokenFor(SampleDrill));
    chart.xTitle = "REGION";
    chart.xMin = 0, chart.xMax = n + 1, chart.xStep = 1;
    chart.yMin = 0, chart.yMax = 100, chart.yStep = 20;
    return chart.send(output);
}

// Three variables of 3, 2 and 4 categories, the second with missing data.
inline int sendSampleStacked(OutputService& output, TokenTable& tokens) {
    const std::vector<std::vector<double>> shares = {
        {100, 62, 27, 0}, {100, 96, 44, 0}, {100, 71, 48, 22, 0}};
    const std::vector<std::string> names = {"SEX", "CHANNEL", "AGEGROUP"};
    std::size_t seriesCount = 0;
    for (const auto& edges : shares)
        seriesCount = std::max(seriesCount, edges.size());
    ModuleChart chart(2, static_cast<int>(seriesCount), static_cast<int>(shares.size()));
    const int palette[] = {10, 9, 11, 13, 14};
    for (std::size_t s = 0; s < seriesCount; ++s) {
        chart.colours[s] = static_cast<unsigned char>(s + 1 == seriesCount ? 12 : palette[s]);
        for (std::size_t k = 0; k < shares.size(); ++k) {
            const bool has = s < shares[k].size();
            chart.point(static_cast<int>(s), static_cast<int>(k), has ? k + 1.0 : 0,
                        has ? shares[k][s] : 0);
        }
    }
    for (std::size_t k = 0; k < names.size(); ++k)
        chart.xLabel(static_cast<int>(k + 1), k + 1.0, names[k]);
    chart.title(0, "Tracé empilé des variables du drill-down");
    chart.title(1, tokens.tokenFor(SampleDrill));
    chart.yTitle = "Nombre d'obs. relatif (%)";
    chart.xMin = 0, chart.xMax = names.size() + 1.0, chart.xStep = 1;
    chart.yMin = 0, chart.yMax = 100.1, chart.yStep = 20;
    return chart.send(output);
}

// Where the filter below finds SEX: variable v at index v - 1.
inline int& sampleSexIndex() {
    static int index = 0;
    return index;
}

// The sample survey, weighted by WEIGHT.
inline DataFile sampleSurvey() {
    DataFile file = loadDataFile(std::string(DD_SOURCE_DIR) + "/examples/sample.csv");
    file.setWeightVariable(file.findVariable("WEIGHT"));
    sampleSexIndex() = file.findVariable("SEX") - 1;
    return file;
}

// The module's filter for the sample: women (SEX = 2).
inline int sampleWomen(char*, long*, double* values, double*, double*) {
    return values[sampleSexIndex()] == 2 ? 0 : 1;
}
inline int sampleWomenFloat(char*, long*, double* values, float* x, float* y) {
    *x = *y = 0;
    return values[sampleSexIndex()] == 2 ? 0 : 1;
}

inline int sendSampleBoxes(OutputService& output, const DataFile& file, unsigned short style) {
    std::vector<short> variables;
    for (const char* name : {"AGE", "INCOME", "SPEND", "VISITS", "SATISFACTION"})
        variables.push_back(static_cast<short>(file.findVariable(name)));
    std::string title = "Boîtes à Moustaches des Variables Etudiées";
    std::string drill = "SEX = Femme";
    return output.CategorizedVarBoxAndWhisker(style, title.data(), drill.data(), nullptr, nullptr,
                                              0, static_cast<short>(variables.size()),
                                              variables.data(), nullptr, sampleWomen);
}

inline int sendSampleScatter(OutputService& output, const DataFile& file) {
    std::vector<short> variables;
    for (const char* name : {"AGE", "INCOME", "SPEND", "VISITS"})
        variables.push_back(static_cast<short>(file.findVariable(name)));
    return output.CorrelationScatterplot(204, 0, static_cast<short>(variables.size()),
                                         variables.data(), 0, nullptr, 0, nullptr, nullptr,
                                         nullptr, sampleWomen, "Corrélations\nSEX = Femme");
}

// The women's 3D histogram of two variables, AGE and SATISFACTION unless others are named.
inline int sendSample3D(OutputService& output, const DataFile& file, const char* x = "AGE",
                        const char* y = "SATISFACTION") {
    std::string title = std::string("Histogramme 3D des variables : ") + x + " et " + y;
    std::string drill = "SEX = Femme";
    // The variables arrive counted from 0.
    return output.Histogram3D(4, static_cast<short>(file.findVariable(x) - 1),
                              static_cast<short>(file.findVariable(y) - 1), 0, 0,
                              nullptr, nullptr, 0, title.data(), nullptr, drill.data(), nullptr, 0,
                              nullptr, sampleWomenFloat);
}

} // namespace wb::testing
