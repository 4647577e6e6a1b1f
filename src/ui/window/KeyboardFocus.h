#pragma once

class QWidget;

namespace paravue
{

/// Gives the keyboard to \a window, which was just shown: on Windows Qt does not activate a tool window that
/// it shows. Elsewhere the window manager does it.
void takeKeyboard(QWidget &window);

} // namespace paravue
