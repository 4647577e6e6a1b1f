#pragma once

#include "snapshots/Snapshot.h"

#include <QByteArray>
#include <QHash>
#include <QString>

namespace paravue
{

/// The first entry of an archive: a JSON object that tells what the others are.
///
///     {
///       "format": "paravue-snapshot",
///       "version": 1,
///       "recorder": "192.168.0.10",
///       "model": "Paravue R4",
///       "firmware": "4.2.1",
///       "time": "2024-05-01T11:58:02.000Z",
///       "leftOut": ["users/untitled/PASSWD0"],
///       "files": {"files/net": {"size": 606, "sha256": "..."}}
///     }
///
/// Checksums are base64, which is shorter than hexadecimal digits. Members that are not known are ignored, so
/// that later versions may add some; what an older program would misunderstand gets another version.
struct SnapshotManifest {
    struct File {
        qint64 size = 0; ///< unpacked, in bytes
        QByteArray sha256;
    };

    SnapshotInfo info;
    QHash<QString, File> files; ///< by the name of the entry, "files/net" or "edited/net"

    QByteArray toJson() const;
    /// What is wrong with \a json, in words for the user; empty when \a manifest was filled in.
    static QString read(const QByteArray &json, SnapshotManifest &manifest);

    static constexpr auto EntryName = "manifest.json";
};

} // namespace paravue
