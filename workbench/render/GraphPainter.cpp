#include "workbench/render/GraphPainter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <utility>

#include <QFont>
#include <QFontMetricsF>
#include <QStringList>

#include "workbench/documents/CellText.h"
#include "workbench/text/NeatScale.h"

namespace wb {

namespace {

constexpr double Margin = 20;
constexpr double Pi = 3.14159265358979323846;
constexpr const char* FontFamily = "DejaVu Sans";
const QColor Ink(0x22, 0x22, 0x22);
const QColor Muted(0x55, 0x55, 0x55);
const QColor Grid(0xE3, 0xE3, 0xE3);
const QColor Frame(0x88, 0x88, 0x88);

QFont font(int pixels, bool bold = false) {
    QFont f(QString::fromLatin1(FontFamily));
    f.setStyleHint(QFont::SansSerif);
    f.setPixelSize(pixels);
    f.setBold(bold);
    return f;
}

QString qs(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The module's colour numbers: a palette of sixteen colours that tell apart on paper.
QColor paletteColour(int number) {
    static const QRgb Colours[16] = {
        0x3A3A3A, 0xA0CBE8, 0xF28E2B, 0xE15759, 0x76B7B2, 0x59A14F, 0xEDC948, 0xB07AA1,
        0xFF9DA7, 0x9C755F, 0xBAB0AC, 0x8CD17D, 0x4E79A7, 0xD37295, 0x79706E, 0xD4A6C8,
    };
    return QColor(Colours[((number % 16) + 16) % 16]);
}

// Slices and 3D rows take these in turn.
QColor sequenceColour(std::size_t index) {
    static const int Sequence[] = {12, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 15, 1, 10};
    return paletteColour(Sequence[index % std::size(Sequence)]);
}

// Black or white, whichever reads on `fill`.
QColor textOn(const QColor& fill) {
    return fill.lightnessF() > 0.6 ? Ink : QColor(Qt::white);
}

// How far above the tallest bar a count axis may run before the picture fits it.
constexpr double FittedHeadroom = 1.25;

bool axisSet(const GraphAxis& axis) {
    return std::isfinite(axis.min) && std::isfinite(axis.max) && axis.min < axis.max;
}

// One decimal always, so that shares line up in a column.
std::string percentText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return std::string(text) + " %";
}

// A tick label: the value on the step's grid, without the noise of repeated addition.
std::string tickText(double value, double step) {
    if (std::fabs(value) < std::fabs(step) * 1e-9)
        value = 0;
    return numberText(value, ColumnFormat::Real);
}

// Maps the data range [d0, d1] onto the pixels [p0, p1].
struct Linear {
    double d0, d1, p0, p1;
    double operator()(double v) const {
        return d1 == d0 ? (p0 + p1) / 2 : p0 + (v - d0) * (p1 - p0) / (d1 - d0);
    }
};

// The axis's own labels, or ticks at its step, or neat ticks over [lo, hi].
std::vector<AxisLabel> axisTicks(const GraphAxis& axis, double lo, double hi, int wanted) {
    if (!axis.labels.empty())
        return axis.labels;
    double step = axis.step;
    if (!(step > 0) || !std::isfinite(step) || (hi - lo) / step > 50)
        step = neatScale(lo, hi, wanted).step;
    std::vector<AxisLabel> ticks;
    const double first = std::ceil(lo / step - 1e-9);
    for (int k = 0; k < 100; ++k) {
        const double at = (first + k) * step;
        if (at > hi + step * 1e-9)
            break;
        ticks.push_back({at, tickText(at, step)});
    }
    return ticks;
}

// Where text starts so that `at` is its anchor under `align`.
void drawText(QPainter& painter, QPointF at, const QString& text, Qt::Alignment align) {
    const QFontMetricsF metrics(painter.font());
    double x = at.x(), y = at.y();
    const double width = metrics.horizontalAdvance(text);
    if (align & Qt::AlignHCenter)
        x -= width / 2;
    else if (align & Qt::AlignRight)
        x -= width;
    if (align & Qt::AlignTop)
        y += metrics.ascent();
    else if (align & Qt::AlignVCenter)
        y += (metrics.ascent() - metrics.descent()) / 2;
    else if (align & Qt::AlignBottom)
        y -= metrics.descent();
    painter.drawText(QPointF(x, y), text);
}

// `text` broken at blanks into lines no wider than `width`; a word too wide is shortened.
QStringList wrapped(const QString& text, const QFontMetricsF& metrics, double width) {
    QStringList lines;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString candidate = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (metrics.horizontalAdvance(candidate) <= width || line.isEmpty()) {
            line = candidate;
            continue;
        }
        lines << line;
        line = word;
    }
    if (!line.isEmpty() || lines.isEmpty())
        lines << line;
    for (QString& one : lines)
        one = metrics.elidedText(one, Qt::ElideRight, width);
    return lines;
}

QPolygonF rectOutline(const QRectF& rect) {
    return QPolygonF(rect);
}

// The x axis's label at `x`, or empty.
std::string labelAt(const GraphAxis& axis, double x) {
    for (const AxisLabel& label : axis.labels)
        if (std::fabs(label.at - x) < 1e-9)
            return label.text;
    return {};
}

// Labels under an axis, horizontal when they fit side by side, else turned by 45 degrees
// and shortened to a reasonable length.
struct AxisLabelLayout {
    bool turned = false;
    std::vector<QString> texts;
    double height = 0; // room they take under the axis

    static constexpr double MaxTurned = 150;

    AxisLabelLayout(const std::vector<QString>& full, const QFontMetricsF& metrics, double spacing) {
        double widest = 0;
        for (const QString& text : full)
            widest = std::max(widest, metrics.horizontalAdvance(text));
        turned = widest > spacing - 6;
        texts = full;
        if (!turned) {
            height = metrics.height() + 8;
            return;
        }
        widest = 0;
        for (QString& text : texts) {
            text = metrics.elidedText(text, Qt::ElideRight, MaxTurned);
            widest = std::max(widest, metrics.horizontalAdvance(text));
        }
        height = (widest + metrics.height()) * std::sqrt(0.5) + 10;
    }

    // Draws label k with its anchor (the tick) at `at`, the top of the label area.
    void draw(QPainter& painter, std::size_t k, QPointF at) const {
        if (!turned) {
            drawText(painter, at + QPointF(0, 5), texts[k], Qt::AlignHCenter | Qt::AlignTop);
            return;
        }
        const QFontMetricsF metrics(painter.font());
        painter.save();
        painter.translate(at + QPointF(0, 6));
        painter.rotate(-45);
        painter.drawText(QPointF(-metrics.horizontalAdvance(texts[k]), metrics.ascent() / 2),
                         texts[k]);
        painter.restore();
    }
};

void drawRotatedTitle(QPainter& painter, QPointF centre, const QString& text) {
    painter.save();
    painter.translate(centre);
    painter.rotate(-90);
    drawText(painter, QPointF(0, 0), text, Qt::AlignHCenter | Qt::AlignVCenter);
    painter.restore();
}

double widestText(const std::vector<AxisLabel>& labels, const QFontMetricsF& metrics) {
    double widest = 0;
    for (const AxisLabel& label : labels)
        widest = std::max(widest, metrics.horizontalAdvance(qs(label.text)));
    return widest;
}

} // namespace

void GraphPainter::addHotspot(const QPolygonF& outline, std::string text) {
    m_hotspots.push_back({outline, std::move(text)});
}

void GraphPainter::addHotspot(const QRectF& area, std::string text) {
    addHotspot(rectOutline(area), std::move(text));
}

void GraphPainter::paint() {
    m_painter.setRenderHint(QPainter::Antialiasing, true);
    m_painter.setRenderHint(QPainter::TextAntialiasing, true);
    m_painter.fillRect(QRectF(QPointF(0, 0), m_size), Qt::white);
    const QRectF area = drawTitles();
    switch (m_graph.type) {
    case GraphType::Histogram:
    case GraphType::Stacked:
        drawBars(area);
        break;
    case GraphType::Pie:
        drawPie(area);
        break;
    case GraphType::BoxPlot:
        drawBoxes(area);
        break;
    case GraphType::ScatterMatrix:
        drawScatter(area);
        break;
    case GraphType::Histogram3D:
        drawHistogram3D(area);
        break;
    }
}

QRectF GraphPainter::drawTitles() {
    const double width = m_size.width() - 2 * Margin;
    double y = Margin;
    for (std::size_t k = 0; k < m_graph.titles.size(); ++k) {
        const bool first = k == 0;
        m_painter.setFont(font(first ? 19 : 13, first));
        m_painter.setPen(first ? Ink : Muted);
        const QFontMetricsF metrics(m_painter.font());
        for (const QString& line : wrapped(qs(m_graph.titles[k]), metrics, width)) {
            drawText(m_painter, QPointF(m_size.width() / 2, y), line,
                     Qt::AlignHCenter | Qt::AlignTop);
            y += metrics.lineSpacing();
        }
        if (first)
            y += 4;
    }
    y += 12;
    return QRectF(Margin, y, width, m_size.height() - y - Margin);
}

void GraphPainter::drawMessage(const QRectF& area, const QString& text) {
    m_painter.setFont(font(14));
    m_painter.setPen(Muted);
    drawText(m_painter, area.center(), text, Qt::AlignCenter);
}

// Over each bar of a histogram after a drill step, a dashed outline of the count the bar
// would have if the subset kept the shares of the level above, and a legend that says so.
void GraphPainter::drawLevelAbove(const QRectF& plot) {
    if (m_graph.series.empty() || !m_dataToPicture ||
        m_graph.levelAbove.size() != m_graph.series.front().x.size())
        return;
    const GraphSeries& bars = m_graph.series.front();
    const QTransform& toPicture = *m_dataToPicture;
    m_painter.setPen(QPen(Ink, 1.4, Qt::DashLine));
    m_painter.setBrush(Qt::NoBrush);
    for (std::size_t i = 0; i < bars.x.size(); ++i)
        if (std::isfinite(bars.x[i]) && std::isfinite(m_graph.levelAbove[i]))
            m_painter.drawRect(
                QRectF(toPicture.map(QPointF(bars.x[i] - bars.barWidth / 2, m_graph.levelAbove[i])),
                       toPicture.map(QPointF(bars.x[i] + bars.barWidth / 2, 0)))
                    .normalized());
    m_painter.setPen(Ink);
    m_painter.setFont(font(11));
    drawText(m_painter, plot.topRight() + QPointF(-6, 4),
             QStringLiteral("pointillés : effectif au prorata du niveau précédent"),
             Qt::AlignRight | Qt::AlignTop);
}

void GraphPainter::drawBars(const QRectF& area) {
    const bool stacked = m_graph.type == GraphType::Stacked;

    // The ranges: those of the request, else the data's.
    double xMin = INFINITY, xMax = -INFINITY, yMax = 0;
    for (const GraphSeries& series : m_graph.series)
        for (std::size_t i = 0; i < series.x.size(); ++i) {
            if (!std::isfinite(series.x[i]) || !std::isfinite(series.y[i]))
                continue;
            xMin = std::min(xMin, series.x[i]);
            xMax = std::max(xMax, series.x[i]);
            yMax = std::max(yMax, series.y[i]);
        }
    for (const double count : m_graph.levelAbove) // the outlines fit the axis too
        if (std::isfinite(count))
            yMax = std::max(yMax, count);
    if (!std::isfinite(xMin)) {
        drawMessage(area, QStringLiteral("—"));
        return;
    }
    double xLo = xMin - 1, xHi = xMax + 1;
    if (axisSet(m_graph.xAxis)) {
        xLo = m_graph.xAxis.min;
        xHi = m_graph.xAxis.max;
    }
    double yLo = 0, yHi = yMax;
    if (axisSet(m_graph.yAxis)) {
        yLo = m_graph.yAxis.min;
        yHi = m_graph.yAxis.max;
    } else {
        for (const AxisLabel& label : m_graph.yAxis.labels) {
            yLo = std::min(yLo, label.at);
            yHi = std::max(yHi, label.at);
        }
        if (!(yHi > yLo))
            yHi = yLo + 1;
    }
    // The module tops a count axis with the neat number above the tallest bar, which can
    // leave half the picture empty (500 for 271): the picture fits the axis to the bars,
    // with neat ticks of its own. The document keeps the module's axis.
    GraphAxis countAxis = m_graph.yAxis;
    if (m_graph.type == GraphType::Histogram && yMax > 0 && yLo == 0 && yHi > FittedHeadroom * yMax) {
        const double step = neatScale(0, yMax, 5).step;
        yHi = std::ceil(yMax * 1.05 / step) * step;
        countAxis.labels.clear();
        countAxis.step = step;
    }
    const std::vector<AxisLabel> yTicks = axisTicks(countAxis, yLo, yHi, 5);

    const QFont tickFont = font(12);
    const QFontMetricsF tickMetrics(tickFont);
    const double left = area.left() + (m_graph.yTitle.empty() ? 0 : 26) +
                        widestText(yTicks, tickMetrics) + 10;
    const double right = area.right() - 10;
    const double top = area.top() + 8;
    const Linear xMap{xLo, xHi, left, right};

    // Category labels under the axis, at the positions the request gives.
    std::vector<AxisLabel> xLabels = m_graph.xAxis.labels;
    std::sort(xLabels.begin(), xLabels.end(),
              [](const AxisLabel& a, const AxisLabel& b) { return a.at < b.at; });
    double spacing = right - left;
    for (std::size_t k = 1; k < xLabels.size(); ++k)
        spacing = std::min(spacing, std::fabs(xMap(xLabels[k].at) - xMap(xLabels[k - 1].at)));
    std::vector<QString> fullTexts;
    for (const AxisLabel& label : xLabels)
        fullTexts.push_back(qs(label.text));
    const AxisLabelLayout labelLayout(fullTexts, tickMetrics, spacing);

    const double bottom =
        area.bottom() - labelLayout.height - (m_graph.xTitle.empty() ? 0 : 26);
    const Linear yMap{yLo, yHi, bottom, top};
    const QRectF plot(QPointF(left, top), QPointF(right, bottom));
    // Both maps are affine: x' = xMap(0) + x (xMap(1) - xMap(0)), the same for y.
    m_dataToPicture = QTransform(xMap(1) - xMap(0), 0, 0, yMap(1) - yMap(0), xMap(0), yMap(0));

    // Grid and count axis.
    m_painter.setFont(tickFont);
    for (const AxisLabel& tick : yTicks) {
        if (tick.at < yLo - 1e-9 * (yHi - yLo) || tick.at > yHi + 1e-9 * (yHi - yLo))
            continue;
        const double y = yMap(tick.at);
        m_painter.setPen(QPen(Grid, 1));
        m_painter.drawLine(QPointF(left, y), QPointF(right, y));
        m_painter.setPen(Ink);
        drawText(m_painter, QPointF(left - 6, y), qs(tick.text), Qt::AlignRight | Qt::AlignVCenter);
    }

    // Bars, clipped to the plot: later series are drawn over earlier ones.
    const double base = yMap(std::clamp(0.0, yLo, yHi));
    m_painter.save();
    m_painter.setClipRect(plot.adjusted(0, -1, 0, 1));
    for (const GraphSeries& series : m_graph.series) {
        const QColor colour = paletteColour(series.colour);
        m_painter.setPen(QPen(colour.darker(140), 0.8));
        m_painter.setBrush(colour);
        for (std::size_t i = 0; i < series.x.size(); ++i) {
            const double x = series.x[i], y = series.y[i];
            if (!std::isfinite(x) || !std::isfinite(y) || (stacked && x == 0))
                continue;
            const QRectF bar(QPointF(xMap(x - series.barWidth / 2), yMap(y)),
                             QPointF(xMap(x + series.barWidth / 2), base));
            m_painter.drawRect(bar.normalized());
        }
    }
    m_painter.restore();
    drawLevelAbove(plot);

    m_painter.setFont(font(11));
    const QFontMetricsF valueMetrics(m_painter.font());
    if (!stacked) {
        // Each bar's value above it when there is room, and its tooltip.
        for (const GraphSeries& series : m_graph.series) {
            for (std::size_t i = 0; i < series.x.size(); ++i) {
                const double x = series.x[i], y = series.y[i];
                if (!std::isfinite(x) || !std::isfinite(y))
                    continue;
                const QRectF bar = QRectF(QPointF(xMap(x - series.barWidth / 2), yMap(y)),
                                          QPointF(xMap(x + series.barWidth / 2), base))
                                       .normalized()
                                       .intersected(plot);
                std::string label = labelAt(m_graph.xAxis, x);
                if (label.empty() && i < series.labels.size())
                    label = series.labels[i];
                const std::string value = shortNumber(y);
                addHotspot(bar.isEmpty() ? QRectF(bar.left(), base - 2, bar.width(), 4) : bar,
                           (label.empty() ? shortNumber(x) : label) + " : " + value);
                const QString text = qs(value);
                // Above the bar, and above its outline of the level above when it has one.
                double above = bar.top();
                if (&series == &m_graph.series.front() && i < m_graph.levelAbove.size() &&
                    std::isfinite(m_graph.levelAbove[i]))
                    above = std::min(above, yMap(m_graph.levelAbove[i]));
                if (valueMetrics.horizontalAdvance(text) <= bar.width() + 4 && y > 0 &&
                    above - valueMetrics.height() >= top - 4) {
                    m_painter.setPen(Muted);
                    drawText(m_painter, QPointF(bar.center().x(), above - 3), text,
                             Qt::AlignHCenter | Qt::AlignBottom);
                }
            }
        }
    } else {
        // The bands of each bar: series s shows between its edge and the next series' edge.
        std::map<double, std::vector<std::pair<double, int>>> edges; // x -> (edge, colour)
        for (const GraphSeries& series : m_graph.series)
            for (std::size_t i = 0; i < series.x.size(); ++i)
                if (std::isfinite(series.x[i]) && std::isfinite(series.y[i]) && series.x[i] != 0)
                    edges[series.x[i]].push_back({series.y[i], series.colour});
        const double width = m_graph.series.empty() ? 0.9 : m_graph.series.front().barWidth;
        struct Band {
            double upper, lower;
            int colour;
        };
        for (const auto& [x, stackEdges] : edges) {
            const std::string variable = labelAt(m_graph.xAxis, x);
            std::vector<Band> bands; // the bands that show, top first
            for (std::size_t s = 0; s < stackEdges.size(); ++s) {
                const double lower = s + 1 < stackEdges.size() ? stackEdges[s + 1].first : 0.0;
                if (stackEdges[s].first - lower > 1e-9)
                    bands.push_back({stackEdges[s].first, lower, stackEdges[s].second});
            }
            for (std::size_t b = 0; b < bands.size(); ++b) {
                const double share = bands[b].upper - bands[b].lower;
                const QRectF band = QRectF(QPointF(xMap(x - width / 2), yMap(bands[b].upper)),
                                           QPointF(xMap(x + width / 2), yMap(bands[b].lower)))
                                        .normalized()
                                        .intersected(plot);
                // Bands count from the bottom of the stack, as a reader counts them.
                const std::string place = "bande " + std::to_string(bands.size() - b) + " sur " +
                                          std::to_string(bands.size());
                addHotspot(band, variable + " — " + place + " : " + percentText(share));
                const QString text = qs(percentText(share));
                if (band.height() >= valueMetrics.height() + 2 &&
                    band.width() >= valueMetrics.horizontalAdvance(text) + 4) {
                    m_painter.setPen(textOn(paletteColour(bands[b].colour)));
                    drawText(m_painter, band.center(), text, Qt::AlignCenter);
                }
            }
        }
    }

    // Axes.
    m_painter.setPen(QPen(Ink, 1));
    m_painter.drawLine(QPointF(left, top), QPointF(left, bottom));
    m_painter.drawLine(QPointF(left, bottom), QPointF(right, bottom));

    m_painter.setFont(tickFont);
    m_painter.setPen(Ink);
    for (std::size_t k = 0; k < xLabels.size(); ++k) {
        const double x = xMap(xLabels[k].at);
        if (x < left - 1 || x > right + 1)
            continue;
        m_painter.drawLine(QPointF(x, bottom), QPointF(x, bottom + 4));
        labelLayout.draw(m_painter, k, QPointF(x, bottom));
    }

    m_painter.setFont(font(13, true));
    if (!m_graph.xTitle.empty())
        drawText(m_painter, QPointF((left + right) / 2, area.bottom()), qs(m_graph.xTitle),
                 Qt::AlignHCenter | Qt::AlignBottom);
    if (!m_graph.yTitle.empty())
        drawRotatedTitle(m_painter, QPointF(area.left() + 9, (top + bottom) / 2),
                         qs(m_graph.yTitle));
}

void GraphPainter::drawPie(const QRectF& area) {
    struct Slice {
        std::string label;
        double value;
    };
    std::vector<Slice> slices;
    double total = 0;
    if (!m_graph.series.empty()) {
        const GraphSeries& series = m_graph.series.front();
        for (std::size_t i = 0; i < series.y.size(); ++i) {
            const double y = series.y[i];
            if (!std::isfinite(y) || !(y > 0))
                continue;
            std::string label = i < series.labels.size() ? series.labels[i] : std::string();
            if (label.empty())
                label = labelAt(m_graph.xAxis, series.x[i]);
            if (label.empty())
                label = shortNumber(series.x[i]);
            slices.push_back({label, y});
            total += y;
        }
    }

    const QFont legendFont = font(13);
    const QFontMetricsF legendMetrics(legendFont);
    // The legend is a small table: label, count, share.
    std::vector<QString> labels, countTexts, shareTexts;
    double labelWidth = 0, countWidth = 0, shareWidth = 0;
    for (const Slice& slice : slices) {
        labels.push_back(qs(slice.label));
        countTexts.push_back(qs(shortNumber(slice.value)));
        shareTexts.push_back(qs(percentText(100 * slice.value / total)));
        labelWidth = std::max(labelWidth, legendMetrics.horizontalAdvance(labels.back()));
        countWidth = std::max(countWidth, legendMetrics.horizontalAdvance(countTexts.back()));
        shareWidth = std::max(shareWidth, legendMetrics.horizontalAdvance(shareTexts.back()));
    }
    const double widest = 18 + labelWidth + 14 + countWidth + 12 + shareWidth;
    const double legendWidth = std::min(area.width() * 0.45, widest);
    const double captionHeight = m_graph.xTitle.empty() ? 0 : 28;
    const double diameter =
        std::max(40.0, std::min(area.height() - captionHeight - 24, area.width() - legendWidth - 60));
    const QPointF centre(area.left() + (area.width() - legendWidth - 30) / 2,
                         area.top() + (area.height() - captionHeight) / 2);
    const QRectF circle(centre.x() - diameter / 2, centre.y() - diameter / 2, diameter, diameter);
    const double radius = diameter / 2;

    if (slices.empty()) {
        m_painter.setPen(QPen(Frame, 1));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawEllipse(circle);
    }

    // Clockwise from the top; each slice starts where the sum before it ends, so rounding
    // leaves no gap.
    double before = 0;
    m_painter.setFont(font(12, true));
    const QFontMetricsF shareMetrics(m_painter.font());
    for (std::size_t k = 0; k < slices.size(); ++k) {
        const double startDegrees = 90 - 360 * before / total;
        const double spanDegrees = -360 * slices[k].value / total;
        before += slices[k].value;
        const QColor colour = sequenceColour(k);
        m_painter.setPen(QPen(Qt::white, 1.2));
        m_painter.setBrush(colour);
        if (slices.size() == 1)
            m_painter.drawEllipse(circle);
        else
            m_painter.drawPie(circle, static_cast<int>(std::lround(startDegrees * 16)),
                              static_cast<int>(std::lround(spanDegrees * 16)));

        QPolygonF outline;
        outline << centre;
        const int steps = std::max(2, static_cast<int>(std::fabs(spanDegrees) / 6));
        for (int step = 0; step <= steps; ++step) {
            const double angle = (startDegrees + spanDegrees * step / steps) * Pi / 180;
            outline << centre + QPointF(radius * std::cos(angle), -radius * std::sin(angle));
        }
        const double share = 100 * slices[k].value / total;
        addHotspot(outline, slices[k].label + " : " + shortNumber(slices[k].value) + " (" +
                                percentText(share) + ")");
        if (std::fabs(spanDegrees) >= 20) {
            const double middle = (startDegrees + spanDegrees / 2) * Pi / 180;
            const QPointF at =
                centre + QPointF(0.64 * radius * std::cos(middle), -0.64 * radius * std::sin(middle));
            m_painter.setPen(textOn(colour));
            drawText(m_painter, at, qs(percentText(share)), Qt::AlignCenter);
        }
    }

    // The legend: swatch, label, count and share, as many rows as fit.
    m_painter.setFont(legendFont);
    const double row = legendMetrics.height() + 6;
    const double legendLeft = area.right() - legendWidth;
    const double shareRight = area.right();
    const double countRight = shareRight - shareWidth - 12;
    const double labelRoom = std::max(20.0, countRight - countWidth - 14 - (legendLeft + 18));
    const auto rows = static_cast<std::size_t>(std::max(1.0, std::floor(area.height() / row)));
    double y = area.top() + std::max(0.0, (area.height() - row * std::min(rows, slices.size())) / 2);
    for (std::size_t k = 0; k < slices.size() && k < rows; ++k, y += row) {
        const QRectF swatch(legendLeft, y + (row - 12) / 2, 12, 12);
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(sequenceColour(k));
        m_painter.drawRect(swatch);
        m_painter.setPen(Ink);
        const double middle = y + row / 2;
        if (k + 1 == rows && slices.size() > rows) {
            drawText(m_painter, QPointF(legendLeft + 18, middle),
                     QStringLiteral("… +%1").arg(slices.size() - k), Qt::AlignLeft | Qt::AlignVCenter);
            break;
        }
        drawText(m_painter, QPointF(legendLeft + 18, middle),
                 legendMetrics.elidedText(labels[k], Qt::ElideRight, labelRoom),
                 Qt::AlignLeft | Qt::AlignVCenter);
        drawText(m_painter, QPointF(countRight, middle), countTexts[k], Qt::AlignRight | Qt::AlignVCenter);
        drawText(m_painter, QPointF(shareRight, middle), shareTexts[k], Qt::AlignRight | Qt::AlignVCenter);
    }

    if (!m_graph.xTitle.empty()) {
        m_painter.setFont(font(13, true));
        m_painter.setPen(Ink);
        drawText(m_painter, QPointF(centre.x(), area.bottom()), qs(m_graph.xTitle),
                 Qt::AlignHCenter | Qt::AlignBottom);
    }
}

void GraphPainter::drawBoxes(const QRectF& whole) {
    if (!m_graph.boxes || m_graph.boxes->variables.empty()) {
        drawMessage(whole, QStringLiteral("—"));
        return;
    }
    const BoxPlots& boxes = *m_graph.boxes;
    const QString style = qs(std::string(boxStyleText(boxes.style)));
    const QStringList parts = style.split(QLatin1Char('/'));

    // What the centre, box and whiskers are, in words, where every reader sees it.
    m_painter.setFont(font(13, true));
    m_painter.setPen(Ink);
    drawText(m_painter, QPointF(whole.center().x(), whole.top()), qs(std::string(boxStyleLegend(boxes.style))),
             Qt::AlignHCenter | Qt::AlignTop);
    const QRectF area = whole.adjusted(0, 28, 0, 0);

    const double panelWidth = area.width() / static_cast<double>(boxes.variables.size());
    const QFont tickFont = font(11);
    const QFontMetricsF tickMetrics(tickFont);
    const QFont nameFont = font(13, true);
    const QFontMetricsF nameMetrics(nameFont);
    const double footer = nameMetrics.height() + tickMetrics.height() + 14;

    for (std::size_t k = 0; k < boxes.variables.size(); ++k) {
        const BoxSummary& box = boxes.variables[k];
        const QRectF panel(area.left() + k * panelWidth, area.top(), panelWidth, area.height());
        const double bottom = panel.bottom() - footer;
        const double top = panel.top() + 8;

        m_painter.setFont(nameFont);
        m_painter.setPen(Ink);
        drawText(m_painter, QPointF(panel.center().x(), bottom + 10),
                 nameMetrics.elidedText(qs(box.name), Qt::ElideRight, panelWidth - 8),
                 Qt::AlignHCenter | Qt::AlignTop);
        m_painter.setFont(tickFont);
        m_painter.setPen(Muted);
        std::string count = "n = " + std::to_string(box.cases);
        if (std::fabs(box.weight - box.cases) > 1e-9 && box.cases > 0)
            count += ", Σw = " + shortNumber(box.weight);
        drawText(m_painter, QPointF(panel.center().x(), bottom + 12 + nameMetrics.height()),
                 qs(count), Qt::AlignHCenter | Qt::AlignTop);
        if (box.cases == 0 || !std::isfinite(box.centre))
            continue;

        // The panel's own scale covers whiskers and box with a little room.
        double lo = std::min({box.whiskerLow, box.boxLow, box.centre});
        double hi = std::max({box.whiskerHigh, box.boxHigh, box.centre});
        if (!(hi > lo)) {
            const double pad = lo == 0 ? 1 : std::fabs(lo) * 0.1;
            lo -= pad;
            hi += pad;
        }
        const double pad = (hi - lo) * 0.06;
        const Scale scale = neatScale(lo - pad, hi + pad, 5);
        const double yLo = lo - pad, yHi = hi + pad;
        const Linear yMap{yLo, yHi, bottom, top};
        GraphAxis none;
        none.step = scale.step;
        const std::vector<AxisLabel> ticks = axisTicks(none, yLo, yHi, 5);
        const double axisX = panel.left() + widestText(ticks, tickMetrics) + 12;
        m_painter.setFont(tickFont);
        for (const AxisLabel& tick : ticks) {
            const double y = yMap(tick.at);
            m_painter.setPen(QPen(Grid, 1));
            m_painter.drawLine(QPointF(axisX, y), QPointF(panel.right() - 6, y));
            m_painter.setPen(Ink);
            drawText(m_painter, QPointF(axisX - 4, y), qs(tick.text), Qt::AlignRight | Qt::AlignVCenter);
        }
        m_painter.setPen(QPen(Frame, 1));
        m_painter.drawLine(QPointF(axisX, top), QPointF(axisX, bottom));

        const double middle = (axisX + panel.right() - 6) / 2;
        const double halfBox = std::min(34.0, (panel.right() - 6 - axisX) * 0.25);
        const QColor fill = paletteColour(1);
        m_painter.setPen(QPen(Ink, 1.2));
        m_painter.drawLine(QPointF(middle, yMap(box.whiskerLow)), QPointF(middle, yMap(box.whiskerHigh)));
        for (double whisker : {box.whiskerLow, box.whiskerHigh})
            m_painter.drawLine(QPointF(middle - halfBox / 2, yMap(whisker)),
                               QPointF(middle + halfBox / 2, yMap(whisker)));
        const QRectF boxRect = QRectF(QPointF(middle - halfBox, yMap(box.boxHigh)),
                                      QPointF(middle + halfBox, yMap(box.boxLow)))
                                   .normalized();
        m_painter.setBrush(fill);
        m_painter.drawRect(boxRect);
        m_painter.setPen(QPen(paletteColour(12).darker(150), 2.5));
        m_painter.drawLine(QPointF(middle - halfBox, yMap(box.centre)),
                           QPointF(middle + halfBox, yMap(box.centre)));
        if (boxes.style != BoxStyle::MedianQuartilesRange) {
            const QPointF c(middle, yMap(box.centre));
            QPolygonF diamond;
            diamond << c + QPointF(0, -5) << c + QPointF(5, 0) << c + QPointF(0, 5) << c + QPointF(-5, 0);
            m_painter.setPen(QPen(Ink, 1));
            m_painter.setBrush(Qt::white);
            m_painter.drawPolygon(diamond);
        }

        std::string text = box.name + (box.longName.empty() ? "" : ": " + box.longName);
        const auto part = [&](int index) {
            return index < parts.size() ? parts[index].toStdString() : std::string();
        };
        text += "\n" + part(0) + " : " + shortNumber(box.centre);
        text += "\n" + part(1) + " : " + shortNumber(box.boxLow) + " – " + shortNumber(box.boxHigh);
        text += "\n" + part(2) + " : " + shortNumber(box.whiskerLow) + " – " +
                shortNumber(box.whiskerHigh);
        text += "\n" + count;
        addHotspot(QRectF(QPointF(middle - halfBox, yMap(box.whiskerHigh)),
                          QPointF(middle + halfBox, yMap(box.whiskerLow)))
                       .normalized(),
                   text);
    }
}

void GraphPainter::drawScatter(const QRectF& area) {
    if (!m_graph.scatter || m_graph.scatter->columns.empty()) {
        drawMessage(area, QStringLiteral("—"));
        return;
    }
    const ScatterMatrix& matrix = *m_graph.scatter;
    const auto columns = static_cast<double>(matrix.columns.size());
    const auto rows = static_cast<double>(matrix.rows.size());
    const double gap = 6;
    // A first guess of the cell size chooses the font; the ticks of the outer panels then
    // take their room on the left and at the bottom.
    const double roughCell = std::min(area.width() / columns, area.height() / rows);
    const QFont smallFont = font(roughCell < 120 ? 9 : 11);
    const QFontMetricsF smallMetrics(smallFont);
    const double badgeHeight = smallMetrics.height() + 2;
    constexpr int WantedTicks = 4;
    const auto ticksOf = [&](const GraphVariable& v) {
        return std::isfinite(v.min) && std::isfinite(v.max)
                   ? axisTicks(GraphAxis{}, v.min, v.max, WantedTicks)
                   : std::vector<AxisLabel>();
    };
    double tickWidth = 0;
    for (const GraphVariable& v : matrix.rows)
        tickWidth = std::max(tickWidth, widestText(ticksOf(v), smallMetrics));
    const QRectF panels = area.adjusted(tickWidth + 8, 0, 0, -(smallMetrics.height() + 8));
    const double cell = std::min((panels.width() - gap * (columns - 1)) / columns,
                                 (panels.height() - gap * (rows - 1)) / rows);
    const QPointF origin(panels.left() + (panels.width() - cell * columns - gap * (columns - 1)) / 2,
                         panels.top());
    const auto cellRect = [&](std::size_t row, std::size_t column) {
        return QRectF(origin.x() + column * (cell + gap), origin.y() + row * (cell + gap), cell,
                      cell);
    };
    // Points keep a margin from the frame and from the strip above them, and their range a
    // little room, so that no point touches a line.
    const auto innerRect = [&](std::size_t row, std::size_t column) {
        return cellRect(row, column).adjusted(5, badgeHeight + 5, -5, -5);
    };
    const auto padded = [](const GraphVariable& v) {
        const double span = v.max > v.min ? v.max - v.min : 1.0;
        return std::pair{v.min - span * 0.02, v.max + span * 0.02};
    };
    const auto xMapOf = [&](std::size_t column) {
        const auto [lo, hi] = padded(matrix.columns[column]);
        const QRectF inner = innerRect(0, column);
        return Linear{lo, hi, inner.left(), inner.right()};
    };
    const auto yMapOf = [&](std::size_t row) {
        const auto [lo, hi] = padded(matrix.rows[row]);
        const QRectF inner = innerRect(row, 0);
        return Linear{lo, hi, inner.bottom(), inner.top()};
    };

    // Values along the outer panels: each column's below the bottom row, each row's left of
    // the first column.
    m_painter.setFont(smallFont);
    const double frameBottom = cellRect(matrix.rows.size() - 1, 0).bottom();
    const double frameLeft = cellRect(0, 0).left();
    for (std::size_t column = 0; column < matrix.columns.size(); ++column) {
        const Linear xMap = xMapOf(column);
        for (const AxisLabel& tick : ticksOf(matrix.columns[column])) {
            m_painter.setPen(QPen(Frame, 1));
            m_painter.drawLine(QPointF(xMap(tick.at), frameBottom),
                               QPointF(xMap(tick.at), frameBottom + 4));
            m_painter.setPen(Muted);
            drawText(m_painter, QPointF(xMap(tick.at), frameBottom + 5), qs(tick.text),
                     Qt::AlignHCenter | Qt::AlignTop);
        }
    }
    for (std::size_t row = 0; row < matrix.rows.size(); ++row) {
        const Linear yMap = yMapOf(row);
        for (const AxisLabel& tick : ticksOf(matrix.rows[row])) {
            m_painter.setPen(QPen(Frame, 1));
            m_painter.drawLine(QPointF(frameLeft - 4, yMap(tick.at)),
                               QPointF(frameLeft, yMap(tick.at)));
            m_painter.setPen(Muted);
            drawText(m_painter, QPointF(frameLeft - 6, yMap(tick.at)), qs(tick.text),
                     Qt::AlignRight | Qt::AlignVCenter);
        }
    }

    std::map<std::pair<int, int>, const ScatterCell*> cells;
    for (const ScatterCell& one : matrix.cells)
        cells[{one.row, one.column}] = &one;

    for (std::size_t row = 0; row < matrix.rows.size(); ++row) {
        for (std::size_t column = 0; column < matrix.columns.size(); ++column) {
            const QRectF rect = cellRect(row, column);
            if (matrix.diagonal && row == column) {
                const GraphVariable& variable = matrix.columns[column];
                m_painter.setPen(QPen(Frame, 1));
                m_painter.setBrush(QColor(0xF3, 0xF3, 0xF3));
                m_painter.drawRect(rect);
                const QFont nameFont = font(cell < 120 ? 11 : 15, true);
                m_painter.setFont(nameFont);
                m_painter.setPen(Ink);
                const QFontMetricsF nameMetrics(nameFont);
                drawText(m_painter, rect.center(),
                         nameMetrics.elidedText(qs(variable.name), Qt::ElideRight, cell - 8),
                         Qt::AlignCenter);
                m_painter.setFont(smallFont);
                m_painter.setPen(Muted);
                if (!variable.longName.empty() && cell >= 120)
                    drawText(m_painter, rect.center() + QPointF(0, nameMetrics.height()),
                             smallMetrics.elidedText(qs(variable.longName), Qt::ElideRight, cell - 8),
                             Qt::AlignCenter);
                if (std::isfinite(variable.min)) {
                    drawText(m_painter, rect.bottomLeft() + QPointF(4, -3),
                             qs(shortNumber(variable.min)), Qt::AlignLeft | Qt::AlignBottom);
                    drawText(m_painter, rect.topRight() + QPointF(-4, 3),
                             qs(shortNumber(variable.max)), Qt::AlignRight | Qt::AlignTop);
                }
                addHotspot(rect, variable.name + (variable.longName.empty() ? "" : ": " + variable.longName) +
                                     " : " + shortNumber(variable.min) + " – " + shortNumber(variable.max));
                continue;
            }
            m_painter.setPen(QPen(Frame, 1));
            m_painter.setBrush(Qt::white);
            m_painter.drawRect(rect);
            const auto found = cells.find({static_cast<int>(row), static_cast<int>(column)});
            if (found == cells.end())
                continue;
            const ScatterCell& one = *found->second;
            const GraphVariable& xVar = matrix.columns[column];
            const GraphVariable& yVar = matrix.rows[row];
            // The correlation and the cases stand in a strip of their own above the points,
            // so that no point hides them; n is the cases used, and those drawn when fewer.
            const std::string r =
                std::isfinite(one.correlation) ? "r = " + shortNumber(std::round(one.correlation * 100) / 100) : "r = —";
            const std::string n = "n = " + std::to_string(one.cases) +
                                  (one.x.size() < static_cast<std::size_t>(one.cases)
                                       ? " (" + std::to_string(one.x.size()) + " dessinés)"
                                       : std::string());
            const QString badgeText = qs(r + "   " + n);
            m_painter.setFont(smallFont);
            const QRectF badge(rect.left() + 1, rect.top() + 1, rect.width() - 2, badgeHeight);
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(QColor(0xF6, 0xF6, 0xF6));
            m_painter.drawRect(badge);
            m_painter.setPen(Ink);
            drawText(m_painter, badge.center(),
                     smallMetrics.elidedText(badgeText, Qt::ElideRight, badge.width() - 4),
                     Qt::AlignCenter);
            const Linear xMap = xMapOf(column);
            const Linear yMap = yMapOf(row);
            const double dot = one.x.size() > 1500 ? 1.1 : one.x.size() > 300 ? 1.5 : 2.2;
            QColor colour = paletteColour(12);
            colour.setAlpha(one.x.size() > 300 ? 110 : 170);
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(colour);
            for (std::size_t i = 0; i < one.x.size(); ++i)
                m_painter.drawEllipse(QPointF(xMap(one.x[i]), yMap(one.y[i])), dot, dot);
            addHotspot(rect, yVar.name + " / " + xVar.name + " : " + n + ", " + r);
        }
    }
}

void GraphPainter::drawHistogram3D(const QRectF& area) {
    if (!m_graph.histogram3d || m_graph.histogram3d->xBins.empty() ||
        m_graph.histogram3d->yBins.empty()) {
        drawMessage(area, QStringLiteral("n = 0"));
        return;
    }
    const Histogram3DData& data = *m_graph.histogram3d;
    const std::size_t nx = data.xBins.size(), ny = data.yBins.size();
    double maxCount = 0;
    for (double count : data.counts)
        maxCount = std::max(maxCount, count);
    const Scale scale = neatScale(0, maxCount > 0 ? maxCount : 1, 5);
    const double zTop = scale.hi;
    GraphAxis none;
    none.step = scale.step;
    const std::vector<AxisLabel> ticks = axisTicks(none, 0, zTop, 5);

    const QFont tickFont = font(11);
    const QFontMetricsF tickMetrics(tickFont);
    std::vector<QString> xTexts, yTexts;
    double yLabelWidth = 0;
    for (const HistogramBin& bin : data.xBins)
        xTexts.push_back(qs(bin.label));
    for (const HistogramBin& bin : data.yBins) {
        yTexts.push_back(tickMetrics.elidedText(qs(bin.label), Qt::ElideRight, 140));
        yLabelWidth = std::max(yLabelWidth, tickMetrics.horizontalAdvance(yTexts.back()));
    }

    // The floor: x across, y receding up and to the right at 30 degrees, deep enough that
    // the rows stand apart and a bar's base can be told from the bars before it.
    const double cos30 = std::sqrt(3.0) / 2, sin30 = 0.5;
    constexpr double DepthShare = 0.8; // the floor's depth for a front edge of 1
    const double left = area.left() + widestText(ticks, tickMetrics) + 12;
    const QFontMetricsF titleMetrics(font(13, true));
    const double room = area.right() - left - yLabelWidth - 16 -
                        (m_graph.yTitle.empty() ? 0 : titleMetrics.height() + 8);
    const double frontWidth = room / (1 + DepthShare * cos30);
    double depth = DepthShare * frontWidth;
    const double cellWidth = frontWidth / nx;
    const AxisLabelLayout xLayout(xTexts, tickMetrics, cellWidth);
    const double bottom = area.bottom() - xLayout.height - (m_graph.xTitle.empty() ? 0 : 24);
    double height = bottom - area.top() - depth * sin30 - 10;
    if (height < 0.45 * (bottom - area.top())) { // keep bars tall enough: a shallower floor
        depth = 0.55 * (bottom - area.top()) / sin30 * 0.5;
        height = bottom - area.top() - depth * sin30 - 10;
    }
    const QPointF depthStep(depth * cos30 / ny, -depth * sin30 / ny);
    const auto at = [&](double i, double j, double z) {
        return QPointF(left + i * cellWidth, bottom) + j * depthStep + QPointF(0, -z / zTop * height);
    };

    // Walls and floor, shaded so that the bars stand on something, with the count grid on
    // the walls and a line between every two bins on the floor.
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(QColor(250, 250, 250));
    m_painter.drawPolygon(QPolygonF() << at(0, 0, 0) << at(0, ny, 0) << at(0, ny, zTop)
                                      << at(0, 0, zTop));
    m_painter.drawPolygon(QPolygonF() << at(0, ny, 0) << at(nx, ny, 0) << at(nx, ny, zTop)
                                      << at(0, ny, zTop));
    m_painter.setBrush(QColor(236, 236, 236));
    m_painter.drawPolygon(QPolygonF() << at(0, 0, 0) << at(nx, 0, 0) << at(nx, ny, 0)
                                      << at(0, ny, 0));
    m_painter.setFont(tickFont);
    m_painter.setBrush(Qt::NoBrush);
    for (const AxisLabel& tick : ticks) {
        m_painter.setPen(QPen(Grid, 1));
        m_painter.drawPolyline(QPolygonF() << at(0, 0, tick.at) << at(0, ny, tick.at)
                                           << at(nx, ny, tick.at));
        m_painter.setPen(Ink);
        drawText(m_painter, at(0, 0, tick.at) - QPointF(6, 0), qs(tick.text),
                 Qt::AlignRight | Qt::AlignVCenter);
    }
    m_painter.setPen(QPen(Frame, 1));
    m_painter.drawLine(at(0, 0, 0), at(0, 0, zTop));
    m_painter.drawLine(at(0, ny, 0), at(0, ny, zTop));
    m_painter.drawLine(at(nx, ny, 0), at(nx, ny, zTop));
    m_painter.setPen(QPen(Grid.darker(125), 1));
    for (std::size_t i = 0; i <= nx; ++i)
        m_painter.drawLine(at(i, 0, 0), at(i, ny, 0));
    for (std::size_t j = 0; j <= ny; ++j)
        m_painter.drawLine(at(0, j, 0), at(nx, j, 0));

    // Bars from the back row to the front, left to right, so that nearer faces cover.
    constexpr double Inset = 0.2;
    constexpr std::size_t MostLabelledBars = 40;
    const bool labelled = static_cast<std::size_t>(std::count_if(
                              data.counts.begin(), data.counts.end(),
                              [](double count) { return count > 0; })) <= MostLabelledBars;
    const QFont countFont = font(9);
    struct CountLabel {
        QPointF anchor; // the middle of the bar's top, the label's bottom centre
        double count;
    };
    std::vector<CountLabel> countLabels;
    for (std::size_t jj = ny; jj-- > 0;) {
        const QColor colour = sequenceColour(jj);
        for (std::size_t i = 0; i < nx; ++i) {
            const double count = data.count(i, jj);
            if (!(count > 0))
                continue;
            const double i0 = i + Inset, i1 = i + 1 - Inset;
            const double j0 = jj + Inset, j1 = jj + 1 - Inset;
            m_painter.setPen(QPen(colour.darker(170), 0.6));
            m_painter.setBrush(colour);
            m_painter.drawPolygon(QPolygonF() << at(i0, j0, 0) << at(i1, j0, 0) << at(i1, j0, count)
                                              << at(i0, j0, count));
            m_painter.setBrush(colour.darker(135));
            m_painter.drawPolygon(QPolygonF() << at(i1, j0, 0) << at(i1, j1, 0) << at(i1, j1, count)
                                              << at(i1, j0, count));
            m_painter.setBrush(colour.lighter(125));
            m_painter.drawPolygon(QPolygonF() << at(i0, j0, count) << at(i1, j0, count)
                                              << at(i1, j1, count) << at(i0, j1, count));
            if (labelled)
                countLabels.push_back(
                    {(at(i0, j0, count) + at(i1, j1, count)) / 2 - QPointF(0, 3), count});
            addHotspot(QPolygonF() << at(i0, j0, 0) << at(i1, j0, 0) << at(i1, j1, 0)
                                   << at(i1, j1, count) << at(i0, j1, count) << at(i0, j0, count),
                       data.x.name + " " + data.xBins[i].label + ", " + data.y.name + " " +
                           data.yBins[jj].label + " : " + shortNumber(count));
        }
    }

    // The counts over the bars, nearest bars first, each where no other count stands yet:
    // over all the bars, so that none is hidden, and the tooltip tells the rest.
    m_painter.setPen(Ink);
    m_painter.setFont(countFont);
    const QFontMetricsF countMetrics(countFont);
    std::vector<QRectF> placed;
    for (auto label = countLabels.rbegin(); label != countLabels.rend(); ++label) {
        const QString text = qs(shortNumber(label->count));
        const double width = countMetrics.horizontalAdvance(text);
        const QRectF box(label->anchor.x() - width / 2, label->anchor.y() - countMetrics.height(),
                         width, countMetrics.height());
        if (std::any_of(placed.begin(), placed.end(),
                        [&](const QRectF& other) { return other.intersects(box); }))
            continue;
        placed.push_back(box);
        drawText(m_painter, label->anchor, text, Qt::AlignHCenter | Qt::AlignBottom);
    }

    m_painter.setPen(QPen(Ink, 1));
    m_painter.drawLine(at(0, 0, 0), at(nx, 0, 0));
    m_painter.drawLine(at(nx, 0, 0), at(nx, ny, 0));
    m_painter.setFont(tickFont);
    for (std::size_t i = 0; i < nx; ++i)
        xLayout.draw(m_painter, i, at(i + 0.5, 0, 0));
    for (std::size_t j = 0; j < ny; ++j)
        drawText(m_painter, at(nx, j + 0.5, 0) + QPointF(8, 0), yTexts[j],
                 Qt::AlignLeft | Qt::AlignVCenter);

    m_painter.setFont(font(13, true));
    if (!m_graph.xTitle.empty())
        drawText(m_painter, QPointF((at(0, 0, 0).x() + at(nx, 0, 0).x()) / 2, area.bottom()),
                 qs(m_graph.xTitle), Qt::AlignHCenter | Qt::AlignBottom);
    if (!m_graph.yTitle.empty()) {
        // Along the depth, beyond the labels of its bins.
        m_painter.save();
        m_painter.translate(at(nx, ny / 2.0, 0) + QPointF(yLabelWidth + 16, 0));
        m_painter.rotate(-30);
        drawText(m_painter, QPointF(0, 0), qs(m_graph.yTitle), Qt::AlignHCenter | Qt::AlignTop);
        m_painter.restore();
    }
}

} // namespace wb
