#include "store/ExchangeQueue.h"

#include "store/OrbSetup.h"

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
    // Queued: the store is busy until the receivers of its signals have returned.
    connect(&store, &OrbSetup::loadDone, this, &ExchangeQueue::proceed, Qt::QueuedConnection);
    connect(&store, &OrbSetup::storeDone, this, &ExchangeQueue::proceed, Qt::QueuedConnection);
    connect(&store, &OrbSetup::pseudothrow, this, &ExchangeQueue::proceed, Qt::QueuedConnection);
}

void ExchangeQueue::call(const QString &name, const QString &arg, Caller caller)
{
    if (caller == Caller::User)
        m_abandoned.clear();
    const Call call = noted(name, arg, caller);
    const bool isBusy = m_store.linkStatus().state == LinkStatus::State::Running;
    if (!m_store.functionUse(name, arg).startsExchange || (!isBusy && m_calls.isEmpty())) {
        perform(call);
        return;
    }
    const bool isRepeated =
        caller == Caller::Task && std::any_of(m_calls.cbegin(), m_calls.cend(), [&](const Call &waiting) {
            return waiting.name == name && waiting.arg == arg;
        });
    if (isRepeated)
        return;
    if (m_calls.size() < MaxWaiting)
        m_calls.append(call);
    else
        m_abandoned.append(name);
    Q_EMIT changed();
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
    m_store.function(call.name, call.arg);
    if (call.caller == Caller::User && !wasRunning &&
        m_store.linkStatus().state == LinkStatus::State::Running) {
        m_last = call;
        m_hasLast = true;
        m_hasFailed = false;
    }
    for (const Value &value : std::as_const(present))
        m_store.setValue(value.path + u'/' + value.value);
}

void ExchangeQueue::proceed()
{
    const LinkStatus &status = m_store.linkStatus();
    if (status.state == LinkStatus::State::Running)
        return;
    const bool hasFailed = !status.problem.isEmpty();
    m_hasFailed = hasFailed && m_hasLast;
    if (!hasFailed)
        m_hasLast = false;
    if (m_calls.isEmpty())
        return;
    if (hasFailed)
        giveUp();
    while (!m_calls.isEmpty() && m_store.linkStatus().state != LinkStatus::State::Running)
        perform(m_calls.takeFirst());
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
    if (!m_hasFailed)
        return;
    m_store.resetLink();
    perform(Call(m_last));
}

QStringList ExchangeQueue::waiting() const
{
    QStringList names;
    for (const Call &call : m_calls)
        names.append(call.name);
    return names;
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
