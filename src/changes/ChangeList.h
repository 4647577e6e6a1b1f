#pragma once

#include "changes/SecretKeys.h"
#include "store/StoreObserver.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <unordered_map>

class OrbSetup;

namespace paravue
{

class ConfigAddress;
class PristineFile;

/// A value that is another one than the recorder has.
struct Change {
    QString path;                    ///< "file/section/key"
    std::optional<QString> oldValue; ///< nothing when the recorder has no such key
    QString newValue;
    bool isSecret = false;

    bool operator==(const Change &other) const = default;
};

/// What was changed in a store since its files were fetched, or since they were saved. Files that no save
/// sends do not count; a store names them in its dynamic property "unsentFiles", a list. An edit costs the
/// same whatever the size of the configuration; the first one of a file reads its pristine copy.
class ChangeList : public QObject, private StoreObserver
{
    Q_OBJECT

public:
    /// When \a store is deleted the list stays as it was.
    explicit ChangeList(OrbSetup &store);
    ~ChangeList() override;
    Q_DISABLE_COPY_MOVE(ChangeList)

    /// False for the files that stay on this computer ("general" and "tmp"), and for the time of the
    /// recorder's clock, which a save leaves out.
    static bool reachesTheRecorder(const ConfigAddress &address);

    /// False for files that the recorder gives but does not take, which its store tells.
    static bool isSent(const OrbSetup &store, const QString &file);

    /// Secret by its key or a mark, or because the directives of a state file fill it with a secret.
    bool isSecret(const QString &path) const;
    SecretKeys &secrets() { return m_secrets; }

    bool isEmpty() const { return m_changes.isEmpty(); }
    qsizetype count() const { return m_changes.size(); }
    /// Null when the value at \a path is that of the recorder. Valid until the next change. Only all() tells
    /// for sure whether a value is secret.
    const Change *find(const QString &path) const;
    /// All changes in the order of their paths.
    QList<Change> all() const;

    /// Adds the edits that were made before this object, as far as a pristine copy tells, or in a local store
    /// the file on the disk. To be called when the session has its files: those that were fetched since hold
    /// no such edits, so nothing is compared in most sessions.
    void addEarlierEdits();

    /// What the directives of the state files will change when these are sent, beside the edits. Asked for
    /// when it is shown, as the directives go through the whole of the files.
    QList<Change> pendingChanges() const;

    /// The value that the recorder has at \a path, nothing when it has none.
    std::optional<QString> oldValue(const QString &path) const;
    /// Sets the value at \a path to that of the recorder.
    void takeBack(const QString &path);

    /// The recorder has got the new values of \a sent, which may have been changed again meanwhile.
    void accept(const QList<Change> &sent);
    /// The recorder may have got the new values of \a sent. Each of them is a change, whatever is set, until
    /// it is accepted or its file fetched: who sets the old value again changes the new one.
    void doubt(const QList<Change> &sent);
    /// The recorder was asked and has in \a file what it had before the doubted save.
    void settle(const QString &file);
    /// Whether the recorder may have \a value at \a path, as far as doubt() tells.
    bool isDoubted(const QString &path, const QString &value) const;

Q_SIGNALS:
    /// The value at \a path is another one than that of the recorder now, or is not any more.
    void changed(const QString &path);
    /// The changes of the file \a name are no more, as it was fetched anew.
    void dropped(const QString &name);

private:
    void valueSet(const QString &path, const std::optional<QString> &value) override;
    void fileReplaced(const QString &name) override;

    void update(const QString &path);
    std::optional<QString> valueBefore(const QString &path, const std::optional<QString> &now) const;
    PristineFile &pristine(const QString &file) const;
    std::optional<QStringList> secretValues(const QString &path) const;

    QPointer<OrbSetup> m_store;
    QStringList m_unobserved; ///< files that may hold edits from before
    SecretKeys m_secrets;
    QHash<QString, Change> m_changes;  ///< by path
    QHash<QString, QString> m_doubted; ///< values that the recorder may have, by path
    /// Paths by file, of the files asked about; nothing where each one may be secret.
    mutable QHash<QString, std::optional<QSet<QString>>> m_directedSecrets;
    mutable qsizetype m_directedMarks = 0; ///< marks of m_secrets at that time
    mutable std::unordered_map<QString, std::unique_ptr<PristineFile>> m_pristine; ///< by file, of those used
};

} // namespace paravue
