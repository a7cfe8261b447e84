#pragma once
// The text of the limits dialog: the user's upper limits for user-defined categories,
// separated by blanks or the user's list separator.

#include <string_view>
#include <vector>

// Most limits a user can enter; n limits make n + 1 categories.
inline constexpr int MaxEnteredLimits = 99;

struct ParsedLimits {
    int message = 0;             // 0, or the string number of the reason for refusing the text
    std::vector<double> values;  // the limits, when the text is accepted
};

// Reads the limits of `text`. With `ascending`, each limit must be above the one before.
// Refusals: 10014 no limit at all, 10011 more than 99, 10012 a text that is no number,
// 10013 limits not strictly ascending.
ParsedLimits ParseUserLimits(std::string_view text, char listSeparator, bool ascending);
