#pragma once
// A paint device that keeps, instead of pixels, where each drawn text stands: its box on the
// page, turned as the painter turned it. Tests use it to find texts that cover each other.

#include <vector>

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPolygonF>
#include <QTextItem>

namespace wb::testing {

struct TextBox {
    QString text;
    QPolygonF outline;
};

class TextBoxEngine : public QPaintEngine {
public:
    TextBoxEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& state) override {
        if (state.state() & QPaintEngine::DirtyTransform)
            m_transform = state.transform();
    }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawPath(const QPainterPath&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        const QFontMetricsF metrics(item.font());
        const QRectF box(at.x(), at.y() - metrics.ascent(), metrics.horizontalAdvance(item.text()),
                         metrics.ascent() + metrics.descent());
        boxes.push_back({item.text(), m_transform.map(QPolygonF(box))});
    }
    Type type() const override { return QPaintEngine::User; }

    std::vector<TextBox> boxes;

private:
    QTransform m_transform;
};

class TextBoxDevice : public QPaintDevice {
public:
    TextBoxDevice(int width, int height) : m_width(width), m_height(height) {}
    QPaintEngine* paintEngine() const override { return &m_engine; }
    const std::vector<TextBox>& boxes() const { return m_engine.boxes; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
            return m_width;
        case PdmHeight:
            return m_height;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return 1 * QPaintDevice::devicePixelRatioFScale();
        default:
            return 1000;
        }
    }

private:
    int m_width, m_height;
    mutable TextBoxEngine m_engine;
};

} // namespace wb::testing
