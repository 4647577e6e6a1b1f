#include "controls/CellGridEditor.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace paravue
{
namespace
{

constexpr int LongestName = 100; // more than a line has room for
constexpr int SmallestLinedCell = 4;

bool isShiftOnly(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
}

/// With Ctrl only the keys that lead to a corner; the others may be shortcuts of the window.
bool isForFrame(const QKeyEvent &event)
{
    return !(event.modifiers() & Qt::ControlModifier) || event.key() == Qt::Key_Home ||
           event.key() == Qt::Key_End;
}

} // namespace

CellGridEditor::CellGridEditor(const QSize &size, QWidget *parent)
    : PictureView(parent), m_cells(size.expandedTo({1, 1})), m_strip(*this), m_frame(gridSize()),
      m_gesture(*this, EditGesture::Interruption::Drops, &m_history)
{
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

bool CellGridEditor::setRows(const QStringList &rows)
{
    if (!m_cells.setTexts(rows))
        return false;
    m_gesture.textsReplaced();
    if (m_gesture.isDragging())
        paintWay(0);
    stateChanged();
    return true;
}

bool CellGridEditor::setKinds(const QStringList &names)
{
    QStringList fitting = names.mid(0, MaxKinds);
    for (QString &name : fitting)
        name = name.left(LongestName).simplified();
    if (fitting.isEmpty() || fitting == m_strip.texts())
        return false;
    m_strip.setTexts(fitting);
    m_kind = std::min(m_kind, int(fitting.size()));
    updateGeometry();
    stateChanged();
    return true;
}

QString CellGridEditor::valueText() const
{
    const QRect cells = m_frame.cells();
    const QString place =
        cells.size() == QSize(1, 1)
            ? tr("column %1, row %2").arg(QString::number(cells.left() + 1), QString::number(cells.top() + 1))
            : tr("columns %1 to %2, rows %3 to %4")
                  .arg(QString::number(cells.left() + 1), QString::number(cells.right() + 1),
                       QString::number(cells.top() + 1), QString::number(cells.bottom() + 1));
    const int mark = m_cells.mark(m_frame.current());
    const QString state = mark == 0 ? tr("not marked") : markName(mark);
    const QString text = tr("%1: %2").arg(place, state);
    return withNotice(kinds().size() > 1 ? tr("%1; painting with %2").arg(text, kinds().value(m_kind - 1))
                                         : text);
}

void CellGridEditor::slot_Set_all()
{
    applyTo(Brush::Paint, QRect(QPoint(), gridSize()));
}

void CellGridEditor::slot_Clear_all()
{
    applyTo(Brush::EraseAny, QRect(QPoint(), gridSize()));
}

void CellGridEditor::slot_Choose_kind(const QString &number)
{
    choose(number.trimmed().toInt());
}

void CellGridEditor::choose(int kind)
{
    if (kind < 1 || kind > kinds().size() || kind == m_kind)
        return;
    m_kind = kind;
    stateChanged();
}

void CellGridEditor::select(const CellFrame &frame)
{
    m_frame = frame;
    stateChanged();
}

CellGridEditor::Brush CellGridEditor::brushFor(const QPoint &cell) const
{
    return isOfKind(m_cells.mark(cell), m_kind) ? Brush::EraseKind : Brush::Paint;
}

bool CellGridEditor::apply(Brush brush, const QPoint &cell)
{
    const bool hasKind = isOfKind(m_cells.mark(cell), m_kind);
    if (brush == Brush::Paint)
        return !hasKind && m_cells.setMark(cell, m_kind);
    return (hasKind || brush == Brush::EraseAny) && m_cells.setMark(cell, 0);
}

void CellGridEditor::applyTo(Brush brush, const QRect &cells)
{
    m_gesture.perform([&] {
        bool changed = false;
        for (int y = cells.top(); y <= cells.bottom(); ++y) {
            for (int x = cells.left(); x <= cells.right(); ++x)
                changed |= apply(brush, {x, y});
        }
        if (changed)
            stateChanged();
    });
}

/// Positions outside of the picture become cells next to its edge, so that a drag over the edge paints up to
/// it.
QPoint CellGridEditor::cellAt(const QPoint &position) const
{
    const QPointF fraction = fractionAt(QPointF(position) + QPointF(0.5, 0.5));
    const auto line = [](double share, int count) {
        return int(std::floor(std::clamp(share * count, -1.0, double(count))));
    };
    return {line(fraction.x(), gridSize().width()), line(fraction.y(), gridSize().height())};
}

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

void CellGridEditor::mousePressEvent(QMouseEvent *event)
{
    m_gesture.press(*event);
}

void CellGridEditor::mouseMoveEvent(QMouseEvent *event)
{
    m_gesture.move(*event);
}

void CellGridEditor::mouseReleaseEvent(QMouseEvent *event)
{
    m_gesture.release(*event);
}

bool CellGridEditor::beginDrag(const QMouseEvent &press)
{
    const bool isLeft = press.button() == Qt::LeftButton;
    const QPoint position = press.position().toPoint();
    if (isLeft)
        choose(m_strip.at(position, footerRect()) + 1);
    if (!pictureRect().contains(position))
        return false;
    const QPoint cell = cellAt(position);
    m_stroke = {isLeft ? brushFor(cell) : Brush::EraseAny, {cell}};
    return true;
}

void CellGridEditor::dragTo(const QPointF &position)
{
    const QPoint cell = cellAt(position.toPoint());
    if (m_stroke.way.size() > 1 && m_stroke.way.constLast() == cell)
        return;
    m_stroke.way.append(cell);
    paintWay(m_stroke.way.size() - 2);
    select(CellFrame(gridSize(), cell, cell));
}

/// A quick mouse passes many cells between two places of its way; they are painted as well.
void CellGridEditor::paintWay(qsizetype start)
{
    for (qsizetype i = start + 1; i < m_stroke.way.size(); ++i) {
        const QPoint from = m_stroke.way[i - 1];
        const QPoint way = m_stroke.way[i] - from;
        const int steps = std::max({std::abs(way.x()), std::abs(way.y()), 1});
        for (int step = 0; step <= steps; ++step)
            apply(m_stroke.brush, from + QPoint(qRound(double(way.x()) * step / steps),
                                                qRound(double(way.y()) * step / steps)));
    }
}

void CellGridEditor::restore(const QStringList &rows)
{
    m_cells.setTexts(rows);
    stateChanged();
}

void CellGridEditor::textsEdited(const QStringList &, const QStringList &)
{
    Q_EMIT valueChanged();
}

EditActions CellGridEditor::editActions()
{
    return historyActions(m_gesture);
}

bool CellGridEditor::event(QEvent *event)
{
    return claimKey([this] { return editActions(); }, *event) || PictureView::event(event);
}

void CellGridEditor::keyPressEvent(QKeyEvent *event)
{
    if (m_gesture.takeKey(*event) || performByKey(editActions(), *event))
        return;
    if (event->matches(QKeySequence::SelectAll)) {
        select(CellFrame(gridSize(), {0, 0}, m_frame.lastCell()));
    } else if (const auto frame = m_frame.movedBy(*event); frame && isForFrame(*event)) {
        select(*frame);
    } else if (!isShiftOnly(event->modifiers())) {
        PictureView::keyPressEvent(event);
    } else if (event->key() == Qt::Key_Space) {
        applyTo(brushFor(m_frame.anchor()), m_frame.cells());
    } else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        applyTo(Brush::EraseAny, m_frame.cells());
    } else if (event->key() >= Qt::Key_1 && event->key() <= Qt::Key_9) {
        choose(event->key() - Qt::Key_0);
    } else {
        PictureView::keyPressEvent(event);
    }
}

void CellGridEditor::focusInEvent(QFocusEvent *event)
{
    PictureView::focusInEvent(event);
    stateChanged();
}

void CellGridEditor::focusOutEvent(QFocusEvent *event)
{
    PictureView::focusOutEvent(event);
    m_gesture.interrupt();
}

int CellGridEditor::footerHeight(int width) const
{
    return m_strip.height(width);
}

void CellGridEditor::paintFooter(QPainter &painter)
{
    m_strip.paint(painter, footerRect(), kinds().size() > 1 ? m_kind - 1 : -1,
                  [&](const QRect &place, int chip) { paintCell(painter, place, markStyle(chip + 1)); });
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
