#pragma once
// The desktop's brushing mode on a graph's window: the module's regions (one per bar) light
// up under the mouse with their tool tips, a click selects one, and the commands (drill
// down; drill up when a step can be undone) stand as buttons above the graph and in its
// context menu. Escape, or closing the window, leaves without a choice.
//
//   BrushingMode mode(view, call);
//   std::optional<BrushingChoice> choice = mode.run(); // modal until the user decides

#include <optional>
#include <vector>

#include <QEventLoop>
#include <QPolygonF>
#include <QWidget>

#include "workbench/desktop/DocumentViews.h"
#include "workbench/dialogs/DialogFrontEnd.h"

class QPushButton;

namespace wb::desktop {

class BrushingMode : public QWidget {
public:
    BrushingMode(GraphView& view, const BrushingCall& call);

    std::optional<BrushingChoice> run();

    // For tests and the screenshots: the region under a point (-1 for none), the command
    // buttons, and the region selected.
    int regionAt(const QPoint& point) const;
    // Where region `index` shows in this widget; empty for none.
    QPolygonF outline(int index) const;
    const std::vector<QPushButton*>& commandButtons() const { return m_buttons; }
    int selected() const { return m_selected; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void finish(std::optional<BrushingChoice> choice);
    // The regions' outlines in this widget, from the view's current picture.
    void placeRegions();

    GraphView& m_view;
    BrushingCall m_call;
    std::vector<QPolygonF> m_outlines;
    std::vector<QPushButton*> m_buttons;
    int m_selected;
    int m_hovered = -1;
    QEventLoop m_loop;
    std::optional<BrushingChoice> m_choice;
};

} // namespace wb::desktop
