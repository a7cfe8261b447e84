#pragma once
// A host output that records what the host draws of the module's graph requests, copying
// every array while the call lasts (the module frees them right after), and tries the case
// filter of the host-drawn graphs on cases that the test gives. The series types, options,
// modes, flags, axis styles and legend are left out: the host draws nothing from them.

#include <array>
#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
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
    short seriesCount = 0;
    std::vector<int> points;
    // Per series: the X values, then the Y values from index points[s] on.
    std::vector<std::vector<double>> data;
    std::vector<int> colours;
    std::array<std::string, 3> titles;
    std::string xTitle, yTitle;
    double yMin = 0, yMax = 0, yStep = 0, xMin = 0, xMax = 0;
    AxisLabels xLabels, yLabels;
    short pointLabelWidth = 0;
    // Per series: the point labels, or none when its pointer is null.
    std::vector<std::vector<std::string>> pointLabels;
    std::vector<bool> pointLabelsGiven;

    // Y of point i of series s.
    double y(int s, int i) const { return data.at(s).at(points.at(s) + i); }
    double x(int s, int i) const { return data.at(s).at(i); }
};

// A graph that the host draws from the cases: what the tests read of its arguments, and the
// filter's answer for each of the recorder's cases (0 kept, 1 left out).
struct CaseGraphRequest {
    unsigned short style = 0; // the box-plot style, or the scatterplot matrix's mode
    short x = 0, y = 0;       // of a 3D histogram
    std::string title, subtitle;
    std::vector<short> variables; // of box plots and the matrix's first list
    std::vector<int> filtered;
    // The two values the filter of a 3D histogram gave for each case it kept.
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
    std::vector<CaseGraphRequest> boxPlots, scatterPlots, histograms3D;

    short looka4(void*, char*, const char*, const char*, const char*, const char*, const char*, int,
                 int, int, int, int, int, int, int, int, int, int, int, int, int, int, int, void*,
                 void*, void*, short*, short*, short*) override {
        return 1;
    }

    int NewGeneralMultipleChartLongEx(
        const CChartInfo& info, unsigned short, short seriesCount, double** data, int* points,
        unsigned char*, unsigned char*, unsigned char*, unsigned char* seriesColours, char**,
        double*, char* titles, short titleStride, short titleLines, char* xTitle,
        short xTitleLength, short, char* yTitle, short yTitleLength, short, double yMin,
        double yMax, double yStep, double xMin, double xMax, double, char* xLabels,
        short xLabelWidth, double* xLabelPositions, int xLabelCount, char* yLabels,
        short yLabelWidth, double* yLabelPositions, int yLabelCount, char*, short, double*, int,
        char*, short, double*, int, unsigned short, short, short, unsigned short, short, short,
        unsigned short, short, short, char*, short, int*, short, short pointLabelWidth,
        char** pointLabels) override {
        ChartRequest r;
        std::tie(r.kind, r.seriesCount) = std::tuple(info.Kind(), seriesCount);
        for (int s = 0; s < seriesCount; ++s) {
            r.points.push_back(points[s]);
            r.data.emplace_back(data[s], data[s] + 2 * points[s]);
            r.colours.push_back(seriesColours[s]);
            const bool labelled = pointLabels != nullptr && pointLabels[s] != nullptr;
            r.pointLabelsGiven.push_back(labelled);
            r.pointLabels.push_back(labelled && pointLabelWidth > 0
                                        ? fields(pointLabels[s], pointLabelWidth, points[s])
                                        : std::vector<std::string>{});
        }
        for (int line = 0; line < titleLines && line < 3; ++line)
            r.titles[line] = fields(titles + line * titleStride, titleStride, 1)[0];
        r.xTitle.assign(xTitle, xTitleLength);
        r.yTitle.assign(yTitle, yTitleLength);
        std::tie(r.yMin, r.yMax, r.yStep, r.xMin, r.xMax) =
            std::tuple(yMin, yMax, yStep, xMin, xMax);
        r.xLabels = labels(xLabels, xLabelWidth, xLabelPositions, xLabelCount);
        r.yLabels = labels(yLabels, yLabelWidth, yLabelPositions, yLabelCount);
        r.pointLabelWidth = pointLabelWidth;
        charts.push_back(std::move(r));
        return chartAnswer;
    }

    int CategorizedVarBoxAndWhisker(unsigned short style, char* title, char* subtitle, char*, char*,
                                    int, short count, short* variables, char*,
                                    CaseFilter filter) override {
        CaseGraphRequest& r = boxPlots.emplace_back();
        std::tie(r.style, r.title, r.subtitle) = std::tuple(style, title, subtitle);
        r.variables.assign(variables, variables + count);
        tryFilter(r, filter);
        return 1;
    }

    int CorrelationScatterplot(unsigned short mode, int, short firstCount, short* first, short,
                               short*, unsigned short, double*, double*, char*, CaseFilter filter,
                               const std::string& title) override {
        CaseGraphRequest& r = scatterPlots.emplace_back();
        std::tie(r.style, r.title) = std::tuple(mode, title);
        r.variables.assign(first, first + firstCount);
        tryFilter(r, filter);
        return scatterAnswer;
    }

    int Histogram3D(unsigned short, short x, short y, short, short, short*, short*, short,
                    char* title, char*, char* subtitle, char*, int, char*,
                    CaseFilterFloat filter) override {
        CaseGraphRequest& r = histograms3D.emplace_back();
        std::tie(r.x, r.y, r.title, r.subtitle) = std::tuple(x, y, title, subtitle);
        tryFilter(r, filter);
        return 1;
    }

private:
    // `count` texts of `width` bytes each, each up to its first zero byte.
    static std::vector<std::string> fields(const char* text, int width, int count) {
        std::vector<std::string> all;
        for (int i = 0; i < count; ++i) {
            const char* field = text + static_cast<std::ptrdiff_t>(i) * width;
            all.emplace_back(field, strnlen(field, width));
        }
        return all;
    }
    static AxisLabels labels(const char* texts, short width, const double* positions, int count) {
        AxisLabels l{texts != nullptr && positions != nullptr, width, count, {}, {}};
        if (l.given) {
            l.texts = fields(texts, width, count);
            l.positions.assign(positions, positions + count);
        }
        return l;
    }
    // Tries the filter on each case; a 3D histogram's filter also gives the kept case's pair.
    template <typename Value>
    void tryFilter(CaseGraphRequest& r, int (*filter)(char*, long*, double*, Value*, Value*)) {
        constexpr bool pair = std::is_same_v<Value, float>;
        for (std::vector<double> values : cases) {
            Value x = -1, y = -1;
            r.filtered.push_back(
                filter(nullptr, nullptr, values.data(), pair ? &x : nullptr, pair ? &y : nullptr));
            if constexpr (pair)
                if (r.filtered.back() == 0)
                    r.pairs.emplace_back(x, y);
        }
    }
};

} // namespace test
