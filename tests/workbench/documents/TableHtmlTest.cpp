// Number text and the HTML form of a table document.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "workbench/documents/CellText.h"
#include "workbench/documents/SampleTable.h"
#include "workbench/documents/TableHtml.h"

namespace {

using wb::ColumnFormat;

TEST(TableHtmlTest, NumberText) {
    const struct {
        double value;
        ColumnFormat format;
        const char* expected;
        const char* comment;
    } rows[] = {
        {2.5, ColumnFormat::Real, "2.5", "trailing zeros go"},
        {0.0001234567, ColumnFormat::Real, "0.000123457", "six significant digits below 1"},
        {100.0 / 3.0, ColumnFormat::Real, "33.333333", "six decimals"},
        {-0.0, ColumnFormat::Real, "0", "never -0"},
        {123456789012.5, ColumnFormat::Real, "123456789012.5", "no exponent for ordinary sizes"},
        {1.5e20, ColumnFormat::Real, "1.5e+20", "exponent from 1e15"},
        {-1.234567e-7, ColumnFormat::Real, "-1.23457e-07", "exponent below 1e-6"},
        {2.6, ColumnFormat::Whole, "3", "whole columns round"},
        {7.25, ColumnFormat::Text, "7.25", "a number in a text column is real"},
        {std::numeric_limits<double>::infinity(), ColumnFormat::Real, "", "not finite: empty"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(wb::numberText(row.value, row.format), row.expected)
            << row.value << ": " << row.comment;
}

// A real column shows one number of decimals for all its cells: four significant digits of
// its values, no more than a value needs, at most six.
TEST(TableHtmlTest, RealColumnsShowTheDecimalsTheirValuesNeed) {
    const struct {
        std::vector<double> column;
        std::vector<const char*> shown;
    } cases[] = {
        {{22.172752, 1362.652}, {"22.17", "1362.65"}},
        {{2.5, 12}, {"2.5", "12.0"}},
        {{100.0 / 3.0, 50}, {"33.33", "50.00"}},
        {{0.000125, 0.5}, {"0.000125", "0.500000"}},
        {{0.1234567}, {"0.1235"}},
        {{12345.678, -0.001}, {"12345.678", "-0.001"}},
        {{3, 4}, {"3", "4"}},
        {{1.5e20, 2.25}, {"1.5e+20", "2.25"}}, // the exponent form needs no decimals
    };
    for (const auto& c : cases) {
        wb::TableDocument table;
        table.columns = {{"x", "", ColumnFormat::Real}};
        for (const double value : c.column)
            table.rows.push_back({"r", {value}});
        const int decimals = wb::columnDecimals(table, 0);
        for (std::size_t row = 0; row < c.column.size(); ++row)
            EXPECT_EQ(wb::cellText(table.rows[row].cells[0], ColumnFormat::Real, decimals),
                      c.shown[row])
                << c.column[row] << " in a column of " << c.column.size();
    }
}

// Attributes are in double quotes. Line feeds and marks in text are RendersCellsByKind's.
TEST(TableHtmlTest, EscapesText) {
    EXPECT_EQ(wb::htmlText("a < b && \"c\" > 'd'"), "a &lt; b &amp;&amp; &quot;c&quot; &gt; 'd'");
}

TEST(TableHtmlTest, RendersCellsByKind) {
    const std::string html = wb::tableHtml(wb::testing::sampleTable());
    const char* const parts[] = {
        "<section class=\"table\" id=\"table-2\">",
        "<p class=\"subtitle\">Sous-ensemble :<br>AGE &lt;= 30</p>",
        "<tr><th class=\"row-heading\">Variable</th><th>Moyenne</th><th>Effectif<br>Cumulé</th>",
        "<tr><th scope=\"row\">AGE</th><td class=\"num\">40.5</td><td "
        "class=\"num\">12</td><td></td></tr>",
        "<td class=\"text\">-</td><td class=\"num\">3</td><td class=\"text\">Très élevé &amp; "
        "&lt;plus&gt;</td>",
        // 2 shows the one decimal that 40.5 needs in its column.
        "<td class=\"num\">2.0</td><td class=\"num\">10000000000</td><td class=\"num\">7.25</td>",
    };
    for (const char* part : parts)
        EXPECT_NE(html.find(part), std::string::npos) << part << "\nin\n" << html;
    EXPECT_EQ(html.find("<th class=\"row-heading\"></th>"), std::string::npos)
        << "no second heading row without second headings";

    wb::TableDocument table = wb::testing::sampleTable();
    table.columns[1].head2 = "N";
    EXPECT_NE(wb::tableHtml(table).find(
                  "<tr><th class=\"row-heading\"></th><th></th><th>N</th><th></th></tr>"),
              std::string::npos);
}

} // namespace
