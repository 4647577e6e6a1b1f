#pragma once

#include <QString>

namespace paravue
{

/// A message as plain text: "<br>", which our own messages use for a line break, becomes a line end and
/// everything else stays as it is. Parts of a message may come from a recorder, so a message is always shown
/// with Qt::PlainText: markup in it can then neither load a resource nor act as a link.
QString plainMessage(const QString &message);

/// \a text cut to what fits on a screen of 800 x 600 in the usual font. An ellipsis stands for what is left
/// out, which may be the middle of a word that is longer than a line. A text of ordinary length stays as it
/// is.
QString shortenedMessage(const QString &text);

/// \a text for a place that detects rich text by itself, such as a tool tip: it is shown literally even when
/// it looks like markup.
QString literalToolTip(const QString &text);

} // namespace paravue
