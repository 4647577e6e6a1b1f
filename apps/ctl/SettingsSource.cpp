#include "SettingsSource.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderSession.h"
#include "WantedValues.h"
#include "snapshots/SnapshotArchive.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace paravue
{

namespace
{

constexpr QByteArrayView ZipMark("PK\x03\x04");

Outcome unreadable(const QFile &file)
{
    return {ExitCode::LocalFile,
            ControlText::tr("cannot read %1: %2").arg(file.fileName(), file.errorString())};
}

/// A folder may hold anything; a snapshot has the same limits.
Outcome readFolder(const QString &path, FileContents &files)
{
    qint64 size = 0;
    for (const QFileInfo &entry : QDir(path).entryInfoList(QDir::Files, QDir::Name)) {
        if (!snapshotarchive::isPlainName(entry.fileName()))
            continue;
        size += entry.size();
        if (files.size() == snapshotarchive::MaxFiles || size > snapshotarchive::MaxUnpackedBytes)
            return {ExitCode::BadData, ControlText::tr("%1 holds too much for settings").arg(path)};
        QFile file(entry.filePath());
        if (!file.open(QIODevice::ReadOnly))
            return unreadable(file);
        files.insert(entry.fileName(), file.readAll());
        if (file.error() != QFileDevice::NoError)
            return unreadable(file);
    }
    return files.isEmpty() ? Outcome{ExitCode::LocalFile, ControlText::tr("%1 holds no files").arg(path)}
                           : Outcome();
}

Outcome readSnapshot(const QString &path, SettingsSource &source)
{
    Snapshot snapshot;
    if (const Outcome read = paravue::readSnapshot(path, snapshot); !read.isDone())
        return read;
    source.values = valuesOf(snapshot.currentFiles());
    source.leftOut = snapshot.info.leftOut;
    source.secrets.add(snapshot.files);
    source.secrets.add(snapshot.currentFiles());
    return {};
}

Outcome readWantedFile(const QString &path, SettingsSource &source)
{
    QList<WantedValue> wanted;
    if (const Outcome read = readWantedValues(path, wanted); !read.isDone())
        return read;
    source = sourceOf(wanted, path);
    return {};
}

Outcome readLocal(const QString &path, SettingsSource &source)
{
    if (QFileInfo(path).isDir()) {
        FileContents files;
        const Outcome read = readFolder(path, files);
        source.values = valuesOf(files);
        source.secrets.add(files);
        return read;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file);
    // What is no ordinary file can be read once only.
    const bool isArchive = !file.isSequential() && file.peek(ZipMark.size()) == ZipMark;
    file.close();
    return isArchive ? readSnapshot(path, source) : readWantedFile(path, source);
}

Outcome takeFetched(RecorderSession &session, SettingsSource &source)
{
    FileContents files;
    const Outcome read = session.contents(files);
    source.values = valuesOf(files);
    source.secrets.add(files);
    return read;
}

} // namespace

bool isLocalSource(const QString &text)
{
    // The password in an address may have any letters.
    return QFileInfo::exists(text) || (text.contains(u'/') && !text.contains(u'@'));
}

SettingsSource sourceOf(const QList<WantedValue> &wanted, const QString &name)
{
    SettingsSource source;
    source.name = name;
    source.isPartial = true;
    for (const WantedValue &value : wanted)
        source.values[value.path.section(u'/', 0, 0)].set(value.path.section(u'/', 1),
                                                          value.value.value_or(QString()));
    return source;
}

Outcome readSnapshot(const QString &path, Snapshot &snapshot)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file);
    const auto [read, problem] = snapshotarchive::read(path);
    if (!problem.isEmpty())
        return {ExitCode::BadData, QStringLiteral("%1: %2").arg(path, problem)};
    snapshot = read;
    return {};
}

void readRecorder(const ControlCommandLine &line, const SourceHandler &then)
{
    Outcome problem;
    const auto session = RecorderSession::open(line, problem);
    if (!session)
        return then(problem, {});
    session->fetch([session, then](const Outcome &fetched) {
        SettingsSource source;
        source.name = session->recorder();
        const Outcome outcome = fetched.isDone() ? takeFetched(*session, source) : fetched;
        then(outcome, source);
    });
}

void readSource(const QString &text, const ControlCommandLine &line, const SourceHandler &then)
{
    SettingsSource source;
    if (isLocalSource(text)) {
        source.name = text;
        return then(readLocal(text, source), source);
    }
    ControlCommandLine own = line;
    if (const QString problem = own.setAddress(text); !problem.isEmpty())
        return then({ExitCode::WrongUsage, problem}, {});
    readRecorder(own, [then](const Outcome &outcome, const SettingsSource &source) {
        if (outcome.isDone() || source.name.isEmpty())
            return then(outcome, source);
        then({outcome.code, QStringLiteral("%1: %2").arg(source.name, outcome.problem)}, source);
    });
}

} // namespace paravue
