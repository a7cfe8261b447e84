// The limits a user types for user-defined categories. The refusals of an empty text, a word
// and limits out of order, and 99 limits accepted, are played through the limits dialog with
// their messages in DrillDialogsTest (LimitsRefusedWithTheirMessage, LimitsKeptOnlyWhenAccepted).

#include <gtest/gtest.h>

#include <string>

#include "drilldown/dialogs/UserLimits.h"

namespace {

std::string numbers(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i)
        text += std::to_string(i) + " ";
    return text;
}

TEST(UserLimits, AcceptsOrRefusesWithItsMessage) {
    struct Case {
        const char* what;
        std::string text;
        char separator;
        bool ascending; // the caller asks for limits in ascending order
        int message;
        std::vector<double> values;
    };
    const std::vector<Case> cases = {
        {"three limits between blanks", "2 2.5  5", ',', true, 0, {2, 2.5, 5}},
        {"one limit with blanks around it", "  7  ", ',', true, 0, {7}},
        {"the list separator separates", "1;2;3", ';', true, 0, {1, 2, 3}},
        {"separators and blanks mixed", " 1 ; 2;;3 ", ';', true, 0, {1, 2, 3}},
        {"negative limits", "-5 -1.5 0", ',', true, 0, {-5, -1.5, 0}},
        {"only separators", " ,, ", ',', true, 10014, {}},
        {"the hundredth limit is refused", numbers(100), ',', true, 10011, {}},
        {"order is free without the ascending test", "5 1 1", ',', false, 0, {5, 1, 1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const ParsedLimits parsed = ParseUserLimits(c.text, c.separator, c.ascending);
        EXPECT_EQ(parsed.message, c.message);
        EXPECT_EQ(parsed.values, c.values);
    }
}

} // namespace
