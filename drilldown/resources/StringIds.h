#pragma once
// Numbers of the strings the module's code refers to by name.

enum StringId : int {
    StrAnalysisName = 10000,
    StrChooseDrillVariables = 10001,
    StrCategoricalVariables = 10003,
    StrContinuousVariables = 10004,
    StrMemoryExhausted = 10005,
    StrCalculating = 10006,
    StrChooseReviewVariables = 10028,
    StrCategoricalReviews = 10029,
    StrContinuousReviews = 10030,
    StrMissingRow = 10033,
};
