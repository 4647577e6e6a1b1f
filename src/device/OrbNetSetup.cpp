#include "device/OrbNetSetup.h"

#include "device/LinkLog.h"
#include "device/LocalFiles.h"
#include "device/login/DefaultCredentialsSource.h"
#include "device/login/RememberedLogins.h"
#include "device/protocol/DescriptionFileList.h"
#include "device/protocol/DeviceAddress.h"
#include "device/protocol/Limits.h"
#include "device/protocol/LoginFrames.h"
#include "device/protocol/ReplyFrame.h"
#include "store/LogText.h"
#include "store/OrbSettings.h"
#include "store/PasswordDigest.h"

#include <QPointer>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <chrono>

using namespace paravue;

namespace
{

/// A slider that is dragged adjusts the picture many times a second; one request behind the last is enough.
constexpr std::chrono::milliseconds AdjustmentPause(1000);
const QString InterfaceFile = QStringLiteral("interface");

/// Whether one of \a commands fetches the file \a name.
template <typename Commands>
bool fetches(const Commands &commands, const QString &name)
{
    return std::any_of(commands.begin(), commands.end(), [&](const auto &command) {
        return !command->get.isEmpty() && QString::fromUtf8(command->name) == name;
    });
}

} // namespace

namespace paravue
{

Q_LOGGING_CATEGORY(linkLog, "paravue.link", QtWarningMsg)

} // namespace paravue

OrbNetSetup::OrbNetSetup(const QString &address)
    : OrbSetup(address), m_socket(new QTcpSocket(this)), m_temporaries(std::make_unique<LocalFiles>()),
      m_bcshTimer(new QTimer(this)), m_reply(std::make_unique<ReplyFrame>()),
      m_credentialsSource(defaultCredentialsSource()), m_fileList(std::make_unique<KnownFileList>()),
      m_waiting(new QTimer(this))
{
    m_socket->setReadBufferSize(MaxUnreadBytes);
    connect(m_socket, &QTcpSocket::connected, this, &OrbNetSetup::connected);
    connect(m_socket, &QTcpSocket::errorOccurred, this,
            [this](QAbstractSocket::SocketError e) { afterSocket([this, e] { error(e); }); });
    connect(m_socket, &QTcpSocket::readyRead, this, &OrbNetSetup::readyRead);
    connect(m_socket, &QTcpSocket::disconnected, this, [this] { afterSocket([this] { disconnected(); }); });
    connect(m_socket, &QTcpSocket::bytesWritten, this, [this] {
        if (linkStatus().state == LinkStatus::State::Running)
            showRunning(); // a large package is on its way for longer than a silence may last
        if (m_waiting->isActive())
            waitFor(m_timeouts.answer);
    });
    m_waiting->setSingleShot(true);
    connect(m_waiting, &QTimer::timeout, this, &OrbNetSetup::failWithoutAnswer);
    m_bcshTimer->setSingleShot(true);
    m_bcshTimer->setInterval(AdjustmentPause);
    m_bcshTimer->setTimerType(Qt::PreciseTimer);
    connect(m_bcshTimer, &QTimer::timeout, this, &OrbNetSetup::bcshTimer);
    setLinkReset([this] { giveUpExchange(); });
    setFunctionUse(&OrbNetSetup::useOfFunction);
    setReading(
        [this](const auto &only) { return makeReader(only); },
        [this](const QString &name, const QByteArray &content) { return keepLocalCopies(name, content); });
    setMissingSender([this] {
        const QStringList missing = saveStatus().missing;
        if (missing.isEmpty())
            return;
        dropLaterEdits(missing);
        startSave(missing);
    });
}

OrbNetSetup::~OrbNetSetup()
{
    m_socket->disconnect(this);
    if (m_isReceiving) {
        // Deleted by a receiver of what is reported while the socket announces its data: it is still in use.
        m_socket->setParent(nullptr);
        m_socket->abort();
        m_socket->deleteLater();
    }
    // They write their files once more. The local copies must outlive that, but nobody reads these again.
    m_settings.forget([this](const QString &path) { return m_temporaries->holds(path); });
    m_settings.clear();
}

QString OrbNetSetup::deviceAddress(const QString &login, const QString &password, const QString &host,
                                   quint16 port)
{
    if (host.isEmpty() || host.contains(u':') || host.contains(u'@') || password.contains(u':') || port == 0)
        return {};
    return QStringLiteral("%1:%2@%3:%4")
        .arg(login, password, host, QString::number(static_cast<qint16>(port)));
}

void OrbNetSetup::setCredentialsSource(std::unique_ptr<CredentialsSource> source)
{
    m_credentialsSource = std::move(source);
}

bool OrbNetSetup::lookUpCredentials(Credentials &record)
{
    fillInLogin(record);
    return true;
}

void OrbNetSetup::commandNext()
{
    ++m_state;
}

OrbNetSetup::compcommand &OrbNetSetup::commandCurrent()
{
    return *m_cmdlist.at(static_cast<size_t>(m_state - FirstCommand));
}

bool OrbNetSetup::commandIsDone()
{
    return m_state - FirstCommand >= commandCount();
}

int OrbNetSetup::commandCount()
{
    return static_cast<int>(m_cmdlist.size());
}

void OrbNetSetup::_connect()
{
    if (m_state != Idle) {
        reportWrongState("OrbNetSetup::_connect");
        return;
    }
    const auto device = DeviceAddress::parse(address());
    if (!device) {
        Q_EMIT pseudothrow(tr("Wrong network address \"%1\"<br>Correct one is login:password@address[:port]")
                               .arg(address()));
        return;
    }
    abortLeftovers();
    if (!fileExists(QStringLiteral("general")) && !keepLocalCopies(QStringLiteral("general"), {}))
        return;
    setValue(QStringLiteral("general/network/login/") + device->login);
    setValue(QStringLiteral("general/network/password/") + device->password);
    setValue(QStringLiteral("general/network/url/") + device->url);
    m_state = Connecting;
    setAcceptance({});
    setActivity(tr("Connecting"));
    showRunning();
    waitFor(m_timeouts.connection);
    qCInfo(linkLog).noquote() << linkLogName(address()) << "connecting to" << device->host << "port"
                              << device->port;
    m_socket->connectToHost(device->host, device->port, QIODevice::ReadWrite);
}

/// A faulty exchange leaves its connection open and bytes in the buffer. Both would spoil the next exchange:
/// a connected socket refuses to connect, and old bytes hide the login reply.
void OrbNetSetup::abortLeftovers()
{
    const QSignalBlocker quiet(m_socket);
    m_socket->abort();
    stopWaiting();
    m_buffer.clear();
    m_reply->reset();
    m_received = 0;
    m_stopped = false;
    ++m_exchange;
}

void OrbNetSetup::connected()
{
    if (m_state != Connecting) {
        reportWrongState("OrbNetSetup::connected");
        return;
    }
    // Requests are small and each one waits for its reply: a delay to gather more bytes would be paid by all.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    const QByteArray request = loginRequest(value(QStringLiteral("general/network/login")),
                                            value(QStringLiteral("general/network/password")));
    m_state = LoginSent;
    setActivity(tr("Logging in"));
    waitFor(m_timeouts.answer);
    qCInfo(linkLog).noquote() << linkLogName(address()) << "connected, logging in as"
                              << logText(value(QStringLiteral("general/network/login")));
    m_socket->write(request);
}

void OrbNetSetup::readyRead()
{
    const QPointer<OrbNetSetup> alive(this);
    const bool isNested = std::exchange(m_isReceiving, true);
    processReceived();
    if (!alive)
        return;
    m_isReceiving = isNested;
    // Qt does not announce what arrives while a receiver of our signals runs an event loop of its own.
    if (m_socket->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, &OrbNetSetup::readyRead, Qt::QueuedConnection);
}

void OrbNetSetup::processReceived()
{
    const QPointer<OrbNetSetup> alive(this);
    receive();
    if (!alive)
        return;
    if (m_state == LoginSent && !acceptLogin())
        return;
    if (m_stopped || m_state < LoggedIn || commandIsDone())
        return;
    // Right behind the login there is no reply to wait for.
    if (m_state != LoggedIn && !_isDataReady())
        return;
    // What is reported on the way may end this exchange and start another one, or delete the store.
    const auto goesOn = [&alive, exchange = m_exchange] { return alive && alive->m_exchange == exchange; };
    keepReply();
    if (!goesOn())
        return;
    _transfer();
    if (!goesOn())
        return;
    Q_EMIT progress(commandCount() == 0 ? 100 : (m_state - FirstCommand) * 100 / commandCount());
    if (goesOn() && commandIsDone())
        m_socket->disconnectFromHost();
}

/// Takes what has arrived. Bytes that no exchange waits for are dropped.
void OrbNetSetup::receive()
{
    const QByteArray bytes = m_socket->readAll();
    if (m_stopped || m_state < LoginSent || commandIsDone())
        return;
    m_buffer += bytes;
    m_received += bytes.size();
    showRunning();
    waitFor(m_timeouts.answer);
    // One byte more than the longest reply shows that it is too long; the rest is not kept.
    if (m_state == LoginSent)
        m_buffer.truncate(longestLoginReply() + 1);
    else if (m_received > MaxExchangeBytes)
        stopExchange(LinkStatus::Cause::BadAnswer, tr("Wrong device answer"));
}

/// False while the login is not accepted.
bool OrbNetSetup::acceptLogin()
{
    switch (loginReply(m_buffer)) {
    case LoginReply::Accepted:
        m_buffer.clear();
        m_state = LoggedIn;
        qCInfo(linkLog).noquote() << linkLogName(address()) << "logged in";
        return true;
    case LoginReply::Refused:
        retryLogin();
        return false;
    case LoginReply::Wrong:
        noteWrongLoginReply();
        return false;
    case LoginReply::Incomplete:
        break;
    }
    return false;
}

/// Deliberate: the exchange goes on waiting, as for any login reply; only what comes later is dropped. With
/// a time-out there is no point in waiting for that.
void OrbNetSetup::noteWrongLoginReply()
{
    if (m_stopped)
        return;
    const bool isFrame = m_buffer.startsWith("LENGTH=");
    const QString problem = isFrame ? tr("The recorder's answer to the login cannot be understood")
                                    : tr("What answers at this address is not a recorder");
    m_stopped = true;
    showFailed(LinkStatus::Cause::BadAnswer, problem);
    if (m_timeouts.connection.count() == 0 && m_timeouts.answer.count() == 0)
        return;
    stopWaiting();
    cutConnection();
    setActivity(QString());
    Q_EMIT pseudothrow(problem);
}

bool OrbNetSetup::_isDataReady()
{
    switch (m_reply->read(m_buffer)) {
    case ReplyFrame::Progress::Incomplete:
        return false;
    case ReplyFrame::Progress::TooLong:
        stopExchange(LinkStatus::Cause::BadAnswer, tr("Wrong device answer"));
        return false;
    case ReplyFrame::Progress::Complete:
        break;
    }
    m_buffer.remove(0, m_reply->headerSize());
    m_reply->reset();
    if (m_state >= FirstCommand)
        noteUnanswered(QString());
    const ReplyContent content = takeAnswer(m_buffer);
    switch (content.answer) {
    case ReplyContent::Answer::Ok:
        noteAcceptance(content.text);
        return true;
    case ReplyContent::Answer::Missing:
        stopExchange(LinkStatus::Cause::BadAnswer, tr("Wrong device answer"));
        break;
    case ReplyContent::Answer::Unrecognized:
        stopExchange(LinkStatus::Cause::BadAnswer, tr("Unrecognized device error \"%1\"").arg(content.text));
        break;
    case ReplyContent::Answer::Error:
        stopExchange(LinkStatus::Cause::Refused, tr("Device error \"%1\"").arg(content.text));
        break;
    }
    return false;
}

void OrbNetSetup::noteAcceptance(const QString &words)
{
    if (words.isEmpty())
        return;
    qCInfo(linkLog).noquote() << linkLogName(address()) << "accepted:" << logText(words);
    setAcceptance(words);
}

/// Hands the reply to the handler of the command that it belongs to.
void OrbNetSetup::keepReply()
{
    // Taken out first: the handler may replace the list that the command stands in.
    const QByteArray body = std::exchange(m_buffer, {});
    if (m_state >= FirstCommand)
        qCInfo(linkLog).noquote() << linkLogName(address()) << "answered," << body.size() << "bytes";
    if (m_state >= FirstCommand && m_operation == Send)
        noteArrival(QString::fromUtf8(commandCurrent().name));
    if (m_state < FirstCommand || m_operation != Fetch)
        return;
    const PushHandler push = commandCurrent().push;
    const QString name = QString::fromUtf8(commandCurrent().name);
    if (push)
        (this->*push)(name, body);
}

/// Runs \a handle, which reports the end of a connection, from the event loop. A receiver of the report may
/// start an exchange or delete the store; within a signal of the socket, the end of the old connection would
/// close the new one.
void OrbNetSetup::afterSocket(const std::function<void()> &handle)
{
    const auto ofSameExchange = [this, handle, exchange = m_exchange] {
        if (exchange != m_exchange)
            return;
        const QPointer<OrbNetSetup> alive(this);
        setReportingConsequence(linkStatus().state == LinkStatus::State::Failed);
        handle();
        if (alive)
            setReportingConsequence(false);
    };
    QMetaObject::invokeMethod(this, ofSameExchange, Qt::QueuedConnection);
}

void OrbNetSetup::disconnected()
{
    // Deliberate: an exchange that did not run to its end is reported and nothing is reset.
    if (!commandIsDone()) {
        stopWaiting();
        if (linkStatus().state == LinkStatus::State::Running)
            showFailed(LinkStatus::Cause::Network, problemText(QAbstractSocket::RemoteHostClosedError));
        reportWrongState("OrbNetSetup::disconnected");
        return;
    }
    setActivity(QString());
    if (m_operation == Send && m_isSaveIncomplete) {
        QStringList names;
        for (const auto &entry : m_cmdlist) {
            const QString name = QString::fromUtf8(entry->name);
            if (m_notSent.contains(name) && !names.contains(name))
                names << name;
        }
        finishExchange();
        noteLocalProblem();
        if (!names.isEmpty())
            Q_EMIT pseudothrow(tr("Can't save a local copy of \"%1\"; it was not sent")
                                   .arg(names.join(QStringLiteral("\", \""))));
        return;
    }
    // Deliberate: the end is announced before the link is idle, so a receiver cannot start the next exchange
    // from within, unless it gives this one up.
    const QPointer<OrbNetSetup> alive(this);
    const int exchange = m_exchange;
    switch (m_operation) {
    case Fetch:
        // A description that came and could not be kept was reported at once, however late the load ends.
        setReportingConsequence(fetches(m_cmdlist, InterfaceFile) && !fileExists(InterfaceFile));
        Q_EMIT loadDone();
        break;
    case Send:
        Q_EMIT storeDone();
        break;
    default:
        Q_EMIT pseudothrow(
            tr("%1 in wrong operation %2")
                .arg(QStringLiteral("OrbNetSetup::disconnected"), QString::number(m_operation)));
    }
    if (alive && exchange == m_exchange)
        finishExchange();
}

void OrbNetSetup::finishExchange()
{
    qCInfo(linkLog).noquote() << linkLogName(address()) << "exchange ended";
    m_state = Idle;
    m_operation = NoOperation;
    m_cmdlist.clear();
    stopWaiting();
    setLinkStatus({});
}

void OrbNetSetup::giveUpExchange()
{
    if (linkStatus().state == LinkStatus::State::Idle)
        return;
    abortLeftovers();
    finishExchange();
    setActivity(QString());
    ++m_resets;
}

void OrbNetSetup::showRunning()
{
    LinkStatus status{LinkStatus::State::Running};
    status.isSending = m_operation == Send;
    status.lastTraffic.start();
    setLinkStatus(status);
}

void OrbNetSetup::showFailed(LinkStatus::Cause cause, const QString &problem)
{
    qCInfo(linkLog).noquote() << linkLogName(address()) << "failed:" << logText(problem);
    LinkStatus status{LinkStatus::State::Failed, problem};
    status.cause = cause;
    setLinkStatus(status);
}

void OrbNetSetup::waitFor(std::chrono::milliseconds limit)
{
    if (limit.count() > 0)
        m_waiting->start(limit);
    else
        m_waiting->stop();
}

void OrbNetSetup::stopWaiting()
{
    m_waiting->stop();
}

/// Deliberate: the state stays, as after every error of the network.
void OrbNetSetup::failWithoutAnswer()
{
    const auto limit = m_state == Connecting ? m_timeouts.connection : m_timeouts.answer;
    const auto seconds = std::chrono::duration_cast<std::chrono::duration<double>>(limit).count();
    const QString problem = tr("No answer from the recorder for %1 s").arg(seconds);
    cutConnection();
    setActivity(QString());
    m_stopped = true;
    showFailed(LinkStatus::Cause::NoAnswer, problem);
    Q_EMIT pseudothrow(problem);
}

/// Without the reports that follow the end of a connection.
void OrbNetSetup::cutConnection()
{
    const QSignalBlocker quiet(m_socket);
    m_socket->abort();
}

QString OrbNetSetup::problemText(QAbstractSocket::SocketError error) const
{
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return tr("The recorder refuses the connection");
    case QAbstractSocket::RemoteHostClosedError:
        return tr("The recorder has closed the connection");
    case QAbstractSocket::HostNotFoundError:
        return tr("No device with this name was found");
    case QAbstractSocket::SocketTimeoutError:
        return tr("The recorder does not answer");
    case QAbstractSocket::NetworkError:
        return m_state == Connecting
                   ? tr("There is no route to the recorder: it is switched off, or in another network")
                   : tr("The network connection was lost");
    default:
        return m_socket->errorString();
    }
}

void OrbNetSetup::error(QAbstractSocket::SocketError e)
{
    // Deliberate: the state stays, so that later attempts report it.
    setActivity(QString());
    stopWaiting();
    const QString problem = problemText(e);
    // A recorder that has refused something may close the connection; what it has refused is the problem.
    if (!m_stopped)
        showFailed(LinkStatus::Cause::Network, problem);
    report(tr("Network error %1").arg(static_cast<int>(e)), problem);
}

void OrbNetSetup::retryLogin()
{
    {
        // The refused connection ends without a report.
        const QSignalBlocker quiet(m_socket);
        m_socket->disconnectFromHost();
        m_socket->abort();
    }
    m_buffer.clear();
    m_state = Idle;
    m_operation = NoOperation;
    stopWaiting();
    setActivity(tr("Asking for the login"));
    LinkStatus asking{LinkStatus::State::Running};
    asking.isSending = linkStatus().isSending;
    setLinkStatus(asking);
    // The source may open a dialog, which must not run within a signal of the socket that is needed next.
    QMetaObject::invokeMethod(this, &OrbNetSetup::askForLogin, Qt::QueuedConnection);
}

void OrbNetSetup::askForLogin()
{
    qCInfo(linkLog).noquote() << linkLogName(address()) << "the login was refused, asking for another one";
    // The answer to the open question also serves an exchange that is refused meanwhile.
    m_resetsBeforeQuestion = m_resets;
    if (m_isAsking)
        return;
    Credentials record;
    const QString url = value(QStringLiteral("general/network/url"));
    record.url = url.toLocal8Bit();
    record.isAfterRefusal = m_isLoginGiven || !isDefaultLogin();
    // The host may replace the source, or delete this store, while it asks.
    const std::shared_ptr<CredentialsSource> source = m_credentialsSource;
    const QPointer<OrbNetSetup> alive(this);
    bool isAnswered = false;
    {
        m_isAsking = true;
        const auto asked = qScopeGuard([&alive] {
            if (alive)
                alive->m_isAsking = false;
        });
        isAnswered = source && source->ask(record);
    }
    if (!alive || m_resetsBeforeQuestion != m_resets)
        return;
    m_isLoginGiven = m_isLoginGiven || isAnswered;
    setActivity(QString());
    LinkStatus refused{LinkStatus::State::Idle, tr("The recorder has refused the login")};
    refused.cause = LinkStatus::Cause::Login;
    setLinkStatus(refused);
    // What waits was called with the settings of before, which are fetched afresh.
    giveUpWaiting();
    if (!isAnswered) {
        report(tr("Authorization failed"), linkStatus().problem);
        return;
    }
    if (record.remember)
        source->save(record);
    setAddress(QStringLiteral("%1:%2@%3")
                   .arg(QString::fromLocal8Bit(record.login), QString::fromLocal8Bit(record.password), url));
    // Deliberate: also when files were to be sent. Behind a new login everything is fetched afresh.
    load();
}

/// The one of lookUpCredentials() for a recorder that nobody has logged in to.
bool OrbNetSetup::isDefaultLogin()
{
    const QString login = value(QStringLiteral("general/network/login"));
    const QString password = value(QStringLiteral("general/network/password"));
    return (login == u"admin" || login == u"guest") &&
           password == QLatin1StringView(passwordDigest(QByteArray()));
}

void OrbNetSetup::reportWrongState(const char *where)
{
    report(tr("%1 in wrong state %2").arg(QLatin1StringView(where), QString::number(m_state)),
           linkStatus().state == LinkStatus::State::Running
               ? tr("The recorder is still busy with the last request")
               : linkStatus().problem);
}

void OrbNetSetup::report(const QString &message, const QString &explanation)
{
    setExplanation(message, explanation);
    Q_EMIT pseudothrow(message);
}

/// Deliberate: the exchange stays where it is, connected and with the remains of the reply; only what comes
/// later is dropped.
void OrbNetSetup::stopExchange(LinkStatus::Cause cause, const QString &reason)
{
    m_stopped = true;
    stopWaiting();
    setActivity(QString());
    showFailed(cause, reason);
    Q_EMIT pseudothrow(reason);
}
