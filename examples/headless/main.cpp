// Reads settings of a recorder, or changes one, without a window:
//
//     headless net/untitled/HOSTNAME admin:21232f297a57a5a743894a0e4a801fc3@192.168.10.20
//     headless net/untitled/HOSTNAME gate admin:21232f297a57a5a743894a0e4a801fc3@192.168.10.20

#include <device/OrbNetSetup.h>
#include <entry/FinishParavueSetup.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <chrono>
#include <cstdio>

namespace
{

/// Fetches the recorder's files; false when that fails, with the reason on standard error.
bool fetch(OrbNetSetup &recorder)
{
    QEventLoop loop;
    bool isLoaded = false;
    QObject::connect(&recorder, &OrbSetup::loadDone, &loop, [&] {
        isLoaded = true;
        loop.quit();
    });
    QObject::connect(&recorder, &OrbSetup::pseudothrow, &loop, [&](const QString &message) {
        // Messages of the network have plain words beside them.
        std::fprintf(stderr, "%s %s\n", qPrintable(message), qPrintable(recorder.explanation(message)));
        loop.quit();
    });
    // From the event loop: some failures are known at once.
    QMetaObject::invokeMethod(&recorder, &OrbSetup::load, Qt::QueuedConnection);
    loop.exec();
    return isLoaded;
}

/// Sends all files; false when not every one was confirmed.
bool send(OrbNetSetup &recorder)
{
    recorder.store();
    using paravue::SaveOutcome;
    const SaveOutcome save = FinishParavueSetup(&recorder);
    if (save.result == SaveOutcome::Result::Done)
        return true;
    std::fprintf(stderr, "%s Not sent: %s\n", qPrintable(save.problem), qPrintable(save.missing.join(", ")));
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3 || arguments.size() > 4) {
        std::fprintf(stderr, "Usage: headless FILE/SECTION/KEY [VALUE] login:password@host[:port]\n");
        return 2;
    }

    OrbNetSetup recorder(arguments.last());
    recorder.setCredentialsSource(nullptr); // nobody is there to ask for another login
    recorder.setTimeouts({std::chrono::seconds(12), std::chrono::seconds(60)});
    if (!fetch(recorder))
        return 1;

    const QString address = arguments.at(1);
    if (arguments.size() == 4) {
        recorder.setValue(address + '/' + arguments.at(2));
        if (!send(recorder))
            return 1;
    }
    std::printf("%s\n", qPrintable(recorder.value(address)));
    return 0;
}
