#include "ui/binding/CallableSlot.h"

#include <QAbstractButton>
#include <QLabel>

namespace paravue
{

QMetaMethod callableSlot(const QMetaObject &widgetClass, const QString &slot, bool hasParam)
{
    const QString signature = slot + (hasParam ? QStringLiteral("(QString)") : QStringLiteral("()"));
    const int index =
        widgetClass.indexOfSlot(QMetaObject::normalizedSignature(signature.toLatin1().constData()));
    if (index < QObject::staticMetaObject.methodCount())
        return {};
    const QMetaMethod method = widgetClass.method(index);
    // A style sheet can refer to files and servers, and a dialog must run in the window's own event loop.
    // Compared is the name of the slot that was found, as the requested name may have blanks around it.
    const bool isHarmful = method.name() == "setStyleSheet" || method.name() == "exec";
    return method.access() == QMetaMethod::Public && !isHarmful ? method : QMetaMethod();
}

bool setsCaption(const QMetaObject &widgetClass, const QString &slot, bool hasParam)
{
    return hasParam && slot == QLatin1String("setText") &&
           (widgetClass.inherits(&QLabel::staticMetaObject) ||
            widgetClass.inherits(&QAbstractButton::staticMetaObject));
}

QStringList slotFields(const QString &param)
{
    QStringList fields = param.split(u',');
    for (QString &field : fields)
        field = field.trimmed();
    return fields;
}

} // namespace paravue
