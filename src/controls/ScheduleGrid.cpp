#include "controls/ScheduleGrid.h"

#include "controls/AccessibleSchedule.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>

namespace paravue
{
namespace
{

constexpr QSize WeekSize(WeekPlan::Hours, WeekPlan::Days);

} // namespace

ScheduleGrid::ScheduleGrid(QWidget *parent)
    : QWidget(parent), m_kinds(usualScheduleKinds()), m_frame(WeekSize),
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
    m_plan = plan;
    m_gesture.textsReplaced();
    if (m_gesture.isDragging())
        paintTo(current());
    update();
}

void ScheduleGrid::edit(const WeekPlan &plan)
{
    m_gesture.cancel();
    m_gesture.perform([&] { m_plan = plan; });
}

void ScheduleGrid::textsEdited(const QStringList &, const QStringList &)
{
    update();
    announceSchedule(*this);
    Q_EMIT edited();
}

EditActions ScheduleGrid::editActions()
{
    return historyActions(m_gesture);
}

void ScheduleGrid::setKind(int number)
{
    m_kind = qBound(0, number, int(m_kinds.size()) - 1);
}

QString ScheduleGrid::describe(const PlanCell &cell) const
{
    const char32_t entry = m_plan.at(cell);
    const int number = kindNumber(m_kinds, entry);
    const QString name =
        number == UnknownKind ? tr("unknown (%1)").arg(QString::fromUcs4(&entry, 1)) : m_kinds[number].name;
    return tr("%1, %2:00 to %3:00: %4")
        .arg(m_dayNames.value(cell.day), QString::number(cell.hour), QString::number(cell.hour + 1), name);
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
    m_geometry.measure(fontMetrics(), m_dayNames, m_hourCaptions, m_widths);
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
        if (range.first == range.last) {
            QToolTip::showText(help->globalPos(), describe(range.first).toHtmlEscaped(), this);
            return true;
        }
    }
    return QWidget::event(event);
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
    m_gesture.press(*event);
}

void ScheduleGrid::mouseMoveEvent(QMouseEvent *event)
{
    m_gesture.move(*event);
}

void ScheduleGrid::mouseReleaseEvent(QMouseEvent *event)
{
    m_gesture.release(*event);
}

bool ScheduleGrid::beginDrag(const QMouseEvent &press)
{
    m_pressed = m_geometry.rangeAt(press.position().toPoint());
    m_erases = press.button() == Qt::RightButton;
    return true;
}

void ScheduleGrid::dragTo(const QPointF &position)
{
    paintTo(m_geometry.nearestCell(position.toPoint()));
}

/// A drag paints the rectangle from its start to \a cell; hours outside of it get back their values from
/// before the drag.
void ScheduleGrid::paintTo(const PlanCell &cell)
{
    const PlanRange covered = m_pressed.united({cell, cell});
    m_plan.setTexts(m_gesture.before());
    m_plan.fill(covered, m_kinds[m_erases ? 0 : m_kind].value);
    const auto farEnd = [](int at, int start, int first, int last) { return at < start ? first : last; };
    const QPoint far(farEnd(cell.hour, m_pressed.first.hour, covered.first.hour, covered.last.hour),
                     farEnd(cell.day, m_pressed.first.day, covered.first.day, covered.last.day));
    const QPoint near(covered.first.hour + covered.last.hour - far.x(),
                      covered.first.day + covered.last.day - far.y());
    select(CellFrame(WeekSize, near, far));
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
    edit(plan);
}

void ScheduleGrid::pasteDay()
{
    if (!m_copied)
        return;
    WeekPlan plan = m_plan;
    for (int day = selection().first.day; day <= selection().last.day; ++day)
        plan.setHours(day, *m_copied);
    edit(plan);
}

void ScheduleGrid::keyPressEvent(QKeyEvent *event)
{
    if (m_gesture.takeKey(*event))
        return;
    if (event->matches(QKeySequence::SelectAll)) {
        select(CellFrame(WeekSize, m_frame.lastCell(), {0, 0}));
    } else if (event->matches(QKeySequence::Copy)) {
        m_copied = m_plan.hoursOf(current().day);
    } else if (event->matches(QKeySequence::Paste)) {
        pasteDay();
    } else if (event->key() == Qt::Key_Space) {
        fillSelection(m_kind);
    } else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        fillSelection(0);
    } else if (!moveFrame(*event) && !chooseKind(*event)) {
        QWidget::keyPressEvent(event);
    }
}

bool ScheduleGrid::moveFrame(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_PageUp || event.key() == Qt::Key_PageDown)
        return false; // for the page around the schedule
    const auto frame = m_frame.movedBy(event, layoutDirection());
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
    setKind(number);
    Q_EMIT kindChosen(number);
    return true;
}

} // namespace paravue
