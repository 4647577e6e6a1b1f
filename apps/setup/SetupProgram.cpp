#include "SetupProgram.h"

#include "CommandLine.h"
#include "DemoRecorder.h"
#include "LanguageChoice.h"
#include "PreviewFiles.h"
#include "PreviewWatch.h"
#include "ProgramLog.h"
#include "RecorderAddress.h"
#include "ScreenshotTour.h"
#include "SessionEnd.h"

#include "device/OrbNetSetup.h"
#include "device/RememberedWindows.h"
#include "entry/DoParavueSetup.h"
#include "entry/FinishParavueSetup.h"
#include "entry/RunParavueSetup.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QNetworkProxy>

#include <optional>

namespace paravue
{

namespace
{

constexpr std::chrono::seconds ConnectionLimit(12);
/// Only where nobody watches. A recorder that formats a disk takes its time, and a user sees that it is
/// silent and can give up.
constexpr std::chrono::seconds UnwatchedAnswerLimit(60);
constexpr std::chrono::seconds NoLimit(0);

/// A user who started the program from a desktop sees no terminal.
ExitCode failed(ExitCode exitCode, const QString &problem, bool isUserWatching)
{
    ProgramLog::tellFailure(problem);
    if (isUserWatching)
        QMessageBox::critical(nullptr, "Paravue Setup", problem);
    return exitCode;
}

/// The end of a session whose window was closed without OK, after \a cause.
ExitCode endOfRejected(bool isShown, bool isLoaded, LinkStatus::Cause cause)
{
    if (isShown)
        return ExitCode::Rejected;
    // There was nothing to accept: what was wrong has been shown, and told on standard error.
    return exitCodeOf(cause, isLoaded ? ExitCode::BadData : ExitCode::Rejected);
}

ExitCode runForUser(OrbSetup &store)
{
    bool isLoaded = false;
    const QObject watch;
    QObject::connect(&store, &OrbSetup::loadDone, &watch, [&isLoaded] { isLoaded = true; });
    const SessionOutcome session =
        RunParavueSetup(&store, {.window = {.offersRefresh = true,
                                            .putsAdjustmentsBack = true,
                                            .memory = {rememberedWindow, rememberWindow},
                                            .tracksChanges = true,
                                            .asksBeforeClosing = true,
                                            .reviewsBeforeSending = true,
                                            .comparesBeforeSending = true,
                                            .confirmsSaves = true,
                                            .confirmsDangerousFunctions = true}});
    const LinkStatus::Cause cause = store.linkStatus().cause;
    const SaveOutcome save = FinishParavueSetup(&store);
    // The user has seen the problems of a save.
    if (save.result == SaveOutcome::Result::Stopped)
        return failed(ExitCode::Cancelled, save.problem, false);
    if (save.result == SaveOutcome::Result::Failed)
        return failed(exitCodeOf(save.cause, ExitCode::LocalFile), save.problem, false);
    return session.isAccepted ? ExitCode::Done : endOfRejected(session.isShown, isLoaded, cause);
}

ExitCode runForPictures(OrbSetup &store, const QString &folder, const LanguageChoice &language)
{
    const ScreenshotTour tour(store, folder);
    DoParavueSetup(&store);
    if (tour.problem().isEmpty() || !language.problem().isEmpty())
        return ExitCode::Done;
    return failed(tour.exitCode(), tour.problem(), false);
}

ExitCode runWith(OrbSetup &store, const CommandLine &commandLine)
{
    const LanguageChoice language(store, commandLine.language);
    const bool isForUser = commandLine.screenshotFolder.isEmpty();
    const ExitCode exitCode =
        isForUser ? runForUser(store) : runForPictures(store, commandLine.screenshotFolder, language);
    if (!language.problem().isEmpty())
        return failed(ExitCode::WrongUsage, language.problem(), isForUser);
    return exitCode;
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
        return failed(ExitCode::LocalFile, problem, commandLine.screenshotFolder.isEmpty());
    std::optional<PreviewWatch> watch;
    if (commandLine.screenshotFolder.isEmpty())
        watch.emplace(*store, *files, commandLine.description, commandLine.filesFolder);
    return runWith(*store, commandLine);
}

} // namespace

ExitCode exitCodeOf(LinkStatus::Cause cause, ExitCode otherwise)
{
    switch (cause) {
    case LinkStatus::Cause::Network:
    case LinkStatus::Cause::NoAnswer:
        return ExitCode::Network;
    case LinkStatus::Cause::Login:
        return ExitCode::Login;
    case LinkStatus::Cause::Refused:
        return ExitCode::Rejected;
    case LinkStatus::Cause::BadAnswer:
        return ExitCode::BadData;
    case LinkStatus::Cause::LocalFile:
        return ExitCode::LocalFile;
    case LinkStatus::Cause::None:
        break;
    }
    return otherwise;
}

ExitCode runSession(const CommandLine &commandLine)
{
    if (!commandLine.description.isEmpty())
        return runPreview(commandLine);
    DemoRecorder demo;
    QString address;
    if (commandLine.demo) {
        const QString problem = demo.start(commandLine.demoDataFolder, commandLine.demoModel);
        if (!problem.isEmpty())
            return failed(demo.exitCode(), problem, commandLine.screenshotFolder.isEmpty());
        address = demo.address();
    } else {
        address = RecorderAddress::withLogin(commandLine.address);
    }
    auto store = std::make_unique<OrbNetSetup>(address);
    const bool isWatched = commandLine.screenshotFolder.isEmpty();
    store->setTimeouts({commandLine.timeout.value_or(ConnectionLimit),
                        commandLine.timeout.value_or(isWatched ? NoLimit : UnwatchedAnswerLimit)});
    const SessionEnd end([&store] { store.reset(); });
    if (!isWatched)
        store->setCredentialsSource(nullptr); // nobody is there to ask
    return runWith(*store, commandLine);
}

} // namespace paravue
