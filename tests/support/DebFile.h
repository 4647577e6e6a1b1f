#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

namespace paravue::test
{

/// The names and contents of the files in an archive. The name of a folder ends with a slash.
using ArchiveFiles = QList<std::pair<QByteArray, QByteArray>>;

QByteArray arArchive(const ArchiveFiles &files);
QByteArray tarArchive(const ArchiveFiles &files);
/// \a filter is the compression, one of libarchive's ARCHIVE_FILTER_ numbers.
QByteArray compressed(const QByteArray &bytes, int filter);

/// A Debian package without files, whose control data is this text.
QByteArray debFile(const QByteArray &control);

} // namespace paravue::test
