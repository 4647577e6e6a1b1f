#pragma once

#include <QFlags>
#include <QString>
#include <QStringList>

namespace paravue
{

/// How the widget that shows a text reads it.
enum class TextPlace {
    Caption = 1,  ///< of a button, check box or tab: "&" makes the next letter a key with Alt, "&&" shows "&"
    RichText = 2, ///< a label or tool tip: markup is read when the text has any
    PlainText = 4 ///< each character is shown
};
Q_DECLARE_FLAGS(TextPlaces, TextPlace)

/// What in \a text is probably not shown as its author wants: "&" and "<" that vanish, or that are shown
/// where they were meant to have an effect. One translated sentence for each.
QStringList unintendedMarkup(const QString &text, TextPlaces places);

/// The letter that "&" makes the key of \a caption, in upper case; null without one.
QChar mnemonicOf(const QString &caption);

/// The braces of \a text that have no counterpart, in order.
QString unmatchedBraces(const QString &text);

} // namespace paravue
