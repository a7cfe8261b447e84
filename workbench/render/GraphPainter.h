#pragma once
// Draws one graph document with a QPainter; the renderer (GraphRenderer.h) gives it the
// device. Besides drawing it notes the hotspots: the outline of each bar, slice, box and
// plot with the text of its tooltip.

#include <string>
#include <vector>

#include <QPainter>
#include <QPolygonF>
#include <QRectF>
#include <QTransform>

#include <optional>
#include <QString>

#include "workbench/documents/GraphDocument.h"

namespace wb {

struct Hotspot {
    QPolygonF outline;
    std::string text;
};

class GraphPainter {
public:
    GraphPainter(QPainter& painter, const GraphDocument& graph, QSizeF size)
        : m_painter(painter), m_graph(graph), m_size(size) {}

    void paint();
    const std::vector<Hotspot>& hotspots() const { return m_hotspots; }
    // From the graph's own coordinates to the picture's, once a bar graph has been painted.
    const std::optional<QTransform>& dataToPicture() const { return m_dataToPicture; }

private:
    // Draws the titles and gives the area left below them.
    QRectF drawTitles();
    void drawBars(const QRectF& area);  // histogram and stacked plot
    void drawLevelAbove(const QRectF& plot);
    void drawPie(const QRectF& area);
    void drawBoxes(const QRectF& area);
    void drawScatter(const QRectF& area);
    void drawHistogram3D(const QRectF& area);
    void drawMessage(const QRectF& area, const QString& text);

    void addHotspot(const QPolygonF& outline, std::string text);
    void addHotspot(const QRectF& area, std::string text);

    QPainter& m_painter;
    const GraphDocument& m_graph;
    QSizeF m_size;
    std::vector<Hotspot> m_hotspots;
    std::optional<QTransform> m_dataToPicture;
};

} // namespace wb
