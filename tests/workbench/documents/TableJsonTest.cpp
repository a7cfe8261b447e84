// The JSON form of a table document, against a golden file.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "workbench/documents/SampleTable.h"
#include "workbench/documents/TableJson.h"

namespace {

std::string golden(const std::string& name) {
    std::ifstream in(std::string(DD_SOURCE_DIR) + "/tests/workbench/documents/golden/" + name,
                     std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST(TableJsonTest, MatchesGoldenFile) {
    const std::string expected = golden("sample-table.json");
    ASSERT_FALSE(expected.empty()) << "golden file missing";
    EXPECT_EQ(wb::tableJsonText(wb::testing::sampleTable()), expected);
}

} // namespace
