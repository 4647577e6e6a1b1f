#include "entry/DoParavueSetup.h"

#include "controls/OrbDlgQuestion.h"
#include "ui/CWinMain.h"

#include <QCoreApplication>

namespace
{

/// Deletes the window. Whatever its clean-up throws is dropped, as the session is over.
void dispose(std::unique_ptr<CWinMain> window)
{
    try {
        window->endSession();
    } catch (...) {
    }
    window.reset();
}

/// Takes a window from the screen that an error has thrown out of its event loop. Objects further up may
/// still be at work in it, so it is deleted later.
void abandon(std::unique_ptr<CWinMain> window)
{
    if (!window)
        return;
    try {
        window->close();
    } catch (...) {
    }
    try {
        window->endSession();
    } catch (...) {
    }
    window.release()->deleteLater();
}

} // namespace

int PARAVUE_CALL DoParavueSetup(OrbSetup *setup)
{
    std::unique_ptr<CWinMain> window;
    try {
        window = std::make_unique<CWinMain>(setup, nullptr);
        const int result = window->exec();
        dispose(std::move(window));
        return result;
    } catch (const QString &message) {
        abandon(std::move(window));
        OrbDlgQuestion::Do(nullptr, QMessageBox::Critical,
                           QCoreApplication::translate("CWinMain", "Paravue Setup"), message, QMessageBox::Ok,
                           QMessageBox::NoButton);
        return 0;
    }
}
