#include "ui/window/StatusLine.h"

#include "controls/OwnTexts.h"
#include "store/ExchangeQueue.h"
#include "store/OrbSetup.h"
#include "ui/base/ElidedLabel.h"
#include "ui/base/FunctionTitle.h"
#include "ui/base/WindowStyle.h"
#include "ui/page/ControlItem.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QTime>
#include <QTimer>
#include <QToolButton>

namespace paravue
{
namespace
{

constexpr int UpdateInterval = 500; // milliseconds
const QString restartFunction = QStringLiteral("soft_reboot");

QString timeNow()
{
    return QLocale().toString(QTime::currentTime(), QStringLiteral("HH:mm:ss"));
}

} // namespace

StatusLine::StatusLine(OrbSetup &store, QWidget *parent)
    : QWidget(parent), m_store(store), m_text(new ElidedLabel(this)), m_retry(new QToolButton(this)),
      m_giveUp(new QToolButton(this)), m_timer(new QTimer(this))
{
    m_text->setObjectName(QStringLiteral("statusText"));
    m_retry->setObjectName(QStringLiteral("statusRetry"));
    m_retry->setFocusPolicy(Qt::TabFocus);
    m_retry->hide();
    m_giveUp->setObjectName(QStringLiteral("statusGiveUp"));
    m_giveUp->setFocusPolicy(Qt::TabFocus);
    m_giveUp->hide();
    keepTranslated(*this, [this] {
        m_retry->setText(tr("Try again"));
        m_giveUp->setText(tr("Give up"));
        m_giveUp->setToolTip(tr("Close the connection; nothing more is sent"));
    });
    for (QToolButton *button : {m_retry, m_giveUp})
        button->setMinimumHeight(lineHeight(*button));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(GridSpacing);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_retry);
    layout->addWidget(m_giveUp);

    connect(m_retry, &QToolButton::clicked, this, &StatusLine::retryRequested);
    connect(m_giveUp, &QToolButton::clicked, this, [this] { queue().giveUpRunning(); });
    connect(m_timer, &QTimer::timeout, this, &StatusLine::update);
    connect(&queue(), &ExchangeQueue::changed, this, &StatusLine::update);
    connect(&queue(), &ExchangeQueue::answered, this, &StatusLine::noteAnswer);
    // Queued: the store's status is up to date when the receivers of its signals have returned.
    connect(&store, &OrbSetup::progress, this, &StatusLine::update, Qt::QueuedConnection);
    connect(&store, &OrbSetup::pseudothrow, this, &StatusLine::update, Qt::QueuedConnection);
    for (const auto done : {&OrbSetup::loadDone, &OrbSetup::storeDone}) {
        connect(&store, done, this, &StatusLine::noteRestart);
        connect(&store, done, this, &StatusLine::update, Qt::QueuedConnection);
    }
    m_timer->start(UpdateInterval);
}

ExchangeQueue &StatusLine::queue() const
{
    return ExchangeQueue::of(*m_store);
}

QString StatusLine::text() const
{
    return m_text->text();
}

void StatusLine::setBuilt(bool isBuilt)
{
    m_isBuilt = isBuilt;
    update();
}

void StatusLine::offerRefresh()
{
    m_refresh = new QToolButton(this);
    m_refresh->setObjectName(QStringLiteral("statusRefresh"));
    keepTranslated(*m_refresh, [this] {
        m_refresh->setText(tr("Refresh"));
        m_refresh->setToolTip(tr("Fetch the values of the recorder anew (F5)"));
    });
    m_refresh->setFocusPolicy(Qt::TabFocus);
    m_refresh->hide();
    m_refresh->setMinimumHeight(lineHeight(*m_refresh));
    layout()->addWidget(m_refresh);
    connect(m_refresh, &QToolButton::clicked, this, &StatusLine::refreshRequested);
    update();
}

bool StatusLine::canRefresh() const
{
    return m_isBuilt && m_store->linkStatus().state != LinkStatus::State::Running &&
           queue().waiting().isEmpty();
}

void StatusLine::noteRefreshed()
{
    m_answer = tr("Refreshed at %1").arg(timeNow());
    update();
}

void StatusLine::noteAnswer(const QString &name, bool isDone)
{
    const QString time = timeNow();
    const bool isRefused = !isDone && m_store->linkStatus().cause == LinkStatus::Cause::Refused;
    if (isDone && name == restartFunction) {
        m_needsRestart.clear();
        m_awaitsRestart.clear();
    } else if (isDone && name == m_needsRestart) {
        m_awaitsRestart = name;
        m_wasAway = false;
    }
    if (isDone) {
        m_answer = tr("%1: done at %2").arg(functionTitle(name), time);
        if (const QString words = m_store->acceptance(); !words.isEmpty())
            m_answer += QStringLiteral(": ") + words;
    } else {
        m_answer = isRefused ? tr("%1: refused at %2").arg(functionTitle(name), time) : QString();
    }
    update();
}

/// A function that restarts the recorder by itself is not told from one that waits for a restart. A recorder
/// that could not be reached and then answers again has most likely restarted.
void StatusLine::noteRestart()
{
    if (m_wasAway)
        m_awaitsRestart.clear();
}

/// While the next exchange runs, the answer to the last one is out of date.
QString StatusLine::answerText() const
{
    return m_store->linkStatus().state == LinkStatus::State::Running ? QString() : m_answer;
}

void StatusLine::update()
{
    const LinkStatus::Cause cause = m_store->linkStatus().cause;
    m_wasAway |= cause == LinkStatus::Cause::Network || cause == LinkStatus::Cause::NoAnswer;
    QStringList parts{answerText(), linkText(), waitingText(), restartText()};
    parts.removeAll(QString());
    const QString text = parts.join(QStringLiteral(" — "));
    if (m_text->text() != text)
        m_text->setText(text);
    const LinkStatus &status = m_store->linkStatus();
    const bool hasFailed = status.state != LinkStatus::State::Running && !status.problem.isEmpty();
    m_retry->setVisible(hasFailed && (!m_isBuilt || queue().canRepeat()));
    // Before the window is built Cancel does the same.
    m_giveUp->setVisible(m_isBuilt && isSilent());
    if (m_refresh)
        m_refresh->setVisible(canRefresh());
}

bool StatusLine::isSilent() const
{
    const LinkStatus &status = m_store->linkStatus();
    return status.state == LinkStatus::State::Running && status.lastTraffic.isValid() &&
           status.lastTraffic.elapsed() >= m_reportedSilence;
}

QString StatusLine::linkText() const
{
    const LinkStatus &status = m_store->linkStatus();
    if (status.state != LinkStatus::State::Running)
        return status.problem;
    if (isSilent())
        return silenceText(status.lastTraffic.elapsed());
    return m_isBuilt ? m_store->activity() : QString(); // the loading view shows it before
}

QString StatusLine::restartText() const
{
    return m_awaitsRestart.isEmpty()
               ? QString()
               : tr("%1: takes effect when the recorder is restarted").arg(functionTitle(m_awaitsRestart));
}

QString StatusLine::waitingText() const
{
    const QStringList waiting = queue().waiting();
    const QStringList abandoned = queue().abandoned();
    if (!waiting.isEmpty())
        return tr("Waiting: %1").arg(functionTitles(waiting.mid(0, 8)));
    return abandoned.isEmpty() ? QString() : tr("Not done: %1").arg(functionTitles(abandoned.mid(0, 8)));
}

} // namespace paravue
