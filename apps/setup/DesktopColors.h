#pragma once

#include <QObject>
#include <QThread>

#include <memory>

namespace paravue
{

/// Whether the user of the desktop prefers dark windows: on Windows the registry says so, elsewhere the
/// settings portal (org.freedesktop.portal.Settings) of the session bus. Without either nothing is found.
class DesktopColors : public QObject
{
    Q_OBJECT

public:
    DesktopColors();
    ~DesktopColors() override;

    /// Begins; returns at once, however long the answer takes.
    void ask();

    /// A session bus that does not answer. It would also keep the process from ending as usual, as QtDBus
    /// waits for it then.
    static bool isBusSilent();

Q_SIGNALS:
    /// At first, and whenever it has changed.
    void found(bool prefersDark);

protected:
    /// Windows tells programs of new colours by a new palette.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void readRegistry();

    std::unique_ptr<QThread> m_portal;
};

} // namespace paravue
