#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace paravue
{

/// The content of the gzip file at \a path; a file that is not compressed is returned as it is. What stands
/// behind damage is lost, what stands before it is returned. Nothing when the content is longer than
/// \a maximumSize: some kilobytes can unpack to gigabytes.
std::optional<QByteArray> readGzFile(const QString &path, qsizetype maximumSize);

} // namespace paravue
