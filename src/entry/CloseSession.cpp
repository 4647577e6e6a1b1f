#include "entry/CloseSession.h"

#include "ui/CWinMain.h"

#include <QApplication>
#include <QPointer>

namespace paravue
{

namespace
{

QList<CWinMain *> windowsOf(const OrbSetup &setup)
{
    QList<CWinMain *> windows;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *window = qobject_cast<CWinMain *>(widget);
        if (window && window->shows(setup))
            windows << window << window->findChildren<CWinMain *>(); // those show stores of their own
    }
    return windows;
}

} // namespace

bool closeSession(const OrbSetup &setup, const QWidget *page)
{
    const QList<CWinMain *> windows = page ? page->findChildren<CWinMain *>() : windowsOf(setup);
    const QList<QPointer<CWinMain>> alive(windows.rbegin(), windows.rend()); // the innermost ones first
    for (const QPointer<CWinMain> &window : alive) {
        if (window)
            window->close();
    }
    return !windows.isEmpty();
}

} // namespace paravue
