#include "controls/ScheduleGrid.h"

#include "controls/AccessibleSchedule.h"
#include "controls/ScheduleTexts.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QTextDocument>
#include <QToolTip>

namespace paravue
{
ScheduleGrid::ScheduleGrid(QWidget *parent)
    : QWidget(parent), m_kinds(usualScheduleKinds()), m_frame(gridSize()),
      m_gesture(*this, EditGesture::Interruption::Drops, &m_history)
{
    installAccessibleSchedule();
    setObjectName(QStringLiteral("scheduleGrid"));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    measure();
}

void ScheduleGrid::setKinds(const ScheduleKinds &kinds)
{
    m_kinds = kinds;
    m_plan.setBlank(kinds.value(0).value);
    setKind(m_kind);
    update();
}

bool ScheduleGrid::setCaptions(const QStringList &days, const QStringList &hours, const QList<int> &widths)
{
    if (days == m_dayNames && hours == m_hourCaptions && widths == m_widths)
        return false;
    m_dayNames = days;
    m_hourCaptions = hours;
    m_widths = widths;
    measure();
    return true;
}

void ScheduleGrid::setPlan(const WeekPlan &plan)
{
    const int slotsBefore = m_plan.slotsPerHour();
    const int slots = plan.slotsPerHour();
    if (slots != slotsBefore)
        m_gesture.cancel();
    m_plan = plan;
    m_gesture.textsReplaced();
    if (slots != slotsBefore) {
        const auto scaled = [&](const QPoint &place) {
            return QPoint(place.x() * slots / slotsBefore, place.y());
        };
        m_frame = CellFrame(gridSize(), scaled(m_frame.anchor()), scaled(m_frame.current()));
        measure();
    }
    if (m_gesture.isDragging() && !m_isClick)
        paintTo(current());
    update();
}

/// Days from \a firstDay to \a lastDay were to be changed; those that are not understood have not been.
void ScheduleGrid::edit(const WeekPlan &plan, int firstDay, int lastDay)
{
    m_gesture.cancel();
    m_gesture.perform([&] { m_plan = plan; });
    refuseDays(firstDay, lastDay);
}

void ScheduleGrid::textsEdited(const QStringList &, const QStringList &)
{
    update();
    announceSchedule(*this);
    Q_EMIT edited();
}

void ScheduleGrid::setKind(int number)
{
    m_kind = qBound(0, number, int(m_kinds.size()) - 1);
}

QString ScheduleGrid::describe(const PlanCell &cell) const
{
    return ScheduleTexts::cell(m_plan, cell, m_kinds, m_dayNames);
}

QString ScheduleGrid::valueText() const
{
    const QString text = describe(current());
    return m_refusal.isEmpty() ? text : tr("%1; %2").arg(m_refusal, text);
}

QSize ScheduleGrid::sizeHint() const
{
    return m_geometry.minimumSize();
}

QSize ScheduleGrid::minimumSizeHint() const
{
    return m_geometry.minimumSize();
}

void ScheduleGrid::measure()
{
    m_geometry.measure(fontMetrics(), m_plan.slotsPerHour(), m_dayNames, m_hourCaptions, m_widths);
    fit();
    updateGeometry();
}

void ScheduleGrid::fit()
{
    m_geometry.fit(size(), layoutDirection());
    update();
}

bool ScheduleGrid::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const PlanRange range = m_geometry.rangeAt(help->pos());
        if (range.first == range.last || !m_plan.isUnderstood(range.first.day)) {
            QToolTip::showText(help->globalPos(),
                               Qt::convertFromPlainText(describe(range.first), Qt::WhiteSpaceNormal), this);
            return true;
        }
    }
    return claimKey([this] { return editActions(); }, *event) || QWidget::event(event);
}

void ScheduleGrid::resizeEvent(QResizeEvent *)
{
    fit();
}

void ScheduleGrid::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
        measure();
        break;
    case QEvent::LayoutDirectionChange:
        fit();
        break;
    case QEvent::EnabledChange:
        m_gesture.cancel();
        update();
        break;
    default:
        break;
    }
}

void ScheduleGrid::hideEvent(QHideEvent *)
{
    m_gesture.cancel();
}

void ScheduleGrid::focusInEvent(QFocusEvent *)
{
    update();
}

void ScheduleGrid::focusOutEvent(QFocusEvent *)
{
    // A widget that is disabled loses the focus first.
    if (isEnabled())
        m_gesture.interrupt();
    else
        m_gesture.cancel();
    update();
}

void ScheduleGrid::mousePressEvent(QMouseEvent *event)
{
    m_refusal.clear();
    m_gesture.press(*event);
}

void ScheduleGrid::mouseMoveEvent(QMouseEvent *event)
{
    m_gesture.move(*event);
}

void ScheduleGrid::mouseReleaseEvent(QMouseEvent *event)
{
    const bool opensMenu = m_gesture.isDragging() && event->button() == Qt::RightButton && m_isClick;
    m_gesture.release(*event);
    if (!opensMenu)
        return;
    if (!selection().contains(m_pressed.first) || !selection().contains(m_pressed.last))
        select(CellFrame(gridSize(), {m_pressed.last.slot, m_pressed.last.day},
                         {m_pressed.first.slot, m_pressed.first.day}));
    showMenu(*this, editActions(), event->globalPosition().toPoint());
}

/// The right button opens the menu when it is let go, as a drag with it erases.
void ScheduleGrid::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() != QContextMenuEvent::Mouse && !m_gesture.isDragging())
        showMenuAtSelection();
}

void ScheduleGrid::showMenuAtSelection()
{
    showMenu(*this, editActions(), mapToGlobal(m_geometry.rect(selection()).center()));
}

bool ScheduleGrid::beginDrag(const QMouseEvent &press)
{
    m_pressed = m_geometry.rangeAt(press.position().toPoint());
    m_erases = press.button() == Qt::RightButton;
    m_isClick = m_erases;
    return true;
}

void ScheduleGrid::dragTo(const QPointF &position)
{
    const PlanCell cell = m_geometry.nearestCell(position.toPoint());
    m_isClick = m_isClick && m_pressed.contains(cell);
    if (!m_isClick)
        paintTo(cell);
}

void ScheduleGrid::drop()
{
    if (!m_isClick)
        refuseDays(selection().first.day, selection().last.day);
}

/// A drag paints the rectangle from its start to \a cell; slots outside of it get back their values from
/// before the drag.
void ScheduleGrid::paintTo(const PlanCell &cell)
{
    // What began at the caption of an hour covers whole hours.
    const bool isByHours = m_pressed.first.day != m_pressed.last.day;
    const PlanRange covered = m_pressed.united(isByHours ? m_geometry.hourOf(cell) : PlanRange{cell, cell});
    m_plan.setTexts(m_gesture.before());
    m_plan.fill(covered, m_kinds[m_erases ? 0 : m_kind].value);
    const auto farEnd = [](int at, int start, int first, int last) { return at < start ? first : last; };
    const QPoint far(farEnd(cell.slot, m_pressed.first.slot, covered.first.slot, covered.last.slot),
                     farEnd(cell.day, m_pressed.first.day, covered.first.day, covered.last.day));
    const QPoint near(covered.first.slot + covered.last.slot - far.x(),
                      covered.first.day + covered.last.day - far.y());
    select(CellFrame(gridSize(), near, far));
}

void ScheduleGrid::restore(const QStringList &days)
{
    m_plan.setTexts(days);
    update();
}

void ScheduleGrid::select(const CellFrame &frame)
{
    const int dayBefore = current().day;
    m_frame = frame;
    update();
    if (current().day != dayBefore)
        Q_EMIT currentDayChanged(current().day);
    announceSchedule(*this);
}

void ScheduleGrid::fillSelection(int number)
{
    WeekPlan plan = m_plan;
    plan.fill(selection(), m_kinds[number].value);
    edit(plan, selection().first.day, selection().last.day);
}

void ScheduleGrid::keyPressEvent(QKeyEvent *event)
{
    m_refusal.clear();
    if (m_gesture.takeKey(*event) || performByKey(editActions(), *event))
        return;
    if (isMenuKey(*event))
        showMenuAtSelection();
    else if (!moveFrame(*event) && !chooseKind(*event))
        QWidget::keyPressEvent(event);
}

bool ScheduleGrid::moveFrame(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_PageUp || event.key() == Qt::Key_PageDown)
        return false; // for the page around the schedule
    auto frame = m_frame.movedBy(event, layoutDirection());
    const bool isSideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    const int steps = isSideways && event.modifiers() & Qt::ControlModifier ? m_plan.slotsPerHour() : 1;
    for (int step = 1; frame && step < steps; ++step)
        frame = frame->movedBy(event, layoutDirection());
    if (frame)
        select(*frame);
    return frame.has_value();
}

bool ScheduleGrid::chooseKind(const QKeyEvent &event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const QString text = event.text();
    const int number = text.size() == 1 ? text.front().digitValue() : -1;
    if (number < 0 || number >= m_kinds.size())
        return false;
    chooseKind(number);
    return true;
}

} // namespace paravue
