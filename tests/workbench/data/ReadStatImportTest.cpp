// SPSS, Stata and SAS files written with ReadStat's own writer, then loaded. Expected dates
// are spreadsheet serial numbers (days since 1899-12-30: 2000-01-01 is 36526); the stored
// values use the packages' epochs: 2000-01-01 is Stata and SAS day 14610, and SPSS second
// 13166064000 (152385 days after 1582-10-14).

#include "workbench/data/ReadStatImport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <variant>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <readstat.h>
#include <unistd.h>

#include "support/TempDir.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/data/DataChecks.h"

namespace {

using wb::testing::expectValues;

constexpr double M =
    std::numeric_limits<double>::quiet_NaN(); // system-missing, or expected missing
struct Tagged {
    char tag;
};
// The type of a variable's first cell gives the variable's type.
using Cell = std::variant<double, std::string, float, Tagged>;

struct Column {
    std::string name = {};
    std::vector<Cell> cells = {};
    std::string label = {};
    std::string format = {};
    std::vector<std::pair<double, std::string>> labels = {};
    std::vector<std::pair<std::string, std::string>> stringLabels = {};
    std::vector<std::pair<double, double>> missingRanges = {}; // SPSS user-missing values
    std::vector<std::string> missingStrings = {};
};

struct Contents {
    std::vector<Column> columns = {};
    std::string fileLabel = {};
    int weight = -1; // index into columns
};

void check(readstat_error_t error) {
    if (error != READSTAT_OK)
        throw std::runtime_error(std::string("ReadStat writer: ") + readstat_error_message(error));
}

// Writes `contents` in the format of the path's extension.
void writeFile(const std::string& path, const Contents& contents) {
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const std::unique_ptr<readstat_writer_t, void (*)(readstat_writer_t*)> owner(
        readstat_writer_init(), readstat_writer_free);
    readstat_writer_t* writer = owner.get();
    readstat_set_data_writer(writer, [](const void* data, size_t size, void* fd) {
        return ::write(*static_cast<int*>(fd), data, size);
    });
    if (!contents.fileLabel.empty())
        check(readstat_writer_set_file_label(writer, contents.fileLabel.c_str()));
    std::vector<readstat_variable_t*> variables;
    for (const Column& c : contents.columns) {
        const readstat_type_t types[] = {READSTAT_TYPE_DOUBLE, READSTAT_TYPE_STRING,
                                         READSTAT_TYPE_FLOAT, READSTAT_TYPE_DOUBLE};
        const readstat_type_t type = types[c.cells.at(0).index()];
        readstat_variable_t* v = readstat_add_variable(writer, c.name.c_str(), type, 16);
        readstat_variable_set_label(v, c.label.empty() ? nullptr : c.label.c_str());
        readstat_variable_set_format(v, c.format.empty() ? nullptr : c.format.c_str());
        if (!c.labels.empty() || !c.stringLabels.empty()) {
            readstat_label_set_t* set = readstat_add_label_set(writer, type, c.name.c_str());
            for (const auto& [value, text] : c.labels)
                readstat_label_double_value(set, value, text.c_str());
            for (const auto& [value, text] : c.stringLabels)
                readstat_label_string_value(set, value.c_str(), text.c_str());
            readstat_variable_set_label_set(v, set);
        }
        for (const auto& [lo, hi] : c.missingRanges)
            check(readstat_variable_add_missing_double_range(v, lo, hi));
        for (const std::string& value : c.missingStrings)
            check(readstat_variable_add_missing_string_value(v, value.c_str()));
        variables.push_back(v);
    }
    if (contents.weight >= 0)
        check(readstat_writer_set_fweight_variable(writer, variables[contents.weight]));
    const long rows = long(contents.columns.at(0).cells.size());
    const std::string extension = path.substr(path.rfind('.'));
    if (extension == ".zsav")
        check(readstat_writer_set_compression(writer, READSTAT_COMPRESS_BINARY));
    check(extension == ".dta"        ? readstat_begin_writing_dta(writer, &fd, rows)
          : extension == ".por"      ? readstat_begin_writing_por(writer, &fd, rows)
          : extension == ".sas7bdat" ? readstat_begin_writing_sas7bdat(writer, &fd, rows)
                                     : readstat_begin_writing_sav(writer, &fd, rows));
    for (std::size_t row = 0; row < std::size_t(rows); ++row) {
        check(readstat_begin_row(writer));
        for (std::size_t i = 0; i < variables.size(); ++i) {
            const Cell& cell = contents.columns[i].cells.at(row);
            readstat_variable_t* v = variables[i];
            if (const auto* text = std::get_if<std::string>(&cell))
                check(readstat_insert_string_value(writer, v, text->c_str()));
            else if (const auto* number = std::get_if<float>(&cell))
                check(readstat_insert_float_value(writer, v, *number));
            else if (const auto* tagged = std::get_if<Tagged>(&cell))
                check(readstat_insert_tagged_missing_value(writer, v, tagged->tag));
            else if (std::isnan(std::get<double>(cell)))
                check(readstat_insert_missing_value(writer, v));
            else
                check(readstat_insert_double_value(writer, v, std::get<double>(cell)));
        }
        check(readstat_end_row(writer));
    }
    check(readstat_end_writing(writer));
    ::close(fd);
}

using Labels = std::map<double, std::string>;

struct FormatCase {
    const char* comment;
    std::string fileName;
    std::string dateFormat;
    std::vector<Cell> storedDates;
    bool keepsLabels;
    bool keepsWeight;
    std::string regionLabel;
};

TEST(ReadStatImportTest, ImportsEachFormat) {
    // 2000-01-01, 1899-12-29, missing, 2024-02-29.
    const std::vector<Cell> spssDates{13166064000.0, 10010131200.0, M, 13928544000.0};
    const std::vector<Cell> days1960{14610.0, -21917.0, M, 23435.0};
    // clang-format off
    const FormatCase cases[] = {
        {"SPSS", "survey.sav", "DATE11", spssDates, true, true, "Île-de-France"},
        {"compressed SPSS, extension in capitals", "survey.ZSAV", "ADATE10", spssDates, true, true, "Île-de-France"},
        {"SPSS portable: ASCII only", "survey.por", "EDATE10", spssDates, true, true, "Ile-de-France"},
        {"Stata: no weight", "survey.dta", "%td", days1960, true, false, "Île-de-France"},
        {"SAS: value labels live in a catalog apart", "survey.sas7bdat", "DATE9", days1960, false, false, "Île-de-France"},
    };
    // clang-format on
    for (const FormatCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::testing::TempDir dir;
        writeFile(dir.path(c.fileName),
                  {.columns = {{.name = "REGION", .cells = {1.0, 2.0, M, 2.0}, .label = "Region",
                                .labels = {{1, c.regionLabel}, {2, "Nord"}}},
                               {.name = "START", .cells = c.storedDates, .format = c.dateFormat},
                               {.name = "TOWN", .cells = {"Lyon", "Paris  ", "", "Lyon"}},
                               {.name = "WEIGHT", .cells = {1.5, 2.0, 0.5, 1.0}}},
                   .weight = 3});
        std::vector<double> shares;
        const wb::DataFile file = wb::loadDataFile(dir.path(c.fileName),
                                                   [&](double share) { shares.push_back(share); });
        EXPECT_FALSE(shares.empty()) << "no report of progress";
        EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
        ASSERT_EQ(file.variableCount(), 4);
        EXPECT_EQ(file.variable(1).name, "REGION");
        EXPECT_EQ(file.variable(1).longName, "Region");
        EXPECT_EQ(file.variable(1).labels,
                  (c.keepsLabels ? Labels{{1, c.regionLabel}, {2, "Nord"}} : Labels{}));
        expectValues(file, 1, {1, 2, M, 2});
        EXPECT_EQ(file.variable(2).format, wb::DisplayFormat::Date);
        expectValues(file, 2, {36526, -1, M, 45351});
        // Trailing blanks dropped; an empty string is missing.
        EXPECT_EQ(file.variable(3).labels, (Labels{{1, "Lyon"}, {2, "Paris"}}));
        expectValues(file, 3, {1, 2, M, 1});
        EXPECT_EQ(file.weightVariable(), c.keepsWeight ? 4 : 0);
    }
}

TEST(ReadStatImportTest, SpssMissingValuesAndLabels) {
    const wb::testing::TempDir dir;
    // clang-format off
    writeFile(dir.path("s.sav"),
              {.columns = {{.name = "satisfaction_generale", .cells = {1.0, 98.0, 99.0, 10.0, M},
                            .label = "Satisfaction générale (1 à 10)",
                            .labels = {{1, "Pas du tout"}, {10, "Tout à fait"}, {98, "NSP"}},
                            .missingRanges = {{98, 98}, {99, 99}}},
                           {.name = "income", .cells = {-5.0, -1.0, 3.0, -99999999.0, M}, .missingRanges = {{-HUGE_VAL, -1}}},
                           {.name = "big", .cells = {-99999999.0, 5.0, -3e8, 1.0, M}},
                           {.name = "labelled", .cells = {1.0, 2.0, 3.0, 4.0, M}, .labels = {{-99999999, "never given"}}},
                           {.name = "answer", .cells = {"y", "NA", "n", "y", " "},
                            .stringLabels = {{"y", "Yes"}, {"NA", "Not asked"}}, .missingStrings = {"NA"}}},
               .fileLabel = "Enquête 2024"});
    // clang-format on
    const wb::DataFile file = wb::importStatisticalFile(dir.path("s.sav"));
    EXPECT_EQ(file.headerText(), "Enquête 2024");
    // A name longer than 8 bytes is kept; the label of a missing value is dropped.
    EXPECT_EQ(file.variable(1).name, "satisfaction_generale");
    EXPECT_EQ(file.variable(1).longName, "Satisfaction générale (1 à 10)");
    EXPECT_EQ(file.variable(1).labels, (Labels{{1, "Pas du tout"}, {10, "Tout à fait"}}));
    expectValues(file, 1, {1, M, M, 10, M});
    // -99999999 is a missing value of the range, so it stays free as the code.
    expectValues(file, 2, {M, M, 3, M, M});
    EXPECT_EQ(file.variable(2).missingCode, -99999999);
    // A value takes the default code: the code is twice the smallest value.
    EXPECT_EQ(file.variable(3).missingCode, -6e8);
    // A label takes it, though no case has its value.
    EXPECT_EQ(file.variable(4).missingCode, -199999998);
    expectValues(file, 4, {1, 2, 3, 4, M});
    // A string's value label names its code; a string SPSS counts as missing is missing.
    EXPECT_EQ(file.variable(5).labels, (Labels{{1, "Yes"}, {2, "n"}}));
    expectValues(file, 5, {1, M, 2, 1, M});
}

struct ValueCase {
    const char* comment;
    std::string fileName;
    std::string format;
    Cell stored;
    wb::DisplayFormat display;
    double value; // NaN: missing
};

TEST(ReadStatImportTest, ConvertsValues) {
    using enum wb::DisplayFormat;
    const double noon = 12 * 3600 + 34 * 60 + 56; // 12:34:56
    const double stataNoon = 14610 * 86400e3 + noon * 1e3;
    // clang-format off
    const ValueCase cases[] = {
        {"SPSS datetime: the time is dropped", "a.sav", "DATETIME20", 13166064000 + noon, Date, 36526},
        {"SPSS time", "a.sav", "TIME8", noon, Time, noon},
        {"Stata datetime in milliseconds", "a.dta", "%tc", stataNoon, Date, 36526},
        {"Stata time of day before 1960", "a.dta", "%tcHH:MM", -86400e3 + noon * 1e3, Time, noon},
        {"Stata float as typed, not 1.100000023841858", "a.dta", "", 1.1f, Plain, 1.1},
        {"Stata .a is missing", "a.dta", "", Tagged{'a'}, Plain, M},
        {"SAS date with a separator letter", "a.sas7bdat", "MMDDYYS10", 14610.0, Date, 36526},
        {"SAS datetime in seconds", "a.sas7bdat", "DATETIME20", 14610 * 86400.0 + noon, Date, 36526},
        {"SAS ISO datetime before 1960", "a.sas7bdat", "E8601DT19", -1.0, Date, 21915},
    };
    // clang-format on
    for (const ValueCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::testing::TempDir dir;
        writeFile(dir.path(c.fileName),
                  {.columns = {{.name = "T", .cells = {c.stored}, .format = c.format}}});
        const wb::DataFile file = wb::importStatisticalFile(dir.path(c.fileName));
        EXPECT_EQ(file.variable(1).format, c.display);
        expectValues(file, 1, {c.value});
    }
}

TEST(ReadStatImportTest, CutsALongFileLabelAtACharacter) {
    const wb::testing::TempDir dir;
    // 80 characters in 159 bytes: the header keeps 79 bytes, not half of an é.
    std::string label = "a";
    for (int i = 0; i < 79; ++i)
        label += "é";
    writeFile(dir.path("f.dta"), {.columns = {{.name = "X", .cells = {1.0}}}, .fileLabel = label});
    EXPECT_EQ(wb::importStatisticalFile(dir.path("f.dta")).headerText(), label.substr(0, 79));
}

struct ErrorCase {
    const char* comment;
    std::string fileName;
    std::optional<std::string> content; // none: no such file
    std::string message;
};

TEST(ReadStatImportTest, RefusesUnreadableFiles) {
    // clang-format off
    const ErrorCase cases[] = {
        {"no such file", "none.sav", std::nullopt, ": cannot open the file: No such file or directory"},
        {"empty file", "empty.dta", "", ": cannot read the Stata file: Unable to read from file"},
        {"text, not SPSS", "text.sav", std::string(4000, 'x'),
         ": cannot read the SPSS file: Invalid file, or file has unsupported features"},
    };
    // clang-format on
    for (const ErrorCase& c : cases) {
        SCOPED_TRACE(c.comment);
        const wb::testing::TempDir dir;
        const std::string path =
            c.content ? dir.write(c.fileName, *c.content) : dir.path(c.fileName);
        EXPECT_EQ(wb::testing::dataError([&] { wb::loadDataFile(path); }), path + c.message);
    }
}

} // namespace
