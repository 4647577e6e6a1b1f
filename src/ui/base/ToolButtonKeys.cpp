#include "ui/base/ToolButtonKeys.h"

#include <QDialog>
#include <QKeyEvent>
#include <QToolButton>

namespace paravue
{

ToolButtonKeys::ToolButtonKeys(QDialog &dialog)
{
    dialog.installEventFilter(this);
}

bool ToolButtonKeys::eventFilter(QObject *dialog, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    auto *button = qobject_cast<QToolButton *>(static_cast<QDialog *>(dialog)->focusWidget());
    if (!button || (key != Qt::Key_Return && key != Qt::Key_Enter))
        return false;
    button->click();
    return true;
}

} // namespace paravue
