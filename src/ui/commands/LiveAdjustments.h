#pragma once

#include "ui/description/StoreReference.h"

#include <QEventLoopLocker>
#include <QMap>
#include <QObject>
#include <QString>

#include <optional>

namespace paravue
{

/// Adjustments of the picture (brightness and so on) that the recorder shows at once, long before a save.
/// When the session is cancelled they are put back: the recorder gets the values that were fetched or saved
/// last.
class LiveAdjustments : public QObject
{
    Q_OBJECT

public:
    LiveAdjustments(OrbSetup &store, QObject *parent);

    /// The present values are those of the recorder: they were fetched, or saved.
    void noteStored();
    /// Sends the stored values again when the user has adjusted any since. They go out a second later, as all
    /// adjustments do, from the event loop. Does nothing while a save is under way, which keeps the adjusted
    /// values.
    void putBack();
    /// Runs an event loop until the recorder has answered that, at most a few seconds.
    void finish();

private:
    bool isSaving() const;

    StoreReference m_store;
    QMap<QString, QString> m_stored; ///< by file/section/key
    bool m_isAdjusted = false;
    bool m_isSaving = false;
    int m_awaitedEnds = 0; ///< of exchanges, until the values are back
    /// Lets the application outlive its last window until the values are back.
    std::optional<QEventLoopLocker> m_keepsRunning;
};

} // namespace paravue
