#include "controls/AccessibleSchedule.h"

#include "controls/ScheduleGrid.h"

#include <QAccessibleWidget>

namespace paravue
{
namespace
{

class AccessibleSchedule : public QAccessibleWidget
{
public:
    explicit AccessibleSchedule(ScheduleGrid *grid)
        : QAccessibleWidget(grid, QAccessible::Table), m_grid(grid)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value)
            return m_grid->valueText();
        if (kind != QAccessible::Name)
            return QAccessibleWidget::text(kind);
        const QAccessibleInterface *control = parent();
        const QString name = control ? control->text(QAccessible::Name) : QString();
        return name.isEmpty() ? ScheduleGrid::tr("Week schedule") : name;
    }

private:
    ScheduleGrid *m_grid;
};

QAccessibleInterface *createSchedule(const QString &, QObject *object)
{
    auto *grid = qobject_cast<ScheduleGrid *>(object);
    return grid ? new AccessibleSchedule(grid) : nullptr;
}

} // namespace

void installAccessibleSchedule()
{
    static const bool installed = [] {
        QAccessible::installFactory(createSchedule);
        return true;
    }();
    Q_UNUSED(installed);
}

void announceSchedule(ScheduleGrid &grid)
{
    QAccessibleValueChangeEvent event(&grid, grid.valueText());
    QAccessible::updateAccessibility(&event);
}

} // namespace paravue
