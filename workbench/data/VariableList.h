#pragma once
// Variable lists as a user writes them on the command line or in a macro: numbers, ranges
// "a-b" of numbers or of names, and names, separated by blanks, with "|" between the
// categorical and the continuous half. A list without "|" is all categorical.
//
//   "REGION SEX | AGE-SPEND"   categorical REGION, SEX; continuous AGE through SPEND
//   "1 3-5 |"                  categorical 1, 3, 4, 5; no continuous variable

#include <string>
#include <vector>

#include "workbench/data/DataFile.h"

namespace wb {

struct VariableChoice {
    std::vector<short> categorical;
    std::vector<short> continuous;
};

// Throws DataError naming the item that is no variable of the file, or a variable given twice.
VariableChoice parseVariableList(const std::string& text, const DataFile& file);

// The lists as parseVariableList reads them: names, " | " between the halves.
std::string formatVariableList(const VariableChoice& choice, const DataFile& file);

// One variable by number or name; throws DataError when there is none.
short parseVariable(const std::string& item, const DataFile& file);

} // namespace wb
