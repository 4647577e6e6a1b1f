#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"
#include "ui/types/RunningTime.h"

#include <QDateTimeEdit>
#include <QSignalBlocker>

#include <memory>

namespace paravue
{
namespace
{

// Both read and write a 24-hour clock, as neither has a marker for the half of the day.
const QString storedFormat = QStringLiteral("yyyyMMddHHmmss");
const QString writtenFormat = QStringLiteral("yyyyMMddhhmmss");

class DateTimeAdapter : public TypedAdapter<QDateTimeEdit>
{
public:
    DateTimeAdapter()
        : TypedAdapter({.changes = {onSignal<&QDateTimeEdit::dateTimeChanged>},
                        .attributes = {{"calendarPopup", AttributeRule::Word, {"on", "off"}},
                                       {"format", AttributeRule::Text},
                                       {"ticks", AttributeRule::Word, {"yes", "no"}}},
                        .hasUnfitValues = true,
                        .cost = 4})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        const QDomElement &element = control.element;
        auto *edit = new QDateTimeEdit(parent);
        // The recorder's clock is not this computer's: an hour that the local time zone skips exists there.
        edit->setTimeSpec(Qt::UTC);
        edit->setCalendarPopup(element.attribute(QStringLiteral("calendarPopup")) == QLatin1String("on"));
        if (const QString format = element.attribute(QStringLiteral("format")); !format.isEmpty())
            edit->setDisplayFormat(format);
        if (element.attribute(QStringLiteral("ticks")) == QLatin1String("yes"))
            new RunningTime(*edit);
        return edit;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QDateTimeEdit &edit = widget(control);
        const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
        if (key.isNull())
            return false;
        const QDateTime time = storedTime(context.value(control, addressText(key)));
        if (RunningTime *running = RunningTime::of(edit))
            return running->begin(time);
        if (!time.isValid() || time == edit.dateTime())
            return false;
        const QSignalBlocker silent(edit);
        edit.setDateTime(time);
        return true;
    }

    std::optional<QString> unfitValue(ControlContext &context, const Control &control) const override
    {
        const QString key = firstAddress(control.element);
        if (key.isEmpty())
            return {};
        const QString value = context.value(control, key);
        const QDateTime time = storedTime(value);
        // A clock runs on when its value is gone: a save empties that of the recorder's clock.
        const RunningTime *running = RunningTime::of(widget(control));
        const bool isShown =
            running ? running->hasBegun() : time.isValid() && time == widget(control).dateTime();
        return isShown ? std::nullopt : std::optional(value);
    }

    QList<Assignment> assignments(ControlContext &, const Control &control) const override
    {
        return assignmentToFirstKey(control, widget(control).dateTime().toString(writtenFormat));
    }

    QList<Assignment> runningValues(ControlContext &context, const Control &control) const override
    {
        const RunningTime *running = RunningTime::of(widget(control));
        return running && running->isRunning() && widget(control).isEnabled() ? assignments(context, control)
                                                                              : QList<Assignment>();
    }

private:
    static QDateTime storedTime(const QString &value)
    {
        const QDateTime stored = QDateTime::fromString(value, storedFormat);
        return QDateTime(stored.date(), stored.time(), Qt::UTC);
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeDateTimeAdapter()
{
    return std::make_unique<DateTimeAdapter>();
}

} // namespace paravue
