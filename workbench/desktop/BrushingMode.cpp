#include "workbench/desktop/BrushingMode.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QToolTip>

#include "drilldown/resources/Caption.h"
#include "workbench/desktop/QtText.h"

namespace wb::desktop {

namespace {

const QColor Hover(255, 200, 0, 70);
const QColor Chosen(255, 120, 0, 120);

// A command's caption as a button shows it: its icon code gone, its mnemonic marked.
QString commandText(const std::string& caption) {
    const CaptionParts parts = ParseCaption(caption);
    QString text = qtext(parts.Text);
    if (parts.MnemonicOffset != std::string::npos)
        text.insert(qtext(parts.Text.substr(0, parts.MnemonicOffset)).size(), '&');
    return text;
}

} // namespace

BrushingMode::BrushingMode(GraphView& view, const BrushingCall& call)
    : QWidget(&view), m_view(view), m_call(call), m_selected(call.selected) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setGeometry(view.rect());
    view.installEventFilter(this);

    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(6, 6, 6, 6);
    for (std::size_t index = 0; index < m_call.commands.size(); ++index) {
        auto* button = new QPushButton(commandText(m_call.commands[index]), bar);
        connect(button, &QPushButton::clicked, this, [this, index] {
            finish(BrushingChoice{m_selected, static_cast<int>(index)});
        });
        layout->addWidget(button);
        m_buttons.push_back(button);
    }
    auto* leave = new QPushButton(QStringLiteral("Terminer"), bar);
    connect(leave, &QPushButton::clicked, this, [this] { finish(std::nullopt); });
    layout->addWidget(leave);
    bar->adjustSize();
    placeRegions();
}

void BrushingMode::placeRegions() {
    m_outlines.clear();
    for (const CBrushRegion& region : m_call.regions)
        m_outlines.push_back(
            m_view.outlineOf(QRectF(QPointF(region.Left, region.Bottom), QPointF(region.Right, region.Top))));
}

std::optional<BrushingChoice> BrushingMode::run() {
    show();
    raise();
    setFocus();
    m_loop.exec();
    m_view.removeEventFilter(this);
    hide();
    return m_choice;
}

void BrushingMode::finish(std::optional<BrushingChoice> choice) {
    m_choice = choice;
    m_loop.quit();
}

int BrushingMode::regionAt(const QPoint& point) const {
    for (std::size_t i = 0; i < m_outlines.size(); ++i)
        if (m_outlines[i].containsPoint(QPointF(point), Qt::OddEvenFill))
            return static_cast<int>(i);
    return -1;
}

QPolygonF BrushingMode::outline(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= m_outlines.size())
        return {};
    return m_outlines[static_cast<std::size_t>(index)];
}

void BrushingMode::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto fill = [&](int index, const QColor& colour) {
        painter.setPen(QPen(colour.darker(150), 2));
        painter.setBrush(colour);
        painter.drawPolygon(outline(index));
    };
    if (m_hovered != m_selected)
        fill(m_hovered, Hover);
    fill(m_selected, Chosen);
}

void BrushingMode::mouseMoveEvent(QMouseEvent* event) {
    const int region = regionAt(event->pos());
    if (region != m_hovered) {
        m_hovered = region;
        update();
    }
}

void BrushingMode::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_selected = regionAt(event->pos());
    update();
}

void BrushingMode::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        finish(std::nullopt);
}

void BrushingMode::contextMenuEvent(QContextMenuEvent* event) {
    const int region = regionAt(event->pos());
    if (region >= 0) {
        m_selected = region;
        update();
    }
    QMenu menu(this);
    for (std::size_t index = 0; index < m_call.commands.size(); ++index)
        menu.addAction(commandText(m_call.commands[index]), this, [this, index] {
            finish(BrushingChoice{m_selected, static_cast<int>(index)});
        });
    menu.exec(event->globalPos());
}

bool BrushingMode::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int region = regionAt(help->pos());
    if (region < 0)
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), qtext(m_call.regions[static_cast<std::size_t>(region)].Tip), this);
    return true;
}

// The graph's window resized or gone: the regions follow, or brushing ends.
bool BrushingMode::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_view && event->type() == QEvent::Resize) {
        setGeometry(m_view.rect());
        placeRegions();
    } else if (watched == &m_view && (event->type() == QEvent::Hide || event->type() == QEvent::Close)) {
        finish(std::nullopt);
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace wb::desktop
