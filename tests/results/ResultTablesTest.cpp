// The result tables as the host receives them: cells under their headings, number formats
// and the drill string, on small files whose every number is known.

#include <gtest/gtest.h>

#include <cmath>

#include "support/AnalysisFixture.h"

namespace {

constexpr double M = -9;

class ResultTables : public test::AnalysisFixture {
protected:
    // A: categorical with labels, X: continuous, Y: continuous with fractions, W: weight.
    void SetUp() override {
        open(test::makeFile({{"A", M, {{1, "Nord"}, {2, "Sud"}}}, {"X", M}, {"Y", M}, {"W", M}},
                            {{1, 10, 0.5, 1}, {1, 20, M, 1}, {2, 30, 1.5, 1}, {M, 40, 2.5, 1},
                             {2, 50, 3.5, 1}}));
        ASSERT_EQ(chooseDrillVariables({1}, {2, 3}), 1);
    }
    const wb::TableDocument& lastTable() {
        EXPECT_FALSE(output.documents().empty());
        return output.documents().back().table();
    }
    static double number(const wb::TableCell& cell) { return std::get<double>(cell); }
    static std::string text(const wb::TableCell& cell) { return std::get<std::string>(cell); }
};

TEST_F(ResultTables, DescriptiveStatistics) {
    ASSERT_EQ(analysis->DDNDescriptive(panel), 1);
    const wb::TableDocument& t = lastTable();
    EXPECT_EQ(t.subtitle, "N Total : 5, Sélectionné : 4");  // N of the first drill-down record
    ASSERT_EQ(t.columns.size(), 6u);
    // Which heading stands over which number.
    EXPECT_EQ(t.columns[0].head, "Moyenne");
    EXPECT_EQ(t.columns[4].head, "Observations");
    EXPECT_EQ(t.columns[5].head, "Manquante(s)");
    ASSERT_EQ(t.rows.size(), 2u);
    EXPECT_EQ(t.rows[0].name, "X");
    EXPECT_DOUBLE_EQ(number(t.rows[0].cells[0]), 30);
    EXPECT_DOUBLE_EQ(number(t.rows[0].cells[1]), std::sqrt(250.0));  // 1000 / (5 - 1)
    EXPECT_DOUBLE_EQ(number(t.rows[1].cells[0]), 2);                 // Y: 0.5, 1.5, 2.5, 3.5
    EXPECT_DOUBLE_EQ(number(t.rows[1].cells[5]), 1);
    // Column 0 holds a fraction nowhere but its standard deviations are irrational: the
    // mean column is whole, the deviation column real; a whole-number column loses nothing.
    EXPECT_EQ(t.columns[0].format, wb::ColumnFormat::Whole);
    EXPECT_EQ(t.columns[1].format, wb::ColumnFormat::Real);
    EXPECT_EQ(t.columns[2].format, wb::ColumnFormat::Real);  // Y's minimum 0.5
    EXPECT_EQ(t.columns[4].format, wb::ColumnFormat::Whole);
}

TEST_F(ResultTables, DescriptivesOfAVariableWithoutCasesShowDashes) {
    session.drillDown(1, 0);  // A = Nord: cases 1 and 2
    session.drillDown(2, 1);  // the interval of X = 20: case 2, where Y is missing
    ASSERT_EQ(analysis->DDNDescriptive(panel), 1);
    const wb::TableDocument& t = lastTable();
    ASSERT_EQ(t.rows.size(), 1u);
    EXPECT_EQ(t.rows[0].name, "Y");
    for (int c = 0; c < 4; ++c)
        EXPECT_EQ(text(t.rows[0].cells[c]), "-") << c;
    EXPECT_DOUBLE_EQ(number(t.rows[0].cells[4]), 0);
    EXPECT_DOUBLE_EQ(number(t.rows[0].cells[5]), 1);
    EXPECT_TRUE(t.subtitle.starts_with("N Total : 5, Sélectionné : 0\n")) << t.subtitle;
}

TEST_F(ResultTables, NoCaseRefusesWithAMessage) {
    analysis->ValidVar = 0;
    EXPECT_EQ(analysis->DDNDescriptive(panel), 0);
    EXPECT_EQ(takeMessages(), std::vector<std::string>{"Le nombre d'observations est nul."});
    EXPECT_TRUE(output.documents().empty());
}

// Without the missing row the percentages stop below a hundred: the missing case still
// counts in the whole.
TEST_F(ResultTables, FrequencyTableOfACategoricalVariable) {
    const double expected[3][4] = {{2, 2, 40, 40}, {2, 4, 40, 80}, {1, 5, 20, 100}};
    for (short countMD : {1, 0}) {
        SCOPED_TRACE(countMD);
        analysis->SetCountMD(countMD);
        analysis->NeedsRescan = 1;
        const std::size_t before = output.documents().size();
        ASSERT_EQ(analysis->DDNFrequency(panel), 1);
        ASSERT_EQ(output.documents().size(), before + 3);  // one per drill-down variable
        const wb::TableDocument& t = output.documents()[before].table();
        EXPECT_EQ(t.title, "Tableau de fréquence de A");
        ASSERT_EQ(t.columns.size(), 4u);
        ASSERT_EQ(t.rows.size(), countMD == 1 ? 3u : 2u);  // Nord, Sud, the missing row
        EXPECT_EQ(t.rows[0].name, "Nord");
        EXPECT_EQ(t.rows.back().name, countMD == 1 ? "Manquante(s)" : "Sud");
        for (std::size_t r = 0; r < t.rows.size(); ++r)
            for (int c = 0; c < 4; ++c)
                EXPECT_DOUBLE_EQ(number(t.rows[r].cells[c]), expected[r][c]) << r << "," << c;
        EXPECT_EQ(t.columns[0].format, wb::ColumnFormat::Whole);
        EXPECT_EQ(t.columns[2].format, wb::ColumnFormat::Real);
    }
}

TEST_F(ResultTables, SummaryListsTheStepsNewestFirst) {
    EXPECT_EQ(analysis->DDNSummary(panel), 1);
    EXPECT_TRUE(output.documents().empty());  // no step yet: nothing is shown
    session.drillDown(1, 1);  // A = Sud
    session.drillDown(2, 0);  // X's first interval under A = Sud
    ASSERT_EQ(analysis->DDNSummary(panel), 1);
    const wb::TableDocument& t = lastTable();
    ASSERT_EQ(t.rows.size(), 2u);
    EXPECT_EQ(t.rows[0].name, "X");
    EXPECT_EQ(t.rows[1].name, "A");
    EXPECT_EQ(text(t.rows[1].cells[0]), "Sud");
}

TEST_F(ResultTables, DrillStringLines) {
    session.drillDown(1, 1);  // A = Sud: cases 3 and 5
    session.drillDown(2, 0);  // the first interval of X under it
    const std::string text = wb::TokenTable::shared().expand(analysis->DrillString());
    const std::string head = "N Total : 5, Sélectionné : " + std::to_string(downRecord(3).N);
    EXPECT_EQ(text.substr(0, head.size()), head);
    // The names come as the host gives them, padded to 8 characters; the newer step first.
    const auto onX = text.find(" < X        <= ");
    const auto onA = text.find("\nA        = Sud");
    ASSERT_NE(onX, std::string::npos) << text;
    ASSERT_NE(onA, std::string::npos) << text;
    EXPECT_LT(onX, onA);
}

} // namespace
