#pragma once

#include "snapshots/Snapshot.h"

#include <QByteArray>
#include <QString>

namespace paravue
{

/// A snapshot as a zip archive: "manifest.json" (see SnapshotManifest), then the plain files as "files/NAME"
/// and, after edits without the recorder, "edited/NAME". Bytes of a name that other systems do not allow are
/// percent-encoded.
namespace snapshotarchive
{

/// What an archive may hold; one from elsewhere must not fill the memory.
inline constexpr int MaxFiles = 2000;
inline constexpr qint64 MaxArchiveBytes = 64 * 1024 * 1024;
inline constexpr qint64 MaxUnpackedBytes = 256 * 1024 * 1024;
inline constexpr qint64 MaxManifestBytes = 16 * 1024 * 1024;

/// True for names that a file of a snapshot may have: at most 100 characters, nothing that would mean another
/// folder on any system, and not the ending ".original", which a store has for pristine copies.
bool isPlainName(const QString &name);

/// \a problem says why there is no archive, in words for the user; empty when there is one.
struct Packed {
    QByteArray bytes;
    QString problem;
};
/// Files whose names are not plain are left out, and named as such.
Packed pack(const Snapshot &snapshot);

/// \a problem says why the archive cannot be used, in words for the user; then the snapshot is empty. An
/// archive is used as a whole or not at all.
struct Unpacked {
    Snapshot snapshot;
    QString problem;
};
Unpacked unpack(const QByteArray &archive);
/// The same without the files, whose checksums are not tested then.
Unpacked unpackInfo(const QByteArray &archive);

/// Reads the archive at \a path.
Unpacked read(const QString &path);
Unpacked readInfo(const QString &path);
/// Writes \a snapshot as the file at \a path, as a whole or not at all, readable by its owner only. What was
/// wrong, in words for the user; empty when it is on the disk.
QString write(const Snapshot &snapshot, const QString &path);

} // namespace snapshotarchive

} // namespace paravue
