#include "ui/types/ScheduleControl.h"

#include "controls/WeekPlan.h"
#include "controls/WeekSchedule.h"
#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedAddresses.h"

#include <algorithm>

namespace paravue
{
namespace
{

QList<QDomElement> children(const Control &control, const QString &tag, qsizetype most)
{
    QList<QDomElement> found;
    for (QDomElement child = control.element.firstChildElement(tag); !child.isNull() && found.size() < most;
         child = child.nextSiblingElement(tag))
        found.append(child);
    return found;
}

QStringList captions(ControlContext &context, const Control &control, const QString &tag, int most)
{
    QStringList texts;
    for (const QDomElement &child : children(control, tag, most))
        texts.append(context.text(control, child.text()));
    return texts;
}

QList<int> columnWidths(const Control &control)
{
    QList<int> widths;
    for (const QDomElement &column : children(control, QStringLiteral("column"), WeekPlan::Hours))
        widths.append(std::clamp(intAttribute(column, QStringLiteral("width")), 0, limits::Pixels));
    return widths;
}

ScheduleKinds kinds(ControlContext &context, const Control &control)
{
    ScheduleKinds kinds;
    for (const QDomElement &kind : children(control, QStringLiteral("kind"), MostScheduleKinds)) {
        const std::u32string value = kind.attribute(QStringLiteral("value")).toStdU32String();
        if (value.size() == 1)
            kinds.append({value.front(), context.text(control, kind.text())});
    }
    return kinds;
}

/// The addresses of the days, with the default values that the keys may carry; empty without a key.
QStringList dayAddresses(const Control &control)
{
    const QStringList keys = childAddresses(control.element);
    if (keys.isEmpty() || keys.size() >= WeekPlan::Days)
        return keys.mid(0, WeekPlan::Days);
    return numberedAddresses(control.element.firstChildElement(QStringLiteral("key")), QStringLiteral("DAY"),
                             0, WeekPlan::Days);
}

QStringList storedDays(ControlContext &context, const Control &control, const QStringList &addresses)
{
    QStringList days;
    for (const QString &address : addresses)
        days.append(context.value(control, address));
    return days;
}

} // namespace

QWidget *ScheduleControl::create(ControlContext &, const Control &, QWidget *parent) const
{
    return new WeekSchedule(parent);
}

const QMetaObject &ScheduleControl::widgetClass() const
{
    return WeekSchedule::staticMetaObject;
}

ChangeSignal ScheduleControl::changeSignal() const
{
    return {SIGNAL(valueChanged()), SLOT(onCtrlChanged())};
}

bool ScheduleControl::load(ControlContext &context, const Control &control) const
{
    auto *schedule = qobject_cast<WeekSchedule *>(control.widget);
    const bool newCaptions = schedule->setCaptions(
        captions(context, control, QStringLiteral("text"), WeekPlan::Days),
        captions(context, control, QStringLiteral("column"), WeekPlan::Hours), columnWidths(control));
    const bool newKinds = schedule->setKinds(kinds(context, control));
    const QStringList addresses = dayAddresses(control);
    const bool newDays = !addresses.isEmpty() && schedule->setDays(storedDays(context, control, addresses));
    return newCaptions || newKinds || newDays;
}

QStringList ScheduleControl::assignments(ControlContext &context, const Control &control) const
{
    const QStringList days = qobject_cast<WeekSchedule *>(control.widget)->days();
    const QStringList addresses = dayAddresses(control);
    const QStringList stored = storedDays(context, control, addresses);
    QStringList changes;
    for (qsizetype day = 0; day < addresses.size(); ++day) {
        if (days[day] != stored[day])
            changes.append(OrbSetup::path(addresses[day]) + u'/' + days[day]);
    }
    return changes;
}

} // namespace paravue
