#include "ui/sending/CheckedSave.h"

#include "changes/ChangeList.h"
#include "controls/DialogLoop.h"
#include "controls/OrbDlgQuestion.h"
#include "store/ExchangeQueue.h"
#include "store/OrbSetup.h"

#include <QScopedValueRollback>

#include <chrono>
#include <utility>

namespace paravue
{

namespace
{

constexpr std::chrono::milliseconds PollInterval(50);
/// What is over sooner shows no dialog, which would only flash. It blocks the window from the start.
constexpr std::chrono::milliseconds VisibleAfter(300);

} // namespace

CheckedSave::CheckedSave(OrbSetup &store, ChangeList &changes, const WindowOptions &options,
                         Services services, QWidget &window)
    : m_store(&store), m_changes(changes), m_options(options), m_services(std::move(services)),
      m_window(window), m_check(store, changes, m_services.isEditable)
{
    m_poll.setInterval(PollInterval);
    connect(&m_poll, &QTimer::timeout, this, &CheckedSave::update);
    connect(&m_check, &SaveCheck::finished, this, &CheckedSave::noteFetched);
}

bool CheckedSave::canAsk() const
{
    return m_store && m_store->hasReader();
}

bool CheckedSave::run(const std::function<void()> &send)
{
    if (m_isRunning)
        return false;
    const QScopedValueRollback running(m_isRunning, true);
    if (!m_services.begin())
        return false;
    if (!prepare())
        return false;
    if (!m_options.confirmsSaves || !canAsk()) {
        send();
        return true;
    }
    m_send = send;
    callSave();
    return follow();
}

void CheckedSave::callSave()
{
    m_savesBefore = ExchangeQueue::of(*m_store).savesBegun();
    m_hadChanges = !m_changes.isEmpty();
    m_send();
}

/// False while the save waits, and after it was dropped.
bool CheckedSave::hasSaveBegun() const
{
    return ExchangeQueue::of(*m_store).savesBegun() != m_savesBefore;
}

void CheckedSave::noteSaveBegins()
{
    m_check.noteSaveBegins();
    const int save = m_store ? ExchangeQueue::of(*m_store).savesBegun() : 0;
    if (std::exchange(m_notedSave, save) == save)
        return;
    m_notedArrivals = 0;
    m_notedUnanswered.clear();
}

void CheckedSave::noteArrivals()
{
    if (!m_store)
        return;
    const QStringList arrived = m_store->saveStatus().arrived.mid(m_notedArrivals);
    m_notedArrivals += arrived.size();
    m_services.noteSaved(arrived);
    m_check.noteSaved(arrived);
    const QString unanswered = m_store->saveStatus().unanswered;
    if (std::exchange(m_notedUnanswered, unanswered) != unanswered && !unanswered.isEmpty())
        m_services.noteUnanswered(unanswered);
}

/// The user may look at the list of changes for minutes, so the comparison is made once more behind it.
bool CheckedSave::prepare()
{
    const bool compares = m_options.comparesBeforeSending && canAsk();
    if (compares && compareAndMerge() == Comparison::Stopped)
        return false;
    while (m_services.review()) {
        const bool wasShown = m_options.reviewBeforeSending && !m_changes.isEmpty();
        if (!compares || !wasShown || !m_fetchProblem.isEmpty())
            return true;
        const Comparison comparison = compareAndMerge();
        if (comparison != Comparison::Merged)
            return comparison == Comparison::Same;
    }
    return false;
}

void CheckedSave::runDialog(SendingDialog &dialog)
{
    const QScopedValueRollback shown(m_dialog, &dialog);
    connect(&dialog, &SendingDialog::chosen, this, &CheckedSave::choose);
    m_services.letUserAct([&dialog] { DialogLoop::run(dialog); });
}

bool CheckedSave::compare()
{
    SendingDialog dialog(m_services.texts, &m_window);
    dialog.showBusy(tr("Fetching what the recorder has now"), tr("Go on editing"));
    dialog.setWindowOpacity(0);
    QTimer::singleShot(VisibleAfter, &dialog, [&dialog] { dialog.setWindowOpacity(1); });
    m_stage = Stage::Comparing;
    m_goesOn = false;
    m_fetchProblem.clear();
    m_check.compare();
    m_poll.start();
    runDialog(dialog);
    m_poll.stop();
    m_check.cancel();
    m_stage = Stage::Over;
    if (m_goesOn || m_fetchProblem.isEmpty())
        return m_goesOn;
    auto answer = QMessageBox::NoButton;
    m_services.letUserAct([&] {
        answer = OrbDlgQuestion::DoExplained(
            &m_window, QMessageBox::Warning, m_window.windowTitle(),
            tr("What the recorder has now could not be fetched, so what somebody else has changed would be "
               "lost. "
               "Send all the same?"),
            m_fetchProblem, QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel, nullptr,
            {{QMessageBox::Save, tr("Send")}, {QMessageBox::Cancel, tr("Go on editing")}});
    });
    return answer == QMessageBox::Save;
}

CheckedSave::Comparison CheckedSave::compareAndMerge()
{
    if (!compare() || !m_store)
        return Comparison::Stopped;
    if (!m_fetchProblem.isEmpty())
        return Comparison::Same;
    QSet<QString> own;
    const QList<ForeignChange> foreign = m_check.foreignChanges();
    if (!foreign.isEmpty()) {
        ForeignChangesDialog dialog(foreign, m_services.texts, &m_window);
        m_services.letUserAct([&dialog] { DialogLoop::run(dialog); });
        if (dialog.result() != QDialog::Accepted || !m_store)
            return Comparison::Stopped;
        own = dialog.own();
    }
    m_check.merge(own);
    m_services.reload();
    return foreign.isEmpty() ? Comparison::Same : Comparison::Merged;
}

bool CheckedSave::follow()
{
    SendingDialog dialog(m_services.texts, &m_window);
    m_stage = Stage::Sending;
    m_goesOn = false;
    m_isStopped = false;
    m_message.clear();
    m_dialog = &dialog;
    update();
    m_dialog = nullptr;
    m_poll.start();
    runDialog(dialog);
    m_poll.stop();
    m_check.cancel();
    m_stage = Stage::Over;
    return m_goesOn && dialog.result() == QDialog::Accepted;
}

/// The save itself still waits behind another exchange.
bool CheckedSave::isWaiting() const
{
    return ExchangeQueue::of(*m_store).waiting().contains(QStringLiteral("save_settings"));
}

bool CheckedSave::isSaving() const
{
    return m_store->linkStatus().state == LinkStatus::State::Running ||
           !ExchangeQueue::of(*m_store).waiting().isEmpty();
}

/// Since when the recorder has not answered, in milliseconds; 0 while nothing is asked.
qint64 CheckedSave::silence() const
{
    const OrbSetup *reader = m_check.reader();
    const LinkStatus &link = (reader ? reader : m_store.data())->linkStatus();
    const bool isRunning = link.state == LinkStatus::State::Running && link.lastTraffic.isValid();
    return isRunning ? link.lastTraffic.elapsed() : 0;
}

void CheckedSave::update()
{
    if (!m_dialog || !m_store)
        return;
    m_dialog->showSilence(silence());
    if (m_stage != Stage::Sending)
        return;
    m_isKeptOtherwise = false;
    if (isWaiting())
        m_dialog->showBusy(tr("Waiting for the recorder"), tr("Stop"));
    else if (isSaving())
        m_dialog->showSending(hasSaveBegun() ? m_store->saveStatus() : SaveStatus(), m_store->activity());
    else
        endSending();
}

void CheckedSave::endSending()
{
    noteArrivals();
    const SaveStatus save = hasSaveBegun() ? m_store->saveStatus() : SaveStatus();
    const bool isComplete = hasSaveBegun() && save.missing.isEmpty() && save.replaced.isEmpty();
    if (isComplete && m_store->linkStatus().problem.isEmpty() && !m_isStopped)
        return startConfirming();
    m_stage = Stage::Over;
    m_dialog->showFailed(save, reasonOfFailure());
}

QString CheckedSave::reasonOfFailure() const
{
    if (m_isStopped)
        return tr("Sending was stopped.");
    if (const QString problem = m_store->linkStatus().problem; !problem.isEmpty())
        return problem;
    if (!m_message.isEmpty())
        return m_message;
    if (hasSaveBegun())
        return tr("Not everything could be sent.");
    return m_hadChanges && m_changes.isEmpty()
               ? tr("Nothing was sent, and the changes are lost: after the new login everything was fetched "
                    "from the recorder again.")
               : tr("Nothing was sent.");
}

void CheckedSave::startConfirming()
{
    m_stage = Stage::Confirming;
    m_dialog->showConfirming(m_store->saveStatus());
    m_check.confirm(m_store->saveStatus().arrived);
}

void CheckedSave::noteFetched(const QString &problem)
{
    const Stage stage = std::exchange(m_stage, Stage::Over);
    if (!m_dialog || !m_store)
        return;
    if (stage == Stage::Comparing) {
        m_fetchProblem = problem;
        close(problem.isEmpty());
        return;
    }
    if (!problem.isEmpty()) {
        m_dialog->showUnconfirmed(problem);
        return;
    }
    const QList<ValueDifference> values = m_check.keptOtherwise();
    m_isKeptOtherwise = !values.isEmpty();
    if (values.isEmpty())
        m_dialog->showConfirmed(m_store->saveStatus());
    else
        m_dialog->showKeptOtherwise(values);
}

void CheckedSave::choose(SendingDialog::Choice choice)
{
    if (!m_dialog || !m_store)
        return;
    switch (choice) {
    case SendingDialog::Choice::Stop:
        return askToStop();
    case SendingDialog::Choice::SendAgain:
        return sendAgain();
    case SendingDialog::Choice::SendMissing:
        startSending();
        m_store->sendMissing();
        return update();
    case SendingDialog::Choice::ConfirmAgain:
        return startConfirming();
    case SendingDialog::Choice::KeepRecorders:
    case SendingDialog::Choice::GoOnEditing:
        if (m_isKeptOtherwise)
            return takeKeptOtherwise(choice);
        m_store->abandonSave();
        return close(choice == SendingDialog::Choice::KeepRecorders);
    case SendingDialog::Choice::Leave:
        return close(m_goesOn);
    case SendingDialog::Choice::Close:
        return close(true);
    }
}

void CheckedSave::startSending()
{
    m_isStopped = false;
    m_message.clear();
    m_stage = Stage::Sending;
}

/// What the recorder has made of the first sending is overwritten, so it is kept too.
void CheckedSave::sendAgain()
{
    const QPointer<SendingDialog> dialog(m_dialog);
    if (!m_services.keep() || !dialog || !m_store)
        return;
    startSending();
    m_check.repeatEdits();
    callSave();
    update();
}

/// The dialog stays open when this computer cannot hold the recorder's files.
void CheckedSave::takeKeptOtherwise(SendingDialog::Choice choice)
{
    m_message.clear();
    m_goesOn = choice == SendingDialog::Choice::KeepRecorders;
    const bool isTaken = m_goesOn ? m_check.keepRecorders() : m_check.keepSent();
    m_services.reload();
    if (isTaken)
        close(m_goesOn);
    else
        m_dialog->showNotTaken(m_message, choice);
}

void CheckedSave::askToStop()
{
    if (m_stage != Stage::Sending) {
        m_check.cancel();
        if (std::exchange(m_stage, Stage::Over) == Stage::Comparing)
            return close(false);
        return m_dialog->showUnconfirmed(tr("The comparison was stopped"));
    }
    const SaveStatus &save = m_store->saveStatus();
    const QPointer<SendingDialog> dialog(m_dialog);
    const auto answer =
        OrbDlgQuestion::Do(m_dialog, QMessageBox::Question, m_window.windowTitle(),
                           tr("Stop sending? %1 of %2 files have arrived at the recorder.")
                               .arg(QString::number(save.arrived.size()),
                                    QString::number(save.arrived.size() + save.missing.size())),
                           QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer != QMessageBox::Yes || !dialog || !m_store || m_stage != Stage::Sending || !isSaving())
        return;
    m_isStopped = true;
    ExchangeQueue &queue = ExchangeQueue::of(*m_store);
    const bool isRunning = !isWaiting();
    queue.giveUpAll();
    if (isRunning)
        queue.giveUpRunning();
    else
        m_dialog->done(QDialog::Rejected);
}

void CheckedSave::close(bool goesOn)
{
    m_goesOn = goesOn;
    m_dialog->done(goesOn ? QDialog::Accepted : QDialog::Rejected);
}

} // namespace paravue
