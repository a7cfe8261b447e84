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

std::string_view boxStyleText(BoxStyle style) {
    switch (style) {
    case BoxStyle::MedianQuartilesRange:
        return "Médiane/Quartiles/Etendue";
    case BoxStyle::MeanSdSd196:
        return "Moyenne/Ecart-Type/1.96*Ecart-Type";
    case BoxStyle::MeanSeSd:
        return "Moyenne/Erreur-Type/Ecart-Type";
    case BoxStyle::MeanSeSe196:
        return "Moyenne/Erreur-Type/1.96*Erreur-Type";
    }
    return {};
}

std::string boxStyleLegend(BoxStyle style) {
    switch (style) {
    case BoxStyle::MedianQuartilesRange:
        return "Trait : médiane — boîte : quartiles — moustaches : minimum et maximum";
    case BoxStyle::MeanSdSd196:
        return "◆ moyenne — boîte : ± écart-type — moustaches : ± 1,96 écart-type";
    case BoxStyle::MeanSeSd:
        return "◆ moyenne — boîte : ± erreur-type — moustaches : ± écart-type";
    case BoxStyle::MeanSeSe196:
        return "◆ moyenne — boîte : ± erreur-type — moustaches : ± 1,96 erreur-type";
    }
    return {};
}

std::string documentCount(const std::vector<Document>& documents) {
    std::size_t tables = 0, graphs = 0;
    for (const Document& document : documents)
        (document.isTable() ? tables : graphs) += 1;
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
