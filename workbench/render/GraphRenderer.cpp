#include "workbench/render/GraphRenderer.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include "workbench/render/GraphPainter.h"
#include "workbench/text/Markup.h"

namespace wb {

namespace {

QtMessageHandler previousHandler = nullptr;

// Qt's debug, info and warning messages are no news for a command-line user (the offscreen
// platform warns about a missing runtime directory and the like); critical and fatal ones
// pass on.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg || type == QtWarningMsg)
        return;
    if (previousHandler != nullptr)
        previousHandler(type, context, message);
    else
        std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

// Fonts need a GUI application; one on the offscreen platform needs no display. It lives
// until the end of the process and goes before Qt's own globals, which it made.
void ensureApplication() {
    if (QGuiApplication::instance() != nullptr)
        return;
    static int argc = 3;
    static char name[] = "drilldown", option[] = "-platform", platform[] = "offscreen";
    static char* argv[] = {name, option, platform, nullptr};
    previousHandler = qInstallMessageHandler(quietHandler);
    static const std::unique_ptr<QGuiApplication> application(new QGuiApplication(argc, argv));
    if (QGuiApplication::instance() == nullptr)
        throw RenderError("cannot start the offscreen renderer");
}

std::string coordinate(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

// Transparent shapes over the picture, each with its tooltip.
std::string hotspotLayer(const std::vector<Hotspot>& hotspots) {
    std::string layer = "<g class=\"tooltips\" fill=\"#ffffff\" fill-opacity=\"0\" stroke=\"none\">\n";
    for (const Hotspot& hotspot : hotspots) {
        layer += "<polygon class=\"hotspot\" points=\"";
        for (int k = 0; k < hotspot.outline.size(); ++k) {
            if (k > 0)
                layer += ' ';
            layer += coordinate(hotspot.outline[k].x()) + "," + coordinate(hotspot.outline[k].y());
        }
        layer += "\"><title>" + escapeMarkup(hotspot.text) + "</title></polygon>\n";
    }
    return layer + "</g>\n";
}

} // namespace

PictureSize pictureSize(const GraphDocument& graph) {
    switch (graph.type) {
    case GraphType::ScatterMatrix: {
        const std::size_t n =
            graph.scatter ? std::max(graph.scatter->columns.size(), graph.scatter->rows.size()) : 1;
        const int side = std::clamp(static_cast<int>(200 + 170 * n), 640, 1600);
        return {side, side + 80};
    }
    case GraphType::BoxPlot: {
        const std::size_t n = graph.boxes ? graph.boxes->variables.size() : 1;
        return {std::clamp(static_cast<int>(80 + 190 * n), 640, 1800), 640};
    }
    case GraphType::Histogram3D:
        return {960, 720};
    default:
        return {960, 640};
    }
}

std::string graphSvg(const GraphDocument& graph) {
    ensureApplication();
    const PictureSize size = pictureSize(graph);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    std::vector<Hotspot> hotspots;
    {
        QSvgGenerator generator;
        generator.setOutputDevice(&buffer);
        generator.setSize(QSize(size.width, size.height));
        generator.setViewBox(QRect(0, 0, size.width, size.height));
        generator.setResolution(72); // one point is one pixel: font sizes stay as given
        // The generator writes both as they are: they must be XML already.
        generator.setTitle(QString::fromStdString(escapeMarkup(graph.name())));
        std::string rest;
        for (std::size_t k = 1; k < graph.titles.size(); ++k)
            rest += (k > 1 ? "\n" : "") + graph.titles[k];
        generator.setDescription(QString::fromStdString(escapeMarkup(rest)));
        QPainter painter;
        if (!painter.begin(&generator))
            throw RenderError("cannot draw the graph '" + graph.name() + "' as SVG");
        GraphPainter drawing(painter, graph, QSizeF(size.width, size.height));
        drawing.paint();
        painter.end();
        hotspots = drawing.hotspots();
    }
    std::string svg = buffer.data().toStdString();
    const std::size_t start = svg.find("<svg width=\"");
    const std::size_t end = svg.rfind("</svg>");
    if (start == std::string::npos || end == std::string::npos)
        throw RenderError("cannot draw the graph '" + graph.name() + "' as SVG");
    svg.insert(end, hotspotLayer(hotspots));
    // The generator gives the size in millimetres at its resolution; a browser should show
    // the picture at its size in pixels.
    const std::size_t lineEnd = svg.find('\n', start);
    svg.replace(start, lineEnd - start,
                "<svg width=\"" + std::to_string(size.width) + "\" height=\"" +
                    std::to_string(size.height) + "\"");
    return svg;
}

std::string graphPng(const GraphDocument& graph) {
    ensureApplication();
    const PictureSize size = pictureSize(graph);
    QImage image(size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        GraphPainter(painter, graph, QSizeF(size.width, size.height)).paint();
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        throw RenderError("cannot draw the graph '" + graph.name() + "' as PNG");
    return buffer.data().toStdString();
}

} // namespace wb
