#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderSession.h"
#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"

#include <QFileInfo>
#include <QTextStream>

namespace paravue
{

namespace
{

Outcome written(const QString &path, const QString &problem)
{
    if (!problem.isEmpty())
        return {ExitCode::LocalFile, problem};
    QTextStream(stdout) << path << '\n';
    return {};
}

Outcome writeFile(const FileContents &files, const QString &recorder, const ControlCommandLine &line)
{
    Snapshot snapshot;
    snapshot.files = files;
    describeRecorder(snapshot.info, files);
    snapshot.info.recorder = recorder;
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    if (!line.secrets)
        snapshot.info.leftOut = removeSecrets(snapshot.files);
    return written(line.output, snapshotarchive::write(snapshot, line.output));
}

} // namespace

Outcome runBackup(RecorderSession &session, const ControlCommandLine &line)
{
    if (!line.output.isEmpty() && !line.force && QFileInfo::exists(line.output))
        return {ExitCode::LocalFile, ControlText::tr("%1 exists; --force overwrites it").arg(line.output)};
    if (const Outcome fetched = session.fetch(); !fetched.isDone())
        return fetched;
    FileContents files;
    if (const Outcome read = session.contents(files); !read.isDone())
        return read;
    const QString recorder = recorderOfAddress(session.store().address());
    if (!line.output.isEmpty())
        return writeFile(files, recorder, line);
    SnapshotFolder folder(SnapshotFolder::usualRoot(), recorder);
    const auto kept =
        folder.keep(files, line.secrets ? SnapshotFolder::Secrets::Kept : SnapshotFolder::Secrets::LeftOut);
    return written(kept.path, kept.problem);
}

} // namespace paravue
