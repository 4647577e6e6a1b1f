#include "SetupProgram.h"

#include "CommandLine.h"
#include "DemoRecorder.h"
#include "PreviewFiles.h"
#include "RecorderAddress.h"
#include "ScreenshotTour.h"
#include "SessionEnd.h"

#include "device/OrbNetSetup.h"
#include "entry/DoParavueSetup.h"
#include "entry/FinishParavueSetup.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QTextStream>

namespace paravue
{

namespace
{

/// A user who started the program from a desktop sees no terminal.
ExitCode failed(const QString &problem, bool isUserWatching)
{
    QTextStream(stderr) << "paravue-setup: " << problem << Qt::endl;
    if (isUserWatching)
        QMessageBox::critical(nullptr, "Paravue Setup", problem);
    return Failed;
}

/// The language is set before the window, which connects later, reads it.
void chooseLanguage(OrbSetup &store, const QString &language)
{
    const auto connection = static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection);
    QObject::connect(
        &store, &OrbSetup::loadDone, &store,
        [&store, language] { store.setValue("streams/common/language/" + language); }, connection);
}

ExitCode runForUser(OrbSetup &store)
{
    const bool isAccepted = DoParavueSetup(&store) == 1;
    const SaveOutcome save = FinishParavueSetup(&store);
    if (save.result == SaveOutcome::Result::Failed || save.result == SaveOutcome::Result::Stopped)
        return failed(save.problem, false); // the user has seen it
    return isAccepted ? Accepted : Rejected;
}

ExitCode runForPictures(OrbSetup &store, const QString &folder)
{
    const ScreenshotTour tour(store, folder);
    DoParavueSetup(&store);
    return tour.problem().isEmpty() ? Accepted : failed(tour.problem(), false);
}

ExitCode runWith(OrbSetup &store, const CommandLine &commandLine)
{
    if (!commandLine.language.isEmpty())
        chooseLanguage(store, commandLine.language);
    return commandLine.screenshotFolder.isEmpty() ? runForUser(store)
                                                  : runForPictures(store, commandLine.screenshotFolder);
}

/// Leads every connection of the program nowhere: a description may name the source of a picture.
class NoNetwork
{
public:
    NoNetwork()
    {
        QNetworkProxy::setApplicationProxy(
            QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), 0));
    }
    ~NoNetwork() { QNetworkProxy::setApplicationProxy(m_before); }
    Q_DISABLE_COPY_MOVE(NoNetwork)

private:
    const QNetworkProxy m_before = QNetworkProxy::applicationProxy();
};

ExitCode runPreview(const CommandLine &commandLine)
{
    const NoNetwork noNetwork;
    auto files = std::make_unique<PreviewFiles>(); // outlive the store, which writes its files at its end
    auto store = std::make_unique<OrbSetup>(QFileInfo(commandLine.description).fileName());
    const SessionEnd end([&] {
        store.reset();
        files.reset();
    });
    store->setProperty("offline", true);
    const QString problem = files->copyTo(*store, commandLine.description, commandLine.filesFolder);
    if (!problem.isEmpty())
        return failed(problem, commandLine.screenshotFolder.isEmpty());
    return runWith(*store, commandLine);
}

} // namespace

ExitCode runSession(const CommandLine &commandLine)
{
    if (!commandLine.description.isEmpty())
        return runPreview(commandLine);
    DemoRecorder demo;
    QString address;
    if (commandLine.demo) {
        const QString problem = demo.start(commandLine.demoDataFolder, commandLine.demoModel);
        if (!problem.isEmpty())
            return failed(problem, commandLine.screenshotFolder.isEmpty());
        address = demo.address();
    } else {
        address = RecorderAddress::withLogin(commandLine.address);
    }
    auto store = std::make_unique<OrbNetSetup>(address);
    const SessionEnd end([&store] { store.reset(); });
    if (!commandLine.screenshotFolder.isEmpty())
        store->setCredentialsSource(nullptr); // nobody is there to ask
    return runWith(*store, commandLine);
}

} // namespace paravue
