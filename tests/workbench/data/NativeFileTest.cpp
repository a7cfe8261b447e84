// The native data file: what goes in comes back out, and every malformed file is refused
// with the exact message.

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "workbench/data/DataFileLoader.h"
#include "workbench/data/NativeFile.h"
#include "workbench/data/WholeFile.h"
#include "support/TempDir.h"
#include "workbench/data/DataChecks.h"

namespace {

using wb::DataFile;
using wb::DisplayFormat;
using wb::testing::dataError;
using wb::testing::expectSameFile;

const std::string LongLabel = "Provence-Alpes-Côte d'Azur, " + std::string(300, 'x') + " é";

DataFile surveyFile() {
    DataFile file;
    file.setHeaderText("Enquête « été » 2024");
    file.addVariable({"REGION", "Région de résidence", -99999999.0,
                      {{11, "Île-de-France"}, {93, LongLabel}}, DisplayFormat::Plain});
    file.addVariable({"REVENU_ANNUEL", "", -1.5, {}, DisplayFormat::Plain});
    file.addVariable({"ACHAT", "Date d'achat", -1e300, {}, DisplayFormat::Date});
    file.addVariable({"HEURE", "", 0.25, {{3600, "une heure"}}, DisplayFormat::Time});
    file.appendCase({11, 45000.5, 45001, 3600}, "Élodie");
    file.appendCase({93, -1.5, -1e300, 0.25}, "Martin-Lefebvre");
    file.appendCase({11, 0, 1, -0.0}, "");
    file.setWeightVariable(2);
    file.setSelection("REGION = 11 or missing(ACHAT)");
    return file;
}

// A file large enough that its rows are read in parts, one per thread: 400,000 rows of a
// case name of up to 6 bytes and 32 bytes of values.
DataFile largeFile() {
    DataFile file;
    for (const char* name : {"A", "B", "C", "D"})
        file.addVariable({name, "", -9, {}, DisplayFormat::Plain});
    for (int c = 0; c < 400000; ++c)
        file.appendCase({double(c), c * 0.25, -double(c % 7), 1e9 + c}, std::to_string(c));
    return file;
}

TEST(NativeFileTest, RoundTrips) {
    DataFile bare; // no case names, no rows
    bare.addVariable({"X", "", -9, {{1, "un"}}, DisplayFormat::Plain});
    struct Case {
        const char* comment;
        const DataFile& file;
        std::vector<bool> categorical;
    };
    DataFile many; // rows read in several pieces
    many.addVariable({"X", "", -9, {}, DisplayFormat::Plain});
    for (int c = 0; c < 300000; ++c)
        many.appendCase({c * 0.5});
    const DataFile survey = surveyFile();
    const DataFile large = largeFile();
    const Case cases[] = {
        {"accents, long labels, formats, case names, weight, selection", survey,
         {true, false, false, true}},
        {"no case names, no rows", bare, {false}},
        {"300,000 rows", many, {false}},
        {"rows read in parts, one thread each, with case names", large, {false, true, false, false}},
    };
    const wb::testing::TempDir dir;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.comment);
        const std::string path = dir.path("subset.dat"); // known by its magic number
        wb::writeNativeFile(c.file, path, c.categorical);
        expectSameFile(wb::loadDataFile(path), c.file, true);
        expectSameFile(wb::parseNativeFile(wb::readFileBytes(path), path).data, c.file, true);
        EXPECT_EQ(wb::readNativeFile(path).categorical, c.categorical);
    }
}

// surveyFile cut down to what the offsets below count on: header "Test", selection
// "AGE > 1", one variable AGE ("Âge", missing -1, plain, not categorical, labels 1 "jeune"
// and 2 "vieux"), case names of 3 bytes, two rows. The dictionary ends at byte 190; rows
// are 11 bytes.
std::string smallFileBytes() {
    DataFile file;
    file.setHeaderText("Test");
    file.addVariable({"AGE", "Âge", -1, {{1, "jeune"}, {2, "vieux"}}, DisplayFormat::Plain});
    file.appendCase({1}, "Ann");
    file.appendCase({2}, "Bob");
    file.setSelection("AGE > 1");
    return wb::nativeFileBytes(file);
}

std::string le32(uint32_t value) {
    std::string out;
    for (int i = 0; i < 4; ++i)
        out.push_back(char(value >> (8 * i)));
    return out;
}

std::string le64(uint64_t value) {
    return le32(uint32_t(value)) + le32(uint32_t(value >> 32));
}

TEST(NativeFileTest, RefusesMalformedFiles) {
    const std::string good = smallFileBytes();
    ASSERT_EQ(good.size(), 212u);
    ASSERT_NO_THROW(wb::parseNativeFile(good, "f.ddf"));
    const auto cut = [&](std::size_t size) { return good.substr(0, size); };
    const auto patch = [](std::string out, std::size_t at, const std::string& bytes) {
        return out.replace(at, bytes.size(), bytes);
    };
    const auto patched = [&](std::size_t at, const std::string& bytes) {
        return patch(good, at, bytes);
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct Case {
        const char* comment;
        std::string bytes;
        std::string message; // behind "f.ddf: "
    };
    const std::string trunc = "truncated at byte ";
    const auto bits = [](double value) { return le64(std::bit_cast<uint64_t>(value)); };
    // A fault in the rows of a large file is found whichever part reads it, and of two the
    // first in the file is reported. A row: the longest case name, "399999", four values.
    const std::string large = wb::nativeFileBytes(largeFile());
    std::uint64_t dataOffset;
    std::memcpy(&dataOffset, large.data() + wb::NativeDataOffsetAt, 8);
    const std::size_t early = dataOffset + 199990 * 38 + 6 + 8;  // case 199991, variable B
    const std::size_t late = dataOffset + 399000 * 38 + 6 + 24; // case 399001, variable D
    const std::string lateInf = patch(large, late, bits(inf));
    // clang-format off
    const Case cases[] = {
        {"a CSV file", "A,B\n1,2\n", "not a drill-down data file (bad magic number)"},
        {"later version", patched(8, le32(2)), "format version 2 is not supported; this workbench reads version 1"},
        {"cut in the header text", cut(50), trunc + "50 (in the header text)"},
        {"cut in a label", cut(187), trunc + "187 (in the text labels of variable AGE)"},
        {"label count past the end", patched(152, le32(1000)), trunc + "212 (in the text labels of variable AGE)"},
        {"no variables", patched(92, le32(0)), "byte 92: the file has no variables"},
        {"too many variables", patched(92, le32(40000)), "byte 92: 40000 variables; at most 32767 are allowed"},
        {"too many rows", patched(96, le32(0x80000000u)), "byte 96: 2147483648 rows; at most 2147483647 are allowed"},
        {"case names too wide", patched(100, le32(40000)), "byte 100: case names of 40000 bytes; at most 32767 are allowed"},
        {"weight beyond the variables", patched(104, le32(2)), "byte 104: weight variable 2 does not exist; the file has 1 variable"},
        {"data offset elsewhere", patched(108, le64(200)),
         "byte 108: the data area is said to start at byte 200; the dictionary ends at byte 190"},
        {"data offset inside the dictionary", patched(108, le64(150)),
         "byte 108: the data area is said to start at byte 150; the dictionary ends at byte 190"},
        {"selection of an unknown variable", patched(120, "AGX"), "byte 116: selection condition: unknown variable \"AGX\" at column 1"},
        {"empty short name", patched(127, le32(0)), "byte 127: variable 1 has no short name"},
        {"missing code not a number", patched(142, bits(nan)), "byte 142: the missing code of variable AGE is not a finite number"},
        {"unknown display format", patched(150, "\x07"), "byte 150: unknown display format 7 of variable AGE"},
        {"categorical flag 2", patched(151, "\x02"), "byte 151: categorical flag 2 of variable AGE is neither 0 nor 1"},
        {"infinite label value", patched(156, bits(inf)), "byte 156: a text label of variable AGE has a value that is not a finite number"},
        {"two labels of one value", patched(173, bits(1.0)), "byte 173: variable AGE has two text labels for the value 1"},
        {"a value that is no finite number", patched(204, bits(-inf)), "byte 204: case 2 has -inf in variable AGE, which is not a finite number"},
        {"a row short", cut(201), "byte 190: the data area holds 11 bytes; 2 rows of 11 bytes need 22"},
        {"a byte too many", good + "x", "byte 190: the data area holds 23 bytes; 2 rows of 11 bytes need 22"},
        {"a bad value in the last rows of a large file", lateInf,
         "byte " + std::to_string(late) + ": case 399001 has inf in variable D, which is not a finite number"},
        {"two bad values in a large file", patch(lateInf, early, bits(inf)),
         "byte " + std::to_string(early) + ": case 199991 has inf in variable B, which is not a finite number"},
    };
    // clang-format on
    // In memory, and from a file whose rows are read a piece at a time.
    const wb::testing::TempDir dir;
    const std::string path = dir.path("f.ddf");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.comment);
        ASSERT_TRUE(wb::writeWholeFile(path, c.bytes).empty());
        EXPECT_EQ(dataError([&] { wb::parseNativeFile(c.bytes, "f.ddf"); }), "f.ddf: " + c.message);
        EXPECT_EQ(dataError([&] { wb::readNativeFile(path); }), path + ": " + c.message);
    }
}

} // namespace
