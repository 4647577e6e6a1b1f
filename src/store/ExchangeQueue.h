#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class OrbSetup;

namespace paravue
{

/// Calls functions of a store one after the other. A store leaves it to its callers that exchanges with the
/// recorder do not overlap: a function that is called while one runs would take its place in the middle.
///
/// A function that meets a running exchange waits until that has ended, and then finds the values that it
/// sends as they were when it was called. When an exchange fails, what waits is not done any more and is
/// named by abandoned(), except a save, which starts over in any state.
///
/// A queue is a part of its store, so that a save still goes out when the window that has started it is gone.
class ExchangeQueue : public QObject
{
    Q_OBJECT

public:
    /// The queue of \a store.
    static ExchangeQueue &of(OrbSetup &store);
    /// The same; null when there is none yet.
    static ExchangeQueue *find(const OrbSetup &store);

    enum class Caller {
        User,
        Task, ///< comes again by itself: a call that waits already, or has met this fault, is not made again
    };
    /// Calls the function, at once or later. At once when no exchange runs, when the last one has failed (the
    /// store then reports it), and for a function that starts no exchange.
    void call(const QString &name, const QString &arg, Caller caller);

    /// \a guard is asked before a save is called, and may run an event loop; the save is dropped unless it
    /// returns true. One that repeat() calls is not asked about.
    void setSaveGuard(const std::function<bool()> &guard) { m_saveGuard = guard; }

    /// The names of the functions that wait, in order.
    QStringList waiting() const;
    /// The names of the functions that were given up since the last call() of a user, and of saves of tasks
    /// that the guard has refused.
    QStringList abandoned() const { return m_abandoned; }
    /// How many saves the store has begun from here.
    int savesBegun() const { return m_savesBegun; }
    /// True when the exchange that a user started last has failed, so that repeat() can try it again.
    bool canRepeat() const { return m_hasFailed; }
    /// The name of the function that repeat() calls; empty without one.
    QString failedName() const { return m_hasFailed ? m_last.name : QString(); }
    /// Calls the function that a user has called last once more, after giving up its failed exchange. Does
    /// nothing while an exchange runs.
    void repeat();
    /// To be called before an exchange that has nothing to do with the failed one, a new fetch for example,
    /// whose end would count as that of the failed one otherwise.
    void forgetFailed();
    /// Gives up the running exchange, and everything that waits for its end.
    void giveUpRunning();
    /// Gives up everything that waits.
    void giveUpAll();
    /// To be called when the link of the store has stopped running: does what waits, from the event loop.
    void linkHasEnded();

Q_SIGNALS:
    /// Something waits now, or does not wait any more.
    void changed();
    /// The store has been told to run the function \a name.
    void called(const QString &name);
    /// The link does not run any more, however the last exchange has ended. Comes from the event loop.
    void ended();
    /// The exchange that the function \a name has started for a user is over. \a isDone: the recorder has
    /// accepted it; otherwise the store's link status says what is wrong. Nothing is emitted for an exchange
    /// that was given up.
    void answered(const QString &name, bool isDone);

private:
    struct Value {
        QString path;
        QString value;
    };
    struct Call {
        QString name;
        QString arg;
        Caller caller = Caller::User;
        QList<Value> values; ///< what the function sends
    };

    explicit ExchangeQueue(OrbSetup &store);

    static bool holds(const QList<Call> &calls, const QString &name, const QString &arg);
    Call noted(const QString &name, const QString &arg, Caller caller) const;
    void noteGuarded(const QString &name, bool isAllowed);
    void perform(const Call &call);
    void proceed();
    void giveUp();

    OrbSetup &m_store;
    QList<Call> m_calls;
    QList<Call> m_refusedTasks; ///< calls of tasks that have met the present fault
    Call m_last;                ///< the exchange that runs, or has ended last
    bool m_hasLast = false;
    bool m_hasFailed = false;
    bool m_isDone = false; ///< the last exchange has ended as it should
    QStringList m_abandoned;
    int m_savesBegun = 0;
    std::function<bool()> m_saveGuard;
};

} // namespace paravue
