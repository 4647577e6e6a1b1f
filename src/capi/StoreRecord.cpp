#include "capi/StoreRecord.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace paravue::capi
{

namespace
{

constexpr OrbNetSetup::Timeouts DefaultTimeouts{std::chrono::seconds(12), std::chrono::seconds(60)};
constexpr int PollInterval = 50; // milliseconds
constexpr int Over = 1;          // what a loop that has not been quit returns

} // namespace

paravue_result resultOf(LinkStatus::Cause cause)
{
    switch (cause) {
    case LinkStatus::Cause::Network:
    case LinkStatus::Cause::NoAnswer:
        return PARAVUE_NETWORK;
    case LinkStatus::Cause::Login:
        return PARAVUE_LOGIN;
    case LinkStatus::Cause::Refused:
        return PARAVUE_REFUSED;
    case LinkStatus::Cause::BadAnswer:
        return PARAVUE_BAD_DATA;
    case LinkStatus::Cause::LocalFile:
        return PARAVUE_LOCAL_FILE;
    case LinkStatus::Cause::None:
        break;
    }
    return PARAVUE_INTERNAL;
}

StoreRecord::StoreRecord(const QString &address, uint32_t flags) : m_store(address)
{
    m_store.setTimeouts(DefaultTimeouts);
    if (!(flags & PARAVUE_STORE_ASKS_FOR_LOGIN))
        m_store.setCredentialsSource(nullptr);
    connectObserver();
}

void StoreRecord::connectObserver()
{
    using Scope = Library::Scope;
    QObject::connect(&m_store, &OrbSetup::progress, &m_store, [this](int percent) {
        const Scope scope(Scope::Kind::Callback);
        if (m_observer.progress)
            m_observer.progress(m_observer.user, percent);
    });
    QObject::connect(&m_store, &OrbSetup::pseudothrow, &m_store, [this](const QString &message) {
        m_message = message;
        const Scope scope(Scope::Kind::Callback);
        if (!m_observer.message)
            return;
        const QByteArray text = message.toUtf8();
        const QByteArray explanation = m_store.explanation(message).toUtf8();
        m_observer.message(m_observer.user, text.constData(), size_t(text.size()), explanation.constData(),
                           size_t(explanation.size()));
    });
    QObject::connect(&m_store, &OrbSetup::loadDone, &m_store, [this] {
        m_isDone = true;
        const Scope scope(Scope::Kind::Callback);
        if (m_observer.loaded)
            m_observer.loaded(m_observer.user);
    });
    QObject::connect(&m_store, &OrbSetup::storeDone, &m_store, [this] {
        m_isDone = true;
        const Scope scope(Scope::Kind::Callback);
        if (m_observer.saved)
            m_observer.saved(m_observer.user);
    });
}

void StoreRecord::prepare()
{
    m_store.resetLink();
    m_message.clear();
    m_isDone = false;
    m_isGivenUp = false;
}

paravue_result StoreRecord::outcome(Library &library) const
{
    const LinkStatus &link = m_store.linkStatus();
    if (!link.problem.isEmpty())
        return library.fail(resultOf(link.cause), link.problem);
    if (m_isGivenUp)
        return library.fail(PARAVUE_CANCELLED);
    // What could not even start leaves no trace in the link: a package that cannot be read, for example.
    if (!m_isDone && !m_message.isEmpty())
        return library.fail(PARAVUE_LOCAL_FILE, m_message);
    return PARAVUE_OK;
}

paravue_result StoreRecord::wait(Library &library)
{
    const Library::Scope scope(Library::Scope::Kind::Wait);
    // The state of the link is polled: no signal comes when an exchange is given up or asks for a login in
    // vain.
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [this, &loop] {
        if (!isRunning())
            loop.exit(Over);
    });
    const auto end = [&loop] {
        QMetaObject::invokeMethod(
            &loop, [&loop] { loop.exit(Over); }, Qt::QueuedConnection);
    };
    QObject::connect(&m_store, &OrbSetup::loadDone, &loop, end);
    QObject::connect(&m_store, &OrbSetup::storeDone, &loop, end);
    QObject::connect(&m_store, &OrbSetup::pseudothrow, &loop, end);
    poll.start(PollInterval);
    // Once the application has quit, no loop runs any more.
    while (isRunning() && !QCoreApplication::closingDown()) {
        if (loop.exec() != Over)
            break;
    }
    if (!isRunning())
        return outcome(library);
    reset();
    return library.fail(PARAVUE_CANCELLED);
}

void StoreRecord::reset()
{
    m_isGivenUp = isRunning();
    m_store.resetLink();
}

} // namespace paravue::capi
