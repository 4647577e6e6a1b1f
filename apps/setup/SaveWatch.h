#pragma once

#include <QObject>
#include <QString>

class OrbSetup;

namespace paravue
{

/// The setup window may start a save and close at once; the store goes on sending. This watches the store
/// from before the session on and, after it, keeps the program alive until everything has been sent.
class SaveWatch : public QObject
{
    Q_OBJECT

public:
    /// \a store must outlive the watch.
    explicit SaveWatch(OrbSetup &store);

    /// Shows the progress of what the store is still doing until it is done. Returns what went wrong, or an
    /// empty text.
    QString finish();

private:
    bool isBusy() const;
    QString activity() const;

    OrbSetup &m_store;
    bool m_wasLoaded = false;
    int m_percent = 0;
    QString m_lastError;
};

} // namespace paravue
