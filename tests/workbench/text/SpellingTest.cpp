// Suggestions for misspelt words: case and accents do not count, edits do.

#include <gtest/gtest.h>

#include "workbench/text/Spelling.h"

namespace {

TEST(Spelling, NearestWordWithinTwoEdits) {
    const std::vector<std::string> words = {"DrillDown", "DrillUp", "Région", "Variables"};
    const struct {
        const char* typed;
        const char* suggested;
    } cases[] = {
        {"DrilDown", "DrillDown"}, // one letter missing
        {"drillup", "DrillUp"},    // case only
        {"DrillUp", ""},           // written exactly so: no suggestion
        {"DrillUpp", "DrillUp"},
        {"region", "Région"},      // the accent only
        {"regoin", "Région"},      // two letters swapped: two edits
        {"Variabels", "Variables"},
        {"Summary", ""},           // too far from every word
    };
    for (const auto& c : cases)
        EXPECT_EQ(wb::closestWord(c.typed, words), c.suggested) << c.typed;
    EXPECT_EQ(wb::editDistance("Île", "ile"), 0u);
    EXPECT_EQ(wb::editDistance("kitten", "sitting"), 3u);
}

} // namespace
