#pragma once
// One small table with a cell of every kind, shared by the renderer tests.

#include <string>

#include "workbench/documents/TableDocument.h"

namespace wb::testing {

inline TableDocument sampleTable() {
    TableDocument table;
    table.command = 9059;
    table.number = 2;
    table.title = "Statistiques descriptives";
    table.subtitle = "Sous-ensemble :\nAGE <= 30";
    table.rowHeading = "Variable";
    table.columns = {{"Moyenne", "", ColumnFormat::Real},
                     {"Effectif\nCumulé", "", ColumnFormat::Whole},
                     {"Description", "", ColumnFormat::Text}};
    table.rows = {{"AGE", {40.5, 12.0, {}}},
                  {"REVENU", {std::string("-"), 3.0, std::string("Très élevé & <plus>")}},
                  {"POIDS", {2.0, 1e10, 7.25}}};
    return table;
}

} // namespace wb::testing
