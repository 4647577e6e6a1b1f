#pragma once

#include <QColor>
#include <QFlags>
#include <QPixmap>
#include <QRectF>
#include <QString>

#include <map>
#include <tuple>

class QPainter;

namespace paravue
{

/// How a marked cell is drawn: a tint, a pattern of lines and perhaps a sign, so that it is recognised on any
/// picture and without colour vision.
struct CellStyle {
    enum Line { Rising = 1, Falling = 2, Level = 4, Upright = 8 };
    Q_DECLARE_FLAGS(Lines, Line)

    QColor tint; ///< with its alpha
    Lines lines;
    QString sign; ///< one character, left out where a cell is too small for it
};

bool hasRoomForSign(const QPainter &painter, const QSizeF &cell);

void paintCell(QPainter &painter, const QRectF &cell, const CellStyle &style);

/// Paints many cells: each style is drawn once for each size of a cell and copied afterwards, as a grid may
/// have thousands of cells over a live picture.
class CellPainter
{
public:
    explicit CellPainter(QPainter &painter) : m_painter(painter) {}

    /// \a mark identifies the style.
    void paint(const QRect &cell, int mark, const CellStyle &style);

private:
    QPainter &m_painter;
    std::map<std::tuple<int, int, int>, QPixmap> m_drawn; ///< by mark, width and height
};

} // namespace paravue
