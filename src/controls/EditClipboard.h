#pragma once

#include <QStringList>

namespace paravue
{

/// Puts lines of an own format onto the clipboard, for editors of the same kind, and a text for people and
/// other programs.
void copyLines(const QString &mimeType, const QStringList &lines, const QStringList &readable);

/// The lines of this format on the clipboard, or else those of its text; empty when there is neither, or one
/// of more than 64 KiB.
QStringList copiedLines(const QString &mimeType);

} // namespace paravue
