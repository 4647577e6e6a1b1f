#include "snapshots/Snapshot.h"

#include "changes/FileValues.h"
#include "snapshots/SnapshotArchive.h"

#include <QCoreApplication>

namespace paravue
{

namespace
{

class SnapshotText
{
    Q_DECLARE_TR_FUNCTIONS(Snapshot)
};

constexpr quint16 UsualPort = 5049;

} // namespace

bool SnapshotInfo::isLeftOut(const QString &path) const
{
    return leftOut.contains(path) || leftOut.contains(path.section(u'/', 0, 0));
}

QStringList SnapshotInfo::filesLeftOut(const FileContents &files) const
{
    QStringList names = leftOut;
    names.removeIf([&files](const QString &name) {
        return !snapshotarchive::isPlainName(name) || files.contains(name);
    });
    return names;
}

FileContents Snapshot::currentFiles() const
{
    FileContents current = files;
    current.insert(edited);
    return current;
}

QString recorderOfAddress(const QString &address)
{
    const QString url = address.sliced(address.lastIndexOf(u'@') + 1).trimmed().toLower();
    const QString host = url.section(u':', 0, 0);
    // In an address the port is a signed 16-bit number.
    const auto port = quint16(url.section(u':', 1, 1).toInt());
    return port == 0 || port == UsualPort ? host : host + u':' + QString::number(port);
}

void describeRecorder(SnapshotInfo &info, const FileContents &files)
{
    const FileValues values(files.value(QStringLiteral("soft")));
    info.model = values.value(QStringLiteral("untitled/MODEL")).value_or(QString());
    info.firmware = values.value(QStringLiteral("untitled/FIRMWARE")).value_or(QString());
}

QString misfit(const SnapshotInfo &snapshot, const SnapshotInfo &recorder)
{
    const auto differ = [](const QString &a, const QString &b) {
        return !a.isEmpty() && !b.isEmpty() && a != b;
    };
    if (differ(snapshot.model, recorder.model))
        return SnapshotText::tr("The snapshot is of the model \"%1\", and this recorder is a \"%2\".")
            .arg(snapshot.model, recorder.model);
    if (differ(snapshot.firmware, recorder.firmware))
        return SnapshotText::tr("The snapshot was taken with firmware %1, and this recorder has firmware %2.")
            .arg(snapshot.firmware, recorder.firmware);
    return {};
}

} // namespace paravue
