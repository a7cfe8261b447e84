// The tokenizer, number reading, separators and the text of macro values.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "drilldown/host/framework/TextHelpers.h"
#include "workbench/automation/AutomationRuntime.h"

namespace {

// The symbols of a text, written N<number> W<bare text> S<quoted text> P<punctuation>.
std::string symbols(const char* text) {
    CLittleParser parser(1, text, nullptr, 0);
    std::string written;
    for (unsigned char symbol = parser.GetSymbol(); symbol != CLittleParser::SymEnd;
         symbol = parser.GetSymbol()) {
        if (!written.empty())
            written += ' ';
        if (symbol == CLittleParser::SymNumber) {
            char number[32];
            std::snprintf(number, sizeof number, "N%g", parser.GetLastDouble());
            written += number;
        } else if (symbol == CLittleParser::SymWord) {
            written += "W" + parser.GetLastTextVal();
        } else if (symbol == CLittleParser::SymString) {
            written += "S" + parser.GetLastTextVal();
        } else {
            written += "P";
            written += static_cast<char>(symbol);
        }
    }
    return written;
}

struct SymbolRow {
    const char* text;
    const char* expected;
    const char* comment;
};

const SymbolRow SymbolRows[] = {
    {"", "", "nothing"},
    {"3", "N3", "a category index"},
    {"3: x", "N3 P: Wx", "index followed by ':' and more"},
    {"3 x", "N3 Wx", "index followed by a word, which the caller refuses"},
    {"1 2.5 -3 +4 .5 6e2", "N1 N2.5 N-3 N4 N0.5 N600", "boundaries between blanks"},
    {"12;13", "N12 P; N13", "punctuation ends a number"},
    {"- 3", "P- N3", "a sign apart from its digits"},
    {"3x", "W3x", "digits glued to letters make a word"},
    {"1e999", "W1e999", "a number beyond double is no number"},
    {"Manquante(s)", "WManquante(s)", "brackets inside a bare text"},
    {"  Sans emploi  ", "WSans emploi", "a bare text keeps inner blanks, loses outer ones"},
    {"AGE\nSEX", "WAGE WSEX", "a line end ends a bare text"},
    {"Âge moyen", "WÂge moyen", "non-ASCII starts a bare text"},
    {"\"3 enfants\" 'x'", "S3 enfants Sx", "quoted texts of both kinds"},
    {"\"a \"\"b\"\"\"", "Sa \"b\"", "a doubled quote stands for one"},
    {"\"open", "P\" Wopen", "an unclosed quote is punctuation"},
};

TEST(CLittleParser, SymbolSequences) {
    for (const SymbolRow& row : SymbolRows) {
        SCOPED_TRACE(row.comment);
        EXPECT_EQ(symbols(row.text), row.expected) << row.text;
    }
}

TEST(CLittleParser, WholeNumbersAreCutTowardZero) {
    struct {
        const char* text;
        long expected;
    } const rows[] = {{"-3.7", -3}, {"1e30", LONG_MAX}};
    for (const auto& row : rows) {
        CLittleParser parser(1, row.text, nullptr, 0);
        ASSERT_EQ(parser.GetSymbol(), CLittleParser::SymNumber) << row.text;
        EXPECT_EQ(parser.GetLastNumber(), row.expected) << row.text;
    }
}

struct NumberRow {
    const char* text;
    char decimal;
    int result;
    double value;
    const char* comment;
};

const NumberRow NumberRows[] = {
    {"1.5", '.', 0, 1.5, "point where the user writes a point"},
    {"1,5", ',', 0, 1.5, "comma where the user writes a comma"},
    {"1.5", ',', 0, 1.5, "a point is always accepted"},
    {"1,5", '.', 1, 0, "a comma is no decimal point for this user"},
    {" -2e3 \r\n", '.', 0, -2000, "blanks and a line end around it"},
    {"1,234.5", ',', 1, 0, "two separators"},
    {"12abc", '.', 1, 0, "text after the number"},
    {"", '.', 1, 0, "empty"},
};

TEST(GetDouble, BothDecimalSeparators) {
    for (const NumberRow& row : NumberRows) {
        SCOPED_TRACE(row.comment);
        double value = -99;
        EXPECT_EQ(ReadNumberText(row.text, row.decimal, &value), row.result) << row.text;
        EXPECT_DOUBLE_EQ(value, row.result == 0 ? row.value : -99) << row.text;
    }
}

TEST(GetDouble, ReadsOnlyTheGivenLength) {
    double value = 0;
    EXPECT_EQ(GetDouble(5, "12;abc", 2, &value), 0);
    EXPECT_DOUBLE_EQ(value, 12);
    EXPECT_NE(GetDouble(5, "12;abc", 3, &value), 0);
    EXPECT_NE(GetDouble(5, "12", -1, &value), 0);
}

TEST(GetListSep, FollowsTheDecimalSeparator) {
    EXPECT_EQ(ListSeparatorFor(','), ';');
    EXPECT_EQ(ListSeparatorFor('.'), ',');
    EXPECT_NE(GetListSep(), UserDecimalSeparator());
}

TEST(Wstrcspn, StopsAtWholeCharacters) {
    struct {
        const char* text;
        const char* stops;
        std::size_t expected;
        const char* comment;
    } const rows[] = {
        {"1.5 2", " ;", 3, "first stop character"},
        {"1.5;2", " ;", 3, "second stop character"},
        {"abc", "", 3, "no stops"},
        {"", ",", 0, "empty text"},
        {"a€b", "€", 1, "a three-byte stop"},
        {"a₭b", "€", 5, "same lead bytes as the stop, another character"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(wstrcspn(row.text, row.stops), row.expected) << row.comment;
}

class VariantText : public ::testing::Test {
protected:
    ~VariantText() override { EXPECT_EQ(strings.outstandingStrings(), 0u); }
    COleVariant text(const char* value) { return COleVariant::Text(strings, value); }
    wb::AutomationRuntime strings;
};

TEST_F(VariantText, ValuesBecomeOneText) {
    std::vector<COleVariant> nested;
    nested.emplace_back(2.5);
    nested.emplace_back(); // empty items leave no double blank
    nested.push_back(text("SEX"));
    std::vector<COleVariant> items;
    items.emplace_back(1);
    items.push_back(text("AGE"));
    items.push_back(COleVariant::Array(std::move(nested)));
    items.emplace_back(1e20);

    struct {
        COleVariant value;
        const char* expected;
        const char* comment;
    } const rows[] = {
        {text("Sans emploi"), "Sans emploi", "a string gives itself"},
        {COleVariant(-7), "-7", "whole number"},
        {COleVariant(0.1), "0.1", "shortest exact form"},
        {COleVariant(true), "1", "bool"},
        {COleVariant(), "", "empty"},
        {COleVariant::Array(std::move(items)), "1 AGE 2.5 SEX 1e+20", "nested array, flattened"},
    };
    for (const auto& row : rows) {
        std::string written = "stale";
        EXPECT_TRUE(VariantToTextList(row.value, written)) << row.comment;
        EXPECT_EQ(written, row.expected) << row.comment;
    }
}

} // namespace
