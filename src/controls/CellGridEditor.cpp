#include "controls/CellGridEditor.h"

#include "controls/CellClipboard.h"
#include "controls/OwnTexts.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace paravue
{
namespace
{

constexpr int LongestName = 100; // more than a line has room for

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
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    keepTranslated(*this, [this] { showKinds(); });
}

bool CellGridEditor::setRows(const QStringList &rows)
{
    if (!m_cells.setTexts(rows))
        return false;
    m_gesture.textsReplaced();
    if (m_gesture.isDragging() && !m_stroke.isClick)
        m_tool == Tool::Rectangle ? paintRectangle() : paintWay(0);
    stateChanged();
    return true;
}

bool CellGridEditor::setKinds(const QStringList &names)
{
    QStringList fitting = names.mid(0, MaxKinds);
    for (QString &name : fitting)
        name = name.left(LongestName).simplified();
    if (fitting.isEmpty() || fitting == m_kinds)
        return false;
    m_kinds = fitting;
    m_kind = std::min(m_kind, int(fitting.size()));
    showKinds();
    stateChanged();
    return true;
}

void CellGridEditor::showKinds()
{
    m_strip.setTexts(m_kinds + QStringList{tr("Rectangle"), tr("Brush")});
    updateGeometry();
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
    QString text = tr("%1: %2").arg(place, state);
    if (kinds().size() > 1)
        text = tr("%1; painting with %2").arg(text, kinds().value(m_kind - 1));
    if (!m_refusal.isEmpty())
        text = tr("%1; %2").arg(m_refusal, text);
    return withNotice(m_tool == Tool::Brush ? tr("%1; brush").arg(text) : text);
}

void CellGridEditor::setCaption(const QString &text)
{
    setAccessibleDescription(text);
    if (m_strip.setNote(text, footerRect().width()))
        updateGeometry();
    update();
}

void CellGridEditor::slot_Set_all()
{
    applyTo(Brush::Paint, QRect(QPoint(), gridSize()));
}

void CellGridEditor::slot_Clear_all()
{
    applyTo(Brush::EraseAny, QRect(QPoint(), gridSize()));
}

void CellGridEditor::slot_Invert()
{
    changeCells(QRect(QPoint(), gridSize()), [this](const QPoint &cell) {
        const int mark = m_cells.mark(cell);
        return (mark == 0 || isOfKind(mark, m_kind)) && m_cells.setMark(cell, mark == 0 ? m_kind : 0);
    });
}

void CellGridEditor::slot_Undo()
{
    m_gesture.undo();
}

void CellGridEditor::slot_Redo()
{
    m_gesture.redo();
}

void CellGridEditor::slot_Copy()
{
    copyCells(m_cells);
}

void CellGridEditor::slot_Paste()
{
    const QStringList copied = copiedCells().value_or(QStringList());
    m_refusal = faultOf(copied);
    if (!m_refusal.isEmpty()) {
        stateChanged();
        showRefusal(*this, m_refusal);
        return;
    }
    changeCells(QRect(QPoint(), gridSize()), [&](const QPoint &cell) {
        const int mark = copied[cell.y()][cell.x()].digitValue();
        const int kind = kindOf(mark);
        return (kind == 0 || !isOfKind(m_cells.mark(cell), kind)) &&
               m_cells.setMark(cell, kind == 0 ? mark : kind);
    });
}

/// The kind that a mark counts as here; 0 for none.
int CellGridEditor::kindOf(int mark) const
{
    int kind = 1;
    while (kind <= kinds().size() && !isOfKind(mark, kind))
        ++kind;
    return kind <= kinds().size() ? kind : 0;
}

/// Why copied cells cannot be pasted; empty when they can.
QString CellGridEditor::faultOf(const QStringList &copied) const
{
    if (copied.isEmpty())
        return tr("Not pasted: the clipboard holds no cells");
    const QSize size(int(copied[0].size()), int(copied.size()));
    if (size != gridSize())
        return tr("Not pasted: the copied grid has %1 columns and %2 rows, this one has %3 and %4")
            .arg(QString::number(size.width()), QString::number(size.height()),
                 QString::number(gridSize().width()), QString::number(gridSize().height()));
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int mark = copied[y][x].digitValue();
            if (mark != 0 && kindOf(mark) == 0 && m_cells.mark({x, y}) != mark)
                return tr("Not pasted: there is no zone %1 here").arg(QString::number(mark));
        }
    }
    return {};
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

void CellGridEditor::chooseTool(Tool tool)
{
    m_tool = tool;
    stateChanged();
}

void CellGridEditor::pressStrip(const QPoint &position)
{
    const int chip = m_strip.at(position, footerRect());
    const int tool = chip - int(kinds().size());
    if (tool >= 0)
        chooseTool(Tool(tool));
    else
        choose(chip + 1);
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
    changeCells(cells, [&](const QPoint &cell) { return apply(brush, cell); });
}

/// \a change returns whether it has changed the cell.
void CellGridEditor::changeCells(const QRect &cells, const std::function<bool(const QPoint &)> &change)
{
    m_gesture.cancel();
    m_gesture.perform([&] {
        bool changed = false;
        for (int y = cells.top(); y <= cells.bottom(); ++y) {
            for (int x = cells.left(); x <= cells.right(); ++x)
                changed |= change({x, y});
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

void CellGridEditor::mousePressEvent(QMouseEvent *event)
{
    m_refusal.clear();
    m_gesture.press(*event);
}

void CellGridEditor::mouseMoveEvent(QMouseEvent *event)
{
    m_gesture.move(*event);
}

void CellGridEditor::mouseReleaseEvent(QMouseEvent *event)
{
    const bool opensMenu = m_gesture.isDragging() && event->button() == Qt::RightButton && m_stroke.isClick;
    m_gesture.release(*event);
    if (!opensMenu)
        return;
    const QPoint cell = m_stroke.way.constFirst();
    if (!m_frame.cells().contains(cell))
        select(CellFrame(gridSize(), cell, cell));
    showMenu(*this, editActions(), event->globalPosition().toPoint());
}

/// The right button opens the menu when it is let go, as a drag with it erases.
void CellGridEditor::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_gesture.isDragging() ||
        (event->reason() == QContextMenuEvent::Mouse && pictureRect().contains(event->pos())))
        return;
    if (event->reason() == QContextMenuEvent::Keyboard)
        showMenuAtSelection();
    else
        showMenu(*this, editActions(), event->globalPos());
}

void CellGridEditor::showMenuAtSelection()
{
    showMenu(*this, editActions(), mapToGlobal(borders().place(m_frame.cells()).center()));
}

bool CellGridEditor::beginDrag(const QMouseEvent &press)
{
    const bool isLeft = press.button() == Qt::LeftButton;
    const QPoint position = press.position().toPoint();
    if (!pictureRect().contains(position)) {
        if (isLeft)
            pressStrip(position);
        return false;
    }
    const QPoint cell = cellAt(position);
    m_stroke = {brushOf(press, cell), !isLeft, {cell}};
    return true;
}

CellGridEditor::Brush CellGridEditor::brushOf(const QMouseEvent &press, const QPoint &cell) const
{
    if (press.button() == Qt::RightButton || press.modifiers() & Qt::AltModifier)
        return Brush::EraseAny;
    return press.modifiers() & Qt::ShiftModifier ? Brush::Paint : brushFor(cell);
}

/// From the start of the drag to the mouse.
CellFrame CellGridEditor::draggedFrame() const
{
    return CellFrame(gridSize(), m_stroke.way.constFirst(), m_stroke.way.constLast());
}

void CellGridEditor::dragTo(const QPointF &position)
{
    const QPoint cell = cellAt(position.toPoint());
    const bool hasMoved = cell != m_stroke.way.constLast();
    if (!hasMoved && (m_stroke.isClick || m_stroke.way.size() > 1))
        return;
    m_stroke.isClick = false;
    if (m_tool == Tool::Rectangle) {
        m_stroke.way = {m_stroke.way.constFirst(), cell};
        m_cells.setTexts(m_gesture.before());
        paintRectangle();
        select(draggedFrame());
    } else {
        m_stroke.way.append(cell);
        paintWay(m_stroke.way.size() - 2);
        select(CellFrame(gridSize(), cell, cell));
    }
}

void CellGridEditor::paintRectangle()
{
    const QRect cells = draggedFrame().cells();
    for (int y = cells.top(); y <= cells.bottom(); ++y) {
        for (int x = cells.left(); x <= cells.right(); ++x)
            apply(m_stroke.brush, {x, y});
    }
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
    return groupedActions({historyActions(m_gesture), clipboardActions(), toolActions(), kindActions(),
                           cellActions(), pictureActions()});
}

EditActions CellGridEditor::clipboardActions()
{
    return {
        {tr("Copy all cells"), keysFor(QKeySequence::Copy, Qt::CTRL | Qt::Key_C), [this] { slot_Copy(); }},
        {tr("Paste"), keysFor(QKeySequence::Paste, Qt::CTRL | Qt::Key_V), [this] { slot_Paste(); }}};
}

EditActions CellGridEditor::toolActions()
{
    const auto action = [this](const QString &text, Qt::Key key, Tool tool) {
        return EditAction{text, {Qt::CTRL | key}, [this, tool] { chooseTool(tool); }, true, m_tool == tool};
    };
    return {action(tr("Rectangle"), Qt::Key_E, Tool::Rectangle), action(tr("Brush"), Qt::Key_B, Tool::Brush)};
}

EditActions CellGridEditor::kindActions()
{
    EditActions actions;
    for (int kind = 1; kinds().size() > 1 && kind <= kinds().size(); ++kind)
        actions.append({kinds().at(kind - 1),
                        {Qt::Key(Qt::Key_0 + kind)},
                        [this, kind] { choose(kind); },
                        true,
                        kind == m_kind});
    return actions;
}

EditActions CellGridEditor::cellActions()
{
    return {{tr("Mark selected cells"), {Qt::Key_Insert}, [this] { applyTo(Brush::Paint, m_frame.cells()); }},
            {tr("Clear selected cells"),
             {Qt::Key_Delete, Qt::Key_Backspace},
             [this] { applyTo(Brush::EraseAny, m_frame.cells()); }},
            {tr("Select all cells"),
             {Qt::CTRL | Qt::Key_A},
             [this] {
                 select(CellFrame(gridSize(), {0, 0}, m_frame.lastCell()));
             }},
            {tr("Invert"), {Qt::CTRL | Qt::Key_I}, [this] { slot_Invert(); }},
            {tr("Clear all"), {Qt::CTRL | Qt::Key_Delete}, [this] { slot_Clear_all(); }}};
}

bool CellGridEditor::event(QEvent *event)
{
    return claimKey([this] { return editActions(); }, *event) || PictureView::event(event);
}

void CellGridEditor::keyPressEvent(QKeyEvent *event)
{
    m_refusal.clear();
    if (m_gesture.takeKey(*event) || performByKey(editActions(), *event))
        return;
    if (isMenuKey(*event)) {
        showMenuAtSelection();
    } else if (const auto frame = m_frame.movedBy(*event); frame && isForFrame(*event)) {
        select(*frame);
    } else if (!isShiftOnly(event->modifiers())) {
        PictureView::keyPressEvent(event);
    } else if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat()) // which would take back what the press has done
            applyTo(brushFor(m_frame.anchor()), m_frame.cells());
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

} // namespace paravue
