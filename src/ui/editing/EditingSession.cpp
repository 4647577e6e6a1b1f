#include "ui/editing/EditingSession.h"

#include "store/ExchangeQueue.h"
#include "store/OrbSetup.h"
#include "ui/binding/Bindings.h"
#include "ui/history/SnapshotHistory.h"
#include "ui/review/ChangeTracking.h"
#include "ui/review/ReviewDialog.h"
#include "ui/sending/CheckedSave.h"

#include <QApplication>
#include <QPointer>
#include <QScopedValueRollback>

#include <utility>

namespace paravue
{

namespace
{

const QString SaveFunction = QStringLiteral("save_settings");

} // namespace

EditingSession::EditingSession(QWidget &window, OrbSetup &store, ControlContext &context, Bindings &bindings,
                               AdapterLookup adapterOf, const WindowOptions &options, Services services)
    : m_window(window), m_store(store), m_options(options), m_services(std::move(services))
{
    trackChanges(context, bindings, adapterOf);
    checkSaves(bindings);
    if (!options.snapshots.folder.isEmpty() || !options.offeredEdits.isEmpty())
        keepHistory();
}

EditingSession::~EditingSession() = default;

void EditingSession::trackChanges(ControlContext &context, Bindings &bindings, AdapterLookup adapterOf)
{
    m_changes = std::make_unique<ChangeTracking>(m_window, context, bindings, adapterOf);
    connect(m_changes.get(), &ChangeTracking::dialogRequested, this, m_services.showDialog);
    connect(m_changes.get(), &ChangeTracking::reviewRequested, this,
            [this] { m_services.operate([this] { review(false); }); });
    connect(m_changes.get(), &ChangeTracking::findRequested, this,
            [this] { m_services.operate([this] { m_changes->find(m_services.runDialog); }); });
}

void EditingSession::checkSaves(Bindings &bindings)
{
    m_save = std::make_unique<CheckedSave>(
        *m_store, m_changes->list(), m_options,
        CheckedSave::Services{
            m_services.letUserAct, [this] { return maySendProblems(); },
            [this] { return reviewBeforeSending() && mayLeaveOut() && keepSnapshot(); },
            [this] { return keepSnapshot(); }, [&bindings] { bindings.reload(); },
            ValueTexts{[this](const QString &path) { return m_changes->caption(path); },
                       [this](const QString &path) { return m_changes->list().isSecret(path); }},
            [this](const QString &path) { return m_changes->isEditable(path); },
            [this](const QStringList &arrived) { m_changes->noteSaved(arrived); },
            [this](const QString &name) { m_changes->noteUnanswered(name); }},
        m_window);
    const ExchangeQueue &queue = ExchangeQueue::of(*m_store);
    connect(&queue, &ExchangeQueue::called, this, [this](const QString &name) {
        if (name != SaveFunction)
            return;
        m_changes->noteSaveBegins();
        m_save->noteSaveBegins();
    });
    connect(&queue, &ExchangeQueue::ended, this, [this] { m_save->noteArrivals(); });
}

void EditingSession::keepHistory()
{
    m_history = std::make_unique<SnapshotHistory>(
        m_window, *m_store, *m_changes, m_options.snapshots,
        [this](const QString &name) { return m_save->newerFile(name); }, m_services.runDialog);
    connect(m_history.get(), &SnapshotHistory::requested, this, [this] {
        if (m_services.isBuilt())
            m_services.operate([this] { m_history->show(); });
    });
    connect(m_history.get(), &SnapshotHistory::showRequested, this, m_services.showStore);
    // For the saves that no user has started.
    ExchangeQueue::of(*m_store).setSaveGuard([session = QPointer(this)] {
        return !session || session->m_isSnapshotKept || session->m_history->keep([](const auto &) {});
    });
}

QList<QToolButton *> EditingSession::tools() const
{
    QList<QToolButton *> tools{m_changes->countButton()};
    if (m_history)
        tools << m_history->button();
    return tools;
}

void EditingSession::startDescription()
{
    m_changes->startDescription();
}

void EditingSession::startDialog(QDialog &dialog)
{
    m_changes->startDialog(dialog);
}

void EditingSession::updateTexts()
{
    m_changes->updateTexts();
}

void EditingSession::suspendGesture(const std::function<void()> &wait)
{
    m_changes->suspendGesture(wait);
}

void EditingSession::offerEdits()
{
    if (!m_history || m_options.offeredEdits.isEmpty() || !m_services.isBuilt() ||
        std::exchange(m_areEditsOffered, true))
        return;
    const auto offer = [this] {
        m_services.operate([this] {
            if (const QString problem = m_history->offerEdits(m_options.offeredEdits); !problem.isEmpty())
                m_services.report(problem);
        });
    };
    QMetaObject::invokeMethod(this, offer, Qt::QueuedConnection); // the window first shows its pages
}

bool EditingSession::runSave(const std::function<void()> &send)
{
    const QScopedValueRollback kept(m_isSnapshotKept, false);
    return m_save->run(send);
}

bool EditingSession::isSaveShown() const
{
    return m_save->isShown();
}

void EditingSession::noteMessage(const QString &message)
{
    m_save->noteMessage(message);
}

bool EditingSession::maySendProblems()
{
    bool isWanted = true;
    if (m_changes->hasProblems())
        m_services.letUserAct([&] { isWanted = m_changes->askAboutProblems(); });
    if (isWanted && !m_changes->deferredPoints().isEmpty())
        m_services.letUserAct([&] { isWanted = m_changes->askAboutDeferredPoints(); });
    return isWanted;
}

bool EditingSession::mayLeaveOut()
{
    const auto caption = [session = QPointer(this)](const QString &path) { // the store may live on
        return session && session->m_changes ? session->m_changes->caption(path) : path;
    };
    return SnapshotHistory::mayLeaveOut(m_window, *m_store, caption, m_services.letUserAct);
}

bool EditingSession::reviewBeforeSending()
{
    return !m_options.reviewBeforeSending || m_changes->list().isEmpty() || review(true);
}

bool EditingSession::review(bool offersSending)
{
    if (m_isReviewing)
        return false;
    const QScopedValueRollback reviewing(m_isReviewing, true);
    QWidget *front = QApplication::activeModalWidget(); // a dialog of the description, for example
    ReviewDialog dialog([this] { return m_changes->reviewed(); }, [this] { return m_changes->problems(); },
                        front && front->parentWidget() == &m_window ? front : &m_window);
    if (offersSending)
        dialog.offerSending();
    connect(&dialog, &ReviewDialog::takeBackRequested, this,
            [this](const QStringList &paths) { m_services.operate([&] { m_changes->takeBack(paths); }); });
    m_services.runDialog(dialog);
    if (!dialog.chosenPath().isEmpty())
        m_changes->goTo(dialog.chosenPath());
    m_changes->goToControl(dialog.chosenControl());
    return dialog.result() == QDialog::Accepted;
}

bool EditingSession::keepSnapshot()
{
    m_isSnapshotKept = !m_history || m_history->keep(m_services.letUserAct);
    return m_isSnapshotKept;
}

bool EditingSession::isSaveOutdated() const
{
    return m_changes->isSaveOutdated();
}

bool EditingSession::isLostByFetching() const
{
    return m_changes->isLostByFetching();
}

bool EditingSession::hasChangesToAskAbout() const
{
    return m_options.asksBeforeClosing &&
           (m_changes->hasUserChanges() || !m_changes->deferredPoints().isEmpty());
}

bool EditingSession::mayClose()
{
    if (!hasChangesToAskAbout() || !m_window.isVisible())
        return true;
    if (m_isClosing)
        return false;
    const QScopedValueRollback closing(m_isClosing, true);
    auto answer = ChangeTracking::Answer::GoOnEditing;
    m_services.operate([&] {
        m_services.letUserAct([&] { answer = m_changes->askBeforeClosing(); });
        if (answer == ChangeTracking::Answer::Send)
            m_services.save();
    });
    if (answer == ChangeTracking::Answer::Discard)
        m_store->abandonSave();
    return answer == ChangeTracking::Answer::Discard;
}

bool EditingSession::mayAccept()
{
    return !hasChangesToAskAbout() || isSaveUnderWay() || mayClose();
}

bool EditingSession::isSaveUnderWay() const
{
    return m_changes->isAllGivenToASave() || ExchangeQueue::of(*m_store).waiting().contains(SaveFunction);
}

} // namespace paravue
