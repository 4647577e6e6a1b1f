#pragma once

#include "controls/ScheduleKinds.h"

#include <QStringList>
#include <QWidget>

class QButtonGroup;
class QPushButton;
class QVBoxLayout;

namespace paravue
{

class ScheduleGrid;

/// What is planned for each hour of a week: a grid of seven days by 24 hours that is painted over, a legend
/// where the kind to paint with is chosen, and buttons to copy a day and to clear.
///
/// Its value is a text per day, from Monday, with one character per hour, from midnight. Short, long and
/// unknown texts stay as they are except for the hours that the user sets (see WeekPlan).
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

    QStringList days() const;
    /// Emits nothing. Returns false when these are shown already, otherwise nothing can be undone any more.
    bool setDays(const QStringList &days);

public Q_SLOTS:
    /// Clears the whole week as if the user did.
    void clear();

Q_SIGNALS:
    /// The user has changed the plan.
    void valueChanged();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildLegend();
    void arrangeTools();
    int widestCopyButton() const;
    void keepTabStop();
    void showKindIcons();
    void showCurrentDay();
    void clearDay();
    void fillCopyMenu();
    void copyTo(int firstDay, int lastDay);
    QString currentDayName() const;

    ScheduleGrid *m_grid;
    QVBoxLayout *m_tools; ///< rows of the legend and the buttons
    QButtonGroup *m_kindButtons;
    QPushButton *m_copy;
    QPushButton *m_clear;
};

} // namespace paravue
