// A large CSV of plain numbers is read in stretches, one thread each. The file it gives and
// every message must be those of reading its rows in order, which a quoted field forces
// (a quote may hide a line break, so a file with one is never cut into stretches), and the
// same from memory as from a file on disk, whose pages are let go as they are read.

#include <functional>

#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/data/DataChecks.h"

namespace {

constexpr int Rows = 80000;    // about 2.3 MB: two stretches of more than 1 MB
constexpr int LateRow = 70000;  // of the second stretch; read in order, after text let go
const std::string Dictionary = R"({"caseNames": "N", "variables": {"A": {"missingCode": -1}}})";

// Rows "c<i>,<i>,<i/4>,<x>,NA" with x missing in every seventh row; `edit` may rewrite a row.
std::string largeCsv(const std::function<void(int, std::string&)>& edit = {}) {
    std::string text = "N,A,B,X,T\n";
    std::string row;
    for (int i = 0; i < Rows; ++i) {
        row = "c" + std::to_string(i) + "," + std::to_string(i) + "," + std::to_string(i / 4.0) +
              "," + (i % 7 == 0 ? std::string("NA") : std::to_string(i % 1000)) + ",NA";
        if (edit)
            edit(i, row);
        text += row;
        text += '\n';
    }
    return text;
}

// The same text read in order: the first name quoted.
std::string inOrder(std::string text) {
    const std::size_t name = text.find("c0,");
    return text.replace(name, 2, "\"c0\"");
}

// Loads `csv` from memory, or from disk, with `Dictionary` beside it; a message names the
// file "data.csv" either way.
wb::DataFile load(const std::string& csv, bool fromDisk) {
    if (!fromDisk)
        return wb::parseDataFile(csv, "data.csv", Dictionary);
    const wb::testing::TempDir dir;
    const std::string path = dir.write("data.csv", csv);
    dir.write("data.csv.dict.json", Dictionary);
    try {
        return wb::loadDataFile(path);
    } catch (const wb::DataError& error) {
        const std::string message = error.what();
        throw wb::DataError("data.csv" + message.substr(path.size()));
    }
}

struct Variant {
    const char* what;
    std::function<void(int, std::string&)> edit;
    std::string message;  // empty when the file loads
};

TEST(ParallelCsvTest, GivesWhatReadingInOrderGives) {
    const Variant variants[] = {
        {"plain numbers", {}, ""},
        {"a text late in a column of numbers",
         [](int i, std::string& row) { if (i == LateRow) row = "c,1,2,high,NA"; },
         "data.csv:70002:7: \"high\" in variable \"X\" is not a number, a label of the "
         "variable or NA"},
        {"a missing code written as a value",
         [](int i, std::string& row) { if (i == LateRow) row = "c,-1,2,3,NA"; },
         "data.csv:70002:3: \"-1\" in variable \"A\" is its missing code; leave the field "
         "empty or write NA for a missing value"},
        {"a short row late in the file",
         [](int i, std::string& row) { if (i == LateRow) row = "c,1,2,3"; },
         "data.csv:70002:8: row has 4 fields; the header has 5 fields"},
        {"empty lines, and rows ended by CRLF or by CR alone",
         [](int i, std::string& row) {
             if (i % 1000 == 0)
                 row = "\n\r\n" + row;
             if (i % 2 == 0)
                 row += "\r" + row + "\r";
         },
         ""},
        {"a column of texts that begin late",
         [](int i, std::string& row) {
             if (i >= LateRow)
                 row.replace(row.size() - 2, 2, i % 2 == 0 ? "yes" : "no");
         },
         ""},
    };
    for (const Variant& variant : variants) {
        SCOPED_TRACE(variant.what);
        const std::string text = largeCsv(variant.edit);
        for (const bool fromDisk : {false, true}) {
            SCOPED_TRACE(fromDisk ? "from disk" : "from memory");
            if (variant.message.empty()) {
                wb::testing::expectSameFile(load(text, fromDisk), load(inOrder(text), fromDisk));
                continue;
            }
            for (const std::string& csv : {text, inOrder(text)})
                EXPECT_EQ(wb::testing::dataError([&] { load(csv, fromDisk); }), variant.message);
        }
    }
}

} // namespace
