#include "controls/DialogLoop.h"

#include "controls/WindowLook.h"

#include <QDialog>
#include <QEvent>

namespace paravue
{

DialogLoop::DialogLoop(QDialog &dialog)
{
    dialog.installEventFilter(this);
    connect(&dialog, &QObject::destroyed, &m_loop, &QEventLoop::quit);
}

void DialogLoop::run(QDialog &dialog)
{
    DialogLoop waiting(dialog);
    WindowLook::apply(dialog);
    dialog.setAttribute(Qt::WA_ShowModal);
    dialog.show();
    if (dialog.isVisible())
        waiting.m_loop.exec(QEventLoop::DialogExec);
}

bool DialogLoop::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Hide && !event->spontaneous())
        m_loop.quit();
    return false;
}

} // namespace paravue
