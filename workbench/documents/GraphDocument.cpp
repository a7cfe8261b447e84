#include "workbench/documents/GraphDocument.h"

#include "workbench/documents/Document.h"

namespace wb {

std::string_view graphTypeName(GraphType type) {
    switch (type) {
    case GraphType::Histogram:
        return "histogram";
    case GraphType::Pie:
        return "pie";
    case GraphType::Stacked:
        return "stacked";
    case GraphType::BoxPlot:
        return "boxplot";
    case GraphType::ScatterMatrix:
        return "scatter-matrix";
    case GraphType::Histogram3D:
        return "histogram3d";
    }
    return "histogram";
}

namespace {

// Each box style in the words of its option, and as the sentence a picture shows.
struct BoxStyleWords {
    BoxStyle style;
    std::string_view option;
    std::string_view legend;
};

constexpr BoxStyleWords BoxStyles[] = {
    {BoxStyle::MedianQuartilesRange, "Médiane/Quartiles/Etendue",
     "Trait : médiane — boîte : quartiles — moustaches : minimum et maximum"},
    {BoxStyle::MeanSdSd196, "Moyenne/Ecart-Type/1.96*Ecart-Type",
     "◆ moyenne — boîte : ± écart-type — moustaches : ± 1,96 écart-type"},
    {BoxStyle::MeanSeSd, "Moyenne/Erreur-Type/Ecart-Type",
     "◆ moyenne — boîte : ± erreur-type — moustaches : ± écart-type"},
    {BoxStyle::MeanSeSe196, "Moyenne/Erreur-Type/1.96*Erreur-Type",
     "◆ moyenne — boîte : ± erreur-type — moustaches : ± 1,96 erreur-type"},
};

const BoxStyleWords* wordsOf(BoxStyle style) {
    for (const BoxStyleWords& words : BoxStyles)
        if (words.style == style)
            return &words;
    return nullptr;
}

} // namespace

std::string_view boxStyleText(BoxStyle style) {
    const BoxStyleWords* words = wordsOf(style);
    return words != nullptr ? words->option : std::string_view();
}

std::string_view boxStyleLegend(BoxStyle style) {
    const BoxStyleWords* words = wordsOf(style);
    return words != nullptr ? words->legend : std::string_view();
}

std::string documentCount(std::size_t tables, std::size_t graphs) {
    const auto counted = [](std::size_t n, const char* one) {
        return std::to_string(n) + " " + one + (n == 1 ? "" : "s");
    };
    if (tables == 0 && graphs == 0)
        return "no document";
    if (graphs == 0)
        return counted(tables, "table");
    if (tables == 0)
        return counted(graphs, "graph");
    return counted(tables, "table") + " and " + counted(graphs, "graph");
}

std::string Document::name() const {
    if (const auto* table = std::get_if<TableDocument>(&content))
        return table->title;
    return std::get<GraphDocument>(content).name();
}

} // namespace wb
