#pragma once

#include "ui/binding/ControlTable.h"
#include "ui/description/Assignment.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What the adapters of several types read from their element in the same way.
namespace paravue
{

class ControlContext;

/// The visible form of the first "text".
QString caption(ControlContext &context, const Control &control);
/// The visible form of the "unit" behind a value, with a blank in front; empty without one.
QString unitBehind(ControlContext &context, const Control &control);
/// The visible forms of the children with this tag, at most so many of them.
QStringList captions(ControlContext &context, const Control &control, const QString &tag, qsizetype most);
/// The attributes "width" of the "column" children, in pixels; 0 without one.
QList<int> columnWidths(const Control &control, qsizetype most);

/// \a value for the address of the first "key"; empty without one.
QList<Assignment> assignmentToFirstKey(const Control &control, const QString &value);
/// \a value for the address of every "key".
QList<Assignment> assignmentsToKeys(const Control &control, const QString &value);
/// What of \a values differs from what the store has at \a addresses. There may be fewer addresses than
/// values.
QList<Assignment> changedValues(ControlContext &context, const QStringList &addresses,
                                const QStringList &values);
/// The present values at \a addresses.
QStringList valuesAt(ControlContext &context, const Control &control, const QStringList &addresses);

} // namespace paravue
