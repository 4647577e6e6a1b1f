#include "controls/ScheduleGrid.h"

#include "controls/AccessibleSchedule.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>

#include <utility>

namespace paravue
{

ScheduleGrid::ScheduleGrid(QWidget *parent) : QWidget(parent), m_kinds(usualScheduleKinds())
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
    if (m_stroke) { // goes on: its Escape must not reach the window, nor bring back what has been replaced
        m_stroke->before = plan;
        paintTo(m_current);
    }
    update();
}

void ScheduleGrid::edit(const WeekPlan &plan)
{
    cancelStroke();
    if (plan == m_plan)
        return;
    m_plan = plan;
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
    const char32_t entry = m_plan.at(cell);
    const int number = kindNumber(m_kinds, entry);
    const QString name =
        number == UnknownKind ? tr("unknown (%1)").arg(QString::fromUcs4(&entry, 1)) : m_kinds[number].name;
    return tr("%1, %2:00 to %3:00: %4")
        .arg(m_dayNames.value(cell.day), QString::number(cell.hour), QString::number(cell.hour + 1), name);
}

QSize ScheduleGrid::sizeHint() const
{
    return m_geometry.leastSize();
}

QSize ScheduleGrid::minimumSizeHint() const
{
    return m_geometry.leastSize();
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
        cancelStroke();
        update();
        break;
    default:
        break;
    }
}

void ScheduleGrid::hideEvent(QHideEvent *)
{
    cancelStroke();
}

void ScheduleGrid::focusInEvent(QFocusEvent *)
{
    update();
}

void ScheduleGrid::focusOutEvent(QFocusEvent *)
{
    update();
}

void ScheduleGrid::mousePressEvent(QMouseEvent *event)
{
    const bool erases = event->button() == Qt::RightButton;
    if (m_stroke || (event->button() != Qt::LeftButton && !erases))
        return;
    m_stroke = Stroke{event->button(), m_geometry.rangeAt(event->position().toPoint()), m_plan};
    paintTo(m_stroke->start.last);
}

void ScheduleGrid::mouseMoveEvent(QMouseEvent *event)
{
    if (m_stroke)
        paintTo(m_geometry.nearestCell(event->position().toPoint()));
}

void ScheduleGrid::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_stroke || event->button() != m_stroke->button)
        return;
    const WeekPlan before = std::exchange(m_stroke, std::nullopt)->before;
    if (before == m_plan)
        return;
    announceSchedule(*this);
    Q_EMIT edited();
}

/// The stroke covers all from its start up to \a cell, and nothing that it has covered in between.
void ScheduleGrid::paintTo(const PlanCell &cell)
{
    const PlanRange covered = m_stroke->start.united({cell, cell});
    const int number = m_stroke->button == Qt::RightButton ? 0 : m_kind;
    m_plan = m_stroke->before;
    m_plan.fill(covered, m_kinds[number].value);
    const auto farEnd = [](int at, int start, int first, int last) { return at < start ? first : last; };
    const PlanRange &start = m_stroke->start;
    const PlanCell far{farEnd(cell.day, start.first.day, covered.first.day, covered.last.day),
                       farEnd(cell.hour, start.first.hour, covered.first.hour, covered.last.hour)};
    const PlanCell near{covered.first.day + covered.last.day - far.day,
                        covered.first.hour + covered.last.hour - far.hour};
    select(near, far);
}

void ScheduleGrid::cancelStroke()
{
    if (m_stroke)
        m_plan = std::exchange(m_stroke, std::nullopt)->before;
    update();
}

void ScheduleGrid::select(const PlanCell &anchor, const PlanCell &current)
{
    const int dayBefore = m_current.day;
    m_anchor = anchor;
    m_current = current;
    update();
    if (m_current.day != dayBefore)
        Q_EMIT currentDayChanged(m_current.day);
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
    if (m_stroke) {
        // Escape would close the window; other keys would change what the stroke goes back to.
        if (event->key() == Qt::Key_Escape)
            cancelStroke();
    } else if (event->matches(QKeySequence::SelectAll)) {
        select({WeekPlan::Days - 1, WeekPlan::Hours - 1}, {0, 0});
    } else if (event->matches(QKeySequence::Copy)) {
        m_copied = m_plan.hoursOf(m_current.day);
    } else if (event->matches(QKeySequence::Paste)) {
        pasteDay();
    } else if (event->key() == Qt::Key_Space) {
        fillSelection(m_kind);
    } else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        fillSelection(0);
    } else if (!moveCurrent(*event) && !chooseKind(*event)) {
        QWidget::keyPressEvent(event);
    }
}

bool ScheduleGrid::moveCurrent(const QKeyEvent &event)
{
    const bool byWeek = event.modifiers() & Qt::ControlModifier;
    const int forward = isRightToLeft() ? -1 : 1;
    PlanCell cell = m_current;
    switch (event.key()) {
    case Qt::Key_Left:
        cell.hour -= forward;
        break;
    case Qt::Key_Right:
        cell.hour += forward;
        break;
    case Qt::Key_Up:
        --cell.day;
        break;
    case Qt::Key_Down:
        ++cell.day;
        break;
    case Qt::Key_Home:
        cell = {byWeek ? 0 : cell.day, 0};
        break;
    case Qt::Key_End:
        cell = {byWeek ? WeekPlan::Days - 1 : cell.day, WeekPlan::Hours - 1};
        break;
    default:
        return false;
    }
    cell = {qBound(0, cell.day, WeekPlan::Days - 1), qBound(0, cell.hour, WeekPlan::Hours - 1)};
    select(event.modifiers() & Qt::ShiftModifier ? m_anchor : cell, cell);
    return true;
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
