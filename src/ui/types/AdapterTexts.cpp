#include "ui/types/AdapterTexts.h"

#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"

#include <algorithm>

namespace paravue
{

QString caption(ControlContext &context, const Control &control)
{
    return context.text(control, control.element.firstChildElement(QStringLiteral("text")).text());
}

QString unitBehind(ControlContext &context, const Control &control)
{
    const QString unit =
        context.text(control, control.element.firstChildElement(QStringLiteral("unit")).text());
    return unit.isEmpty() ? unit : u' ' + unit;
}

QStringList captions(ControlContext &context, const Control &control, const QString &tag, qsizetype most)
{
    QStringList texts;
    for (const QString &text : childTexts(control.element, tag).mid(0, most))
        texts.append(context.text(control, text));
    return texts;
}

QList<int> columnWidths(const Control &control, qsizetype most)
{
    const QString tag = QStringLiteral("column");
    QList<int> widths;
    for (QDomElement column = control.element.firstChildElement(tag);
         !column.isNull() && widths.size() < most; column = column.nextSiblingElement(tag))
        widths.append(std::clamp(intAttribute(column, QStringLiteral("width")), 0, limits::Pixels));
    return widths;
}

QList<Assignment> assignmentToFirstKey(const Control &control, const QString &value)
{
    return assignmentsToKeys(control, value).mid(0, 1);
}

QList<Assignment> assignmentsToKeys(const Control &control, const QString &value)
{
    QList<Assignment> assignments;
    for (const QString &key : childAddresses(control.element))
        assignments.append({OrbSetup::path(key), value});
    return assignments;
}

QList<Assignment> changedValues(ControlContext &context, const QStringList &addresses,
                                const QStringList &values)
{
    QList<Assignment> changes;
    for (qsizetype i = 0; i < addresses.size(); ++i) {
        if (context.store().value(addresses[i]) != values[i])
            changes.append({OrbSetup::path(addresses[i]), values[i]});
    }
    return changes;
}

QStringList valuesAt(ControlContext &context, const Control &control, const QStringList &addresses)
{
    QStringList values;
    for (const QString &address : addresses)
        values.append(context.value(control, address));
    return values;
}

} // namespace paravue
