#pragma once

#include "controls/ScheduleGeometry.h"
#include "controls/ScheduleKinds.h"
#include "controls/WeekPlan.h"

#include <QWidget>

#include <optional>

namespace paravue
{

/// The hours of a week, one row per day, painted over with the kind that is chosen. What the user can do here
/// is told in docs/controls/schedule.md. Assistive tools hear a table whose value is the current hour.
class ScheduleGrid : public QWidget
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
    /// Emits nothing. What the mouse is painting goes on upon it.
    void setPlan(const WeekPlan &plan);
    /// Changes the plan as the user does.
    void edit(const WeekPlan &plan);

    /// The kind that is painted with.
    int kind() const { return m_kind; }
    void setKind(int number);

    PlanCell current() const { return m_current; }
    PlanRange selection() const { return PlanRange::between(m_anchor, m_current); }
    /// Day, hour and kind in words.
    QString describe(const PlanCell &cell) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user has changed the plan: once for each stroke of the mouse.
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
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// A stroke of the mouse while its button is held.
    struct Stroke {
        Qt::MouseButton button;
        PlanRange start;
        WeekPlan before; ///< to go back to
    };

    void measure();
    void fit();
    void paintTo(const PlanCell &cell);
    void cancelStroke();
    void select(const PlanCell &anchor, const PlanCell &current);
    void fillSelection(int number);
    void pasteDay();
    bool moveCurrent(const QKeyEvent &event);
    bool chooseKind(const QKeyEvent &event);
    void paintCaptions(QPainter &painter) const;
    void paintDay(QPainter &painter, int day) const;
    void paintLines(QPainter &painter) const;
    void paintFocus(QPainter &painter) const;

    ScheduleKinds m_kinds;
    QStringList m_dayNames;
    QStringList m_hourCaptions;
    QList<int> m_widths;
    ScheduleGeometry m_geometry;
    WeekPlan m_plan;
    int m_kind = 1;
    PlanCell m_anchor; ///< the selection reaches from here to the current cell
    PlanCell m_current;
    std::optional<Stroke> m_stroke;
    std::optional<std::u32string> m_copied; ///< the hours of a day
};

} // namespace paravue
