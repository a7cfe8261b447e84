// Every way a data file or its dictionary can be refused, with the exact message.

#include <optional>

#include <gtest/gtest.h>

#include "workbench/data/DataFileLoader.h"

namespace {

struct ErrorCase {
    const char* comment;
    std::string csv;
    std::optional<std::string> dictionary;
    std::string message;
};

void expectRefused(const ErrorCase& c) {
    SCOPED_TRACE(c.comment);
    try {
        wb::parseDataFile(c.csv, "data.csv", c.dictionary);
        ADD_FAILURE() << "loaded without error";
    } catch (const wb::DataError& error) {
        EXPECT_EQ(std::string(error.what()), c.message);
    }
}

const std::string NotAValue = " is not a number, a label of the variable or NA";

TEST(LoadErrorsTest, MalformedCsv) {
    const ErrorCase cases[] = {
        {"empty file",
         "",
         {},
         "data.csv:1:1: the file is empty; its first line must name the variables"},
        {"empty lines only",
         "\n\r\n",
         {},
         "data.csv:1:1: the file is empty; its first line must name the variables"},
        {"empty name", "A,,C\n", {}, "data.csv:1:3: empty variable name in field 2 of the header"},
        {"duplicate name",
         "A,B,A\n",
         {},
         "data.csv:1:5: duplicate variable name \"A\"; field 1 of the header has it too"},
        {"unterminated quote, reported where it opens",
         "A,B\n1,\"abc\n2,3\n",
         {},
         "data.csv:2:3: unterminated quoted field"},
        {"unterminated after a doubled quote",
         "A\n\"a\"\"b\n",
         {},
         "data.csv:2:1: unterminated quoted field"},
        {"quote inside an unquoted field",
         "A,B\n1,ab\"c\n",
         {},
         "data.csv:2:5: quote inside an unquoted field; enclose the field in quotes and double "
         "the quotes inside it"},
        {"text after a closing quote",
         "A,B\n1,\"ab\"c\n",
         {},
         "data.csv:2:7: unexpected text after a closing quote"},
        {"too many fields, at the first extra",
         "A,B\n1,2\n1,2,3,4\n",
         {},
         "data.csv:3:5: row has 4 fields; the header has 2 fields"},
        {"too few fields, at the end of the row",
         "A,B,C\n1,2,3\n1,2\n",
         {},
         "data.csv:3:4: row has 2 fields; the header has 3 fields"},
        {"too few fields with CRLF",
         "A,B,C\r\n1,2\r\n",
         {},
         "data.csv:2:4: row has 2 fields; the header has 3 fields"},
        {"one field, counted after a byte order mark",
         "\xEF\xBB\xBF"
         "A,B\n1\n",
         {},
         "data.csv:2:2: row has 1 field; the header has 2 fields"},
        {"lines counted inside quoted fields",
         "A,T\n1,\"x\ny\"\n2,z,4\n",
         {},
         "data.csv:4:5: row has 3 fields; the header has 2 fields"},
        {"text in a numeric column",
         "A\n1\nabc\n",
         {},
         "data.csv:3:1: \"abc\" in variable \"A\"" + NotAValue},
        {"text before the first number is the fault",
         "A,B\n1,x\n2,y\n3,5\n",
         {},
         "data.csv:2:3: \"x\" in variable \"B\"" + NotAValue},
        {"columns count characters, not bytes",
         "NOM,ÂGE\nÉlodie,1\nÉric,x\n",
         {},
         "data.csv:3:6: \"x\" in variable \"ÂGE\"" + NotAValue},
        {"infinity is no number",
         "A\n1\ninf\n",
         {},
         "data.csv:3:1: \"inf\" in variable \"A\"" + NotAValue},
        {"text that is no label", "S\nHomme\n",
         R"({"variables": {"S": {"labels": {"1": "Femme"}}}})",
         "data.csv:2:1: \"Homme\" in variable \"S\"" + NotAValue},
        {"impossible date", "D\n2023-02-29\n", R"({"variables": {"D": {"format": "date"}}})",
         "data.csv:2:1: \"2023-02-29\" in variable \"D\" is not a valid date"},
        {"text in a date variable", "D\nsoon\n", R"({"variables": {"D": {"format": "date"}}})",
         "data.csv:2:1: \"soon\" in variable \"D\" is not a date (YYYY-MM-DD), a number, a label "
         "of "
         "the variable or NA"},
        {"impossible time", "T\n24:00\n", R"({"variables": {"T": {"format": "time"}}})",
         "data.csv:2:1: \"24:00\" in variable \"T\" is not a valid time"},
        {"malformed time", "T\n1:2:3\n", R"({"variables": {"T": {"format": "time"}}})",
         "data.csv:2:1: \"1:2:3\" in variable \"T\" is not a time (HH:MM or HH:MM:SS), a number, a "
         "label of the variable or NA"},
        {"the given missing code as a value", "A\n3\n-1\n",
         R"({"variables": {"A": {"missingCode": -1}}})",
         "data.csv:3:1: \"-1\" in variable \"A\" is its missing code; leave the field empty or "
         "write NA for a missing value"},
        {"no missing code left",
         "A\n-99999999\n-1.5e308\n",
         {},
         "data.csv:1:1: no missing code is free for variable \"A\"; give one as \"missingCode\" in "
         "the dictionary"},
    };
    for (const ErrorCase& c : cases)
        expectRefused(c);
}

TEST(LoadErrorsTest, MalformedDictionary) {
    const std::string csv = "ID,A,C\nx,1,u\ny,2,v\n";
    const std::string name = "data.csv.dict.json:";
    const ErrorCase cases[] = {
        {"bad JSON, at the faulty character", csv, "{\n  \"weight\": x\n}",
         name + "2:13: invalid JSON: syntax error while parsing value - invalid literal; last "
                "read: '\"weight\": x'"},
        {"JSON cut short", csv, "{\"variables\": {",
         name + "1:16: invalid JSON: syntax error while parsing object key - unexpected end of "
                "input; expected string literal"},
        {"not an object", csv, "[1]", name + "1:1: the dictionary must be a JSON object"},
        {"unknown key", csv, R"({"header": "h", "wieght": "A"})",
         name + "1:17: unknown key \"wieght\"; expected \"header\", \"caseNames\", \"weight\", "
                "\"selection\" or \"variables\""},
        {"unknown variable, at its key", csv, "{\n  \"variables\": {\n    \"FOO\": {}\n  }\n}",
         name + "3:5: unknown variable \"FOO\"; the data file has no such column"},
        {"the case-name column as a variable", csv,
         R"({"caseNames": "ID", "variables": {"ID": {}}})",
         name + "1:35: \"ID\" is the case-name column, not a variable"},
        {"unknown case-name column", csv, R"({"caseNames": "KEY"})",
         name + "1:15: caseNames: the data file has no column \"KEY\""},
        {"unknown key of a variable", csv, R"({"variables": {"A": {"longname": "x"}}})",
         name + "1:22: unknown key \"longname\" in variable \"A\"; expected \"longName\", "
                "\"missingCode\", \"labels\" or \"format\""},
        {"entry that is no object", csv, R"({"variables": {"A": 3}})",
         name + "1:21: the entry of variable \"A\" must be an object"},
        {"variables that are no object", csv, R"({"variables": []})",
         name + "1:15: \"variables\" must be an object with an entry per variable"},
        {"long name that is no string", csv, R"({"variables": {"A": {"longName": 5}}})",
         name + "1:34: \"longName\" must be a string"},
        {"missing code that is no number", csv, R"({"variables": {"A": {"missingCode": "x"}}})",
         name + "1:37: \"missingCode\" must be a number"},
        {"unknown format", csv, R"({"variables": {"A": {"format": "datetime"}}})",
         name + "1:32: \"format\" must be \"plain\", \"date\" or \"time\""},
        {"labels of the wrong kind", csv, R"({"variables": {"A": {"labels": "x"}}})",
         name + "1:32: \"labels\" must be an object or an array of [value, \"text\"]"},
        {"label value that is no number", csv, R"({"variables": {"A": {"labels": {"one": "x"}}}})",
         name + "1:33: label value \"one\" is not a number"},
        {"label text that is no string", csv, R"({"variables": {"A": {"labels": {"1": 2}}}})",
         name + "1:38: the text of a label must be a string"},
        {"malformed label of an array", csv, R"({"variables": {"A": {"labels": [[1, "x"], [2]]}}})",
         name + "1:43: a label must be an array [value, \"text\"]"},
        {"label text of an array that is no string", csv,
         R"({"variables": {"A": {"labels": [[1, null]]}}})",
         name + "1:37: the text of a label must be a string"},
        {"header text too long", csv, R"({"header": ")" + std::string(81, 'h') + "\"}",
         name + "1:12: header text is 81 bytes long; at most 80 are allowed"},
        {"header that is no string", csv, R"({"header": 1})",
         name + "1:12: \"header\" must be a string"},
        {"unknown weight variable", csv, R"({"weight": "W"})",
         name + "1:12: weight: unknown variable \"W\""},
        {"bad selection, with its own column", csv, R"({"selection": "A > 1 and FOO = 2"})",
         name + "1:15: selection condition: unknown variable \"FOO\" at column 11"},
        {"missing code that a text has as its code", csv,
         R"({"variables": {"C": {"missingCode": 2}}})",
         name + "1:37: missing code 2 of variable \"C\" is the code of its text \"v\""},
        {"the last of duplicate keys is the one reported", csv,
         R"({"variables": {"A": {"format": "date"}, "A": {"format": "week"}}})",
         name + "1:57: \"format\" must be \"plain\", \"date\" or \"time\""},
    };
    for (const ErrorCase& c : cases)
        expectRefused(c);
}

} // namespace
