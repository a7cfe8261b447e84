#include "workbench/data/DataFileLoader.h"

#include <cmath>
#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "workbench/data/DataChecks.h"

namespace {

// Marks an expected missing value: the variable's missing code, whatever it is.
constexpr double M = std::numeric_limits<double>::quiet_NaN();

using Rows = std::vector<std::vector<double>>;

void expectRows(const wb::DataFile& file, const Rows& rows) {
    ASSERT_EQ(file.caseCount(), int(rows.size()));
    for (const auto& row : rows)
        ASSERT_EQ(file.variableCount(), int(row.size()));
    for (int v = 1; v <= file.variableCount(); ++v) {
        std::vector<double> column;
        for (const auto& row : rows)
            column.push_back(row[std::size_t(v) - 1]);
        wb::testing::expectValues(file, v, column);
    }
}

std::vector<std::string> names(const wb::DataFile& file) {
    std::vector<std::string> result;
    for (int v = 1; v <= file.variableCount(); ++v)
        result.push_back(file.variable(v).name);
    return result;
}

struct CsvCase {
    const char* comment;
    std::string csv;
    std::vector<std::string> names;
    Rows rows;
};

TEST(DataFileLoaderTest, ReadsCsvLayouts) {
    // clang-format off
    const CsvCase cases[] = {
        {"LF, no line break at the end", "A,B\n1,2\n3,4", {"A", "B"}, {{1, 2}, {3, 4}}},
        {"CRLF, a CR at the very end", "A,B\r\n1,2\r\n3,4\r", {"A", "B"}, {{1, 2}, {3, 4}}},
        {"byte order mark", "\xEF\xBB\xBF" "A,B\n1,2\n", {"A", "B"}, {{1, 2}}},
        {"byte order marks of two editors", "\xEF\xBB\xBF\xEF\xBB\xBF" "A,B\n1,2\n", {"A", "B"}, {{1, 2}}},
        {"quoted names and numbers", "\"A\",\"B\"\r\n\"1\",\"2\"\r\n", {"A", "B"}, {{1, 2}}},
        {"blanks around fields and quotes", " A , B \n 1 , \"2\" \n", {"A", "B"}, {{1, 2}}},
        {"empty, quoted empty and NA are missing", "A,B,C\n,NA,\"\"\n", {"A", "B", "C"}, {{M, M, M}}},
        {"empty lines are skipped", "A\n\n1\n\r\n2\n\n", {"A"}, {{1}, {2}}},
        {"number forms", "A,B,C,D\n+2,1e3,.5,-0.25E-2\n", {"A", "B", "C", "D"}, {{2, 1e3, .5, -.0025}}},
        {"header only", "A,B\n", {"A", "B"}, {}},
        {"CR alone ends a line", "A,B\r1,2\r\r3,4", {"A", "B"}, {{1, 2}, {3, 4}}},
        {"semicolons and decimal commas", "A;B\r\n1,5;-0,25\r\n\"2,5\";3\r\n", {"A", "B"}, {{1.5, -0.25}, {2.5, 3}}},
        {"semicolons and decimal points", "A;B\n1.5;2\n", {"A", "B"}, {{1.5, 2}}},
        {"tabs, blanks kept apart from them", "A\tB\n 1 \t2\n", {"A", "B"}, {{1, 2}}},
        {"the separator of the header wins", "A;B\n1;2,5\n", {"A", "B"}, {{1, 2.5}}},
        {"Windows-1252 names", "\xC2GE,\x80\n1,2\n", {"ÂGE", "€"}, {{1, 2}}},
    };
    // clang-format on
    for (const CsvCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::DataFile file = wb::parseDataFile(c.csv, "data.csv");
        EXPECT_EQ(names(file), c.names);
        expectRows(file, c.rows);
    }
}

struct CodedCase {
    const char* comment;
    std::string csv;
    std::optional<std::string> dictionary;
    std::vector<double> values; // of the last variable
    std::map<double, std::string> labels;
};

TEST(DataFileLoaderTest, TurnsTextIntoValues) {
    const std::string date = R"({"variables": {"D": {"format": "date"}}})";
    const std::string time = R"({"variables": {"T": {"format": "time"}}})";
    const std::string labels = R"({"variables": {"S": {"labels": {"-9": "refus", "0.5": "bas"}}}})";
    const std::string array = R"({"variables": {"S": {"labels": [[1, "Femme"], [2, "Homme"]]}}})";
    // clang-format off
    const CodedCase cases[] = {
        // Codes in order of first appearance.
        {"coded", "C\nb\na\nb\n", {}, {1, 2, 1}, {{1, "b"}, {2, "a"}}},
        {"missing cells in a coded column", "K,C\n1,x\n2,\n3,NA\n4,y\n", {}, {1, M, M, 2}, {{1, "x"}, {2, "y"}}},
        {"quoted texts with comma, line break and quotes",
         "K,C\n1,\"x, y\"\n2,\"two\nlines\"\n3,\"say \"\"hi\"\"\"\n4,\"\"\"\"\n", {}, {1, 2, 3, 4},
         {{1, "x, y"}, {2, "two\nlines"}, {3, "say \"hi\""}, {4, "\""}}},
        {"a date stays text without a format", "C\n2024-01-05\n", {}, {1}, {{1, "2024-01-05"}}},
        {"object of labels, negative and decimal", "S\n-9\nbas\nrefus\n", labels, {-9, .5, -9}, {{-9, "refus"}, {.5, "bas"}}},
        {"array of labels, only texts", "S\nHomme\nFemme\n", array, {2, 1}, {{1, "Femme"}, {2, "Homme"}}},
        {"dates, numbers in a date variable", "D\n1899-12-30\n1900-01-01\n2024-02-29\n2024-3-1\n45000\n\n", date,
         {0, 2, 45351, 45352, 45000}, {}},
        {"times, numbers in a time variable", "T\n0:00\n12:30\n23:59:59\n3600\nNA\n", time, {0, 45000, 86399, 3600, M}, {}},
    };
    // clang-format on
    for (const CodedCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::DataFile file = wb::parseDataFile(c.csv, "data.csv", c.dictionary);
        wb::testing::expectValues(file, file.variableCount(), c.values);
        EXPECT_EQ(file.variable(file.variableCount()).labels, c.labels);
    }
}

struct MissingCodeCase {
    const char* comment;
    std::string csv;
    std::optional<std::string> dictionary;
    double code;
};

TEST(DataFileLoaderTest, ChoosesAMissingCodeNoValueTakes) {
    // clang-format off
    const MissingCodeCase cases[] = {
        {"the default when free, also in a coded column", "A\nx\n\n", {}, -99999999},
        {"the default taken: twice the smallest value", "A\n-99999999\n5\nNA\n", {}, -199999998},
        {"taken within the comparison's tolerance", "A\n-99999999.00000001\n", {}, -199999998.00000002},
        {"given by the dictionary", "A\n-99999999\n\n", R"({"variables": {"A": {"missingCode": -1}}})", -1},
    };
    // clang-format on
    for (const MissingCodeCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::DataFile file = wb::parseDataFile(c.csv, "data.csv", c.dictionary);
        EXPECT_EQ(file.variable(1).missingCode, c.code);
        // Every other value stays apart from the code.
        for (int i = 1; i <= file.caseCount(); ++i)
            EXPECT_EQ(file.value(i, 1) == c.code, file.isMissing(1, file.value(i, 1)))
                << "case " << i;
    }
}

TEST(DataFileLoaderTest, AppliesTheDictionary) {
    const std::string csv = "ID,AGE,W,REGION\n"
                            "C00017,34,1.5,11\n"
                            "C00018-PRO-MARSEILLE,51,,93\n"
                            ",27,-2,11\n";
    const std::string dictionary = R"({
      "header": "Enquête clients",
      "caseNames": "ID",
      "weight": "w",
      "selection": "age > 30",
      "variables": {
        "AGE": {"longName": "Âge", "format": "plain"},
        "REGION": {"labels": {"11": "Île-de-France", "93": "Provence-Alpes-Côte d'Azur"}}
      }
    })";
    const wb::DataFile file = wb::parseDataFile(csv, "data.csv", dictionary);
    EXPECT_EQ(names(file), (std::vector<std::string>{"AGE", "W", "REGION"}));
    EXPECT_EQ(file.headerText(), "Enquête clients");
    EXPECT_EQ(file.variable(1).longName, "Âge");
    EXPECT_EQ(file.variable(3).labels.at(93), "Provence-Alpes-Côte d'Azur");
    ASSERT_TRUE(file.hasCaseNames());
    EXPECT_EQ(file.caseName(2), "C00018-PRO-MARSEILLE");
    EXPECT_EQ(file.caseName(3), "");
    EXPECT_EQ(file.caseNameWidth(), 20);
    EXPECT_EQ(file.weightVariable(), 2);
    // A missing weight and a negative one count as 0.
    EXPECT_EQ(file.caseWeight(1), 1.5);
    EXPECT_EQ(file.caseWeight(2), 0.0);
    EXPECT_EQ(file.caseWeight(3), 0.0);
    EXPECT_EQ(file.selectionText(), "age > 30");
    EXPECT_TRUE(file.isSelected(1));
    EXPECT_FALSE(file.isSelected(3));
}

TEST(DataFileLoaderTest, LoadsTheDictionaryBesideTheFile) {
    const wb::testing::TempDir dir;
    const std::string path = dir.write("survey.csv", "A\n1\n");
    dir.write("survey.csv.dict.json", "\xEF\xBB\xBF{\"header\": \"Vague 3\"}");
    const wb::DataFile file = wb::loadDataFile(path);
    EXPECT_EQ(file.path(), path);
    EXPECT_EQ(file.headerText(), "Vague 3");

    const std::string plain = dir.write("plain.csv", "A\n1\n");
    EXPECT_EQ(wb::loadDataFile(plain).headerText(), "");
}

TEST(DataFileLoaderTest, NamesTheFileThatCannotBeRead) {
    const wb::testing::TempDir dir;
    const std::string path = dir.path("absent.csv");
    EXPECT_EQ(wb::testing::dataError([&] { wb::loadDataFile(path); }),
              path + ": cannot open the file: No such file or directory");
}

// Room is made for the cases that the text can hold, not for every line break: 30,000
// columns and then a million empty lines once asked for 240 GB.
TEST(DataFileLoaderTest, EmptyLinesMakeNoRoomForCases) {
    std::string csv;
    for (int v = 1; v <= 30000; ++v)
        csv += (v > 1 ? ",V" : "V") + std::to_string(v);
    csv += std::string(1'000'000, '\n');
    const wb::DataFile file = wb::parseDataFile(csv, "wide.csv");
    EXPECT_EQ(file.variableCount(), 30000);
    EXPECT_EQ(file.caseCount(), 0);
}

} // namespace
