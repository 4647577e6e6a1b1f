#pragma once

#include "snapshots/Snapshot.h"
#include "ui/WindowOptions.h"
#include "ui/description/StoreReference.h"

#include <QObject>

#include <functional>
#include <optional>

class QDialog;
class QToolButton;
class QWidget;

namespace paravue
{

class ChangeTracking;
struct PresentSettings;
struct ValueEdit;

/// Keeps the recorder's files before they are overwritten, and gives values of earlier ones back as edits.
class SnapshotHistory : public QObject
{
    Q_OBJECT

public:
    /// What the recorder has in a file; nothing when the pristine copy of the store says it.
    using NewerFile = std::function<std::optional<QByteArray>(const QString &name)>;

    /// All must outlive the object, except that \a store may go. \a runDialog runs a dialog in which the user
    /// acts.
    SnapshotHistory(QWidget &window, OrbSetup &store, ChangeTracking &changes, const SnapshotOptions &options,
                    const NewerFile &newerFile, const std::function<void(QDialog &)> &runDialog);

    /// "History"; requested() follows its click. For the header of the window.
    QToolButton *button() const { return m_button; }

    /// Keeps the fetched files. What goes wrong is logged, once while it lasts. False when that has failed
    /// and the user does not want to send without it; \a ask runs what asks.
    bool keep(const std::function<void(const std::function<void()> &)> &ask);

    /// Asks whether a snapshot may be saved without the edits that it cannot keep, if \a store is one; what
    /// the save itself reports comes when the window is closed. True when it may, or keeps all of them, or
    /// when \a ask does not run the question: then the save reports it. Both name values by \a caption.
    static bool mayLeaveOut(QWidget &window, OrbSetup &store,
                            const std::function<QString(const QString &path)> &caption,
                            const std::function<void(const std::function<void()> &)> &ask);

    /// Lets the user look at the snapshots and restore values.
    void show();
    /// Lets the user take over the edits of the snapshot at \a path. Returns what is wrong with that.
    QString offerEdits(const QString &path);

Q_SIGNALS:
    void requested();
    /// \a store holds a snapshot to be looked at.
    void showRequested(OrbSetup &store);

private:
    QString recorder() const;
    FileContents fetchedFiles(QString &problem) const;
    PresentSettings present() const;
    bool isSent(const QString &path) const;
    void apply(QList<ValueEdit> edits);

    QWidget &m_window;
    StoreReference m_store;
    ChangeTracking &m_changes;
    const SnapshotOptions m_options;
    const NewerFile m_newerFile;
    const std::function<void(QDialog &)> m_runDialog;
    QToolButton *m_button;
    QString m_problem; ///< why nothing could be kept the last time
};

} // namespace paravue
