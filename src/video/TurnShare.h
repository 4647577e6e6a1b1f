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

/// How much of each turn of the event loop all video of the process may take together.
///
/// Whatever is streamed, the window has to answer keys. So work that may be long is done in steps, and when
/// the steps of a turn have taken a slice of time, the rest waits until the event loop has been round: until
/// posted events, sockets and timers have all had their turn.
class TurnShare : public QObject
{
    Q_OBJECT

public:
    /// False when there is no more to do for now. May destroy the owner of the work.
    using Step = std::function<bool()>;

    /// The one of the process; it lives as long as anybody holds it.
    static std::shared_ptr<TurnShare> shared();

    /// Whether there is time left in this turn.
    bool hasTime() const;
    /// Does \a work now, as a part of this turn, and then what has been put off while there is time left.
    void use(const std::function<void()> &work);
    /// Does the steps of \a work, one of each work after another: while there is time left in this turn, and
    /// the others in turns to come. Within use() or a step they wait until that is over.
    void putOff(QObject *owner, Step work);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    static constexpr qint64 SliceNanoseconds = 10'000'000;
    /// After a step that long there is a pause, in which windows paint: they wait 5 ms for more to paint.
    static constexpr qint64 LongNanoseconds = 30'000'000;
    static constexpr int PauseMilliseconds = 8;

    struct Work {
        QPointer<QObject> owner;
        Step step;
    };

    void measure(const std::function<void()> &work);
    void doSteps();
    void runOne();

    std::deque<Work> m_waiting;
    QBasicTimer m_timer;
    QElapsedTimer m_clock; ///< of the use under way
    qint64 m_used = 0;
    bool m_inUse = false;
};

} // namespace paravue
