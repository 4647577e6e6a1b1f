#include <device/OrbNetSetup.h>
#include <entry/DoParavueSetup.h>
#include <entry/FinishParavueSetup.h>

#include <QApplication>

#include <cstdio>

namespace
{

/// Closes the window as soon as the recorder's files have arrived, or as soon as something fails, so that a
/// script can run this program without a user.
void closeByItself(OrbNetSetup &recorder, bool &isLoaded)
{
    QObject::connect(&recorder, &OrbSetup::loadDone, &recorder, [&isLoaded] { isLoaded = true; });
    QObject::connect(&recorder, &OrbSetup::pseudothrow, &recorder,
                     [](const QString &message) { std::fprintf(stderr, "%s\n", qPrintable(message)); });
    // Queued, so that the window has shown what arrived before it closes.
    QObject::connect(&recorder, &OrbSetup::loadDone, qApp, &QApplication::closeAllWindows,
                     Qt::QueuedConnection);
    QObject::connect(&recorder, &OrbSetup::pseudothrow, qApp, &QApplication::closeAllWindows,
                     Qt::QueuedConnection);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "Usage: host [--close-when-loaded] login:password@address[:port]\n");
        return 2;
    }

    // The store belongs to the host; its address is that of the recorder.
    OrbNetSetup recorder(arguments.last());

    bool isLoaded = false;
    const bool closesByItself = arguments.contains("--close-when-loaded");
    if (closesByItself)
        closeByItself(recorder, isLoaded);

    // Shows the window and returns when the user has closed it.
    const bool isAccepted = DoParavueSetup(&recorder) == 1;

    // A save may still be under way, and would be lost if the program ended now.
    using paravue::SaveOutcome;
    const SaveOutcome save = FinishParavueSetup(&recorder);
    if (save.result == SaveOutcome::Result::Failed || save.result == SaveOutcome::Result::Stopped) {
        std::fprintf(stderr, "%s Not sent: %s\n", qPrintable(save.problem),
                     qPrintable(save.missing.join(", ")));
        return 3;
    }
    return closesByItself ? !isLoaded : !isAccepted;
}
