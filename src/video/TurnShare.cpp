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

bool TurnShare::hasTime() const
{
    return m_used + (m_inUse ? m_clock.nsecsElapsed() : 0) < SliceNanoseconds;
}

void TurnShare::use(const std::function<void()> &work)
{
    const QPointer<TurnShare> self(this);
    const bool isWithin = m_inUse;
    measure(work);
    if (self && !isWithin)
        doSteps();
}

void TurnShare::measure(const std::function<void()> &work)
{
    if (std::exchange(m_inUse, true)) {
        work();
        return;
    }
    // The work may give up the last reference to this share.
    const QPointer<TurnShare> self(this);
    QElapsedTimer clock; // the member is another one's after an event loop within the work
    clock.start();
    m_clock = clock;
    work();
    if (!self)
        return;
    m_inUse = false;
    m_used += clock.nsecsElapsed();
    const bool isLong = m_used > LongNanoseconds;
    if (isLong || !m_timer.isActive())
        m_timer.start(isLong ? PauseMilliseconds : 0, this);
}

void TurnShare::putOff(QObject *owner, Step work)
{
    m_waiting.push_back({owner, std::move(work)});
    if (!m_inUse)
        doSteps();
}

void TurnShare::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    m_used = 0;
    // This may be an event loop within a step, which lasts; then what waits goes on here. Made anew, the
    // timer runs in such an event loop, too.
    m_inUse = false;
    m_timer.stop();
    doSteps();
}

void TurnShare::doSteps()
{
    const QPointer<TurnShare> self(this);
    while (self && !m_waiting.empty() && hasTime())
        runOne();
    if (self && !m_waiting.empty() && !m_timer.isActive())
        m_timer.start(0, this);
}

void TurnShare::runOne()
{
    Work work = std::move(m_waiting.front());
    m_waiting.pop_front();
    if (!work.owner)
        return;
    const QPointer<TurnShare> self(this);
    bool goesOn = false;
    measure([&] { goesOn = work.step(); });
    if (self && goesOn && work.owner)
        m_waiting.push_back(std::move(work));
}

} // namespace paravue
