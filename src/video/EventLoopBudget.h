#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <memory>

namespace paravue
{

/// The time that all video of the process together may take in each turn of the event loop.
///
/// The window has to answer keys whatever is streamed. So work that may be long is done in steps. When the
/// steps of a turn have taken the budget, the rest waits until the event loop has handled posted events,
/// sockets and timers.
///
/// bench_live (answer) measures the longest time from a key to its letter while four receivers play. When a
/// picture was allowed 125 ms (now 86, VideoLimits.h) it was 140 ms with dense_h264. With a budget for each
/// receiver it was 290 ms there. When everything was decoded as it came, it was 690 ms there and 1.7 s with
/// alternating_sizes, and with empty_pictures no key was answered at all.
class EventLoopBudget : public QObject
{
    Q_OBJECT

public:
    /// False when there is no more to do for now. May destroy the owner of the work.
    using Step = std::function<bool()>;

    /// The budget of the process. It lives as long as anybody holds it.
    static std::shared_ptr<EventLoopBudget> shared();

    /// Whether some of the budget of this turn is left.
    bool hasTime() const;
    /// Does \a work now, whose time counts, and then deferred steps while there is time.
    void run(const std::function<void()> &work);
    /// Queues the steps of \a work. The works in the queue take turns, a step each, while there is time; the
    /// remaining steps follow in later turns of the event loop. Within run() or a step nothing is done at
    /// once.
    void defer(QObject *owner, Step work);
    /// The same for short works, which come before the others. Only one step of the others is done in each
    /// turn however many come.
    void deferUrgent(QObject *owner, Step work);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    static constexpr qint64 BudgetNanoseconds = 10'000'000;
    /// More than that in one turn is followed by a pause, in which windows paint: Qt waits 5 ms for more to
    /// paint. Without the pause dense_h264 takes 380 ms.
    static constexpr qint64 LongNanoseconds = 30'000'000;
    static constexpr int PauseMilliseconds = 8;

    struct Work {
        QPointer<QObject> owner;
        Step step;
    };

    void begin();
    void runMeasured(const std::function<void()> &work);
    void runSteps();
    void runNextStep(std::deque<Work> &works);

    std::deque<Work> m_urgent;
    std::deque<Work> m_deferred;
    bool m_isNewTurn = true; ///< no step of m_deferred was done in it
    QBasicTimer m_timer;     ///< ends the turn
    QElapsedTimer m_clock;   ///< of the work that is running
    qint64 m_used = 0;
    bool m_isRunning = false;
};

} // namespace paravue
