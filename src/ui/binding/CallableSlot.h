#pragma once

#include <QMetaMethod>
#include <QString>
#include <QStringList>

namespace paravue
{

/// The public slot of \a widgetClass that a call action reaches by this name, with one text or without an
/// argument; invalid when there is none. Slots that every QObject inherits are excluded.
QMetaMethod callableSlot(const QMetaObject &widgetClass, const QString &slot, bool hasParam);

/// True for a call that gives a label or a button a new text. Both are handled apart: in a label the text
/// must not be interpreted as rich text with external references, and buttons have no slot for it.
bool setsCaption(const QMetaObject &widgetClass, const QString &slot, bool hasParam);

/// The fields of a text for a slot that takes several: they are separated by commas, and blanks around them
/// do not count.
QStringList slotFields(const QString &param);

} // namespace paravue
