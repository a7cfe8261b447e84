#pragma once
// The views of one document in a window: a table, or a graph. Each reads its document from
// the store when it draws, so a replaced document shows at the next repaint.

#include <QAbstractTableModel>
#include <QLabel>
#include <QWidget>

#include <vector>

#include "workbench/documents/DocumentStore.h"
#include "workbench/render/GraphPainter.h"

namespace wb::desktop {

// A table document as a model: one row per table row, the row names as vertical headers,
// the column headings (both lines) as horizontal ones, cells as every renderer shows them.
class TableModel : public QAbstractTableModel {
public:
    TableModel(const DocumentStore& store, int id, QObject* parent = nullptr)
        : QAbstractTableModel(parent), m_store(store), m_id(id) {
        countDecimals();
    }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    // The document was replaced: everything is read again.
    void refresh();
    // The table shown; null once its document is gone.
    const TableDocument* table() const;

private:
    // The decimals each column shows (CellText.h), counted when the table changes.
    void countDecimals();

    const DocumentStore& m_store;
    int m_id;
    std::vector<int> m_decimals;
};

// A table document in a window: the subtitle (the subset it describes) above the table.
class TableView : public QWidget {
public:
    TableView(const DocumentStore& store, int id, QWidget* parent = nullptr);
    const TableModel& model() const { return *m_model; }
    void refresh();

private:
    const DocumentStore& m_store;
    int m_id;
    TableModel* m_model;
    QLabel* m_subtitle;
    QLabel* m_note;
};

// A graph document drawn as its pictures are, scaled to fit the widget, with the tooltip of
// the bar, slice, box or plot under the mouse.
class GraphView : public QWidget {
public:
    GraphView(const DocumentStore& store, int id, QWidget* parent = nullptr);
    // The tooltip at a point of the widget; empty where there is none.
    QString toolTipAt(const QPoint& point) const;
    // A rectangle in the graph's own coordinates as it shows in the widget; empty when the
    // graph is no bar graph.
    QPolygonF outlineOf(const QRectF& inGraph) const;
    // The size the pictures of the graph are drawn at.
    QSize sizeHint() const override;
    // The document was replaced: it is drawn again.
    void refresh();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    const Document* graph() const;
    // From the picture's coordinates to the widget's.
    QTransform pictureTransform() const;
    // Draws the graph at its pictures' size and keeps its hotspots.
    void draw(QPainter& painter) const;
    // Draws it unseen when it has not been drawn since it changed.
    void drawIfNeeded() const;

    const DocumentStore& m_store;
    int m_id;
    // The hotspots of the picture, in its own coordinates.
    mutable std::vector<Hotspot> m_hotspots;
    mutable std::optional<QTransform> m_dataToPicture;
    mutable bool m_hotspotsDrawn = false;
};

} // namespace wb::desktop
