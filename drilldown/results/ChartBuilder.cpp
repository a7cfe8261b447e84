#include "ChartBuilder.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "../host/framework/CAnalysisSupport.h"
#include "../host/RealNumbers.h"
#include "ResultText.h"

namespace {

constexpr int MinimumBlockPoints = 20;
constexpr int DefaultColour = 12;
constexpr int TitleLines = 3;
constexpr int LabelTextWidth = 20;
// The colours of the bands of a stacked plot, taken in turn; the last band is always 12.
constexpr unsigned char StackColours[] = {10, 9, 11, 13, 14, 15, 2, 4, 8, 3};

// Copies at most `width` bytes of text into a field of `width` bytes, the rest zero.
void PutField(char* field, int width, const std::string& text) {
    std::memset(field, 0, width);
    std::memcpy(field, text.data(), std::min<std::size_t>(text.size(), width));
}

} // namespace

CGeneralChart::CGeneralChart(CAnalysisSupport& host, short series, int points)
    : maxPoints(points), seriesCount(series), m_host(host) {
    if (series < 0)
        return;
    const auto n = static_cast<unsigned long>(series);
    const auto room = static_cast<unsigned long>(BlockPoints());
    m_allocated = Alloc(reinterpret_cast<void**>(&pointLabelBlock), labelWidth * room) &&
                  Alloc(reinterpret_cast<void**>(&seriesData), n * sizeof(double*)) &&
                  Alloc(reinterpret_cast<void**>(&seriesNames), n * sizeof(char*)) &&
                  Alloc(reinterpret_cast<void**>(&seriesNameText), n * seriesNameWidth) &&
                  Alloc(reinterpret_cast<void**>(&pointCounts), n * sizeof(int32_t)) &&
                  Alloc(reinterpret_cast<void**>(&seriesMode), n * sizeof(int32_t)) &&
                  Alloc(reinterpret_cast<void**>(&seriesType), n) &&
                  Alloc(reinterpret_cast<void**>(&seriesOption1), n) &&
                  Alloc(reinterpret_cast<void**>(&seriesOption2), n) &&
                  Alloc(reinterpret_cast<void**>(&seriesColor), n) &&
                  Alloc(reinterpret_cast<void**>(&seriesWidth), n * sizeof(double)) &&
                  Alloc(reinterpret_cast<void**>(&pointLabels), n * sizeof(char*));
    for (short s = 0; m_allocated && s < series; ++s) {
        // X and Y of every point; a value never written keeps all bits set.
        m_allocated = Alloc(reinterpret_cast<void**>(&seriesData[s]), room * 2 * sizeof(double));
        if (m_allocated)
            std::memset(seriesData[s], 0xFF, room * 2 * sizeof(double));
    }
    if (!m_allocated) {
        Release();
        return;
    }
    for (short s = 0; s < series; ++s) {
        seriesNames[s] = seriesNameText + static_cast<std::ptrdiff_t>(s) * seriesNameWidth;
        seriesOption2[s] = 1;
        seriesColor[s] = static_cast<unsigned char>(DefaultColour + s);
    }
    if (series > 0)
        pointLabels[0] = pointLabelBlock;
}

CGeneralChart::~CGeneralChart() {
    Release();
}

int CGeneralChart::BlockPoints() const {
    return std::max(maxPoints, MinimumBlockPoints);
}

bool CGeneralChart::Alloc(void** block, unsigned long bytes) {
    return m_host.AllocMem(block, bytes) == 0;
}

void CGeneralChart::Release() {
    ReleaseLabels(xLabelText, xLabelValues);
    ReleaseLabels(yLabelText, yLabelValues);
    if (seriesData != nullptr) {
        for (short s = 0; s < seriesCount; ++s)
            if (seriesData[s] != nullptr)
                m_host.FreeMem(seriesData[s]);
    }
    for (void** block :
         {reinterpret_cast<void**>(&pointLabelBlock), reinterpret_cast<void**>(&seriesData),
          reinterpret_cast<void**>(&seriesNames), reinterpret_cast<void**>(&seriesNameText),
          reinterpret_cast<void**>(&pointCounts), reinterpret_cast<void**>(&seriesMode),
          reinterpret_cast<void**>(&seriesType), reinterpret_cast<void**>(&seriesOption1),
          reinterpret_cast<void**>(&seriesOption2), reinterpret_cast<void**>(&seriesColor),
          reinterpret_cast<void**>(&seriesWidth), reinterpret_cast<void**>(&pointLabels)}) {
        if (*block != nullptr) {
            m_host.FreeMem(*block);
            *block = nullptr;
        }
    }
    m_allocated = false;
}

void CGeneralChart::SetTitle(const std::string& text) {
    PutField(titleBlock, TitleWidth, text);
}

void CGeneralChart::SetSubtitle(const std::string& text) {
    PutField(titleBlock + titleStride, TitleWidth, text);
}

void CGeneralChart::SetXTitle(const std::string& text) {
    PutField(xTitle, AxisTitleBytes - 1, text);
    xTitleLength = static_cast<int16_t>(std::strlen(xTitle));
}

void CGeneralChart::SetYTitle(const std::string& text) {
    PutField(yTitle, AxisTitleBytes - 1, text);
    yTitleLength = static_cast<int16_t>(std::strlen(yTitle));
}

void CGeneralChart::ReleaseLabels(char*& text, double*& values) {
    if (text != nullptr)
        m_host.FreeMem(text);
    if (values != nullptr)
        m_host.FreeMem(values);
    text = nullptr;
    values = nullptr;
}

int CGeneralChart::AllocLabels(char*& text, double*& values, int16_t& width, int32_t& count,
                               short n, short w) {
    ReleaseLabels(text, values);
    width = 0;
    count = 0;
    const auto entries = static_cast<unsigned long>(std::max<short>(n, 0));
    const auto entryWidth = static_cast<unsigned long>(std::max<short>(w, 0));
    if (!Alloc(reinterpret_cast<void**>(&values), entries * sizeof(double) + 10) ||
        !Alloc(reinterpret_cast<void**>(&text), entryWidth * entries + 10)) {
        ReleaseLabels(text, values);
        return 1;
    }
    width = static_cast<int16_t>(entryWidth);
    count = static_cast<int32_t>(entries);
    return 0;
}

int CGeneralChart::AllocXLabels(short count, short width) {
    return AllocLabels(xLabelText, xLabelValues, xLabelWidth, xLabelCount, count, width);
}

int CGeneralChart::AllocYLabels(short count, short width) {
    return AllocLabels(yLabelText, yLabelValues, yLabelWidth, yLabelCount, count, width);
}

void CGeneralChart::SetXLabel(short index, double value, const std::string& text) {
    if (xLabelText == nullptr || index < 0 || index >= xLabelCount)
        return;
    xLabelValues[index] = value;
    PutField(xLabelText + static_cast<std::ptrdiff_t>(index) * xLabelWidth, xLabelWidth, text);
}

void CGeneralChart::SetYLabel(short index, double value, const std::string& text) {
    if (yLabelText == nullptr || index < 0 || index >= yLabelCount)
        return;
    yLabelValues[index] = value;
    PutField(yLabelText + static_cast<std::ptrdiff_t>(index) * yLabelWidth, yLabelWidth, text);
}

void CGeneralChart::SetX(int point, double value) {
    if (!m_allocated || point < 0 || point >= 2 * BlockPoints() || currentSeries >= seriesCount)
        return;
    seriesData[currentSeries][point] = value;
    if (RealIsValid(&value)) {
        xMin = std::min(xMin, value);
        xMax = std::max(xMax, value);
    }
}

void CGeneralChart::SetY(int point, double value) {
    const int at = maxPoints + point;
    if (!m_allocated || point < 0 || at >= 2 * BlockPoints() || currentSeries >= seriesCount)
        return;
    seriesData[currentSeries][at] = value;
    if (RealIsValid(&value)) {
        yMin = std::min(yMin, value);
        yMax = std::max(yMax, value);
    }
}

void CGeneralChart::CopySeries(short series, const double* values, int count) {
    if (!m_allocated || series < 0 || series >= seriesCount || count <= 0)
        return;
    const int fits = std::min(count, 2 * BlockPoints());
    std::memcpy(seriesData[series], values, static_cast<std::size_t>(fits) * sizeof(double));
}

void CGeneralChart::SetSeriesWidth(short series, double value) {
    if (m_allocated && series >= 0 && series < seriesCount)
        seriesWidth[series] = value;
}

int CGeneralChart::DrawHistogram(unsigned char flags) {
    if (!m_allocated || currentSeries >= seriesCount)
        return 0;
    const int s = currentSeries;
    seriesType[s] = 5;
    seriesOption1[s] = 0;
    seriesOption2[s] = 0;
    seriesColor[s] = DefaultColour;
    seriesMode[s] = (flags & 1) != 0 ? 0 : 12;
    pointLabelSwitch = 0;
    pointLabelWidth = 12;
    return Draw(1);
}

int CGeneralChart::DrawPie() {
    if (!m_allocated || currentSeries >= seriesCount)
        return 0;
    info = CChartInfo(3);
    chartFlags = 2;
    const int s = currentSeries;
    seriesType[s] = 10;
    seriesOption1[s] = 1;
    seriesOption2[s] = 0;
    seriesColor[s] = 1;
    pointLabelSwitch = 1;
    return Draw(2);
}

int CGeneralChart::DrawStacked() {
    if (!m_allocated)
        return 0;
    info = CChartInfo(2);
    chartFlags = 0;
    for (short s = 0; s < seriesCount; ++s) {
        seriesType[s] = 5;
        seriesOption1[s] = 0;
        seriesOption2[s] = 0;
        seriesColor[s] = StackColours[s % std::size(StackColours)];
    }
    if (seriesCount > 0)
        seriesColor[seriesCount - 1] = DefaultColour;
    pointLabelSwitch = 0;
    return Draw(2);
}

int CGeneralChart::Draw(int mode) {
    if (mode == 1) {
        chartFlags |= 128;
        std::fill(std::begin(axisStyle), std::end(axisStyle), 8);
    } else {
        axisStyle[0] = 8;
        axisStyle[1] = 0;
        axisStyle[2] = 0;
    }
    // A range that was never set is empty: nothing to show, and nothing to say about it.
    if (xMin > xMax || yMin > yMax) {
        Release();
        return 1;
    }
    if (maxPoints < 1) {
        m_host.dsplst(0, "Nothing to plot....");
        Release();
        return 1;
    }
    if (std::all_of(std::begin(legendBlock), std::end(legendBlock), [](char c) { return c == 0; }))
        legendWidth = 0;
    const int made = m_host.NewGeneralMultipleChartLongEx(
        info, chartFlags, seriesCount, seriesData, pointCounts, seriesType, seriesOption1,
        seriesOption2, seriesColor, mode == 1 ? seriesNames : nullptr, seriesWidth, titleBlock,
        titleStride, TitleLines, xTitle, xTitleLength, 1, yTitle, yTitleLength, 1, yMin, yMax,
        yStep, xMin, xMax, xStep, xLabelText, xLabelWidth, xLabelValues, xLabelCount, yLabelText,
        yLabelWidth, yLabelValues, yLabelCount, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, -1,
        axisStyle[0], axisOption1[0], axisOption2[0], axisStyle[1], axisOption1[1], axisOption2[1],
        axisStyle[2], axisOption1[2], axisOption2[2], legendBlock, legendWidth, seriesMode,
        pointLabelSwitch, pointLabelWidth, pointLabels);
    Release();
    return made == 0 ? 0 : 1;
}

int32_t AxisTopForCount(double x) {
    if (RealLessEqual(x, 0))
        return 1;
    double p = 1.0;
    if (RealLess(x, 1)) {
        while (RealLess(x, p))
            p *= 0.1;
    } else if (RealGreaterEqual(x, 10)) {
        p = 10.0;
        while (RealGreaterEqual(x, 10 * p))
            p *= 10;
    }
    double top = 10 * p;
    if (RealLess(x, 2 * p))
        top = 2 * p;
    else if (RealLess(x, 5 * p))
        top = 5 * p;
    return static_cast<int32_t>(std::floor(top));
}

void ApplyCountAxis(CGeneralChart& chart, double greatest) {
    const int32_t top = AxisTopForCount(greatest);
    chart.yMin = 0.0;
    chart.yMax = top;
    if (top <= 5) {
        const short labels = top <= 2 ? 3 : 6;
        chart.AllocYLabels(labels, LabelTextWidth);
        for (short k = 0; k < labels; ++k)
            chart.SetYLabel(k, k, FormatText("%d", k));
        chart.yStep = 1.0;
        return;
    }
    chart.AllocYLabels(11, LabelTextWidth);
    for (short k = 0; k <= 10; ++k) {
        const int32_t at = k * (top / 10);
        chart.SetYLabel(k, at, FormatText("%d", at));
    }
    chart.yStep = top / 10.0;
}
