#pragma once

#include <QString>

class QPushButton;

namespace paravue
{

/// Gives \a button the fixed colour that a description names: "green", "blue", "darkCyan" or "red" become its
/// palette's button brush (Qt::green and so on). Other words change nothing.
///
/// Such a button is painted flat, in a calm tone of that colour with white text: the pure colours are
/// glaring, Fusion would lighten them until no text is readable, and native styles ignore them. A pressed or
/// checked one is darker and looks sunken, a disabled one is paler but stays readable.
void colourButton(QPushButton &button, const QString &word);

} // namespace paravue
