#include "workbench/data/DataFile.h"

#include <cstring>

#include <gtest/gtest.h>

#include "workbench/data/DataChecks.h"

namespace {

constexpr double Missing = -99999999.0;

wb::Variable variable(const std::string& name) {
    return {name, "", Missing, {}, wb::DisplayFormat::Plain};
}

wb::DataFile withVariables(std::initializer_list<const char*> names) {
    wb::DataFile file;
    for (const char* name : names)
        file.addVariable(variable(name));
    return file;
}

TEST(DataFileTest, RowsAreOneCopyWithSlotZeroUnused) {
    wb::DataFile file = withVariables({"A", "B"});
    file.appendCase({1, 2});
    file.appendCase({3, 4});
    ASSERT_EQ(file.stride(), 3u);
    // Case 2 follows case 1 directly: one copy of stride() doubles delivers it.
    EXPECT_EQ(file.row(2), file.row(1) + 3);
    double buffer[3] = {-1, -1, -1};
    std::memcpy(buffer, file.row(2), sizeof buffer);
    EXPECT_EQ(buffer[1], 3);
    EXPECT_EQ(buffer[2], 4);
}

TEST(DataFileTest, RefusesLayoutChangesOnceItHasCases) {
    wb::DataFile file = withVariables({"A"});
    EXPECT_THROW(file.appendCase({1, 2}), std::invalid_argument);
    file.appendCase({1});
    EXPECT_THROW(file.addVariable(variable("B")), std::logic_error);
    EXPECT_THROW(file.setWeightVariable(2), std::out_of_range);
}

TEST(DataFileTest, FindsExactNamesBeforeOthersOfAnotherCase) {
    const wb::DataFile file = withVariables({"Age", "AGE"});
    EXPECT_EQ(file.findVariable("AGE"), 2);
    EXPECT_EQ(file.findVariable("Age"), 1);
    EXPECT_EQ(file.findVariable("age"), 1);
    EXPECT_EQ(file.findVariable("AG"), 0);
}

TEST(DataFileTest, KeepsCaseNamesAlignedWithCases) {
    wb::DataFile file = withVariables({"A"});
    file.appendCase({1});
    EXPECT_FALSE(file.hasCaseNames());
    EXPECT_EQ(file.caseNameWidth(), 0);
    file.appendCase({2}, "Martin-Lefebvre");
    file.appendCase({3});
    ASSERT_TRUE(file.hasCaseNames());
    EXPECT_EQ(file.caseName(1), "");
    EXPECT_EQ(file.caseName(2), "Martin-Lefebvre");
    EXPECT_EQ(file.caseName(3), "");
    EXPECT_EQ(file.caseNameWidth(), 15);
}

struct WeightCase {
    const char* comment;
    double value;
    double weight;
};

TEST(DataFileTest, CountsMissingAndNegativeWeightsAsZero) {
    const WeightCase cases[] = {
        {"a weight", 2.5, 2.5},
        {"negative", -1.0, 0.0},
        {"missing", Missing, 0.0},
    };
    wb::DataFile file = withVariables({"X", "W"});
    for (const WeightCase& c : cases)
        file.appendCase({0, c.value});
    EXPECT_EQ(file.caseWeight(1), 1.0) << "no weight variable";
    file.setWeightVariable(2);
    for (int i = 0; i < int(std::size(cases)); ++i)
        EXPECT_EQ(file.caseWeight(i + 1), cases[i].weight) << cases[i].comment;
}

TEST(DataFileTest, KeepsTheSelectionWhenANewOneIsBad) {
    wb::DataFile file = withVariables({"AGE"});
    file.appendCase({20});
    file.appendCase({40});
    EXPECT_TRUE(file.isSelected(1)) << "no selection";
    file.setSelection("AGE > 30");
    EXPECT_FALSE(file.isSelected(1));
    EXPECT_THROW(file.setSelection("AGE >"), wb::DataError);
    EXPECT_EQ(file.selectionText(), "AGE > 30");
    EXPECT_FALSE(file.isSelected(1));
    EXPECT_TRUE(file.isSelected(2));
    file.setSelection("  ");
    EXPECT_EQ(file.selectionText(), "");
    EXPECT_TRUE(file.isSelected(1));
}

TEST(DataFileTest, LimitsTheHeaderTo80Bytes) {
    wb::DataFile file;
    // 80 bytes with accents, which take two bytes each.
    const std::string longest = std::string(70, 'x') + "éééèè";
    file.setHeaderText(longest);
    EXPECT_EQ(wb::testing::dataError([&] { file.setHeaderText(longest + "!"); }),
              "header text is 81 bytes long; at most 80 are allowed");
    EXPECT_EQ(file.headerText(), longest);
}

} // namespace
