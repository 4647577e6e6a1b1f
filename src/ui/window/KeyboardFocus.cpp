#include "ui/window/KeyboardFocus.h"

#include <QWidget>

namespace paravue
{

void takeKeyboard([[maybe_unused]] QWidget &window)
{
#ifdef Q_OS_WIN
    window.activateWindow();
#endif
}

} // namespace paravue
