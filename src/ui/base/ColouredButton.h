#pragma once

#include <QString>

class QPushButton;

namespace paravue
{

/// Gives \a button the fixed colour that a description names: "green", "blue", "darkCyan" or "red" become its
/// palette's button brush (Qt::green and so on), with black or white text, whichever reads better. Other
/// words change nothing.
///
/// Such a button is painted flat in exactly that colour: Fusion would lighten it until neither text colour is
/// readable, native styles ignore it. A disabled one is paler but stays readable.
void colourButton(QPushButton &button, const QString &word);

} // namespace paravue
