#pragma once
// The ids of the controls that the code addresses: those of the start-up panel and of its
// four pages, which share the panel's id space, then those of the three small dialogs.
// The templates that hold them are in Dialogs.h.

enum ControlId : int {
    // The panel.
    TabControl = 200,
    ButtonSelection = 201,
    ButtonWeights = 202,
    ButtonOpenFile = 203,
    CheckWeightedMoments = 204,
    ButtonDrillVariables = 9050,
    CaptionCategorical = 9052,
    ListDrillDowns = 9053,
    ListDrillUps = 9054,
    ButtonOrder = 9055,
    ButtonDrillDown = 9056,
    ButtonDrillUp = 9057,
    CaptionContinuous = 9085,
    ButtonBrushing = 9103,
    CommandBrushingGraph = 9111, // no control: draws the brushing graph as a tracked output
    CheckStandAlone = 9106, // also on the "Options" page
    GroupDrillOperations = 9108,
    GroupDrillVariables = 9126,
    CheckCasewise = 9128,
    // "Base".
    ButtonSummary = 9058,
    ButtonDescriptives = 9059,
    ButtonFrequencies = 9060,
    ButtonHistograms = 9061,
    ButtonSaveData = 9086,
    GroupDrillDownStatistics = 9112,
    ButtonPiecharts = 9119,
    ButtonStackedPlots = 9121,
    // "Catégorisation": the radios of methods 0 to 5 are consecutive.
    RadioDistinctValues = 9064,
    RadioExactIntervals = 9065,
    RadioNeatIntervals = 9066,
    RadioFixedStep = 9067,
    RadioIntegerValues = 9068,
    RadioUserLimits = 9069,
    EditExactCount = 9070,
    EditNeatCount = 9071,
    EditStep = 9072,
    EditStart = 9073,
    LabelOr = 9074,
    CheckAtMinimum = 9075,
    ButtonLimits = 9077,
    LabelStart = 9078,
    GroupMethods = 9079,
    // "Etudier".
    CaptionReviewCategorical = 9051,
    ButtonReviewVariables = 9080,
    ButtonReviewDescriptives = 9081,
    ButtonReviewFrequencies = 9082,
    ButtonReviewHistograms = 9083,
    ButtonBoxPlots = 9084,
    ButtonScatterPlot = 9100,
    CheckReviewCasewise = 9107,
    LabelReviewCategorical = 9109,
    LabelReviewContinuous = 9110,
    CaptionReviewContinuous = 9113,
    ButtonReviewPiecharts = 9122,
    ButtonReview3DHistograms = 9123,
    ButtonReviewStackedPlots = 9124,
    // "Options".
    CheckBoxMedianQuartiles = 9114,
    CheckBoxMeanSeSd = 9115,
    CheckBoxMeanSdSd196 = 9116,
    CheckBoxMeanSeSe196 = 9117,
    GroupBoxPlotOptions = 9118,
    CheckCountMissing = 9127,

    // The category dialog.
    CaptionCategoryVariable = 9088,
    ListCategories = 9102,
    // The order dialog.
    ListUnplaced = 9089,
    ListPlaced = 9090,
    ButtonPlace = 9091,
    ButtonUnplace = 9092,
    // The limits dialog.
    EditLimits = 9093,
    CaptionLimitsVariable = 9101,
};
