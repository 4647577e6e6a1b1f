#pragma once

#include "controls/CellFrame.h"
#include "controls/EditActions.h"
#include "controls/EditGesture.h"
#include "controls/EditHistory.h"
#include "controls/ScheduleGeometry.h"
#include "controls/ScheduleKinds.h"
#include "controls/WeekPlan.h"

#include <QWidget>

#include <string>

namespace paravue
{

/// The hours of a week, or their halves or quarters, one row per day, which the user paints with the chosen
/// kind; docs/controls/schedule.md has its mouse gestures and keys. A day that is not understood (see
/// WeekPlan) says so and cannot be painted. Screen readers get a table whose value is the current slot.
class ScheduleGrid : public QWidget, private EditGesture::Editor
{
    Q_OBJECT

public:
    explicit ScheduleGrid(QWidget *parent = nullptr);

    void setKinds(const ScheduleKinds &kinds);
    const ScheduleKinds &kinds() const { return m_kinds; }
    /// The captions of days and hours, and the widths of the hours' columns (0: as the caption needs).
    /// Returns false when they are shown already.
    bool setCaptions(const QStringList &days, const QStringList &hours, const QList<int> &widths);
    const QStringList &dayNames() const { return m_dayNames; }

    const WeekPlan &plan() const { return m_plan; }
    /// Emits nothing. A drag goes on with the new plan unless that has other slots, and nothing can be undone
    /// any more.
    void setPlan(const WeekPlan &plan);
    /// The following change the plan as if the user did.
    void clearDay();
    void clearWeek();
    /// The plan of the current day for days from \a first to \a last.
    void copyDayTo(int first, int last);
    /// What clearDay() does, in words.
    QString clearDayText() const;

    EditActions editActions();
    /// While edited() is emitted.
    HistoryMove historyMove() const { return m_gesture.historyMove(); }
    EditActions undoActions() { return historyActions(m_gesture); }

    /// The kind that is painted with.
    int kind() const { return m_kind; }
    void setKind(int number);

    PlanCell current() const { return cellOf(m_frame.current()); }
    PlanRange selection() const { return PlanRange::between(cellOf(m_frame.anchor()), current()); }
    /// Day, time and kind in words.
    QString describe(const PlanCell &cell) const;
    /// The current slot in words, and why the last action has changed nothing.
    QString valueText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user has changed the plan; emitted once for each drag.
    void edited();
    void kindChosen(int number);
    void currentDayChanged(int day);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    static PlanCell cellOf(const QPoint &place) { return {place.y(), place.x()}; }

    QStringList texts() const override { return m_plan.texts(); }
    bool beginDrag(const QMouseEvent &press) override;
    void dragTo(const QPointF &position) override;
    void restore(const QStringList &days) override;
    void drop() override;
    void textsEdited(const QStringList &before, const QStringList &after) override;

    QSize gridSize() const { return {m_plan.slotsPerDay(), WeekPlan::Days}; }
    void edit(const WeekPlan &plan, int firstDay, int lastDay);
    void refuse(const QString &reason);
    void refuseDays(int first, int last);
    EditActions kindActions();
    EditActions selectionActions();
    EditActions dayActions();
    void showMenuAtSelection();
    void copySelectedDays();
    void pasteDays();
    QString faultOf(const QList<std::u32string> &copied, int first) const;
    void chooseKind(int number);
    void measure();
    void fit();
    void paintTo(const PlanCell &cell);
    void select(const CellFrame &frame);
    void fillSelection(int number);
    bool moveFrame(const QKeyEvent &event);
    bool chooseKind(const QKeyEvent &event);
    void paintCaptions(QPainter &painter) const;
    void paintDay(QPainter &painter, int day) const;
    void paintMarks(QPainter &painter, int day) const;
    void paintNote(QPainter &painter, const QRect &row, const QString &text) const;
    void paintLines(QPainter &painter) const;
    void paintFocus(QPainter &painter) const;

    ScheduleKinds m_kinds;
    QStringList m_dayNames;
    QStringList m_hourCaptions;
    QList<int> m_widths;
    ScheduleGeometry m_geometry;
    WeekPlan m_plan;
    int m_kind = 1;
    CellFrame m_frame;   ///< a column is a slot, a row a day
    PlanRange m_pressed; ///< where the drag began
    bool m_erases = false;
    bool m_isClick = false; ///< the right button has not left the place where it was pressed
    QString m_refusal;
    EditHistory m_history;
    EditGesture m_gesture;
};

} // namespace paravue
