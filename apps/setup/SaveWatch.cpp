#include "SaveWatch.h"

#include "store/OrbSetup.h"

#include <QProgressDialog>

namespace paravue
{

SaveWatch::SaveWatch(OrbSetup &store) : m_store(store)
{
    connect(&store, &OrbSetup::loadDone, this, [this] { m_wasLoaded = true; });
    connect(&store, &OrbSetup::progress, this, [this](int percent) { m_percent = percent; });
    connect(&store, &OrbSetup::pseudothrow, this, [this](const QString &message) { m_lastError = message; });
}

bool SaveWatch::isBusy() const
{
    // Before the first load is complete nothing can have been edited: a store that is still busy then only
    // fetches, and need not be waited for.
    return m_wasLoaded && !m_store.activity().isEmpty();
}

QString SaveWatch::activity() const
{
    const QString activity = m_store.activity();
    return activity.isEmpty() ? tr("Saving the settings") : activity;
}

QString SaveWatch::finish()
{
    if (!isBusy())
        return {};

    m_lastError.clear();
    QProgressDialog dialog(activity(), tr("Stop"), 0, 100);
    dialog.setWindowTitle("Paravue Setup");
    dialog.setMinimumDuration(0);
    dialog.setAutoReset(false);
    dialog.setAutoClose(false);
    dialog.setValue(m_percent);

    connect(&m_store, &OrbSetup::progress, &dialog, [&](int percent) {
        dialog.setValue(percent);
        dialog.setLabelText(activity());
    });
    const auto closeWhenIdle = [&] {
        if (!isBusy())
            dialog.accept();
    };
    // Queued, so that the store has finished its own work when it is looked at.
    connect(&m_store, &OrbSetup::storeDone, &dialog, closeWhenIdle, Qt::QueuedConnection);
    connect(&m_store, &OrbSetup::loadDone, &dialog, closeWhenIdle, Qt::QueuedConnection);
    connect(&m_store, &OrbSetup::pseudothrow, &dialog, closeWhenIdle, Qt::QueuedConnection);

    dialog.exec();
    if (!m_lastError.isEmpty())
        return m_lastError;
    return dialog.wasCanceled() ? tr("Saving was stopped before everything had been sent.") : QString();
}

} // namespace paravue
