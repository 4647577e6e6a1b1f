#pragma once

#include <QByteArray>
#include <QString>

namespace paravue
{

/// Writes \a content as the file at \a path, as a whole: after a failure (a full disk) the old file stands as
/// it was. The content goes to a new file beside it, which then takes its name; where the folder does not
/// allow that, and for what is no plain file, it is written directly. It is not forced onto the disk, which
/// can take longer than a user waits: this is for working copies.
///
/// A new file is readable by its owner only; an existing one keeps its permissions. False when nothing was
/// written; \a error, when given, then tells why.
bool writeWholeFile(const QString &path, const QByteArray &content, QString *error = nullptr);

} // namespace paravue
