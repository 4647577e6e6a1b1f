#pragma once

#include <QString>

namespace paravue
{

/// A message as plain text: "<br>", which our own messages use for a line break, becomes a line end and
/// everything else stays as it is. Parts of a message may come from a recorder, so a message is always shown
/// with Qt::PlainText: markup in it can then neither load a resource nor act as a link.
QString plainMessage(const QString &message);

/// \a text for a place that guesses the format itself, such as a tool tip: shown to the letter there,
/// whatever markup it looks like.
QString literalToolTip(const QString &text);

} // namespace paravue
