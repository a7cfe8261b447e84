#include "workbench/desktop/CaptionIcons.h"

#include <functional>

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QStyle>

namespace wb::desktop {

namespace {

constexpr int Size = 16;
const QColor Ink(60, 60, 70);
const QColor Fill(78, 121, 167);
const QColor Second(242, 142, 43);

QIcon drawn(const std::function<void(QPainter&)>& draw) {
    QPixmap pixmap(Size, Size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Ink, 1));
    draw(painter);
    return QIcon(pixmap);
}

QIcon bars() {
    return drawn([](QPainter& p) {
        p.setBrush(Fill);
        p.drawRect(2, 8, 3, 6);
        p.drawRect(6, 3, 3, 11);
        p.drawRect(10, 6, 3, 8);
    });
}

QIcon stacked() {
    return drawn([](QPainter& p) {
        for (const int x : {2, 7, 12}) {
            p.setBrush(Fill);
            p.drawRect(x, 7, 3, 7);
            p.setBrush(Second);
            p.drawRect(x, 3, 3, 4);
        }
    });
}

QIcon pie() {
    return drawn([](QPainter& p) {
        p.setBrush(Fill);
        p.drawEllipse(2, 2, 12, 12);
        p.setBrush(Second);
        p.drawPie(2, 2, 12, 12, 0, 110 * 16);
    });
}

QIcon boxes() {
    return drawn([](QPainter& p) {
        p.drawLine(8, 1, 8, 4);
        p.drawLine(8, 12, 8, 15);
        p.setBrush(Fill);
        p.drawRect(4, 4, 8, 8);
        p.drawLine(4, 8, 12, 8);
    });
}

QIcon points() {
    return drawn([](QPainter& p) {
        p.setBrush(Fill);
        for (const QPoint& at : {QPoint(3, 12), QPoint(6, 9), QPoint(8, 10), QPoint(10, 5),
                                 QPoint(13, 3)})
            p.drawEllipse(at, 1, 1);
        p.drawRect(1, 1, 14, 14);
    });
}

QIcon table() {
    return drawn([](QPainter& p) {
        p.setBrush(Qt::white);
        p.drawRect(1, 2, 14, 12);
        for (const int y : {6, 10})
            p.drawLine(1, y, 15, y);
        p.drawLine(6, 2, 6, 14);
    });
}

QIcon brush() {
    return drawn([](QPainter& p) {
        p.setBrush(Fill);
        p.drawRect(2, 9, 3, 5);
        p.setBrush(Second);
        p.drawRect(6, 5, 3, 9);
        QPainterPath arrow;
        arrow.moveTo(9, 1);
        arrow.lineTo(15, 7);
        arrow.lineTo(12, 7);
        arrow.lineTo(13, 10);
        arrow.lineTo(11, 10);
        arrow.lineTo(10, 8);
        arrow.lineTo(9, 9);
        arrow.closeSubpath();
        p.setBrush(Qt::white);
        p.drawPath(arrow);
    });
}

} // namespace

QIcon captionIcon(const CaptionParts& caption, const QStyle& style) {
    switch (caption.IconNumber) {
    case 223:
    case 231: return bars();
    case 225: return boxes();
    case 229: return points();
    case 248: return stacked();
    case 249: return table();
    case 280: return pie();
    case 246: return style.standardIcon(QStyle::SP_FileDialogContentsView); // selection
    case 247: return style.standardIcon(QStyle::SP_FileDialogDetailedView); // weights
    case 372: return style.standardIcon(QStyle::SP_ArrowDown);
    case 373: return style.standardIcon(QStyle::SP_ArrowUp);
    case 654: return style.standardIcon(QStyle::SP_DialogSaveButton);
    case 664: return brush();
    default: break;
    }
    switch (caption.IconLetter) {
    case 'e': return table();
    case 'h': return style.standardIcon(QStyle::SP_FileDialogListView);
    case 'j': return style.standardIcon(QStyle::SP_ArrowUp);
    case '`': return style.standardIcon(QStyle::SP_DialogOpenButton);
    default: return {};
    }
}

} // namespace wb::desktop
