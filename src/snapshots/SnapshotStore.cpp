#include "snapshots/SnapshotStore.h"

#include "changes/PositionLists.h"
#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotDifferences.h"
#include "snapshots/SnapshotFolder.h"
#include "store/IniGrammar.h"
#include "store/OrbSettings.h"
#include "store/WholeFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

/// What users enter and what functions answer is kept in files that no recorder has.
const QStringList OwnFiles{QStringLiteral("general"), QStringLiteral("tmp")};

/// Empty when there is no such file, and not that of any content when it cannot be read.
QByteArray checksumOf(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const bool isRead = file.open(QIODevice::ReadOnly) && hash.addData(&file);
    return isRead ? hash.result() : QByteArrayLiteral("unreadable");
}

/// Of what no control shows there are the paths, unless something else can be named.
QString captionsOf(const QStringList &paths, const SnapshotStore::Caption &caption)
{
    QStringList found;
    for (const QString &path : paths) {
        if (const QString name = caption ? caption(path) : path; name != path)
            found << name;
    }
    return (found.isEmpty() ? paths : found).join(QStringLiteral(", "));
}

} // namespace

QString snapshotsFolder()
{
    return SnapshotFolder::usualRoot();
}

SnapshotStore::SnapshotStore(const QString &path)
    : m_path(path), m_checksum(checksumOf(path)), m_snapshot(std::make_unique<Snapshot>())
{
    auto [snapshot, problem] = snapshotarchive::read(path);
    *m_snapshot = std::move(snapshot);
    m_problem = problem;
    setProperty("savesToFile", true);
    open();
}

SnapshotStore::SnapshotStore(const Snapshot &snapshot) : m_snapshot(std::make_unique<Snapshot>(snapshot))
{
    open();
}

void SnapshotStore::open()
{
    setProperty("offline", true);
    // A host shows it as the name of the recorder, up to the first ":".
    setAddress(m_snapshot->info.recorder.section(u':', 0, 0) + QStringLiteral(" – ") +
               m_snapshot->info.time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH.mm")));
}

SnapshotStore::~SnapshotStore()
{
    m_settings.clear(); // writes its files
}

void SnapshotStore::load()
{
    if (!m_problem.isEmpty()) {
        Q_EMIT pseudothrow(m_problem);
        return;
    }
    const FileContents files = sessionFiles();
    auto copies = std::make_unique<QTemporaryDir>();
    QMap<QString, QString> paths; // by name; the names in an archive are not used on the disk
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        for (const QString &suffix : {QString(), QStringLiteral(".original")}) {
            const QString path = copies->filePath(QString::number(paths.size()));
            if (!copies->isValid() || !writeWholeFile(path, *file)) {
                Q_EMIT pseudothrow(
                    tr("There is no room for the files of the snapshot: %1").arg(copies->path()));
                return;
            }
            paths.insert(file.key() + suffix, path);
        }
    }
    m_copies.swap(copies);
    for (auto path = paths.cbegin(); path != paths.cend(); ++path) {
        if (OrbSettings *settings = m_settings.find(path.key()))
            settings->setPath(*path); // drops what was edited before
        setFilePath(path.key(), *path);
    }
    for (const ValueDifference &edit : editsOf(*m_snapshot))
        setValue(edit.path + u'/' + edit.after.value_or(QString()));
    OrbSetup::load();
}

/// What a session begins with, before the edits that the snapshot holds.
FileContents SnapshotStore::sessionFiles() const
{
    FileContents files = m_snapshot->files;
    // With a section line, as the sections of what is edited in a file without one are not written.
    for (const QString &name : m_snapshot->info.filesLeftOut(files))
        files.insert(name, iniSectionLine(DefaultSection.toString()).toUtf8());
    // Empty, so that there is no message for each control that shows a value of theirs.
    for (const QString &name : OwnFiles) {
        if (!m_snapshot->files.contains(name))
            files.insert(name, {});
    }
    return files;
}

void SnapshotStore::store()
{
    const QString problem = m_path.isEmpty() ? QString() : writeArchive();
    m_isSaved = problem.isEmpty();
    if (!m_isSaved) {
        Q_EMIT pseudothrow(problem);
        return;
    }
    OrbSetup::store();
}

/// Makes what the session holds the edited files of \a snapshot. Returns what was wrong.
QString SnapshotStore::collectEdits(Snapshot &snapshot)
{
    flush();
    snapshot.edited.clear();
    for (const QString &name : snapshot.files.keys() + snapshot.info.filesLeftOut(snapshot.files)) {
        const OrbSettings *settings = m_settings.find(name);
        if (settings && !settings->isWritten())
            return tr("There is no room for the edited values of \"%1\".").arg(name);
        QFile copy(filePath(name));
        if (copy.open(QIODevice::ReadOnly))
            snapshot.edited.insert(name, copy.readAll());
        if (copy.error() != QFileDevice::NoError)
            return tr("The edited values of \"%1\" cannot be read: %2").arg(name, copy.errorString());
    }
    return {};
}

QString SnapshotStore::editsLeftOut()
{
    Snapshot snapshot = *m_snapshot;
    Withdrawn withdrawn{{}, {}, m_caption};
    // What goes wrong here goes wrong in the save too, which reports it.
    const bool isKnown = !m_keepsSecrets && !m_path.isEmpty() && collectEdits(snapshot).isEmpty() &&
                         withdrawSecrets(snapshot, withdrawn);
    return isKnown ? withdrawn.message() : QString();
}

/// Returns what was wrong.
QString SnapshotStore::writeArchive()
{
    Snapshot saved = *m_snapshot;
    if (const QString problem = collectEdits(saved); !problem.isEmpty())
        return problem;
    Withdrawn withdrawn{{}, {}, m_caption};
    if (!m_keepsSecrets && !withdrawSecrets(saved, withdrawn))
        return tr("There is no room to leave the passwords out: %1").arg(m_copies->path());
    QSet<QString> edited;
    for (const ValueDifference &edit : editsOf(saved))
        edited.insert(edit.path.section(u'/', 0, 0));
    saved.edited.removeIf([&edited](auto file) { return !edited.contains(file.key()); });
    const QString path = placeToWrite();
    const QString problem = snapshotarchive::write(saved, path);
    if (!problem.isEmpty())
        return problem;
    m_snapshot->edited = saved.edited;
    m_checksum = checksumOf(path);
    QStringList notes{withdrawn.message()};
    notes.removeAll(std::exchange(m_knownLeftOut, QString()));
    if (const QString before = std::exchange(m_path, path); before != path)
        notes << tr("%1 was changed by another program meanwhile, so the edits were written into %2.")
                     .arg(before, path);
    notes.removeAll(QString());
    if (!notes.isEmpty())
        Q_EMIT pseudothrow(notes.join(u'\n'));
    return {};
}

/// The archive that was read, or a new one beside it when that is another one now.
QString SnapshotStore::placeToWrite() const
{
    const QByteArray present = checksumOf(m_path);
    if (present.isEmpty() || present == m_checksum)
        return m_path;
    const QFileInfo file(m_path);
    const QString suffix = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    for (int number = 2;; ++number) {
        const QString path =
            file.dir().filePath(file.completeBaseName() + u'-' + QString::number(number) + suffix);
        if (!QFileInfo::exists(path))
            return path;
    }
}

/// Drops edits of secrets. A file of which nothing tells what is secret in it loses all of its edits, and so
/// does a list whose entries have moved: without its password an entry would get the one of another, or an
/// empty one. False when the disk is full.
bool SnapshotStore::withdrawSecrets(Snapshot &snapshot, Withdrawn &withdrawn) const
{
    FileContents emptied = snapshot.edited;
    const QStringList removed = removeSecrets(emptied);
    const QSet<QString> secrets(removed.begin(), removed.end());
    const QList<ValueDifference> edits = editsOf(snapshot);
    QStringList secretEdits;
    for (const ValueDifference &edit : edits) {
        if (secrets.contains(edit.path) || secrets.contains(edit.path.section(u'/', 0, 0)))
            secretEdits << edit.path;
    }
    const ConfigurationValues values = valuesOf(snapshot.edited);
    const MovedLists lists(
        positionListsOf(snapshot.files), edits,
        [&values](const QString &path) {
            return values.value(path.section(u'/', 0, 0)).value(path.section(u'/', 1)).has_value();
        },
        secretEdits);
    const QSet<QString> dropped(secretEdits.begin(), secretEdits.end());
    QMap<QString, QList<ValueDifference>> kept; // by file
    for (const ValueDifference &edit : edits) {
        if (!lists.canBeSet(edit.path))
            withdrawn.inLists << edit.path;
        else if (dropped.contains(edit.path))
            withdrawn.values << edit.path;
        else
            kept[edit.path.section(u'/', 0, 0)] << edit;
    }
    QSet<QString> files;
    for (const QString &path : withdrawn.values + withdrawn.inLists)
        files.insert(path.section(u'/', 0, 0));
    const FileContents fetched = sessionFiles();
    return std::all_of(files.begin(), files.end(), [&](const QString &name) {
        const auto content = editedContent(fetched.value(name), kept.value(name));
        if (content)
            snapshot.edited[name] = *content;
        return content.has_value();
    });
}

/// \a content with these edits; nothing when the disk is full.
std::optional<QByteArray> SnapshotStore::editedContent(const QByteArray &content,
                                                       const QList<ValueDifference> &edits) const
{
    const QString path = m_copies->filePath(QStringLiteral("edited"));
    if (!writeWholeFile(path, content))
        return {};
    OrbSettings settings(path);
    for (const ValueDifference &edit : edits)
        settings.setValue(edit.path.section(u'/', 1), edit.after.value_or(QString()));
    settings.flush();
    QFile file(path);
    if (!settings.isWritten() || !file.open(QIODevice::ReadOnly))
        return {};
    QByteArray edited = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(edited)) : std::nullopt;
}

/// What the user has to know of it; empty when nothing was withdrawn.
QString SnapshotStore::Withdrawn::message() const
{
    QStringList lines;
    if (!values.isEmpty())
        lines << tr("Passwords are not kept in snapshots, so these edits are left out: %1")
                     .arg(captionsOf(values, caption));
    if (!inLists.isEmpty())
        lines << tr("Passwords are not kept in snapshots, and without them entries that were added, moved or "
                    "renamed would get wrong ones. So all edits of their lists are left out: %1")
                     .arg(captionsOf(inLists, caption));
    return lines.join(u'\n');
}

} // namespace paravue
