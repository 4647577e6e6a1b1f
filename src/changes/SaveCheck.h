#pragma once

#include "changes/FileValues.h"
#include "changes/PositionLists.h"
#include "store/StoreObserver.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class OrbSetup;

namespace paravue
{

class ChangeList;

/// A value that somebody else has changed at the recorder since it was fetched.
struct ForeignChange {
    QString path;               ///< "file/section/key"
    QString before;             ///< what was fetched
    QString recorder;           ///< what the recorder has now
    std::optional<QString> own; ///< what the user has made of it, if that is something else
    /// "file/section" of a list whose entries have moved (see PositionLists), empty for other values:
    /// \a own may be meant for another entry than the recorder has at this position. \a recorder may then be
    /// the same as \a before.
    QString movedList = {};
};

/// Compares the recorder's files with those of a store, before they are sent and afterwards. For this the
/// files are fetched over an exchange of their own, which leaves the store as it is.
///
/// One exchange at a time: compare() or confirm(), which ends with finished() unless it is cancelled.
class SaveCheck : public QObject, private StoreObserver
{
    Q_OBJECT

public:
    /// Whether the user can see and edit the value at a path.
    using IsEditable = std::function<bool(const QString &path)>;

    /// \a changes must be those of \a store and outlive the object.
    SaveCheck(OrbSetup &store, ChangeList &changes, IsEditable isEditable);
    ~SaveCheck() override;
    Q_DISABLE_COPY_MOVE(SaveCheck)

    /// Fetches the files that a save would send.
    void compare();
    /// Fetches the files \a arrived, which the last save has sent.
    void confirm(const QStringList &arrived);
    void cancel();
    /// The store that fetches the files at the moment; null while none does.
    const OrbSetup *reader() const { return m_reader.get(); }

    /// After compare(): what somebody else has changed, as far as the user can see it.
    QList<ForeignChange> foreignChanges() const;
    /// Takes what somebody else has changed into the files of the store and makes the edits of the user anew
    /// in them, of the collisions only those in \a own. Values in \a own that the user has not edited get
    /// what they had before. A list whose entries have moved becomes the one of the user as a whole when
    /// \a own has one of its values, and otherwise that of the recorder. The store reports files that cannot
    /// be kept; a save leaves them out.
    void merge(const QSet<QString> &own);

    /// What the recorder has in the file \a name as far as it was heard since the store has fetched it:
    /// fetched by compare() or confirm(), or sent. Nothing when the pristine copy still holds.
    std::optional<QByteArray> newerFile(const QString &name) const;

    /// To be called when a save begins, with the edits that it sends, and when it has ended.
    void noteSaveBegins();
    /// The next save sends the same edits once more.
    void repeatEdits() { m_repeatsEdits = true; }
    void noteSaved(const QStringList &arrived);
    /// After confirm(): the values that were sent (before) and that the recorder has otherwise (after). Of
    /// values that were not edited only those count that the user can edit: recorders count and have a clock.
    QList<ValueDifference> keptOtherwise() const;
    /// Takes the recorder's files in which values are kept otherwise. False when one cannot be kept on this
    /// computer, which the store reports; it can be tried again.
    bool keepRecorders();
    /// The same, but what was sent becomes an edit again; a list whose entries have moved
    /// (changes/PositionLists.h) as a whole.
    bool keepSent();

Q_SIGNALS:
    /// \a problem is empty when the files are there, otherwise it says in plain words why not.
    void finished(const QString &problem);

private:
    void valueSet(const QString &, const std::optional<QString> &) override {}
    void fileReplaced(const QString &name) override;

    void fetch(const std::optional<QStringList> &only);
    void collect();
    void fail(const QString &problem);
    QByteArray known(const QString &name) const;
    QSet<QString> shownOnly(const QList<ValueDifference> &differences) const;
    QList<ValueDifference> othersDifferences() const;
    QList<ValueDifference> editsBeside(const QList<ValueDifference> &differences) const;
    void addMoved(QList<ForeignChange> &changes, const QList<ValueDifference> &differences) const;
    QStringList differingFiles() const;
    QList<ValueDifference> valuesToKeep() const;
    bool takeRecorders(const QStringList &names);

    QPointer<OrbSetup> m_store;
    ChangeList &m_changes;
    IsEditable m_isEditable;
    std::unique_ptr<OrbSetup> m_reader;   ///< while it fetches
    QMap<QString, QByteArray> m_recorder; ///< what was fetched last, by file
    QMap<QString, QByteArray> m_known;    ///< what the recorder has got since the store has fetched the file
    PositionLists m_lists;                ///< of the description that the window had then
    QSet<QString> m_edited;               ///< paths, of the last save
    bool m_repeatsEdits = false;
};

} // namespace paravue
