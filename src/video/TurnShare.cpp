#include "video/TurnShare.h"

#include <QTimerEvent>

#include <utility>

namespace paravue
{

std::shared_ptr<TurnShare> TurnShare::shared()
{
    static std::weak_ptr<TurnShare> existing;
    auto share = existing.lock();
    if (!share) {
        share = std::make_shared<TurnShare>();
        existing = share;
    }
    return share;
}

void TurnShare::use(const std::function<void()> &work)
{
    if (std::exchange(m_inUse, true)) {
        work();
        return;
    }
    // The work may give up the last reference to this share.
    const QPointer<TurnShare> self(this);
    QElapsedTimer clock;
    clock.start();
    work();
    if (!self)
        return;
    m_inUse = false;
    m_used += clock.nsecsElapsed();
    if (!m_timer.isActive())
        m_timer.start(0, this);
}

void TurnShare::later(QObject *owner, Step work)
{
    m_waiting.push_back({owner, std::move(work)});
    if (!m_timer.isActive())
        m_timer.start(0, this);
}

void TurnShare::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    m_used = 0;
    m_inUse = false; // else this is an event loop within a step
    // Made anew, the timer runs in such an event loop, too.
    m_timer.stop();
    const QPointer<TurnShare> self(this);
    while (self && !m_waiting.empty() && hasTime())
        runOne();
    if (self && !m_waiting.empty())
        m_timer.start(m_used > LongNanoseconds ? PauseMilliseconds : 0, this);
}

void TurnShare::runOne()
{
    Work work = std::move(m_waiting.front());
    m_waiting.pop_front();
    if (!work.owner)
        return;
    const QPointer<TurnShare> self(this);
    bool goesOn = false;
    use([&] { goesOn = work.step(); });
    if (self && goesOn && work.owner)
        m_waiting.push_back(std::move(work));
}

} // namespace paravue
