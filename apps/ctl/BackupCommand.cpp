#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderSession.h"
#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"

#include <QFileInfo>

namespace paravue
{

namespace
{

SnapshotFolder::Result writeFile(const FileContents &files, const QString &recorder,
                                 const ControlCommandLine &line)
{
    Snapshot snapshot;
    snapshot.files = files;
    describeRecorder(snapshot.info, files);
    snapshot.info.recorder = recorder;
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    if (!line.secrets)
        snapshot.info.leftOut = removeSecrets(snapshot.files);
    return {line.output, snapshotarchive::write(snapshot, line.output)};
}

SnapshotFolder::Result keepInFolder(const FileContents &files, const QString &recorder,
                                    const ControlCommandLine &line)
{
    SnapshotFolder folder(SnapshotFolder::usualRoot(), recorder);
    return folder.keep(files,
                       line.secrets ? SnapshotFolder::Secrets::Kept : SnapshotFolder::Secrets::LeftOut);
}

Outcome keep(RecorderSession &session, const ControlCommandLine &line, CommandReport &report)
{
    FileContents files;
    if (const Outcome read = session.contents(files); !read.isDone())
        return read;
    const SnapshotFolder::Result kept = line.output.isEmpty() ? keepInFolder(files, session.recorder(), line)
                                                              : writeFile(files, session.recorder(), line);
    if (!kept.problem.isEmpty())
        return {ExitCode::LocalFile, kept.problem};
    report.text = kept.path + u'\n';
    report.document = {
        {"format", "paravue-backup"}, {"version", 1}, {"recorder", session.recorder()}, {"path", kept.path}};
    return {};
}

} // namespace

void runBackup(const ControlCommandLine &line, const CommandEnd &end)
{
    if (!line.output.isEmpty() && !line.force && QFileInfo::exists(line.output))
        return end(
            {ExitCode::LocalFile, ControlText::tr("%1 exists; --force overwrites it").arg(line.output)}, {});
    RecorderSession::runFetched(line, end, keep);
}

} // namespace paravue
