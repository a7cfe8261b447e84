#pragma once
// Numbers of the strings the module's code refers to by name.

enum StringId : int {
    StrAnalysisName = 10000,
    StrChooseDrillVariables = 10001,
    StrCategoricalVariables = 10003,
    StrContinuousVariables = 10004,
    StrMemoryExhausted = 10005,
    StrCalculating = 10006,
    StrSummaryTitle = 10007,
    StrFrequencyTitle = 10009,
    StrDescriptivesTitle = 10010,
    StrCategoryHeading = 10015,
    StrVariableHeading = 10016,
    StrDatasheetTitle = 10018,
    StrTotalAndSelected = 10026,
    StrDescriptionHeading = 10027,
    StrChooseReviewVariables = 10028,
    StrCategoricalReviews = 10029,
    StrContinuousReviews = 10030,
    StrMissingRow = 10033,
    StrCountHeading = 10046,  // then the cumulative count and both percentages, 10047 to 10049
    StrMeanHeading = 10050,
    StrStdDevHeading = 10051,
    StrMinimumHeading = 10052,
    StrMaximumHeading = 10053,
    StrCasesHeading = 10054,
    StrWeightedCasesHeading = 10055,
    StrNoCases = 10057,
};
