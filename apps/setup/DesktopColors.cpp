#include "DesktopColors.h"

#if PARAVUE_HAS_DBUS
#include "PortalThread.h"
#endif

#include <QCoreApplication>
#include <QEvent>
#include <QOperatingSystemVersion>
#include <QSettings>

#include <atomic>

namespace paravue
{

namespace
{

std::atomic<bool> hasSilentBus = false;

bool isWindows()
{
    return QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows;
}

} // namespace

DesktopColors::DesktopColors() = default;

DesktopColors::~DesktopColors()
{
#if PARAVUE_HAS_DBUS
    if (!m_portal)
        return;
    auto *portal = static_cast<PortalThread *>(m_portal.get());
    if (portal->isListening()) {
        portal->quit();
        portal->wait();
    } else if (!portal->isFinished()) {
        hasSilentBus = true;
        portal->disconnect(this);
        // It waits for the bus, and its object must live as long as it does: until the process ends.
        static_cast<void>(m_portal.release());
    }
#endif
}

void DesktopColors::ask()
{
    if (isWindows()) {
        qApp->installEventFilter(this);
        readRegistry();
        return;
    }
#if PARAVUE_HAS_DBUS
    auto portal = std::make_unique<PortalThread>();
    connect(portal.get(), &PortalThread::found, this, &DesktopColors::found);
    m_portal = std::move(portal);
    m_portal->start();
#endif
}

bool DesktopColors::isBusSilent()
{
    return hasSilentBus;
}

bool DesktopColors::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        readRegistry();
    return false;
}

void DesktopColors::readRegistry()
{
    const QSettings personalize("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes"
                                "\\Personalize",
                                QSettings::NativeFormat);
    Q_EMIT found(personalize.value("AppsUseLightTheme", 1).toInt() == 0);
}

} // namespace paravue
