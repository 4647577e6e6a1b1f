#pragma once

#include "controls/ReadableColors.h"
#include "ui/base/ColouredButton.h"

#include <QColor>
#include <QFont>
#include <QPalette>

/// How the setup window looks: distances, fonts and colours. Every colour is derived from palette roles, so
/// light, dark and high-contrast desktops need no second set. Nothing here uses a style sheet: one on the
/// window would make each of its controls several times slower to build.
namespace paravue
{

/// Distances are multiples of this, in device-independent pixels (the toolkit scales them with the screen).
constexpr int SpacingStep = 4;
constexpr int GridSpacing = 2 * SpacingStep;
constexpr int PageMargin = 3 * SpacingStep;

/// For the line that names the recorder: 1.2 times the size of \a base, semi-bold.
QFont headerFont(const QFont &base);

/// Lines around the window and between its parts.
QColor borderColor(const QPalette &palette);
/// The strip behind the header text, a shade apart from the window.
QColor headerBackground(const QPalette &palette);
/// For marks that should stand out, such as the focus or the progress.
QColor accentColor(const QPalette &palette);

/// Makes the window's pictures (":/resources/ok.png" and so on) available, as often as it is called. Needed
/// because a static library does not do so by itself.
void registerPictures();

} // namespace paravue
