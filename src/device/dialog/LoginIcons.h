#pragma once

#include <QIcon>
#include <QPalette>

namespace paravue
{

// The icons of the actions in the login dialog's fields, in the colour of the text of \a palette.

/// An open eye; crossed out when \a isCrossed.
QIcon eyeIcon(const QPalette &palette, bool isCrossed);
/// A cross, for what is removed.
QIcon crossIcon(const QPalette &palette);

} // namespace paravue
