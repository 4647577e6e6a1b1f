#pragma once

#include <QMetaMethod>
#include <QString>

namespace paravue
{

/// The public slot of \a widgetClass that a call action reaches by this name, with one text or without an
/// argument; invalid when there is none. What every object inherits is not for a description.
QMetaMethod callableSlot(const QMetaObject &widgetClass, const QString &slot, bool hasParam);

/// True for a call that gives a label or a button a new text. These have ways of their own for it: a label
/// must not take the text for rich text that refers outside, and buttons have no slot.
bool setsCaption(const QMetaObject &widgetClass, const QString &slot, bool hasParam);

} // namespace paravue
