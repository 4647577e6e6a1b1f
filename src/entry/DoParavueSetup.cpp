#include "entry/DoParavueSetup.h"

#include "controls/OrbDlgQuestion.h"
#include "entry/RunParavueSetup.h"
#include "ui/CWinMain.h"

#include <QCoreApplication>

#include <utility>

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

/// The result of the window, and whether it came to show the recorder's pages.
std::pair<int, bool> runWindow(OrbSetup *setup, const paravue::SessionOptions &options)
{
    std::unique_ptr<CWinMain> window;
    try {
        window =
            std::make_unique<CWinMain>(setup, options.parent, CWinMain::Placement::Window, options.window);
        // A host that hears of a failure may have closed it already.
        const int result = window->isHidden() ? window->result() : window->exec();
        const bool isShown = window->isBuilt();
        dispose(std::move(window));
        return {result, isShown};
    } catch (const QString &message) {
        abandon(std::move(window));
        OrbDlgQuestion::Do(nullptr, QMessageBox::Critical,
                           QCoreApplication::translate("CWinMain", "Paravue Setup"), message, QMessageBox::Ok,
                           QMessageBox::NoButton);
        return {QDialog::Rejected, false};
    }
}

} // namespace

int PARAVUE_CALL DoParavueSetup(OrbSetup *setup)
{
    return runWindow(setup, {}).first;
}

paravue::SessionOutcome RunParavueSetup(OrbSetup *setup, const paravue::SessionOptions &options)
{
    const auto [result, isShown] = runWindow(setup, options);
    return {result == QDialog::Accepted, isShown};
}
