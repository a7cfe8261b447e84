#include "workbench/desktop/DocumentViews.h"

#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QPicture>
#include <QTableView>
#include <QToolTip>
#include <QTransform>
#include <QVBoxLayout>

#include <algorithm>

#include "workbench/desktop/QtText.h"
#include "workbench/documents/CellText.h"
#include "workbench/render/GraphRenderer.h"

namespace wb::desktop {

const TableDocument* TableModel::table() const {
    const Document* document = m_store.find(m_id);
    return document != nullptr && document->isTable() ? &document->table() : nullptr;
}

int TableModel::rowCount(const QModelIndex& parent) const {
    const TableDocument* shown = table();
    return parent.isValid() || shown == nullptr ? 0 : int(shown->rows.size());
}

int TableModel::columnCount(const QModelIndex& parent) const {
    const TableDocument* shown = table();
    return parent.isValid() || shown == nullptr ? 0 : int(shown->columns.size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
    const TableDocument* shown = table();
    if (shown == nullptr || !index.isValid())
        return {};
    const TableColumn& column = shown->columns.at(std::size_t(index.column()));
    if (role == Qt::TextAlignmentRole)
        return column.format == ColumnFormat::Text ? int(Qt::AlignLeft | Qt::AlignVCenter)
                                                   : int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    const TableRow& row = shown->rows.at(std::size_t(index.row()));
    return std::size_t(index.column()) < row.cells.size()
               ? qtext(cellText(row.cells[std::size_t(index.column())], column.format,
                                m_decimals.at(std::size_t(index.column()))))
               : QString();
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const TableDocument* shown = table();
    if (shown == nullptr || role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return qtext(shown->rows.at(std::size_t(section)).name);
    const TableColumn& column = shown->columns.at(std::size_t(section));
    return qtext(column.head2.empty() ? column.head : column.head + "\n" + column.head2);
}

void TableModel::refresh() {
    beginResetModel();
    countDecimals();
    endResetModel();
}

void TableModel::countDecimals() {
    m_decimals.clear();
    if (const TableDocument* shown = table())
        for (std::size_t col = 0; col < shown->columns.size(); ++col)
            m_decimals.push_back(columnDecimals(*shown, col));
}

TableView::TableView(const DocumentStore& store, int id, QWidget* parent)
    : QWidget(parent), m_store(store), m_id(id), m_model(new TableModel(store, id, this)),
      m_subtitle(new QLabel(this)), m_note(new QLabel(this)) {
    auto* table = new QTableView(this);
    table->setModel(m_model);
    table->setSortingEnabled(false); // rows stay in the order the module gave them
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_subtitle);
    layout->addWidget(table);
    m_note->setWordWrap(true);
    layout->addWidget(m_note);
    refresh();
    table->resizeColumnsToContents();
}

void TableView::refresh() {
    m_model->refresh();
    const TableDocument* shown = m_model->table();
    const auto showText = [](QLabel* label, const std::string& text) {
        label->setText(qtext(text));
        label->setVisible(!text.empty());
    };
    showText(m_subtitle, shown != nullptr ? shown->subtitle : std::string());
    showText(m_note, shown != nullptr ? shown->note : std::string());
}

GraphView::GraphView(const DocumentStore& store, int id, QWidget* parent)
    : QWidget(parent), m_store(store), m_id(id) {
    setMouseTracking(true);
}

const Document* GraphView::graph() const {
    const Document* document = m_store.find(m_id);
    return document != nullptr && document->isGraph() ? document : nullptr;
}

QSize GraphView::sizeHint() const {
    const Document* document = graph();
    if (document == nullptr)
        return QWidget::sizeHint();
    const PictureSize size = pictureSize(document->graph());
    return {size.width, size.height};
}

void GraphView::refresh() {
    m_hotspots.clear();
    m_hotspotsDrawn = false;
    update();
}

QTransform GraphView::pictureTransform() const {
    // The graph is drawn at the size of its pictures and scaled to the window, whole and
    // centred, so that a small window shows the same picture smaller, not another layout.
    const QSize picture = sizeHint();
    const double scale =
        std::min(double(width()) / picture.width(), double(height()) / picture.height());
    QTransform transform;
    transform.translate((width() - picture.width() * scale) / 2,
                        (height() - picture.height() * scale) / 2);
    transform.scale(scale, scale);
    return transform;
}

void GraphView::draw(QPainter& painter) const {
    GraphPainter picture(painter, graph()->graph(), sizeHint());
    picture.paint();
    m_hotspots = picture.hotspots();
    m_dataToPicture = picture.dataToPicture();
    m_hotspotsDrawn = true;
}

QPolygonF GraphView::outlineOf(const QRectF& inGraph) const {
    if (graph() == nullptr)
        return {};
    drawIfNeeded();
    if (!m_dataToPicture)
        return {};
    return pictureTransform().map(m_dataToPicture->map(QPolygonF(inGraph)));
}

void GraphView::drawIfNeeded() const {
    if (m_hotspotsDrawn)
        return;
    // Not drawn yet: the picture is drawn where nobody sees it.
    QPicture picture;
    QPainter painter(&picture);
    draw(painter);
}

void GraphView::paintEvent(QPaintEvent*) {
    if (graph() == nullptr)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), Qt::white);
    painter.setTransform(pictureTransform());
    draw(painter);
}

QString GraphView::toolTipAt(const QPoint& point) const {
    if (graph() == nullptr)
        return {};
    drawIfNeeded();
    const QPointF inPicture = pictureTransform().inverted().map(QPointF(point));
    for (const Hotspot& hotspot : m_hotspots)
        if (hotspot.outline.containsPoint(inPicture, Qt::OddEvenFill))
            return qtext(hotspot.text);
    return {};
}

bool GraphView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = toolTipAt(help->pos());
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), text, this);
    return true;
}

} // namespace wb::desktop
