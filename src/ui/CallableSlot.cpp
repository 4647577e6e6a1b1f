#include "ui/CallableSlot.h"

#include <QAbstractButton>
#include <QLabel>

namespace paravue
{

QMetaMethod callableSlot(const QMetaObject &widgetClass, const QString &slot, bool hasParam)
{
    // A style sheet can name files and servers.
    if (slot == QLatin1String("setStyleSheet"))
        return {};
    const QString signature = slot + (hasParam ? QStringLiteral("(QString)") : QStringLiteral("()"));
    const int index =
        widgetClass.indexOfSlot(QMetaObject::normalizedSignature(signature.toLatin1().constData()));
    if (index < QObject::staticMetaObject.methodCount())
        return {};
    const QMetaMethod method = widgetClass.method(index);
    return method.access() == QMetaMethod::Public ? method : QMetaMethod();
}

bool setsCaption(const QMetaObject &widgetClass, const QString &slot, bool hasParam)
{
    return hasParam && slot == QLatin1String("setText") &&
           (widgetClass.inherits(&QLabel::staticMetaObject) ||
            widgetClass.inherits(&QAbstractButton::staticMetaObject));
}

} // namespace paravue
