#include "video/EventLoopBudget.h"

#include <QTimerEvent>

#include <utility>

namespace paravue
{

std::shared_ptr<EventLoopBudget> EventLoopBudget::shared()
{
    static std::weak_ptr<EventLoopBudget> existing;
    auto budget = existing.lock();
    if (!budget) {
        budget = std::make_shared<EventLoopBudget>();
        existing = budget;
    }
    return budget;
}

bool EventLoopBudget::hasTime() const
{
    return m_used + (m_isRunning ? m_clock.nsecsElapsed() : 0) < BudgetNanoseconds;
}

void EventLoopBudget::run(const std::function<void()> &work)
{
    const QPointer<EventLoopBudget> self(this);
    const bool isNested = m_isRunning;
    runMeasured(work);
    if (self && !isNested)
        runSteps();
}

void EventLoopBudget::runMeasured(const std::function<void()> &work)
{
    if (std::exchange(m_isRunning, true)) {
        work();
        return;
    }
    // The work may give up the last reference to this budget.
    const QPointer<EventLoopBudget> self(this);
    // An event loop within the work may run other work, which restarts m_clock.
    QElapsedTimer clock;
    clock.start();
    m_clock = clock;
    work();
    if (!self)
        return;
    m_isRunning = false;
    m_used += clock.nsecsElapsed();
    const bool isLong = m_used > LongNanoseconds;
    if (isLong || !m_timer.isActive())
        m_timer.start(isLong ? PauseMilliseconds : 0, this);
}

void EventLoopBudget::defer(QObject *owner, Step work)
{
    m_deferred.push_back({owner, std::move(work)});
    begin();
}

void EventLoopBudget::deferUrgent(QObject *owner, Step work)
{
    m_urgent.push_back({owner, std::move(work)});
    begin();
}

void EventLoopBudget::begin()
{
    if (!m_isRunning)
        runSteps();
}

void EventLoopBudget::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    m_used = 0;
    m_isNewTurn = true;
    // When a step runs an event loop of its own, such as that of a dialog, the deferred steps go on in that
    // loop. The timer is stopped and started anew, as an event loop does not handle a timer again whose event
    // is under way.
    m_isRunning = false;
    m_timer.stop();
    runSteps();
}

void EventLoopBudget::runSteps()
{
    const QPointer<EventLoopBudget> self(this);
    while (self && !m_urgent.empty() && hasTime())
        runNextStep(m_urgent);
    while (self && !m_deferred.empty() && (std::exchange(m_isNewTurn, false) || hasTime()))
        runNextStep(m_deferred);
    if (self && !(m_urgent.empty() && m_deferred.empty()) && !m_timer.isActive())
        m_timer.start(0, this);
}

void EventLoopBudget::runNextStep(std::deque<Work> &works)
{
    Work work = std::move(works.front());
    works.pop_front();
    if (!work.owner)
        return;
    const QPointer<EventLoopBudget> self(this);
    bool goesOn = false;
    runMeasured([&] { goesOn = work.step(); });
    if (self && goesOn && work.owner)
        works.push_back(std::move(work));
}

} // namespace paravue
