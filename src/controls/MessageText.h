#pragma once

#include <QString>

namespace paravue
{

/// A message as plain text: "<br>", which our own messages use for a line break, becomes a line end and
/// everything else stays as it is. Parts of a message may come from a recorder, so a message is always shown
/// with Qt::PlainText: markup in it can then neither load a resource nor act as a link.
QString plainMessage(const QString &message);

/// \a text cut to what fits on a screen of 800 x 600 in the usual font: some lines of some words each. What
/// is left out is marked by an ellipsis, and the middle of a word that no line could hold as well. A text of
/// ordinary length stays as it is.
QString shortenedMessage(const QString &text);

/// \a text for a place that guesses the format itself, such as a tool tip: shown to the letter there,
/// whatever markup it looks like.
QString literalToolTip(const QString &text);

} // namespace paravue
