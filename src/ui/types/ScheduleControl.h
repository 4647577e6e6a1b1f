#pragma once

#include "ui/binding/ControlType.h"

namespace paravue
{

/// A week by 24 hours (see WeekSchedule). The captions of the hours are the "column" children with their
/// "width", those of the days, from Monday, the "text" children, and what can be planned the "kind" children
/// with the character that stands for each in their "value".
///
/// The plan of each day is a text with one character per hour. With one "key" it stands at that address with
/// 0 (Monday) to 6 behind it, or, when it ends with its section, at DAY0 to DAY6 of that section; seven keys
/// are the addresses of the days themselves. Only days that the user has changed are written, and of these
/// only the hours.
class ScheduleControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    KeyForm keyForm() const override { return KeyForm::Rows; }
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal; }
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
};

} // namespace paravue
