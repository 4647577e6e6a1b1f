#include "controls/CellLook.h"

#include "controls/PictureView.h"

#include <QPainter>

namespace paravue
{
namespace
{

constexpr double SmallestPatternedCell = 6;

QList<QLineF> pattern(const QRectF &cell, CellLook::Lines lines)
{
    QList<QLineF> result;
    if (lines & CellLook::Rising)
        result.append(QLineF(cell.bottomLeft(), cell.topRight()));
    if (lines & CellLook::Falling)
        result.append(QLineF(cell.topLeft(), cell.bottomRight()));
    if (lines & CellLook::Level)
        result.append(QLineF(cell.left(), cell.center().y(), cell.right(), cell.center().y()));
    if (lines & CellLook::Upright)
        result.append(QLineF(cell.center().x(), cell.top(), cell.center().x(), cell.bottom()));
    return result;
}

QSizeF signSize(const QPainter &painter)
{
    const QFontMetricsF metrics(painter.font());
    return {metrics.horizontalAdvance(u'0') + 4, metrics.ascent()};
}

void paintSign(QPainter &painter, const QRectF &cell, const QString &sign)
{
    QRectF place(QPointF(), signSize(painter));
    place.moveCenter(cell.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 200));
    painter.drawRoundedRect(place, 2, 2);
    painter.setPen(Qt::white);
    painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, sign);
}

} // namespace

bool hasRoomForSign(const QPainter &painter, const QSizeF &cell)
{
    const QSizeF wanted = signSize(painter) + QSizeF(4, 4);
    return wanted.width() <= cell.width() && wanted.height() <= cell.height();
}

void paintCell(QPainter &painter, const QRectF &cell, const CellLook &look)
{
    painter.fillRect(cell, look.tint);
    if (std::min(cell.width(), cell.height()) < SmallestPatternedCell)
        return;
    const QList<QLineF> lines = pattern(cell.adjusted(2, 2, -2, -2), look.lines);
    painter.setPen(QPen(QColor(0, 0, 0, 150), 3));
    painter.drawLines(lines);
    painter.setPen(QPen(QColor(255, 255, 255, 220), 1));
    painter.drawLines(lines);
    if (!look.sign.isEmpty() && hasRoomForSign(painter, cell.size()))
        paintSign(painter, cell, look.sign);
}

void CellStamps::paint(const QRect &cell, int mark, const CellLook &look)
{
    QPixmap &stamp = m_stamps[{mark, cell.width(), cell.height()}];
    if (stamp.isNull()) {
        const double ratio = m_painter.device()->devicePixelRatioF();
        stamp = QPixmap(cell.size() * ratio);
        stamp.setDevicePixelRatio(ratio);
        stamp.fill(Qt::transparent);
        QPainter painter(&stamp);
        painter.setFont(m_painter.font());
        painter.setRenderHint(QPainter::Antialiasing);
        paintCell(painter, QRect(QPoint(), cell.size()), look);
    }
    m_painter.drawPixmap(cell, stamp);
}

} // namespace paravue
