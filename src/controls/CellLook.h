#pragma once

#include <QColor>
#include <QFlags>
#include <QRectF>
#include <QString>

class QPainter;

namespace paravue
{

/// How a marked cell stands out from any picture, for eyes that tell the colours apart and for those that do
/// not: a tint, a pattern of lines and perhaps a sign.
struct CellLook {
    enum Line { Rising = 1, Falling = 2, Level = 4, Upright = 8 };
    Q_DECLARE_FLAGS(Lines, Line)

    QColor tint; ///< with its alpha
    Lines lines;
    QString sign; ///< one character, left out where a cell is too small for it
};

bool hasRoomForSign(const QPainter &painter, const QSizeF &cell);

void paintCell(QPainter &painter, const QRectF &cell, const CellLook &look);

} // namespace paravue
