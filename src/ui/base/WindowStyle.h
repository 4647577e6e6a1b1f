#pragma once

#include "controls/ReadableColors.h"
#include "ui/base/ColouredButton.h"

#include <QColor>
#include <QFont>
#include <QPalette>

/// Distances, fonts and colours of the setup window. Every colour is derived from palette roles, so light,
/// dark and high-contrast desktops need no second set. Nothing here uses a style sheet: one on the window
/// would make each of its controls several times slower to build.
namespace paravue
{

/// Distances are multiples of this, in device-independent pixels (Qt scales them with the screen).
constexpr int SpacingStep = 4;
constexpr int GridSpacing = 2 * SpacingStep;
constexpr int PageMargin = 3 * SpacingStep;

/// For the line that names the recorder: 1.2 times the size of \a base, semi-bold.
QFont headerFont(const QFont &base);

/// Lines around the window and between its parts.
QColor borderColor(const QPalette &palette);
/// The strip behind the header text, a shade apart from the window.
QColor headerBackground(const QPalette &palette);

/// Registers the window's icons (":/resources/ok.png" and so on); safe to call again. A static library does
/// not register its resources by itself.
void registerPictures();

} // namespace paravue
