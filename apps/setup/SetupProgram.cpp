#include "SetupProgram.h"

#include "CommandLine.h"
#include "DemoRecorder.h"
#include "LanguageChoice.h"
#include "LinkExitCode.h"
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
#include "snapshots/SnapshotStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QNetworkProxy>

#include <optional>

namespace paravue
{

namespace
{

class SetupText
{
    Q_DECLARE_TR_FUNCTIONS(SetupProgram)
};

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

WindowOptions windowOptions(const CommandLine &commandLine)
{
    WindowOptions options{.offersRefresh = true,
                          .putsAdjustmentsBack = true,
                          .memory = {rememberedWindow, rememberWindow},
                          .tracksChanges = true,
                          .asksBeforeClosing = true,
                          .reviewBeforeSending = true,
                          .comparesBeforeSending = true,
                          .confirmsSaves = true,
                          .confirmsDangerousFunctions = true};
    const bool isOpened = !commandLine.snapshot.isEmpty() && !commandLine.sendsEdits;
    if (isOpened) { // nothing is sent, and nothing can be fetched
        options.reviewBeforeSending = false;
        options.offersRefresh = false;
    }
    if (!isOpened && commandLine.description.isEmpty())
        options.snapshots = {.folder = snapshotsFolder(), .keepsSecrets = commandLine.keepsSecrets};
    // Another port at each start would be another recorder.
    if (commandLine.demo)
        options.snapshots.recorder = QStringLiteral("demo ") + commandLine.demoModel;
    if (commandLine.sendsEdits)
        options.offeredEdits = commandLine.snapshot;
    return options;
}

ExitCode runForUser(OrbSetup &store, const CommandLine &commandLine)
{
    bool isLoaded = false;
    const QObject watch;
    QObject::connect(&store, &OrbSetup::loadDone, &watch, [&isLoaded] { isLoaded = true; });
    const SessionOutcome session = RunParavueSetup(&store, {.window = windowOptions(commandLine)});
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
    const ExitCode exitCode = isForUser ? runForUser(store, commandLine)
                                        : runForPictures(store, commandLine.screenshotFolder, language);
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

/// The window is closed by now. Returns false when the edits are given up.
bool hasSavedAtLast(SnapshotStore &store)
{
    QString problem = SetupText::tr("The snapshot could not be saved.");
    const QObject watch;
    QObject::connect(&store, &OrbSetup::pseudothrow, &watch,
                     [&problem](const QString &text) { problem = text; });
    while (!store.isSaved()) {
        if (QMessageBox::warning(nullptr, "Paravue Setup", problem, QMessageBox::Retry | QMessageBox::Discard,
                                 QMessageBox::Retry) != QMessageBox::Retry)
            return false;
        store.store();
    }
    return true;
}

ExitCode runSnapshot(const CommandLine &commandLine)
{
    const NoNetwork noNetwork;
    auto store = std::make_unique<SnapshotStore>(commandLine.snapshot);
    const SessionEnd end([&store] { store.reset(); });
    const bool isForUser = commandLine.screenshotFolder.isEmpty();
    if (!store->problem().isEmpty())
        return failed(QFile::exists(commandLine.snapshot) ? ExitCode::BadData : ExitCode::LocalFile,
                      store->problem(), isForUser);
    store->setKeepsSecrets(commandLine.keepsSecrets);
    const ExitCode exitCode = runWith(*store, commandLine);
    return store && isForUser && !hasSavedAtLast(*store) ? ExitCode::LocalFile : exitCode;
}

} // namespace

ExitCode runSession(const CommandLine &commandLine)
{
    if (!commandLine.description.isEmpty())
        return runPreview(commandLine);
    if (!commandLine.snapshot.isEmpty() && !commandLine.sendsEdits)
        return runSnapshot(commandLine);
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
