// A table as CSV: headings, row names and cells as every renderer shows them, quoted only
// where the format needs it.

#include <gtest/gtest.h>

#include "workbench/documents/TableCsv.h"

namespace {

TEST(TableCsv, HeadingsRowsAndQuotedFields) {
    wb::TableDocument table;
    table.rowHeading = "Région";
    table.columns = {{"Effectif", "", wb::ColumnFormat::Whole},
                     {"Moyenne", "pondérée", wb::ColumnFormat::Real},
                     {"Note", "", wb::ColumnFormat::Text}};
    table.rows = {{"Nord", {12.0, 2.5, std::string("bon, \"très\"")}},
                  {"Sud", {3.0, {}, std::string("ligne\nsuivante")}}};
    EXPECT_EQ(wb::tableCsv(table), "Région,Effectif,Moyenne pondérée,Note\r\n"
                                   "Nord,12,2.5,\"bon, \"\"très\"\"\"\r\n"
                                   "Sud,3,,\"ligne\nsuivante\"\r\n");
}

} // namespace
