#include "PortalThread.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace paravue
{

namespace
{

// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
const QString Service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString Path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString Interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString Group = QStringLiteral("org.freedesktop.appearance");
const QString Key = QStringLiteral("color-scheme");
constexpr uint PrefersDark = 1;
const QString BusName = QStringLiteral("paravue-setup appearance");

/// The portal wraps a value once for the variant and once more for its answer.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

PortalThread::~PortalThread() = default;

void PortalThread::run()
{
    // QtDBus looks the types of slots up by name, and registers its own only with the first message.
    qRegisterMetaType<QDBusVariant>();
    {
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, BusName);
        PortalListener listener;
        connect(&listener, &PortalListener::found, this, &PortalThread::found, Qt::DirectConnection);
        if (bus.isConnected() &&
            bus.connect(Service, Path, Interface, QStringLiteral("SettingChanged"), &listener,
                        SLOT(settingChanged(QString, QString, QDBusVariant)))) {
            QDBusMessage question =
                QDBusMessage::createMethodCall(Service, Path, Interface, QStringLiteral("Read"));
            question << Group << Key;
            const QDBusMessage answer = bus.call(question);
            if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty())
                Q_EMIT found(unwrapped(answer.arguments().constFirst()).toUInt() == PrefersDark);
            m_isListening = true;
            exec();
        }
    }
    QDBusConnection::disconnectFromBus(BusName);
}

void PortalListener::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == Group && key == Key)
        Q_EMIT found(unwrapped(value.variant()).toUInt() == PrefersDark);
}

} // namespace paravue
