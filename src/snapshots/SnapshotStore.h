#pragma once

#include "ParavueSetupExport.h"
#include "store/OrbSetup.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class QTemporaryDir;

namespace paravue
{

struct Snapshot;
struct ValueDifference;

/// Where snapshots of recorders usually are, in the data folder of the user.
PARAVUE_EXPORT QString snapshotsFolder();

/// A store that holds a snapshot in the place of a recorder, so that a session can show it and edit it.
///
/// load() gives the session the fetched files, and makes the edits that the snapshot holds; a further one
/// drops what was edited since it was saved. store() writes what is edited then into the archive, beside the
/// fetched files, which stay. The archive is replaced as a whole or not at all; what goes wrong is reported
/// through pseudothrow(), and the edits stay in the store. When another program has changed the archive
/// meanwhile, that stays too, and what is edited here is written into a new archive beside it.
class PARAVUE_EXPORT SnapshotStore : public OrbSetup
{
    Q_OBJECT

public:
    /// Reads the archive at \a path; problem() tells whether that went well.
    explicit SnapshotStore(const QString &path);
    /// One to be looked at: nothing is saved.
    explicit SnapshotStore(const Snapshot &snapshot);
    ~SnapshotStore() override;

    /// Why there is no snapshot, in words for the user; empty when there is one.
    QString problem() const { return m_problem; }
    /// Edited passwords and the like are kept in the archive too. Without it they are left out, which a save
    /// reports.
    void setKeepsSecrets(bool keepsSecrets) { m_keepsSecrets = keepsSecrets; }
    /// What names a value in messages, by its path; by itself the path does.
    using Caption = std::function<QString(const QString &path)>;
    void setCaption(const Caption &caption) { m_caption = caption; }
    /// The edits that a save would leave out now, in words for the user; empty when it keeps all of them.
    QString editsLeftOut();
    /// The user knows \a message of editsLeftOut(): a save that leaves out no others does not report it
    /// again.
    void setKnownLeftOut(const QString &message) { m_knownLeftOut = message; }
    /// True unless the last save has failed.
    bool isSaved() const { return m_isSaved; }

    void load() override;
    void store() override;

private:
    void open();
    QMap<QString, QByteArray> sessionFiles() const;
    QString collectEdits(Snapshot &snapshot);
    QString writeArchive();
    /// Edits that an archive without passwords cannot hold.
    struct Withdrawn {
        QStringList values;  ///< by path
        QStringList inLists; ///< the same, of lists that are withdrawn as a whole
        Caption caption;

        QString message() const;
    };
    bool withdrawSecrets(Snapshot &snapshot, Withdrawn &withdrawn) const;
    std::optional<QByteArray> editedContent(const QByteArray &content,
                                            const QList<ValueDifference> &edits) const;

    QString placeToWrite() const;

    QString m_path;        ///< empty: nothing is saved
    QByteArray m_checksum; ///< of the archive as it was read or written last
    std::unique_ptr<Snapshot> m_snapshot;
    std::unique_ptr<QTemporaryDir> m_copies;
    QString m_problem;
    QString m_knownLeftOut;
    Caption m_caption;
    bool m_keepsSecrets = false;
    bool m_isSaved = true;
};

} // namespace paravue
