#pragma once
// A host output that records the module's graph requests argument by argument, copying every
// array while the call lasts (the module frees them right after), and tries the case filter
// of the host-drawn graphs on cases that the test gives.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "drilldown/host/HostOutput.h"

namespace test {

// Axis labels as the host receives them: texts of a fixed width, positions, count.
struct AxisLabels {
    bool given = false; // texts and positions not null
    short width = 0;
    int count = 0;
    std::vector<std::string> texts;
    std::vector<double> positions;
};

struct ChartRequest {
    int kind = 0;
    unsigned short flags = 0;
    short seriesCount = 0;
    std::vector<int> points;
    // Per series: the X values, then the Y values from index points[s] on.
    std::vector<std::vector<double>> data;
    std::vector<int> types, options1, options2, colours, modes;
    bool namesGiven = false;
    std::vector<std::string> names;
    std::vector<double> widths;
    std::array<std::string, 3> titles;
    short titleStride = 0, titleLines = 0;
    std::string xTitle, yTitle;
    short xTitleLength = 0, xTitleLines = 0, yTitleLength = 0, yTitleLines = 0;
    double yMin = 0, yMax = 0, yStep = 0, xMin = 0, xMax = 0, xStep = 0;
    AxisLabels xLabels, yLabels;
    // The two label sets that carry nothing: pointers null and the four numbers.
    bool unusedPointersNull = false;
    std::array<int, 4> unusedNumbers{};
    std::array<int, 9> axisStyles{};
    bool legendEmpty = false;
    short legendWidth = 0;
    short pointLabelSwitch = 0, pointLabelWidth = 0;
    // Per series: the point labels, or none when its pointer is null.
    std::vector<std::vector<std::string>> pointLabels;
    std::vector<bool> pointLabelsGiven;

    // Y of point i of series s.
    double y(int s, int i) const { return data.at(s).at(points.at(s) + i); }
    double x(int s, int i) const { return data.at(s).at(i); }
};

struct BoxPlotRequest {
    unsigned short style = 0;
    std::string title, subtitle;
    bool unusedNull = false;
    int unusedNumber = -1;
    std::vector<short> variables;
    std::vector<int> filtered; // the filter's answer for each of the recorder's cases
};

struct ScatterRequest {
    unsigned short mode = 0;
    int unused1 = -1;
    std::vector<short> first;
    short secondCount = -1;
    bool secondNull = false, unusedNull = false;
    unsigned short unused2 = 1;
    char* textBuffer = nullptr;
    std::string title;
    std::vector<int> filtered;
};

struct Histogram3DRequest {
    unsigned short kind = 0;
    short x = 0, y = 0;
    std::string title, subtitle;
    bool unusedNull = false;
    std::vector<int> filtered;
    // The two values the filter gave for each case it kept.
    std::vector<std::pair<float, float>> pairs;
};

class ChartRecorder : public HostOutput {
public:
    // The cases the filter of a host-drawn graph is tried on: one double per variable of the
    // file, variable v at index v - 1.
    std::vector<std::vector<double>> cases;
    int chartAnswer = 1;
    int scatterAnswer = 0;

    std::vector<ChartRequest> charts;
    std::vector<BoxPlotRequest> boxPlots;
    std::vector<ScatterRequest> scatterPlots;
    std::vector<Histogram3DRequest> histograms3D;

    short looka4(void*, char*, const char*, const char*, const char*, const char*, const char*,
                 int, int, int, int, int, int, int, int, int, int, int, int, int, int, int, int,
                 void*, void*, void*, short*, short*, short*) override {
        ++tables;
        return 1;
    }
    int tables = 0;

    int NewGeneralMultipleChartLongEx(
        const CChartInfo& info, unsigned short chartFlags, short seriesCount, double** data,
        int* points, unsigned char* seriesTypes, unsigned char* seriesOptions1,
        unsigned char* seriesOptions2, unsigned char* seriesColours, char** seriesNames,
        double* barWidths, char* titles, short titleStride, short titleLines, char* xTitle,
        short xTitleLength, short xTitleLines, char* yTitle, short yTitleLength,
        short yTitleLines, double yMin, double yMax, double yStep, double xMin, double xMax,
        double xStep, char* xLabels, short xLabelWidth, double* xLabelPositions, int xLabelCount,
        char* yLabels, short yLabelWidth, double* yLabelPositions, int yLabelCount,
        char* unused1, short unused2, double* unused3, int unused4, char* unused5, short unused6,
        double* unused7, int unused8, unsigned short xAxisStyle, short xAxisOption1,
        short xAxisOption2, unsigned short yAxisStyle, short yAxisOption1, short yAxisOption2,
        unsigned short zAxisStyle, short zAxisOption1, short zAxisOption2, char* legend,
        short legendItemWidth, int* seriesModes, short pointLabelSwitch, short pointLabelWidth,
        char** pointLabels) override {
        ChartRequest r;
        r.kind = info.Kind();
        r.flags = chartFlags;
        r.seriesCount = seriesCount;
        for (int s = 0; s < seriesCount; ++s) {
            r.points.push_back(points[s]);
            r.data.emplace_back(data[s], data[s] + 2 * points[s]);
            r.types.push_back(seriesTypes[s]);
            r.options1.push_back(seriesOptions1[s]);
            r.options2.push_back(seriesOptions2[s]);
            r.colours.push_back(seriesColours[s]);
            r.modes.push_back(seriesModes[s]);
            r.widths.push_back(barWidths[s]);
            if (seriesNames != nullptr)
                r.names.emplace_back(seriesNames[s]);
            const bool labelled = pointLabels != nullptr && pointLabels[s] != nullptr;
            r.pointLabelsGiven.push_back(labelled);
            r.pointLabels.push_back(labelled && pointLabelWidth > 0
                                        ? fields(pointLabels[s], pointLabelWidth, points[s])
                                        : std::vector<std::string>{});
        }
        r.namesGiven = seriesNames != nullptr;
        for (int line = 0; line < titleLines && line < 3; ++line)
            r.titles[line] = field(titles + line * titleStride, titleStride);
        r.titleStride = titleStride;
        r.titleLines = titleLines;
        r.xTitle = std::string(xTitle, xTitleLength);
        r.xTitleLength = xTitleLength;
        r.xTitleLines = xTitleLines;
        r.yTitle = std::string(yTitle, yTitleLength);
        r.yTitleLength = yTitleLength;
        r.yTitleLines = yTitleLines;
        r.yMin = yMin;
        r.yMax = yMax;
        r.yStep = yStep;
        r.xMin = xMin;
        r.xMax = xMax;
        r.xStep = xStep;
        r.xLabels = labels(xLabels, xLabelWidth, xLabelPositions, xLabelCount);
        r.yLabels = labels(yLabels, yLabelWidth, yLabelPositions, yLabelCount);
        r.unusedPointersNull = unused1 == nullptr && unused3 == nullptr && unused5 == nullptr &&
                               unused7 == nullptr;
        r.unusedNumbers = {unused2, unused4, unused6, unused8};
        r.axisStyles = {xAxisStyle, xAxisOption1, xAxisOption2, yAxisStyle, yAxisOption1,
                        yAxisOption2, zAxisStyle, zAxisOption1, zAxisOption2};
        r.legendEmpty = legend != nullptr && std::all_of(legend, legend + 400,
                                                         [](char c) { return c == 0; });
        r.legendWidth = legendItemWidth;
        r.pointLabelSwitch = pointLabelSwitch;
        r.pointLabelWidth = pointLabelWidth;
        charts.push_back(std::move(r));
        return chartAnswer;
    }

    int CategorizedVarBoxAndWhisker(unsigned short style, char* title, char* subtitle,
                                    char* unused1, char* unused2, int unused3, short count,
                                    short* variables, char* unused4, CaseFilter filter) override {
        BoxPlotRequest r{style, title, subtitle, unused1 == nullptr && unused2 == nullptr &&
                                                     unused4 == nullptr,
                         unused3, std::vector<short>(variables, variables + count), {}};
        r.filtered = tryFilter(filter);
        boxPlots.push_back(std::move(r));
        return 1;
    }

    int CorrelationScatterplot(unsigned short mode, int unused1, short firstCount, short* first,
                               short secondCount, short* second, unsigned short unused2,
                               double* unused3, double* unused4, char* textBuffer,
                               CaseFilter filter, const std::string& title) override {
        ScatterRequest r;
        r.mode = mode;
        r.unused1 = unused1;
        r.first.assign(first, first + firstCount);
        r.secondCount = secondCount;
        r.secondNull = second == nullptr;
        r.unused2 = unused2;
        r.unusedNull = unused3 == nullptr && unused4 == nullptr;
        r.textBuffer = textBuffer;
        r.title = title;
        r.filtered = tryFilter(filter);
        scatterPlots.push_back(std::move(r));
        return scatterAnswer;
    }

    int Histogram3D(unsigned short kind, short x, short y, short unused1, short unused2,
                    short* unused3, short* unused4, short unused5, char* title, char* unused6,
                    char* subtitle, char* unused7, int unused8, char* unused9,
                    CaseFilterFloat filter) override {
        Histogram3DRequest r;
        r.kind = kind;
        r.x = x;
        r.y = y;
        r.title = title;
        r.subtitle = subtitle;
        r.unusedNull = unused1 == 0 && unused2 == 0 && unused3 == nullptr &&
                       unused4 == nullptr && unused5 == 0 && unused6 == nullptr &&
                       unused7 == nullptr && unused8 == 0 && unused9 == nullptr;
        for (std::vector<double> values : cases) {
            float fx = -1, fy = -1;
            const int left = filter(nullptr, nullptr, values.data(), &fx, &fy);
            r.filtered.push_back(left);
            if (left == 0)
                r.pairs.emplace_back(fx, fy);
        }
        histograms3D.push_back(std::move(r));
        return 1;
    }

private:
    static std::string field(const char* text, int width) {
        return std::string(text, strnlen(text, width));
    }
    static std::vector<std::string> fields(const char* text, int width, int count) {
        std::vector<std::string> all;
        for (int i = 0; i < count; ++i)
            all.push_back(field(text + static_cast<std::ptrdiff_t>(i) * width, width));
        return all;
    }
    static AxisLabels labels(const char* texts, short width, const double* positions, int count) {
        AxisLabels l;
        l.given = texts != nullptr && positions != nullptr;
        l.width = width;
        l.count = count;
        if (l.given) {
            l.texts = fields(texts, width, count);
            l.positions.assign(positions, positions + count);
        }
        return l;
    }
    std::vector<int> tryFilter(CaseFilter filter) {
        std::vector<int> answers;
        for (std::vector<double> values : cases)
            answers.push_back(filter(nullptr, nullptr, values.data(), nullptr, nullptr));
        return answers;
    }
};

} // namespace test
