#include "controls/CellStyle.h"

#include "controls/PictureView.h"

#include <QPainter>

namespace paravue
{
namespace
{

constexpr double SmallestPatternedCell = 6;

QList<QLineF> pattern(const QRectF &cell, CellStyle::Lines lines)
{
    QList<QLineF> result;
    if (lines & CellStyle::Rising)
        result.append(QLineF(cell.bottomLeft(), cell.topRight()));
    if (lines & CellStyle::Falling)
        result.append(QLineF(cell.topLeft(), cell.bottomRight()));
    if (lines & CellStyle::Level)
        result.append(QLineF(cell.left(), cell.center().y(), cell.right(), cell.center().y()));
    if (lines & CellStyle::Upright)
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

void paintCell(QPainter &painter, const QRectF &cell, const CellStyle &style)
{
    painter.fillRect(cell, style.tint);
    if (std::min(cell.width(), cell.height()) < SmallestPatternedCell)
        return;
    const QList<QLineF> lines = pattern(cell.adjusted(2, 2, -2, -2), style.lines);
    painter.setPen(QPen(QColor(0, 0, 0, 150), 3));
    painter.drawLines(lines);
    painter.setPen(QPen(QColor(255, 255, 255, 220), 1));
    painter.drawLines(lines);
    if (!style.sign.isEmpty() && hasRoomForSign(painter, cell.size()))
        paintSign(painter, cell, style.sign);
}

void CellPainter::paint(const QRect &cell, int mark, const CellStyle &style)
{
    QPixmap &drawn = m_drawn[{mark, cell.width(), cell.height()}];
    if (drawn.isNull()) {
        const double ratio = m_painter.device()->devicePixelRatioF();
        drawn = QPixmap(cell.size() * ratio);
        drawn.setDevicePixelRatio(ratio);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        painter.setFont(m_painter.font());
        painter.setRenderHint(QPainter::Antialiasing);
        paintCell(painter, QRect(QPoint(), cell.size()), style);
    }
    m_painter.drawPixmap(cell, drawn);
}

} // namespace paravue
