#include "workbench/data/SelectionCondition.h"

#include <gtest/gtest.h>

#include "workbench/data/DataChecks.h"
#include "workbench/data/DataFile.h"

namespace {

constexpr double Missing = -99999999.0;

// AGE, REGION, INCOME, and a variable whose name is no plain word.
wb::DataFile makeFile() {
    wb::DataFile file;
    file.addVariable({"AGE", "", Missing, {}, wb::DisplayFormat::Plain});
    file.addVariable({"REGION", "", Missing, {}, wb::DisplayFormat::Plain});
    file.addVariable({"INCOME", "", -1.0, {}, wb::DisplayFormat::Plain});
    file.addVariable({"MY VAR", "", Missing, {}, wb::DisplayFormat::Plain});
    return file;
}

struct MatchCase {
    const char* comment;
    const char* expression;
    double age, region, income;
    bool expected;
};

TEST(SelectionConditionTest, EvaluatesCases) {
    // clang-format off
    const MatchCase cases[] = {
        {"greater, equal", "AGE > 30", 30, 1, 100, false},
        {"greater or equal", "AGE >= 30", 30, 1, 100, true},
        {"less", "AGE < 30", 30, 1, 100, false},
        {"less or equal", "AGE <= 30", 30, 1, 100, true},
        {"equal", "REGION = 2", 30, 2, 100, true},
        {"not equal", "REGION <> 2", 30, 2, 100, false},
        {"and binds tighter than or", "REGION = 1 or REGION = 2 and AGE > 50", 30, 1, 0, true},
        {"parentheses first", "(REGION = 1 or REGION = 2) and AGE > 50", 30, 1, 0, false},
        {"not binds tighter than and", "not REGION = 1 and AGE > 50", 30, 2, 0, false},
        {"not of a parenthesis", "not (AGE > 30 or REGION = 1)", 20, 2, 0, true},
        {"or short-cut leaves the right truth", "AGE > 100 or AGE > 10 or REGION = 9", 40, 1, 0, true},
        {"and short-cut is false", "AGE > 100 and REGION = 1", 40, 1, 0, false},
        {"missing value: comparison false", "INCOME > 0", 40, 1, -1, false},
        {"missing value: not of a comparison true", "not INCOME > 0", 40, 1, -1, true},
        {"missing value: not equal is false too", "INCOME <> 3", 40, 1, -1, false},
        {"missing()", "missing(INCOME)", 40, 1, -1, true},
        {"missing() of a value", "missing ( INCOME )", 40, 1, 7, false},
        {"two variables", "INCOME > AGE", 40, 1, 50, true},
        {"two variables, one missing", "INCOME < AGE", 40, 1, -1, false},
        {"negative decimal without a leading zero", "INCOME = -.5", 40, 1, -0.5, true},
        {"exponent", "INCOME >= 1e3", 40, 1, 1000, true},
        {"comparisons are exact, as drill steps compare", "INCOME = 0.3", 40, 1, 0.1 + 0.2, false},
        {"a value equals the same number written", "INCOME = 0.3", 40, 1, 0.3, true},
        {"names and keywords ignore case", "age > 30 AND Region = 1", 40, 1, 0, true},
        {"variable by number", "#1 > 30 and #4 = 0", 40, 1, 0, true},
        {"two constants", "1 < 2", 0, 0, 0, true},
        {"no blanks needed", "AGE>30and(REGION=1)", 40, 1, 0, true},
    };
    // clang-format on
    wb::DataFile file = makeFile();
    for (const MatchCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const double row[] = {0.0, c.age, c.region, c.income, 0.0};
        const wb::SelectionCondition condition(c.expression, file);
        EXPECT_EQ(condition.matches(row, file), c.expected) << c.expression;
    }
}

struct SyntaxCase {
    const char* comment;
    std::string expression;
    std::string message;
};

TEST(SelectionConditionTest, RefusesBadConditionsNamingTheColumn) {
    // clang-format off
    const SyntaxCase cases[] = {
        {"unknown variable later", "AGE > 30 and FOO = 1", "unknown variable \"FOO\" at column 14"},
        {"columns count characters", "AGE = 1 and ÉTAT = 2", "unknown variable \"ÉTAT\" at column 13"},
        {"missing relation", "AGE 30", "expected a comparison (=, <>, <, <=, >, >=) but found \"30\" at column 5"},
        {"unclosed parenthesis", "(AGE > 30", "expected \")\" but found the end at column 10"},
        {"extra parenthesis", "AGE > 30)", "expected \"and\", \"or\" or the end but found \")\" at column 9"},
        {"and without right side", "AGE > 30 and", "expected a variable or a number but found the end at column 13"},
        {"C's not-equal", "AGE != 3", "unexpected \"!=\"; write \"<>\" for \"not equal\" at column 5"},
        {"bad character", "AGE > 30 & REGION = 1", "unexpected character \"&\" at column 10"},
        {"bad number", "AGE > 3.4.5", "bad number \"3.4.5\" at column 7"},
        {"variable number 0", "#0 = 1", "no variable #0; the file has 4 variables at column 1"},
        {"variable number too high", "#5 = 1", "no variable #5; the file has 4 variables at column 1"},
        {"hash without number", "# = 1", "expected a variable number after \"#\" at column 1"},
        {"missing() of a number", "missing(30)", "expected a variable but found \"30\" at column 9"},
        {"condition as an operand", "AGE = (REGION = 1)", "expected a variable or a number but found \"(\"; a condition cannot be compared at column 7"},
        {"nesting beyond the limit", std::string(101, '(') + "AGE > 1" + std::string(101, ')'), "conditions nested too deeply at column 101"},
    };
    // clang-format on
    const wb::DataFile file = makeFile();
    for (const SyntaxCase& c : cases) {
        EXPECT_EQ(wb::testing::dataError([&] { wb::SelectionCondition(c.expression, file); }),
                  "selection condition: " + c.message)
            << c.comment;
    }
}

TEST(SelectionConditionTest, ReadsMissingCodesWhenEvaluating) {
    // The missing code can change after the condition is set: evaluation reads the file's.
    wb::DataFile file = makeFile();
    const wb::SelectionCondition condition("AGE > 0", file);
    const double row[] = {0.0, 5.0, 0.0, 0.0, 0.0};
    EXPECT_TRUE(condition.matches(row, file));
    file.variable(1).missingCode = 5.0;
    EXPECT_FALSE(condition.matches(row, file));
}

} // namespace
