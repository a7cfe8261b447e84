#pragma once
// One chart request in preparation: the arguments of the host's one chart call
// (HostOutput::NewGeneralMultipleChartLongEx), their defaults, and the call itself.
//
// Use:
//   1. construct it with its number of series and the room for points of one series (check
//      Allocated(): without memory it has no blocks and must not be filled);
//   2. AllocXLabels, the points (SetX/SetY, or a work array copied in with CopySeries), the
//      titles, the ranges, AllocYLabels with its labels, SetSeriesWidth;
//   3. one of DrawHistogram, DrawPie, DrawStacked, which sets the settings of that kind of
//      chart, makes the call and releases the blocks.
//
// A series holds its points in one array of doubles: all X values, then all Y values, the
// first Y at the index given by the series' entry of pointCounts. SetX and SetY use maxPoints
// for that index; a caller that lays out an array of its own uses its pointCounts.
//
// The arguments of the host call, in order: info; chartFlags; seriesCount; seriesData;
// pointCounts; seriesType, seriesOption1, seriesOption2, seriesColor; seriesNames (null for
// pies and stacked plots); seriesWidth; titleBlock, titleStride, 3 lines; xTitle, its length,
// 1 line; yTitle, its length, 1 line; yMin, yMax, yStep; xMin, xMax, xStep; the X labels
// (texts, width, positions, count); the Y labels; two label sets that carry nothing (null, 0,
// null, 0 and null, 0, null, -1); the nine words of axisStyle; legendBlock, legendWidth;
// seriesMode; pointLabelSwitch, pointLabelWidth, pointLabels.
//
// The object owns its blocks, but not what a caller puts into pointLabels.

#include <cstdint>
#include <string>

#include "../host/HostOutput.h"

class CAnalysisSupport;

class CGeneralChart {
public:
    CGeneralChart(CAnalysisSupport& host, short series, int points);
    ~CGeneralChart();
    CGeneralChart(const CGeneralChart&) = delete;
    CGeneralChart& operator=(const CGeneralChart&) = delete;

    // False when a block could not be had, and after a draw operation.
    bool Allocated() const { return m_allocated; }

    // Line 1 and line 2 of the title block; at most 60 characters are kept, so long texts
    // travel as tokens.
    void SetTitle(const std::string& text);
    void SetSubtitle(const std::string& text);
    void SetXTitle(const std::string& text);
    void SetYTitle(const std::string& text);

    // Room for `count` axis labels of `width` characters: 0, or 1 when memory ran out (what
    // was had is then released and the axis carries no labels).
    int AllocXLabels(short count, short width);
    int AllocYLabels(short count, short width);
    // Position and text of label `index`; the text fills the entry up to its width.
    void SetXLabel(short index, double value, const std::string& text);
    void SetYLabel(short index, double value, const std::string& text);

    // X of `point` and Y at maxPoints + `point` of the current series; a valid value widens
    // the running range of its axis.
    void SetX(int point, double value);
    void SetY(int point, double value);
    // Copies `count` doubles of a work array into a series' block.
    void CopySeries(short series, const double* values, int count);
    void SetSeriesWidth(short series, double value);

    // A bar chart of the current series; with the lowest bit of `flags` clear its mode word
    // is 12 instead of 0. 1 done (also when there was nothing to draw), 0 when the host
    // refused or the chart has no blocks.
    int DrawHistogram(unsigned char flags);
    // A pie of the current series; the caller sets seriesMode, pointLabels, pointLabelWidth.
    int DrawPie();
    // All series drawn over each other as bands; the caller sets seriesMode and pointCounts.
    int DrawStacked();

    static constexpr int TitleWidth = 60;
    static constexpr int AxisTitleBytes = 80;
    static constexpr int LegendBytes = 400;

    // The fields of the request. A result operation may write the ranges, pointCounts,
    // seriesMode, pointLabels, pointLabelWidth and seriesData directly.
    int maxPoints;
    int labelWidth = 12;
    char titleBlock[3 * 62] = {};
    char xTitle[AxisTitleBytes] = {};
    char yTitle[AxisTitleBytes] = {};
    char* pointLabelBlock = nullptr;
    double** seriesData = nullptr;
    char** seriesNames = nullptr;
    char* seriesNameText = nullptr;
    int16_t seriesNameWidth = 40;
    int32_t* pointCounts = nullptr;
    int32_t* seriesMode = nullptr;
    unsigned char* seriesType = nullptr;
    unsigned char* seriesOption1 = nullptr;
    unsigned char* seriesOption2 = nullptr;
    unsigned char* seriesColor = nullptr;
    double* seriesWidth = nullptr;
    int16_t seriesCount;
    int16_t xTitleLength = 0;
    int16_t yTitleLength = 0;
    int16_t pointLabelSwitch = 0;
    int16_t pointLabelWidth = 12;
    int16_t currentSeries = 0;
    char** pointLabels = nullptr;
    char legendBlock[LegendBytes] = {};
    int16_t legendWidth = 20;
    int16_t titleStride = 62;
    double xMin = 3e+300;
    double xMax = -3e+300;
    double xStep = 1.0;
    double yMin = 3e+300;
    double yMax = -3e+300;
    double yStep = 1.0;
    CChartInfo info{5};
    uint16_t chartFlags = 2;
    // X, Y and third axis: a style word and two options each.
    uint16_t axisStyle[3] = {0, 0, 65535};
    int16_t axisOption1[3] = {};
    int16_t axisOption2[3] = {};
    char* xLabelText = nullptr;
    int16_t xLabelWidth = 0;
    double* xLabelValues = nullptr;
    int32_t xLabelCount = 0;
    char* yLabelText = nullptr;
    int16_t yLabelWidth = 0;
    double* yLabelValues = nullptr;
    int32_t yLabelCount = 0;

private:
    // Makes the host call for draw mode 1 (bars) or 2 (pies and stacked plots) and releases
    // the blocks.
    int Draw(int mode);
    // Room of one series' block, in points.
    int BlockPoints() const;
    bool Alloc(void** block, unsigned long bytes);
    int AllocLabels(char*& text, double*& values, int16_t& width, int32_t& count, short n, short w);
    void ReleaseLabels(char*& text, double*& values);
    void Release();

    CAnalysisSupport& m_host;
    bool m_allocated = false;
};

// The top of a count axis for the greatest count x: the next of 2, 5, 10, 20, 50, ... strictly
// above x, floored (so 0 or 1 for x below 1, and 1 for x <= 0).
int32_t AxisTopForCount(double x);

// The Y axis of a count from 0 to AxisTopForCount(greatest), with labels at whole steps: 0 to
// 2 or 0 to 5 in steps of 1 for a top up to 2 or 5, else eleven labels in tenths of the top.
void ApplyCountAxis(CGeneralChart& chart, double greatest);
