#pragma once

#include <QColor>
#include <QPalette>

namespace paravue
{

/// \a palette with those of its colours mended that are too faint to read: text on a selection, placeholders
/// and links (ReadableContrast), and disabled text (VisibleContrast). What has the contrast stays as it is.
QPalette readablePalette(const QPalette &palette);

/// The line around fields, buttons and lists: visible on the window and on the field itself.
QColor fieldEdgeColor(const QPalette &palette);
/// The frame around what has the keyboard focus, and other marks in the colour of the selection.
QColor markColor(const QPalette &palette);
/// Texts and outlines that say that something is wrong.
QColor problemColor(const QPalette &palette);

} // namespace paravue
