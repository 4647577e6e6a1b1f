#include "snapshots/SnapshotFolder.h"

#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>

namespace paravue
{

namespace
{

class FolderText
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotFolder)
};

constexpr qsizetype LongestReadablePart = 60;
constexpr qsizetype DigestDigits = 8;
/// A file that another program writes at the moment is younger.
constexpr qint64 AbandonedAfterSeconds = 60 * 60;
/// A snapshot is written in less, and one without a lock is better than none.
constexpr int MostWaitForOthers = 10'000; // milliseconds
const QString TimeFormat = QStringLiteral("yyyy-MM-dd'T'HHmmss.zzz'Z'");
const QString Suffix = QStringLiteral(".zip");
const QString SaveMark = QStringLiteral("/last-save");

/// Readable, and by its digest another one for each recorder. The prefix keeps it from being the name of a
/// device on Windows, where "con.example.net" is one.
QString folderName(const QString &recorder)
{
    static const QRegularExpression Unsafe(QStringLiteral("[^a-z0-9.-]"));
    const QByteArray digest = QCryptographicHash::hash(recorder.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStringLiteral("recorder-") +
           recorder.toLower().replace(Unsafe, QStringLiteral("_")).left(LongestReadablePart) + u'-' +
           QString::fromLatin1(digest.first(DigestDigits));
}

bool isNameOfSnapshot(const QString &name)
{
    static const QRegularExpression Pattern(
        QRegularExpression::anchoredPattern(QStringLiteral("\\d{4}-\\d\\d-\\d\\dT\\d{6}\\.\\d{3}Z\\.zip")));
    return Pattern.match(name).hasMatch();
}

/// The newest first.
QStringList snapshotNames(const QString &folder)
{
    QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name | QDir::Reversed);
    names.removeIf([](const QString &name) { return !isNameOfSnapshot(name); });
    return names;
}

bool makeOwnFolder(const QString &path)
{
    constexpr QFile::Permissions OwnerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    QDir().mkpath(QFileInfo(path).path());
    QDir().mkdir(path, OwnerOnly);
    return QFileInfo(path).isDir() && QFile::setPermissions(path, OwnerOnly);
}

/// What a program that was ended in the middle of a write has left behind.
void removeAbandoned(const QString &folder)
{
    const QDateTime limit = QDateTime::currentDateTimeUtc().addSecs(-AbandonedAfterSeconds);
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files)) {
        const qsizetype end = file.fileName().lastIndexOf(u'.');
        if (end > 0 && isNameOfSnapshot(file.fileName().first(end)) && file.lastModified() < limit)
            QFile::remove(file.filePath());
    }
}

} // namespace

SnapshotFolder::SnapshotFolder(const QString &root, const QString &recorder)
    : m_root(root), m_recorder(recorder), m_path(root + u'/' + folderName(recorder))
{
}

QString SnapshotFolder::usualRoot()
{
    // See SettingsFile: what moves the settings moves these.
    const QString given = qEnvironmentVariable("PARAVUE_DATA_HOME");
    return (given.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) : given) +
           QStringLiteral("/Paravue/snapshots");
}

QList<KeptSnapshot> SnapshotFolder::list() const
{
    QList<KeptSnapshot> kept;
    for (const QString &name : snapshotNames(m_path)) {
        const QString path = m_path + u'/' + name;
        const auto [snapshot, problem] = snapshotarchive::readInfo(path);
        kept.append({path, snapshot.info, problem});
        if (problem.isEmpty())
            continue;
        // Its name still tells when it was.
        kept.last().info.time = QDateTime::fromString(name.chopped(Suffix.size()), TimeFormat);
        kept.last().info.time.setTimeSpec(Qt::UTC);
    }
    return kept;
}

QString SnapshotFolder::make() const
{
    // The folder that a host has made may be for others, too.
    if ((!QFileInfo(m_root).isDir() && !makeOwnFolder(m_root)) || !makeOwnFolder(m_path))
        return FolderText::tr("The folder %1 for snapshots cannot be made.").arg(m_path);
    return {};
}

void SnapshotFolder::noteSave() const
{
    if (!make().isEmpty())
        return;
    QFile file(m_path + SaveMark);
    if (file.open(QIODevice::WriteOnly))
        file.setFileTime(QDateTime::currentDateTimeUtc(), QFileDevice::FileModificationTime);
}

QDateTime SnapshotFolder::lastSave() const
{
    return QFileInfo(m_path + SaveMark).lastModified();
}

SnapshotFolder::Result SnapshotFolder::keep(const FileContents &files, Secrets secrets, int count)
{
    Snapshot snapshot;
    snapshot.files = files;
    describeRecorder(snapshot.info, files);
    snapshot.info.recorder = m_recorder;
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    if (secrets == Secrets::LeftOut)
        snapshot.info.leftOut = removeSecrets(snapshot.files);
    return keep(snapshot, count);
}

SnapshotFolder::Result SnapshotFolder::keep(const Snapshot &snapshot, int count)
{
    if (const QString problem = make(); !problem.isEmpty())
        return {{}, problem};
    // Two programs may save the settings of one recorder at the same time.
    QLockFile lock(m_path + QStringLiteral("/.lock"));
    lock.tryLock(MostWaitForOthers);
    removeAbandoned(m_path);
    const QString path = newPath(snapshot.info.time);
    const QString problem = snapshotarchive::write(snapshot, path);
    if (!problem.isEmpty())
        return {{}, problem};
    prune(count, path);
    return {path, {}};
}

QString SnapshotFolder::newPath(const QDateTime &time) const
{
    QString path;
    QDateTime free = time.toUTC();
    do {
        path = m_path + u'/' + free.toString(TimeFormat) + Suffix;
        free = free.addMSecs(1);
    } while (QFile::exists(path));
    return path;
}

/// The one at \a newest stays, also when the clock of this computer was set back and it sorts behind others.
void SnapshotFolder::prune(int count, const QString &newest) const
{
    QStringList names = snapshotNames(m_path);
    names.removeOne(QFileInfo(newest).fileName());
    for (qsizetype i = std::max(count - 1, 0); i < names.size(); ++i)
        QFile::remove(m_path + u'/' + names[i]);
}

} // namespace paravue
