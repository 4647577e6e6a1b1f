#include "store/ExchangeQueue.h"

#include "store/OrbSetup.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

const QString save = QStringLiteral("save_settings");

/// Far more than a user presses. A description could otherwise fill the memory while a recorder is slow.
constexpr qsizetype MaxWaiting = 1000;

} // namespace

ExchangeQueue &ExchangeQueue::of(OrbSetup &store)
{
    ExchangeQueue *queue = find(store);
    return queue ? *queue : *new ExchangeQueue(store); // a child of the store
}

ExchangeQueue *ExchangeQueue::find(const OrbSetup &store)
{
    return store.findChild<ExchangeQueue *>(QString(), Qt::FindDirectChildrenOnly);
}

ExchangeQueue::ExchangeQueue(OrbSetup &store) : QObject(&store), m_store(store)
{
    connect(&store, &OrbSetup::loadDone, this, [this] { m_isDone = true; });
    connect(&store, &OrbSetup::storeDone, this, [this] { m_isDone = true; });
}

void ExchangeQueue::linkHasEnded()
{
    m_refusedTasks.clear();
    QMetaObject::invokeMethod(this, &ExchangeQueue::proceed, Qt::QueuedConnection);
}

void ExchangeQueue::call(const QString &name, const QString &arg, Caller caller)
{
    if (name == save && m_saveGuard) {
        const QPointer<ExchangeQueue> alive(this);
        const bool isAllowed = std::function(m_saveGuard)();
        if (!alive)
            return;
        if (caller == Caller::Task)
            noteGuarded(name, isAllowed);
        if (!isAllowed)
            return;
    }
    if (caller == Caller::User)
        m_abandoned.clear();
    const Call call = noted(name, arg, caller);
    const LinkStatus::State link = m_store.linkStatus().state;
    const bool startsExchange = m_store.functionUse(name, arg).startsExchange;
    if (!startsExchange || (link != LinkStatus::State::Running && m_calls.isEmpty())) {
        // The store reports each call, and keeps what the call would send.
        if (startsExchange && caller == Caller::Task && link == LinkStatus::State::Failed) {
            if (holds(m_refusedTasks, name, arg))
                return;
            m_refusedTasks.append(call);
        }
        perform(call);
        return;
    }
    if (caller == Caller::Task && holds(m_calls, name, arg))
        return;
    if (m_calls.size() < MaxWaiting)
        m_calls.append(call);
    else
        m_abandoned.append(name);
    Q_EMIT changed();
}

/// Nobody was asked about the call of a task, so that abandoned() is all that tells of one that was dropped.
void ExchangeQueue::noteGuarded(const QString &name, bool isAllowed)
{
    if (m_abandoned.contains(name) != isAllowed)
        return;
    if (isAllowed)
        m_abandoned.removeAll(name);
    else
        m_abandoned.append(name);
    Q_EMIT changed();
}

bool ExchangeQueue::holds(const QList<Call> &calls, const QString &name, const QString &arg)
{
    return std::any_of(calls.cbegin(), calls.cend(),
                       [&](const Call &call) { return call.name == name && call.arg == arg; });
}

ExchangeQueue::Call ExchangeQueue::noted(const QString &name, const QString &arg, Caller caller) const
{
    Call call{name, arg, caller, {}};
    for (const QString &address : m_store.functionUse(name, arg).addresses)
        call.values.append({OrbSetup::path(address), m_store.value(address)});
    return call;
}

void ExchangeQueue::perform(const Call &call)
{
    // The user may have typed something else since the call.
    QList<Value> present;
    for (const Value &noted : call.values) {
        const QString value = m_store.value(noted.path);
        if (value == noted.value)
            continue;
        present.append({noted.path, value});
        m_store.setValue(noted.path + u'/' + noted.value);
    }
    const bool wasRunning = m_store.linkStatus().state == LinkStatus::State::Running;
    // A receiver of the store's signals may delete it, and the queue with it.
    const QPointer<ExchangeQueue> alive(this);
    if (!wasRunning)
        m_isDone = false;
    m_store.function(call.name, call.arg);
    if (!alive)
        return;
    const bool hasBegun = !wasRunning && m_store.linkStatus().state == LinkStatus::State::Running;
    if (hasBegun && call.name == save)
        ++m_savesBegun;
    if (hasBegun && call.caller == Caller::User) {
        m_last = call;
        m_hasLast = true;
        m_hasFailed = false;
    }
    for (const Value &value : std::as_const(present))
        m_store.setValue(value.path + u'/' + value.value);
    Q_EMIT called(call.name);
}

void ExchangeQueue::proceed()
{
    const LinkStatus &status = m_store.linkStatus();
    if (status.state == LinkStatus::State::Running)
        return;
    const QPointer<ExchangeQueue> alive(this);
    Q_EMIT ended();
    if (!alive)
        return;
    const bool hasFailed = !status.problem.isEmpty();
    const bool isAnswered = m_hasLast && (hasFailed ? !m_hasFailed : m_isDone);
    m_hasFailed = hasFailed && m_hasLast;
    if (!hasFailed)
        m_hasLast = false;
    if (isAnswered) {
        Q_EMIT answered(m_last.name, !hasFailed);
        if (!alive)
            return;
    }
    if (m_calls.isEmpty())
        return;
    if (hasFailed)
        giveUp();
    while (!m_calls.isEmpty() && m_store.linkStatus().state != LinkStatus::State::Running) {
        perform(m_calls.takeFirst());
        if (!alive)
            return;
    }
    Q_EMIT changed();
}

/// Keeps one save: it starts over, and sends everything that was edited.
void ExchangeQueue::giveUp()
{
    // Behind a refused login every exchange asks for the login again.
    const bool canSave = m_store.linkStatus().state == LinkStatus::State::Failed;
    QList<Call> kept;
    for (const Call &call : std::exchange(m_calls, {})) {
        if (canSave && call.name == save && kept.isEmpty())
            kept.append(call);
        else
            m_abandoned.append(call.name);
    }
    m_calls = kept;
}

void ExchangeQueue::repeat()
{
    if (m_store.linkStatus().state == LinkStatus::State::Running || m_last.name.isEmpty())
        return;
    m_store.resetLink();
    perform(Call(m_last));
}

void ExchangeQueue::forgetFailed()
{
    m_hasLast = false;
    m_hasFailed = false;
}

QStringList ExchangeQueue::waiting() const
{
    QStringList names;
    for (const Call &call : m_calls)
        names.append(call.name);
    return names;
}

void ExchangeQueue::giveUpRunning()
{
    if (m_store.linkStatus().state != LinkStatus::State::Running)
        return;
    const bool isOurs = m_hasLast;
    m_abandoned.clear();
    m_hasLast = false;
    if (isOurs)
        m_abandoned.append(m_last.name);
    m_store.resetLink();
    Q_EMIT changed();
}

void ExchangeQueue::giveUpAll()
{
    if (m_calls.isEmpty())
        return;
    for (const Call &call : std::exchange(m_calls, {}))
        m_abandoned.append(call.name);
    Q_EMIT changed();
}

} // namespace paravue
