#pragma once

#include <QDBusVariant>
#include <QThread>

#include <atomic>

namespace paravue
{

/// Asks the settings portal for the colour scheme that the user prefers, and listens for changes, in a thread
/// of its own: QtDBus waits for the bus when it connects and when it calls. Without a bus or a portal the
/// thread ends.
class PortalThread : public QThread
{
    Q_OBJECT

public:
    ~PortalThread() override;

    /// The bus has answered, and quit() ends the thread soon.
    bool isListening() const { return m_isListening; }

Q_SIGNALS:
    void found(bool prefersDark);

protected:
    void run() override;

private:
    std::atomic<bool> m_isListening = false;
};

/// Receives the changes, in that thread.
class PortalListener : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

Q_SIGNALS:
    void found(bool prefersDark);
};

} // namespace paravue
