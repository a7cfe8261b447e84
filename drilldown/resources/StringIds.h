#pragma once
// Numbers of the strings the module's code refers to by name.

enum StringId : int {
    StrAnalysisName = 10000,
    StrMemoryExhausted = 10005,
    StrCalculating = 10006,
    StrMissingRow = 10033,
};
