#include "controls/CellGridEditor.h"

#include <QPainter>
#include <QPainterPath>

namespace paravue
{
namespace
{

constexpr int SmallestLinedCell = 4;

void paintTool(QPainter &painter, const QRectF &place, CellGridEditor::Tool tool, const QColor &color)
{
    const QRectF inside = place.adjusted(2.5, 3.5, -2.5, -3.5);
    painter.setBrush(Qt::NoBrush);
    if (tool == CellGridEditor::Tool::Rectangle) {
        painter.setPen(QPen(color, 1.5));
        painter.drawRect(inside);
        return;
    }
    QPainterPath stroke(inside.bottomLeft());
    stroke.cubicTo(inside.topLeft(), inside.bottomRight(), inside.topRight());
    painter.setPen(QPen(color, 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(stroke);
}

} // namespace

CellGridEditor::Borders CellGridEditor::borders() const
{
    // Borders on whole pixels keep the lines sharp.
    const QRect picture = pictureRect();
    Borders borders;
    for (int column = 0; column <= gridSize().width(); ++column)
        borders.x.append(picture.left() + qRound(double(picture.width()) * column / gridSize().width()));
    for (int row = 0; row <= gridSize().height(); ++row)
        borders.y.append(picture.top() + qRound(double(picture.height()) * row / gridSize().height()));
    return borders;
}

int CellGridEditor::footerHeight(int width) const
{
    return m_strip.height(width);
}

void CellGridEditor::paintFooter(QPainter &painter)
{
    const int tools = int(kinds().size());
    m_strip.paint(painter, footerRect(), {tools > 1 ? m_kind - 1 : -1, tools + int(m_tool)},
                  [&](const QRect &place, int chip) {
                      if (chip < tools)
                          paintCell(painter, place, markStyle(chip + 1));
                      else
                          paintTool(painter, place, Tool(chip - tools), palette().color(QPalette::Text));
                  });
}

void CellGridEditor::paintLines(QPainter &painter, const Borders &borders)
{
    const QRect picture = pictureRect();
    // A line of two tones is visible on bright and dark pictures.
    const QColor bright(255, 255, 255, 90);
    const QColor dark(0, 0, 0, 90);
    for (const int x : borders.x.mid(1, gridSize().width() - 1)) {
        painter.fillRect(x - 1, picture.top(), 1, picture.height(), bright);
        painter.fillRect(x, picture.top(), 1, picture.height(), dark);
    }
    for (const int y : borders.y.mid(1, gridSize().height() - 1)) {
        painter.fillRect(picture.left(), y - 1, picture.width(), 1, bright);
        painter.fillRect(picture.left(), y, picture.width(), 1, dark);
    }
}

void CellGridEditor::paintMarks(QPainter &painter, const Borders &borders, const QRect &dirty)
{
    // The sizes of cells differ by a pixel; either all of them show a sign or none.
    const QSizeF least(pictureRect().width() / gridSize().width(),
                       pictureRect().height() / gridSize().height());
    const bool hasSigns = hasRoomForSign(painter, least);
    CellPainter cellPainter(painter);
    for (int y = 0; y < gridSize().height(); ++y) {
        for (int x = 0; x < gridSize().width(); ++x) {
            const int mark = m_cells.mark({x, y});
            const QRect cell = borders.place({x, y, 1, 1});
            if (mark == 0 || !cell.intersects(dirty))
                continue;
            CellStyle style = markStyle(mark);
            if (!hasSigns)
                style.sign.clear();
            cellPainter.paint(cell, mark, style);
        }
    }
}

void CellGridEditor::paintSelection(QPainter &painter, const Borders &borders)
{
    const QRectF frame = QRectF(borders.place(m_frame.cells())).adjusted(2, 2, -2, -2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, 4, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(frame);
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(frame);
}

void CellGridEditor::paintOver(QPainter &painter, const QRect &dirty)
{
    const Borders all = borders();
    const QRect picture = pictureRect();
    if (picture.width() >= SmallestLinedCell * gridSize().width() &&
        picture.height() >= SmallestLinedCell * gridSize().height())
        paintLines(painter, all);
    paintMarks(painter, all, dirty);
    paintPlaceholder(painter, 0.8F); // lets the cells under it be seen
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasFocus())
        paintSelection(painter, all);
}

} // namespace paravue
