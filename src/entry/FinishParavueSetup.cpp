#include "entry/FinishParavueSetup.h"

#include "controls/OrbDlgQuestion.h"
#include "entry/SaveProgressDialog.h"
#include "store/ExchangeQueue.h"
#include "store/OrbSetup.h"
#include "ui/base/FunctionTitle.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

using namespace paravue;

namespace
{

constexpr int UpdateInterval = 50; // milliseconds
/// A save that is over sooner shows no dialog, which would only flash.
constexpr qint64 DialogDelay = 300;

/// Lets the application run on although its last window is closed: that of the session was, and those of a
/// save will be. A quit that the closed window has asked for comes when the save has ended. One that is asked
/// for meanwhile, by a signal for example, ends the event loops as usual.
class KeptRunning : public QObject
{
public:
    KeptRunning()
    {
        if (m_isGui)
            QGuiApplication::setQuitOnLastWindowClosed(false);
        QCoreApplication::instance()->installEventFilter(this);
        QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::Quit);
        QCoreApplication::instance()->removeEventFilter(this);
    }
    ~KeptRunning() override
    {
        if (m_isGui)
            QGuiApplication::setQuitOnLastWindowClosed(m_quits);
        if (m_hasQuit)
            QCoreApplication::postEvent(QCoreApplication::instance(), new QEvent(QEvent::Quit));
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::Quit)
            return false;
        m_hasQuit = true;
        return true;
    }

private:
    const bool m_isGui = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const bool m_quits = m_isGui && QGuiApplication::quitOnLastWindowClosed();
    bool m_hasQuit = false;
};

/// One call of FinishParavueSetup().
class SaveCompletion : public QObject
{
    Q_OBJECT

public:
    SaveCompletion(OrbSetup &store, const FinishOptions &options)
        : m_store(store), m_queue(ExchangeQueue::of(store)), m_options(options),
          m_hasUser(options.asksUser && qobject_cast<QApplication *>(QCoreApplication::instance())),
          m_replacedBefore(store.saveStatus().replaced)
    {
        connect(&m_timer, &QTimer::timeout, this, &SaveCompletion::update);
    }

    SaveOutcome run()
    {
        if (!isRunning() && m_store.saveStatus().missing.isEmpty())
            return {};
        const KeptRunning keepRunning;
        for (;;) {
            wait();
            const SaveOutcome result = outcome();
            if (result.result != SaveOutcome::Result::Failed || !m_hasUser || !asksToSendMissing(result))
                return result;
            m_store.resetLink();
            m_store.sendMissing();
        }
    }

private:
    bool isRunning() const
    {
        const LinkStatus &link = m_store.linkStatus();
        if (link.state != LinkStatus::State::Running)
            return !m_queue.waiting().isEmpty();
        // A fetch, behind another login for example, replaces what is missing; then it cannot be sent.
        return link.isSending || !m_queue.waiting().isEmpty() || !m_store.saveStatus().missing.isEmpty();
    }

    void wait()
    {
        m_isStopped = false;
        m_isSilent = false;
        m_duration.start();
        m_timer.start(UpdateInterval);
        // The application may quit meanwhile, which ends the loop, or have begun to before: then no loop
        // runs.
        while (isRunning() && !m_isStopped && !m_isSilent && !QCoreApplication::closingDown()) {
            if (m_loop.exec() != Over)
                break;
        }
        m_timer.stop();
        m_dialog.reset();
        if (!isRunning())
            return;
        m_isStopped = !m_isSilent;
        m_queue.giveUpAll();
        m_store.resetLink();
    }

    void update()
    {
        const LinkStatus &link = m_store.linkStatus();
        if (link.state == LinkStatus::State::Running && link.lastTraffic.isValid() &&
            link.lastTraffic.elapsed() > m_options.longestSilence)
            m_isSilent = true;
        if (!isRunning() || m_isSilent) {
            closeQuestion();
            m_loop.exit(Over);
            return;
        }
        // The question for a login must not be covered by another modal dialog.
        if (link.state == LinkStatus::State::Running && !link.lastTraffic.isValid())
            hideProgress();
        else if (m_hasUser && m_duration.elapsed() >= DialogDelay)
            showProgress();
    }

    void hideProgress()
    {
        if (m_dialog)
            m_dialog->hide();
    }

    void showProgress()
    {
        if (!m_dialog) {
            m_dialog = std::make_unique<SaveProgressDialog>();
            connect(m_dialog.get(), &SaveProgressDialog::stopRequested, this, &SaveCompletion::askToStop);
        }
        m_dialog->show();
        const SaveStatus &save = m_store.saveStatus();
        const qsizetype count = save.arrived.size() + save.missing.size();
        const QString activity = m_store.activity();
        m_dialog->setProgress(count > 0 ? int(save.arrived.size() * 100 / count) : 0,
                              activity.isEmpty() ? tr("Saving the settings") : activity);
    }

    void askToStop()
    {
        if (m_isAsking)
            return;
        m_isAsking = true;
        const SaveStatus &save = m_store.saveStatus();
        const auto answer =
            OrbDlgQuestion::Do(m_dialog.get(), QMessageBox::Question, tr("Paravue Setup"),
                               tr("Stop sending? %1 of %2 files have arrived at the recorder.")
                                   .arg(QString::number(save.arrived.size()),
                                        QString::number(save.arrived.size() + save.missing.size())),
                               QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        m_isAsking = false;
        if (answer != QMessageBox::Yes || !isRunning())
            return;
        m_isStopped = true;
        m_loop.exit(Over);
    }

    /// The question whether to stop is of no use when there is nothing to stop any more.
    void closeQuestion()
    {
        if (!m_isAsking)
            return;
        const QList<QDialog *> questions = m_dialog->findChildren<QDialog *>();
        for (QDialog *question : questions)
            question->reject();
    }

    QStringList replaced() const
    {
        QStringList files = m_store.saveStatus().replaced;
        for (const QString &name : m_replacedBefore)
            files.removeOne(name);
        return files;
    }

    SaveOutcome outcome() const
    {
        const SaveStatus &save = m_store.saveStatus();
        SaveOutcome result{
            SaveOutcome::Result::Done, save.arrived, save.missing, replaced(), m_store.linkStatus().problem,
            m_store.linkStatus().cause};
        if (m_isStopped) {
            result.result = SaveOutcome::Result::Stopped;
            result.problem = tr("Sending was stopped.");
        } else if (m_isSilent) {
            result.result = SaveOutcome::Result::Failed;
            result.problem = tr("The recorder does not answer");
            result.cause = LinkStatus::Cause::NoAnswer;
        } else if (!result.problem.isEmpty() || !result.missing.isEmpty() || !result.replaced.isEmpty() ||
                   !m_queue.abandoned().isEmpty()) {
            result.result = SaveOutcome::Result::Failed;
            if (result.problem.isEmpty())
                result.problem = tr("Not everything could be sent.");
        }
        return result;
    }

    bool asksToSendMissing(const SaveOutcome &outcome) const
    {
        const QString separator = QStringLiteral(", ");
        QString text = outcome.problem;
        if (!outcome.arrived.isEmpty())
            text += QStringLiteral("<br>") + tr("Arrived: %1").arg(outcome.arrived.join(separator));
        if (!m_queue.abandoned().isEmpty())
            text += QStringLiteral("<br>") + tr("Not done: %1").arg(functionTitles(m_queue.abandoned()));
        if (!outcome.replaced.isEmpty())
            text += QStringLiteral("<br>") + tr("Not sent, and replaced by what the recorder has: %1")
                                                 .arg(outcome.replaced.join(separator));
        if (outcome.missing.isEmpty()) {
            OrbDlgQuestion::Do(nullptr, QMessageBox::Critical, tr("Paravue Setup"), text, QMessageBox::Ok,
                               QMessageBox::NoButton);
            return false;
        }
        const QString unanswered = m_store.saveStatus().unanswered;
        QStringList notSent = outcome.missing;
        notSent.removeOne(unanswered);
        if (!notSent.isEmpty())
            text += QStringLiteral("<br>") + tr("Not sent: %1").arg(notSent.join(separator));
        if (!unanswered.isEmpty())
            text += QStringLiteral("<br>") + tr("Sent, but not answered: %1").arg(unanswered);
        return OrbDlgQuestion::Do(nullptr, QMessageBox::Critical, tr("Paravue Setup"), text,
                                  QMessageBox::Retry | QMessageBox::Close,
                                  QMessageBox::NoButton) == QMessageBox::Retry;
    }

    static constexpr int Over = 1; ///< what a loop that has not been quit returns

    OrbSetup &m_store;
    ExchangeQueue &m_queue;
    const FinishOptions m_options;
    const bool m_hasUser;
    const QStringList m_replacedBefore;
    QTimer m_timer;
    QElapsedTimer m_duration;
    QEventLoop m_loop;
    std::unique_ptr<SaveProgressDialog> m_dialog;
    bool m_isStopped = false;
    bool m_isSilent = false;
    bool m_isAsking = false;
};

} // namespace

SaveOutcome FinishParavueSetup(OrbSetup *setup, const FinishOptions &options)
{
    return SaveCompletion(*setup, options).run();
}

#include "FinishParavueSetup.moc"
