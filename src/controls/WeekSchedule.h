#pragma once

#include "controls/EditHistory.h"
#include "controls/ScheduleKinds.h"

#include <QStringList>
#include <QWidget>

class QButtonGroup;
class QPushButton;
class QVBoxLayout;

namespace paravue
{

class ScheduleGrid;
class WeekPlan;

/// What is planned for each hour, half or quarter of an hour of a week: a grid of seven days that is painted
/// over, a legend where the kind to paint with is chosen, and buttons to copy a day and to clear.
///
/// Its value is a text per day, from Monday, with 24, 48 or 96 characters, from midnight. Other texts stay as
/// they are until the user replaces them (see WeekPlan).
class WeekSchedule : public QWidget
{
    Q_OBJECT

public:
    explicit WeekSchedule(QWidget *parent = nullptr);

    /// The captions of the days and of the hours; those that are missing are the names of the locale and
    /// plain numbers. \a widths are those of the hours' columns in pixels, 0 as the caption needs. Returns
    /// false when they are shown already.
    bool setCaptions(const QStringList &days, const QStringList &hours, const QList<int> &widths = {});
    /// What can be planned; an empty list stands for the usual kinds. Kinds beyond MaxScheduleKinds are
    /// left out. Returns false when they are offered already.
    bool setKinds(const ScheduleKinds &kinds);

    /// The length of a slot in minutes: 60, 30 or 15, or less when a day has shorter ones. Any other number
    /// stands for 60. Returns false when nothing changes.
    bool setResolution(int minutes);

    QStringList days() const;
    /// Emits nothing. Returns false when these are shown already, otherwise nothing can be undone any more.
    bool setDays(const QStringList &days);

    /// While valueChanged() is emitted.
    HistoryMove historyMove() const;

public Q_SLOTS:
    /// Clears the whole week as if the user did, but for days that are not understood.
    void clear();

Q_SIGNALS:
    /// The user has changed the plan.
    void valueChanged();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool setPlan(const WeekPlan &plan);
    void buildLegend();
    void arrangeTools();
    int widestCopyButton() const;
    void keepTabStop();
    void showKindIcons();
    void showCurrentDay();
    void fillClearMenu();
    void fillCopyMenu();
    QString currentDayName() const;

    ScheduleGrid *m_grid;
    QVBoxLayout *m_tools; ///< rows of the legend and the buttons
    QButtonGroup *m_kindButtons;
    QPushButton *m_copy;
    QPushButton *m_clear;
};

} // namespace paravue
