#include "controls/WeekPlan.h"
#include "controls/WeekSchedule.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedRows.h"
#include "ui/types/AdapterTexts.h"

#include <memory>

namespace paravue
{
namespace
{

static_assert(DaysOfSchedule == WeekPlan::Days && MostKindsOfSchedule == MaxScheduleKinds);

ScheduleKinds kinds(ControlContext &context, const Control &control)
{
    ScheduleKinds kinds;
    for (const QDomElement &kind : scheduleKinds(control.element))
        kinds.append({kind.attribute(QStringLiteral("value")).toStdU32String().front(),
                      context.text(control, kind.text())});
    return kinds;
}

/// A week by hours (see WeekSchedule). The captions of the hours are the "column" children with their
/// "width", those of the days, from Monday, the "text" children, and what can be planned the "kind" children
/// with the character that stands for each in their "value".
///
/// The plan of each day is a text with one character per hour, half or quarter of an hour; "resolution" is
/// what a character stands for, in minutes, where the stored texts do not tell. With one "key" it stands at
/// that address with 0 (Monday) to 6 behind it, or, when it ends with its section, at DAY0 to DAY6 of that
/// section; seven keys are the addresses of the days themselves. Only days that the user has changed are
/// written.
class ScheduleAdapter : public TypedAdapter<WeekSchedule>
{
public:
    ScheduleAdapter()
        : TypedAdapter({.changes = {onSignal<&WeekSchedule::valueChanged>},
                        .attributes = {{"resolution", AttributeRule::Word, {"60", "30", "15"}}},
                        .children = {{"column", {{"width"}}},
                                     {"text"},
                                     {"kind", {{"value", AttributeRule::Character}}}},
                        .keys = {{.form = KeyRule::Rows, .keyPerRow = WeekPlan::Days}},
                        .cost = 15})
    {
    }

    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override
    {
        return new WeekSchedule(parent);
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal; }

    bool load(ControlContext &context, const Control &control) const override
    {
        WeekSchedule &schedule = widget(control);
        const bool newCaptions =
            schedule.setCaptions(captions(context, control, QStringLiteral("text"), WeekPlan::Days),
                                 captions(context, control, QStringLiteral("column"), WeekPlan::Hours),
                                 columnWidths(control, WeekPlan::Hours));
        const bool newKinds = schedule.setKinds(kinds(context, control));
        const bool newSlots =
            schedule.setResolution(intAttribute(control.element, QStringLiteral("resolution")));
        const QStringList days = valuesAt(context, control, dayAddresses(control.element));
        const bool newDays = !days.isEmpty() && schedule.setDays(days);
        return newCaptions || newKinds || newSlots || newDays;
    }

    HistoryMove historyMove(const Control &control) const override { return widget(control).historyMove(); }

    QList<Assignment> assignments(ControlContext &context, const Control &control) const override
    {
        return changedValues(context, dayAddresses(control.element), widget(control).days());
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeScheduleAdapter()
{
    return std::make_unique<ScheduleAdapter>();
}

} // namespace paravue
