#include "recorder/clients/ConfigurationClient.h"

#include "recorder/clients/ConnectionReset.h"
#include "recorder/device/ConfigService.h"
#include "recorder/protocol/LogText.h"

#include <algorithm>
#include <limits>

namespace recorder
{

namespace
{

constexpr char ConfigurationLoginByte = 0x04;
constexpr qint64 MaxUnsent = 1024 * 1024;
constexpr int MaxRefusals = 5;
constexpr int TransferTimeout = 30 * 1000;
constexpr int IdleTimeout = 10 * 60 * 1000;

const QByteArray LengthPrefix = QByteArrayLiteral("LENGTH=");

/// A number of decimal digits without a sign, within 64 bits.
std::optional<quint64> decimal(const QByteArray &digits)
{
    constexpr qsizetype MaxDigits = 18;
    const bool isNumber =
        !digits.isEmpty() && digits.size() <= MaxDigits &&
        std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? std::optional(digits.toULongLong()) : std::nullopt;
}

/// Not logged are files, which may hold passwords, and packages, which are no text.
bool hasReadableBody(const Command &command)
{
    return command.kind == Command::Kind::Run ? command.function != Function::InstallPackage
                                              : command.file == QLatin1String("time");
}

qsizetype mostBytes(const Command &command)
{
    const bool isPackage = command.kind == Command::Kind::Run && command.function == Function::InstallPackage;
    return isPackage ? ConfigurationClient::MaxPackage : ConfigurationClient::MaxBody;
}

} // namespace

ConfigurationClient::ConfigurationClient(QTcpSocket *socket, ConfigService &service,
                                         const ConnectionTiming &timing, AnswerFaults &faults,
                                         QObject *parent)
    : LoginClient(socket, service, {ConfigurationLoginByte, MaxRefusals}, timing, parent), m_service(service),
      m_faults(faults)
{
    m_delay.setSingleShot(true);
    m_delay.setTimerType(Qt::PreciseTimer); // else delays are up to a twentieth longer
    connect(m_socket, &QTcpSocket::bytesWritten, this, &ConfigurationClient::process);
    connect(&m_delay, &QTimer::timeout, this, &ConfigurationClient::deliverLater);
}

bool ConfigurationClient::canRead() const
{
    return !m_hasEnded && m_pending.isEmpty() && m_socket->bytesToWrite() <= MaxUnsent;
}

bool ConfigurationClient::serve()
{
    switch (m_state) {
    case State::Body:
        return takeBody();
    case State::Skip:
        return skipBody();
    default:
        return takeLine();
    }
}

bool ConfigurationClient::takeBody()
{
    const QByteArray piece = m_input.takeBytes(qsizetype(m_wanted));
    m_body += piece;
    m_wanted -= quint64(piece.size());
    if (m_wanted > 0) {
        if (!piece.isEmpty())
            m_timeout.start();
        return false;
    }
    const QByteArray body = std::exchange(m_body, {});
    if (hasReadableBody(m_command))
        Q_EMIT logged(QStringLiteral("< ") + readableBody(body));
    const bool isFile = m_command.kind == Command::Kind::Put;
    const Answer result =
        isFile ? m_service.put(m_command.file, body, *m_account) : m_service.run(m_command, body, *m_account);
    enter(State::Ready);
    answer(result);
    if (isFile && result.accepted)
        Q_EMIT fileReceived(m_command.file, body);
    return true;
}

bool ConfigurationClient::skipBody()
{
    const quint64 most = quint64(std::numeric_limits<qsizetype>::max());
    const QByteArray piece = m_input.takeBytes(qsizetype(std::min(m_wanted, most)));
    m_wanted -= quint64(piece.size());
    if (m_wanted > 0) {
        if (!piece.isEmpty())
            m_timeout.start();
        return false;
    }
    enter(State::Ready);
    return true;
}

void ConfigurationClient::handleLine(const QByteArray &line)
{
    logLine(line);
    if (line.startsWith(ConfigurationLoginByte) || phase() != Phase::Service)
        m_request = AnswerFault::Login;
    if (line.startsWith(ConfigurationLoginByte)) // a client may log in again at any time
        beginLogin(line);
    else if (phase() == Phase::Password)
        finishLogin(line);
    else if (phase() == Phase::Login)
        refuseLogin(errorAnswer(QStringLiteral("log in first")));
    else if (line.startsWith(LengthPrefix))
        handleLength(line.mid(LengthPrefix.size()));
    else
        handleCommand(line);
}

void ConfigurationClient::handleCommand(const QByteArray &line)
{
    const bool bodyIsMissing = m_state == State::AwaitLength;
    if (bodyIsMissing)
        refuse(QStringLiteral("%1 came without a length").arg(m_command.label()), State::Ready);
    m_request = line;
    const Command command = parseCommand(line);
    if (command.kind == Command::Kind::Unknown)
        refuse(QStringLiteral("unknown command"), State::Refused);
    else
        runCommand(command);
}

void ConfigurationClient::runCommand(const Command &command)
{
    if (command.kind == Command::Kind::Get) {
        enter(State::Ready);
        answer(m_service.get(command.file));
    } else if (command.kind == Command::Kind::Run && !command.takesBody) {
        enter(State::Ready);
        answer(m_service.run(command, {}, *m_account));
    } else if (command.kind == Command::Kind::Put && !command.writable) {
        refuse(QStringLiteral("the file %1 is read-only").arg(command.file), State::Refused);
    } else {
        m_command = command;
        enter(State::AwaitLength);
    }
}

void ConfigurationClient::handleLength(const QByteArray &digits)
{
    const std::optional<quint64> length = decimal(digits);
    const State before = m_state;
    m_wanted = length.value_or(0);
    if (!length) // nobody can tell where the next request starts
        refuseForGood(QStringLiteral("wrong length"));
    else if (before == State::Refused)
        enter(State::Skip);
    else if (before == State::Ready)
        refuse(QStringLiteral("a length without a command"), State::Skip);
    else if (*length == 0)
        refuse(QStringLiteral("%1 is empty").arg(m_command.label()), State::Skip);
    else if (*length > quint64(mostBytes(m_command)))
        refuse(QStringLiteral("%1 is too large").arg(m_command.label()), State::Skip);
    else
        enter(State::Body);
}

void ConfigurationClient::refuse(const QString &reason, State next)
{
    enter(next);
    answer(errorAnswer(reason));
}

void ConfigurationClient::answerLogin()
{
    if (m_faults.takeRefusal())
        m_account.reset();
    LoginClient::answerLogin();
}

void ConfigurationClient::answer(const Answer &answer)
{
    Q_EMIT logged(QStringLiteral("> ") + answer.logText);
    Delivery delivery = m_faults.deliver(answer.bytes, m_request, ++m_answers);
    if (!delivery.faults.isEmpty())
        Q_EMIT logged(QStringLiteral("fault: ") + delivery.faults.join(QStringLiteral(", ")));
    delivery.delay += m_timing.replyDelay;
    m_restarts = m_restarts || answer.restarts;
    m_pending += delivery;
    if (m_pending.size() == 1)
        deliver();
}

/// Sends answers up to the next pause.
void ConfigurationClient::deliver()
{
    while (!m_pending.isEmpty() && !m_hasEnded) {
        Delivery &next = m_pending.first();
        if (next.delay > 0) {
            m_delay.start(std::exchange(next.delay, 0));
            return;
        }
        deliverPiece();
        if (!next.bytes.isEmpty()) {
            m_delay.start(0);
            return;
        }
        const Delivery::End last = next.end;
        m_pending.removeFirst();
        end(last);
    }
    if (m_pending.isEmpty() && std::exchange(m_restarts, false))
        Q_EMIT restartRequested();
}

void ConfigurationClient::deliverPiece()
{
    Delivery &next = m_pending.first();
    const qsizetype whole = next.bytes.size();
    // Another fault may have shortened the bytes.
    const qsizetype size = next.pieces.isEmpty() ? whole : std::min(next.pieces.takeFirst(), whole);
    if (m_socket->state() == QAbstractSocket::ConnectedState) {
        m_socket->write(next.bytes.first(size));
        // Otherwise the event loop could gather pieces.
        if (size < whole)
            m_socket->flush();
    }
    next.bytes.remove(0, size);
}

void ConfigurationClient::deliverLater()
{
    deliver();
    process();
}

void ConfigurationClient::end(Delivery::End end)
{
    m_hasEnded = end != Delivery::End::Stay;
    if (end == Delivery::End::Close)
        m_socket->disconnectFromHost();
    else if (end == Delivery::End::Reset)
        resetConnection(*m_socket);
}

void ConfigurationClient::enter(State state)
{
    m_state = state;
    switch (state) {
    case State::AwaitLength:
        m_timeout.start(m_timing.bodyTimeout);
        break;
    case State::Body:
    case State::Skip:
        m_timeout.start(TransferTimeout);
        break;
    case State::Ready:
    case State::Refused:
        m_timeout.start(IdleTimeout);
        break;
    }
}

void ConfigurationClient::expired()
{
    if (phase() == Phase::Service && m_state == State::AwaitLength)
        refuse(QStringLiteral("%1 came without a body").arg(m_command.label()), State::Refused);
    else
        LoginClient::expired();
}

} // namespace recorder
