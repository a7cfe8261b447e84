#pragma once
// One chart request laid out as the module's chart builder lays it out: per series a block
// whose unwritten doubles are all ones (no number), X values first and Y values from index
// `points` on; three title lines of 60 bytes at a stride of 62; axis labels of 20 bytes;
// point labels of 12. send() makes the 57-argument call.

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "drilldown/host/HostOutput.h"

namespace wb::testing {

struct ModuleChart {
    static constexpr short TitleStride = 62;
    static constexpr short LabelWidth = 20;
    static constexpr short PointLabelWidth = 12;

    ModuleChart(int kind, int seriesCount, int maxPoints)
        : kind(kind), maxPoints(maxPoints), points(seriesCount, maxPoints),
          blocks(seriesCount, std::vector<double>(std::max(maxPoints, 20) * 2,
                                                  std::bit_cast<double>(~std::uint64_t{0}))),
          colours(seriesCount), names(seriesCount, std::vector<char>(40)), widths(seriesCount, 0.9),
          modes(seriesCount), titles(3 * TitleStride) {
        for (int s = 0; s < seriesCount; ++s)
            colours[s] = static_cast<unsigned char>(12 + s);
    }

    // Point i of series s; Y at `points[s]` + i, as the host reads it.
    void point(int s, int i, double x, double y) {
        blocks[s][i] = x;
        blocks[s][points[s] + i] = y;
    }
    void title(int line, const std::string& text) { text.copy(&titles[line * TitleStride], 60); }
    void xLabel(int index, double at, const std::string& text) {
        label(xTexts, xPositions, index, at, text);
    }
    void yLabel(int index, double at, const std::string& text) {
        label(yTexts, yPositions, index, at, text);
    }
    // Point labels of series 0, 12 bytes each, and the switch on.
    void pointLabel(int index, const std::string& text) {
        if (pointLabels.size() < static_cast<std::size_t>(maxPoints * PointLabelWidth))
            pointLabels.resize(maxPoints * PointLabelWidth);
        text.copy(&pointLabels[index * PointLabelWidth], PointLabelWidth);
        pointLabelSwitch = 1;
    }

    int send(HostOutput& output) {
        std::vector<double*> data;
        for (auto& block : blocks)
            data.push_back(block.empty() ? nullptr : block.data());
        std::vector<char*> nameTexts;
        for (auto& name : names)
            nameTexts.push_back(name.data());
        std::vector<unsigned char> types(blocks.size(), kind == 3 ? 10 : 5);
        std::vector<unsigned char> options1(blocks.size()), options2(blocks.size());
        char* labelPointers[1] = {pointLabels.empty() ? nullptr : pointLabels.data()};
        std::vector<char> legend(400);
        const auto count = [](const std::vector<double>& positions) {
            return static_cast<int>(positions.size());
        };
        return output.NewGeneralMultipleChartLongEx(
            CChartInfo(kind), kind == 5 ? 130 : 2, static_cast<short>(blocks.size()), data.data(),
            points.data(), types.data(), options1.data(), options2.data(), colours.data(),
            kind == 5 ? nameTexts.data() : nullptr, widths.data(), titles.data(), TitleStride, 3,
            xTitle.data(), static_cast<short>(xTitle.size()), 1, yTitle.data(),
            static_cast<short>(yTitle.size()), 1, yMin, yMax, yStep, xMin, xMax, xStep,
            xTexts.empty() ? nullptr : xTexts.data(), LabelWidth,
            xPositions.empty() ? nullptr : xPositions.data(), count(xPositions),
            yTexts.empty() ? nullptr : yTexts.data(), LabelWidth,
            yPositions.empty() ? nullptr : yPositions.data(), count(yPositions), nullptr, 0,
            nullptr, 0, nullptr, 0, nullptr, -1, 8, 0, 0, 8, 0, 0, 8, 0, 0, legend.data(), 0,
            modes.data(), pointLabelSwitch, PointLabelWidth, labelPointers);
    }

    int kind;
    int maxPoints;
    std::vector<int> points;
    std::vector<std::vector<double>> blocks;
    std::vector<unsigned char> colours;
    std::vector<std::vector<char>> names;
    std::vector<double> widths;
    std::vector<int> modes;
    std::vector<char> titles;
    std::string xTitle, yTitle;
    double yMin = 0, yMax = 10, yStep = 1, xMin = 0, xMax = 1, xStep = 1;
    std::vector<char> xTexts, yTexts;
    std::vector<double> xPositions, yPositions;
    std::vector<char> pointLabels;
    short pointLabelSwitch = 0;

private:
    static void label(std::vector<char>& texts, std::vector<double>& positions, int index,
                      double at, const std::string& text) {
        if (positions.size() <= static_cast<std::size_t>(index)) {
            positions.resize(index + 1);
            texts.resize((index + 1) * LabelWidth);
        }
        text.copy(&texts[index * LabelWidth], LabelWidth);
        positions[index] = at;
    }
};

} // namespace wb::testing
