#include "device/dialog/LoginIcons.h"

#include "controls/DrawnIcon.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace paravue
{

namespace
{

/// Lets \a paint draw on a square of 16 units in the middle of the icon.
QIcon lineIcon(const QPalette &palette, const std::function<void(QPainter &)> &paint)
{
    const QColor color = palette.color(QPalette::Text);
    return drawnIcon([color, paint](QPainter &painter, const QRectF &rect, QIcon::Mode, QIcon::State) {
        const double unit = std::min(rect.width(), rect.height()) / 16;
        painter.translate(rect.center());
        painter.scale(unit, unit);
        painter.translate(-8, -8);
        painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap));
        paint(painter);
    });
}

} // namespace

QIcon eyeIcon(const QPalette &palette, bool isCrossed)
{
    return lineIcon(palette, [isCrossed](QPainter &painter) {
        QPainterPath lids(QPointF(1, 8));
        lids.quadTo(8, 1, 15, 8);
        lids.quadTo(8, 15, 1, 8);
        painter.drawPath(lids);
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(QPointF(8, 8), 1.8, 1.8);
        if (isCrossed)
            painter.drawLine(QPointF(2.5, 13.5), QPointF(13.5, 2.5));
    });
}

QIcon crossIcon(const QPalette &palette)
{
    return lineIcon(palette, [](QPainter &painter) {
        painter.drawLine(QPointF(4, 4), QPointF(12, 12));
        painter.drawLine(QPointF(4, 12), QPointF(12, 4));
    });
}

} // namespace paravue
