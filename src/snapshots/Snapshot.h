#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

namespace paravue
{

/// The contents of configuration files by the names that addresses use, "net" for example.
using FileContents = QMap<QString, QByteArray>;

/// What is known of a snapshot without its files.
struct SnapshotInfo {
    QString recorder;      ///< host, or host:port where that is not the usual port; never a login
    QString model;         ///< what the recorder calls itself; may be empty
    QString firmware;      ///< its version; may be empty
    QDateTime time;        ///< UTC, with milliseconds
    QStringList leftOut;   ///< secrets that the files do not hold: "file/section/key", or a whole "file"
    bool isEdited = false; ///< has edited files besides the fetched ones
    bool operator==(const SnapshotInfo &other) const = default;

    /// The value at \a path, "file/section/key", was left out, so what the snapshot holds there must not be
    /// shown as a value or restored.
    bool isLeftOut(const QString &path) const;
    /// The names of the files that were left out whole, as \a files does not hold them, and that a snapshot
    /// may hold.
    QStringList filesLeftOut(const FileContents &files) const;
};

/// The configuration of a recorder at one time.
///
/// The files are the local copies of a store as they were fetched, before any edit: what a recorder sends
/// without sections begins with the section line "[untitled]".
struct Snapshot {
    SnapshotInfo info;
    FileContents files;
    /// What was edited without the recorder: other contents of some of the files. Empty for most.
    FileContents edited;

    /// The files with the edited ones in their places.
    FileContents currentFiles() const;
};

/// The recorder at the address \a address of a store, without its login: the name in lower case, and the
/// port unless it is the usual one. Two addresses of one recorder give the same.
QString recorderOfAddress(const QString &address);

/// Fills in model and firmware, which recorders keep in their file "soft".
void describeRecorder(SnapshotInfo &info, const FileContents &files);

/// Why the values of \a snapshot may not fit \a recorder, in words for the user; empty when model and
/// firmware are the same, or not known.
QString misfit(const SnapshotInfo &snapshot, const SnapshotInfo &recorder);

} // namespace paravue
