// Every way a data file or its dictionary can be refused, with the exact message.

#include <optional>

#include <gtest/gtest.h>

#include "workbench/data/DataChecks.h"
#include "workbench/data/DataFileLoader.h"

namespace {

struct ErrorCase {
    const char* comment;
    std::string csv;
    std::string message;
    std::optional<std::string> dictionary = {};
};

void expectRefused(const ErrorCase& c) {
    EXPECT_EQ(wb::testing::dataError([&] { wb::parseDataFile(c.csv, "data.csv", c.dictionary); }),
              c.message)
        << c.comment;
}

const std::string NotAValue = " is not a number, a label of the variable or NA";

TEST(LoadErrorsTest, MalformedCsv) {
    const std::string date = R"({"variables": {"D": {"format": "date"}}})";
    const std::string time = R"({"variables": {"T": {"format": "time"}}})";
    // clang-format off
    const ErrorCase cases[] = {
        // Empty lines only: nothing names the variables.
        {"empty", "\n\r\n", "data.csv:1:1: the file is empty; its first line must name the variables"},
        {"empty name", "A,,C\n", "data.csv:1:3: empty variable name in field 2 of the header"},
        {"duplicate name", "A,B,A\n", "data.csv:1:5: duplicate variable name \"A\"; field 1 of the header has it too"},
        // Reported where the quote opens.
        {"unterminated quote", "A,B\n1,\"abc\n2,3\n", "data.csv:2:3: unterminated quoted field"},
        {"quote inside an unquoted field", "A,B\n1,ab\"c\n", "data.csv:2:5: quote inside an unquoted field; enclose the field in quotes and double the quotes inside it"},
        {"text after a closing quote", "A,B\n1,\"ab\"c\n", "data.csv:2:7: unexpected text after a closing quote"},
        {"too many fields, at the first extra", "A,B\n1,2\n1,2,3,4\n", "data.csv:3:5: row has 4 fields; the header has 2 fields"},
        {"too few fields, at the end of the row", "A,B,C\n1,2,3\n1,2\n", "data.csv:3:4: row has 2 fields; the header has 3 fields"},
        {"one field, counted after a byte order mark", "\xEF\xBB\xBF" "A,B\n1\n", "data.csv:2:2: row has 1 field; the header has 2 fields"},
        {"lines counted inside quoted fields", "A,T\n1,\"x\ny\"\n2,z,4\n", "data.csv:4:5: row has 3 fields; the header has 2 fields"},
        {"text before the first number is the fault", "A,B\n1,x\n2,y\n3,5\n", "data.csv:2:3: \"x\" in variable \"B\"" + NotAValue},
        {"columns count characters, not bytes", "NOM,ÂGE\nÉlodie,1\nÉric,x\n", "data.csv:3:6: \"x\" in variable \"ÂGE\"" + NotAValue},
        {"infinity is no number", "A\n1\ninf\n", "data.csv:3:1: \"inf\" in variable \"A\"" + NotAValue},
        {"text that is no label", "S\nHomme\n", "data.csv:2:1: \"Homme\" in variable \"S\"" + NotAValue, R"({"variables": {"S": {"labels": {"1": "Femme"}}}})"},
        {"impossible date", "D\n2023-02-29\n", "data.csv:2:1: \"2023-02-29\" in variable \"D\" is not a valid date", date},
        {"text in a date variable", "D\nsoon\n", "data.csv:2:1: \"soon\" in variable \"D\" is not a date (YYYY-MM-DD), a number, a label of the variable or NA", date},
        {"impossible time", "T\n24:00\n", "data.csv:2:1: \"24:00\" in variable \"T\" is not a valid time", time},
        {"malformed time", "T\n1:2:3\n", "data.csv:2:1: \"1:2:3\" in variable \"T\" is not a time (HH:MM or HH:MM:SS), a number, a label of the variable or NA", time},
        {"the given missing code as a value", "A\n3\n-1\n", "data.csv:3:1: \"-1\" in variable \"A\" is its missing code; leave the field empty or write NA for a missing value", R"({"variables": {"A": {"missingCode": -1}}})"},
        {"a NUL byte", std::string("A\n1\0\n", 5), "data.csv:2:2: the file holds a NUL byte: it is no text file"},
        {"a point where the file writes a decimal comma", "A;B\n1,5;2,5\n1.234;3\n", "data.csv:3:1: \"1.234\" in variable \"A\" is not a number with a decimal comma, a label of the variable or NA"},
        {"a file of semicolons read with commas", "A;B;C\n1;2;3\n", "data.csv:1:1: the header is one column named \"A;B;C\"; its fields seem separated by \";\", not by \",\": set \"separator\" in the dictionary accordingly", R"({"separator": ","})"},
        {"Latin-1 bytes in a file said to be UTF-8", "NOM\n\xC9ric\n", "data.csv:2:1: the file is not valid UTF-8 here; set \"encoding\" in the dictionary to \"Windows-1252\" or \"Latin-1\" if that is what it is", R"({"encoding": "UTF-8"})"},
        {"lines counted at CRs alone", "A,B\r1,2\r3\r", "data.csv:3:2: row has 1 field; the header has 2 fields"},
        {"no missing code left", "A\n-99999999\n-1.5e308\n", "data.csv:1:1: no missing code is free for variable \"A\"; give one as \"missingCode\" in the dictionary"},
    };
    // clang-format on
    for (const ErrorCase& c : cases)
        expectRefused(c);
}

TEST(LoadErrorsTest, MalformedDictionary) {
    const std::string csv = "ID,A,C\nx,1,u\ny,2,v\n";
    const std::string name = "data.csv.dict.json:";
    struct Case {
        const char* comment;
        std::string dictionary;
        std::string message; // behind the dictionary's name
    };
    // clang-format off
    const Case cases[] = {
        {"bad JSON, at the faulty character", "{\n  \"weight\": x\n}", "2:13: invalid JSON: syntax error while parsing value - invalid literal; last read: '\"weight\": x'"},
        {"not an object", "[1]", "1:1: the dictionary must be a JSON object"},
        {"unknown key", R"({"header": "h", "wieght": "A"})", "1:17: unknown key \"wieght\"; expected \"header\", \"caseNames\", \"weight\", \"selection\", \"variables\", \"separator\", \"decimal\" or \"encoding\""},
        {"a separator of another kind", R"({"separator": "|"})", "1:15: \"separator\" must be \",\", \";\" or \"\\t\""},
        {"an encoding of another name", R"({"encoding": "utf8"})", "1:14: \"encoding\" must be \"UTF-8\", \"Windows-1252\" or \"Latin-1\""},
        {"unknown variable, at its key", "{\n  \"variables\": {\n    \"FOO\": {}\n  }\n}", "3:5: unknown variable \"FOO\"; the data file has no such column"},
        {"the case-name column as a variable", R"({"caseNames": "ID", "variables": {"ID": {}}})", "1:35: \"ID\" is the case-name column, not a variable"},
        {"unknown case-name column", R"({"caseNames": "KEY"})", "1:15: caseNames: the data file has no column \"KEY\""},
        {"unknown key of a variable", R"({"variables": {"A": {"longname": "x"}}})", "1:22: unknown key \"longname\" in variable \"A\"; expected \"longName\", \"missingCode\", \"labels\" or \"format\""},
        {"entry that is no object", R"({"variables": {"A": 3}})", "1:21: the entry of variable \"A\" must be an object"},
        {"variables that are no object", R"({"variables": []})", "1:15: \"variables\" must be an object with an entry per variable"},
        {"long name that is no string", R"({"variables": {"A": {"longName": 5}}})", "1:34: \"longName\" must be a string"},
        {"missing code that is no number", R"({"variables": {"A": {"missingCode": "x"}}})", "1:37: \"missingCode\" must be a number"},
        {"labels of the wrong kind", R"({"variables": {"A": {"labels": "x"}}})", "1:32: \"labels\" must be an object or an array of [value, \"text\"]"},
        {"label value that is no number", R"({"variables": {"A": {"labels": {"one": "x"}}}})", "1:33: label value \"one\" is not a number"},
        {"label text that is no string", R"({"variables": {"A": {"labels": {"1": 2}}}})", "1:38: the text of a label must be a string"},
        {"malformed label of an array", R"({"variables": {"A": {"labels": [[1, "x"], [2]]}}})", "1:43: a label must be an array [value, \"text\"]"},
        {"header text too long", R"({"header": ")" + std::string(81, 'h') + "\"}", "1:12: header text is 81 bytes long; at most 80 are allowed"},
        {"header that is no string", R"({"header": 1})", "1:12: \"header\" must be a string"},
        {"unknown weight variable", R"({"weight": "W"})", "1:12: weight: unknown variable \"W\""},
        {"bad selection, with its own column", R"({"selection": "A > 1 and FOO = 2"})", "1:15: selection condition: unknown variable \"FOO\" at column 11"},
        {"missing code that a text has as its code", R"({"variables": {"C": {"missingCode": 2}}})", "1:37: missing code 2 of variable \"C\" is the code of its text \"v\""},
        // The last of duplicate keys is the one reported; also the unknown format.
        {"duplicate keys", R"({"variables": {"A": {"format": "date"}, "A": {"format": "week"}}})", "1:57: \"format\" must be \"plain\", \"date\" or \"time\""},
        {"number beyond a double, at the number", R"({"variables": {"A": {"missingCode": 1e400}}})", "1:37: 1e400 is beyond the range of a number"},
        {"broken byte in a string, shown as a replacement character", "{\"header\": \"\xFF\"}", "1:13: invalid JSON: syntax error while parsing value - invalid string: ill-formed UTF-8 byte; last read: '\"\xEF\xBF\xBD'"},
    };
    // clang-format on
    for (const Case& c : cases)
        expectRefused({c.comment, csv, name + c.message, c.dictionary});
}

} // namespace
