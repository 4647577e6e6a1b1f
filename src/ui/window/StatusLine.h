#pragma once

#include "ui/base/SilenceText.h"
#include "ui/description/StoreReference.h"

#include <QWidget>

class QTimer;
class QToolButton;

namespace paravue
{

class ElidedLabel;
class ExchangeQueue;

/// One line at the foot of the window: what the link to the recorder does, what waits for it, what the
/// recorder has answered to the last function and when, and in plain words what is wrong, with a way to try
/// again or to give up. Empty while there is nothing to say.
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    StatusLine(OrbSetup &store, QWidget *parent);

    QString text() const;
    QToolButton *retryButton() const { return m_retry; }
    /// Shows "Try again" for a failed exchange: of the first load, or one that the queue can repeat.
    void setBuilt(bool isBuilt);
    /// Shows "Refresh" while the window is built and no exchange runs.
    void offerRefresh();
    bool canRefresh() const;
    void noteRefreshed();
    /// The function \a name takes effect when the recorder restarts: once the recorder has accepted it, the
    /// line says so until the recorder was restarted.
    void expectRestartAfter(const QString &name) { m_needsRestart = name; }
    /// Silence of \a milliseconds, at first ReportedSilence, is shown, and the exchange can be given up.
    void setReportedSilence(qint64 milliseconds) { m_reportedSilence = milliseconds; }

Q_SIGNALS:
    void retryRequested();
    void refreshRequested();

private:
    ExchangeQueue &queue() const;
    void update();
    bool isSilent() const;
    QString linkText() const;
    QString waitingText() const;
    QString answerText() const;
    QString restartText() const;
    void noteAnswer(const QString &name, bool isDone);
    void noteRestart();

    StoreReference m_store;
    ElidedLabel *m_text;
    QToolButton *m_retry;
    QToolButton *m_giveUp;
    QToolButton *m_refresh = nullptr; ///< only when it is offered
    QString m_answer;                 ///< to the last function, with its time
    QString m_needsRestart;           ///< function that was called and takes effect with a restart
    QString m_awaitsRestart;          ///< function that the recorder has accepted and that needs one
    bool m_wasAway = false;           ///< the recorder, since then
    QTimer *m_timer;
    bool m_isBuilt = false;
    qint64 m_reportedSilence = ReportedSilence;
};

} // namespace paravue
