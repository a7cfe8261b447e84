// The table output service: decoding the module's arrays into a table document.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "drilldown/host/HostBlocks.h"
#include "support/AnalysisFixture.h"
#include "workbench/services/OutputService.h"
#include "workbench/text/TokenTable.h"

namespace {

using wb::ColumnFormat;

// One table's arrays as the module lays them out (cells column after column, untouched
// values all ones), handed over with the module's constants.
struct ModuleTable {
    ModuleTable(int rowCount, int colCount)
        : rows(rowCount), cols(colCount), rowsAgain(rowCount),
          values(rows * cols, std::bit_cast<double>(~std::uint64_t{0})), texts(rows * cols * 8),
          format(cols), heads(cols * 8 + 1), heads2(cols * 8 + 1), names(12 * rows + 1),
          titles(3 * 80) {}

    static void put(std::vector<char>& field, int at, int width, const std::string& text) {
        text.copy(field.data() + at, width);
    }
    int cell(int row, int col) const { return rows * col + row; }
    void text(int row, int col, const std::string& text) {
        put(texts, cell(row, col) * 8, 8, text);
        format[col] = char(156);
    }
    short emit(wb::OutputService& output) {
        short zero = 0, one = 1, alsoOne = 1;
        return output.looka4(values.data(), texts.data(), format.data(), heads.data(),
                             heads2.data(), names.empty() ? nullptr : names.data(), titles.data(),
                             rows, cols, rowsAgain, cols, 16, 6, 14, 10, 80, 1, 0, 12, 8, 8, 9217,
                             0, nullptr, nullptr, nullptr, &zero, &one, &alsoOne);
    }

    int rows, cols, rowsAgain;
    std::vector<double> values;
    std::vector<char> texts, format, heads, heads2, names, titles;
};

class OutputServiceTest : public ::testing::Test {
protected:
    OutputServiceTest() : output(store, tokens) {}
    wb::TokenTable tokens;
    wb::DocumentStore store;
    wb::OutputService output;
};

TEST_F(OutputServiceTest, DecodesCellsColumnAfterColumn) {
    const std::string label = "Très élevé et au-delà";
    ModuleTable table(3, 4);
    for (int row = 0; row < 3; ++row) {
        table.values[table.cell(row, 0)] = 10 + row;
        table.values[table.cell(row, 1)] = 0.5 + row;
        table.values[table.cell(row, 2)] = 100.25 + row;
    }
    table.format[0] = -8;
    table.text(1, 2, "-");
    table.text(2, 3, tokens.tokenFor(label));
    table.values[table.cell(0, 1)] = std::bit_cast<double>(std::uint64_t{0x7FF8000000000001});
    ASSERT_EQ(table.emit(output), 1);

    const wb::TableDocument& doc = output.documents().at(0).table();
    std::vector<ColumnFormat> formats;
    for (const auto& column : doc.columns)
        formats.push_back(column.format);
    EXPECT_EQ(formats, (std::vector<ColumnFormat>{ColumnFormat::Whole, ColumnFormat::Real,
                                                  ColumnFormat::Text, ColumnFormat::Text}));
    const struct {
        int row, col;
        wb::TableCell expected;
        const char* comment;
    } cells[] = {
        {2, 0, 12.0, "rows run first"},
        {1, 1, 1.5, "element rows * col + row"},
        {0, 1, {}, "any NaN is empty"},
        {0, 2, 100.25, "a text column shows the number of a cell without text"},
        {1, 2, std::string("-"), "and the text of a cell that has one"},
        {2, 3, label, "a token in a cell comes back as its long text"},
        {0, 3, {}, "no text and the untouched pattern: empty"},
    };
    for (const auto& c : cells)
        EXPECT_EQ(doc.rows.at(c.row).cells.at(c.col), c.expected) << c.comment;
}

TEST_F(OutputServiceTest, DecodesTextsOfEveryField) {
    VmkTag vmk{};
    std::memcpy(vmk.RowHeading, "Variable   ", 11);
    output.setFileBlock(&vmk);
    ModuleTable table(2, 2);
    ModuleTable::put(table.heads, 0, 8, "Effectif"); // 8 bytes: no terminator in the field
    ModuleTable::put(table.heads, 8, 8, tokens.tokenFor("Ecart-Type    ")); // blanks go
    table.heads2[0] = '\xFF';                                               // no UTF-8
    ModuleTable::put(table.names, 0, 12, "AGE     ");
    ModuleTable::put(table.names, 12, 12, tokens.tokenFor("REVENU_ANNUEL_BRUT"));
    ModuleTable::put(table.titles, 0, 80, tokens.tokenFor("Fréquences de AGE: Âge"));
    ModuleTable::put(table.titles, 80, 80, "Sous-ensemble :\nAGE = 3");
    ModuleTable::put(table.titles, 160, 80, std::string(79, 'x') + "\xC3"); // cut character
    ASSERT_EQ(table.emit(output), 1);

    const wb::TableDocument& doc = output.documents().at(0).table();
    EXPECT_EQ(doc.title, "Fréquences de AGE: Âge");
    EXPECT_EQ(doc.subtitle, "Sous-ensemble :\nAGE = 3\n" + std::string(79, 'x'));
    EXPECT_EQ(doc.rowHeading, "Variable");
    EXPECT_EQ(doc.columns[0].head, "Effectif");
    EXPECT_EQ(doc.columns[1].head, "Ecart-Type");
    EXPECT_EQ(doc.columns[0].head2, "\xEF\xBF\xBD");
    EXPECT_EQ(doc.rows[0].name, "AGE");
    EXPECT_EQ(doc.rows[1].name, "REVENU_ANNUEL_BRUT");
}

TEST_F(OutputServiceTest, RefusesArgumentsThatDescribeNoTable) {
    ModuleTable table(2, 2);
    table.rowsAgain = 3;
    EXPECT_EQ(table.emit(output), 0);
    EXPECT_EQ(output.lastError(),
              "cannot show the table: the table's size is given as 2 x 2 and as 3 x 2");
    EXPECT_TRUE(output.documents().empty());
}

// A weighted "Effectif" reads as a number of cases; the table says what it is.
TEST_F(OutputServiceTest, TablesSayWhatTheirWeightsAre) {
    wb::DataFile file = test::makeFile({{"AGE"}, {"POIDS"}}, {{30, 1.5}});
    output.setDataFile(&file);
    const struct {
        int weight;
        wb::CaseWeights rule;
        std::string note;
    } cases[] = {
        {0, wb::CaseWeights::Whole, ""},
        {2, wb::CaseWeights::Whole, "Effectifs et moyennes pondérés par POIDS (poids arrondis à "
                                    "l'entier, « Moments pondérés » étant désactivé)."},
        {2, wb::CaseWeights::AsGiven, "Effectifs et moyennes pondérés par POIDS (poids tels "
                                      "quels, « Moments pondérés » étant activé)."},
    };
    for (const auto& c : cases) {
        file.setWeightVariable(c.weight);
        output.setWeightRule([&] { return c.rule; });
        ModuleTable table(1, 1);
        ASSERT_EQ(table.emit(output), 1);
        EXPECT_EQ(output.documents().back().table().note, c.note);
    }
}

} // namespace
