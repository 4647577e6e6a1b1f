#include "recorder/clients/VideoClient.h"

#include "recorder/device/ConfigService.h"
#include "recorder/protocol/Answers.h"
#include "recorder/protocol/LogText.h"

namespace recorder
{

namespace
{

constexpr qint64 MaxUnsent = 2 * 1024 * 1024;
constexpr int LoginPatience = 30 * 1000;
/// For a client that takes nothing.
constexpr int StuckPatience = 30 * 1000;
constexpr int DrainPatience = 1000;

/// Ignored lines that are logged one by one.
constexpr int MostIgnoredShown = 5;

const QByteArray LoginPrefix = QByteArrayLiteral("\x01LOGIN=");
const QByteArray PasswordPrefix = QByteArrayLiteral("PASS=");
const QString HiddenPassword = QStringLiteral("PASS=***");

class SocketSink : public VideoSink
{
public:
    explicit SocketSink(QTcpSocket *socket) : m_socket(socket) {}

    bool isReady() const override { return m_socket && m_socket->bytesToWrite() <= MaxUnsent; }

    void write(const QByteArray &bytes) override
    {
        if (m_socket && m_socket->state() == QAbstractSocket::ConnectedState)
            m_socket->write(bytes);
    }

    void end() override
    {
        if (m_socket)
            m_socket->disconnectFromHost();
    }

private:
    QPointer<QTcpSocket> m_socket;
};

} // namespace

VideoClient::VideoClient(QTcpSocket *socket, const ConfigService &accounts, VideoService &video,
                         const ConnectionTiming &timing, QObject *parent)
    : Client(socket, parent), m_accounts(accounts), m_video(&video), m_timing(timing)
{
    m_patience.setSingleShot(true);
    connect(m_socket, &QTcpSocket::readyRead, this, &VideoClient::process);
    connect(m_socket, &QTcpSocket::bytesWritten, this, [this] {
        if (m_state == State::Watching)
            m_patience.start(StuckPatience);
    });
    connect(&m_patience, &QTimer::timeout, this, &VideoClient::expired);
    connect(this, &Client::closed, this, [this] {
        if (m_ignored > MostIgnoredShown)
            Q_EMIT logged(QStringLiteral("ignored: %1 more lines").arg(m_ignored - MostIgnoredShown));
    });
    enter(State::AwaitLogin);
}

void VideoClient::process()
{
    while (m_state != State::Answering) {
        if (!step() && !readMore())
            return;
    }
}

bool VideoClient::readMore()
{
    const QByteArray piece = m_socket->read(ReadPiece);
    m_input.append(piece);
    return !piece.isEmpty();
}

/// Uses up some input; false when there is not enough of it.
bool VideoClient::step()
{
    if (m_state == State::Drain) {
        m_input.clear();
        return false;
    }
    const std::optional<QByteArray> line = m_input.takeLine();
    if (line ? line->size() > MaxLine : m_input.size() > MaxLine) {
        Q_EMIT logged(QStringLiteral("< a line that does not end"));
        refuse(errorAnswer(QStringLiteral("the request line is too long")));
        return true;
    }
    if (line)
        handleLine(*line);
    return line.has_value();
}

void VideoClient::handleLine(const QByteArray &line)
{
    if (m_state == State::Watching) {
        handleCommand(line);
        return;
    }
    const bool isPassword = m_state == State::AwaitPassword;
    Q_EMIT logged(QStringLiteral("< ") + (isPassword ? HiddenPassword : readableRequest(line)));
    switch (m_state) {
    case State::AwaitLogin:
        if (!line.startsWith(LoginPrefix)) {
            refuse(errorAnswer(QStringLiteral("the login has no user name")));
            return;
        }
        m_loginName = line.mid(LoginPrefix.size());
        enter(State::AwaitPassword);
        break;
    case State::AwaitPassword:
        finishLogin(line);
        break;
    case State::Watching:
    case State::Answering:
    case State::Drain:
        break;
    }
}

void VideoClient::handleCommand(const QByteArray &line)
{
    QString fault;
    if (!m_mayTurnCameras && line.startsWith("PTZ "))
        fault = QStringLiteral("not allowed");
    else if (m_video)
        fault = m_video->handleCommand(line);
    // Who sends rubbish without end does not fill the log with it.
    if (!fault.isEmpty() && ++m_ignored > MostIgnoredShown)
        return;
    Q_EMIT logged(QStringLiteral("< ") + readableRequest(line));
    if (!fault.isEmpty())
        Q_EMIT logged(QStringLiteral("ignored: ") + fault);
}

void VideoClient::finishLogin(const QByteArray &line)
{
    if (line.startsWith(PasswordPrefix))
        m_account = m_accounts.login(m_loginName, line.mid(PasswordPrefix.size()));
    m_mayTurnCameras = m_account && m_accounts.mayTurnCameras(*m_account);
    enter(State::Answering);
    QTimer::singleShot(m_timing.replyDelay, this, [this] {
        answerLogin(m_account ? okAnswer() : loginRefusal());
        process(); // what came meanwhile
    });
}

void VideoClient::answerLogin(const Answer &answer)
{
    if (!answer.accepted) {
        refuse(answer);
        return;
    }
    Q_EMIT logged(QStringLiteral("> ") + answer.logText);
    m_socket->write(answer.bytes);
    enter(State::Watching);
    if (!m_video)
        return;
    m_sink = std::make_shared<SocketSink>(m_socket);
    m_video->watch(m_sink);
}

/// Closing while there is unread input would reset the connection, and the answer might be lost.
void VideoClient::refuse(const Answer &answer)
{
    Q_EMIT logged(QStringLiteral("> ") + answer.logText);
    m_sink.reset();
    m_input.clear();
    m_socket->write(answer.bytes);
    enter(State::Drain);
    if (m_socket->bytesAvailable() == 0)
        m_socket->disconnectFromHost();
}

void VideoClient::enter(State state)
{
    m_state = state;
    switch (state) {
    case State::AwaitLogin:
    case State::AwaitPassword:
        m_patience.start(LoginPatience);
        break;
    case State::Answering:
        m_patience.stop();
        break;
    case State::Watching:
        m_patience.start(StuckPatience);
        break;
    case State::Drain:
        m_patience.start(DrainPatience);
        break;
    }
}

void VideoClient::expired()
{
    if (m_state == State::Watching && m_socket->bytesToWrite() == 0) {
        m_patience.start(StuckPatience);
        return;
    }
    if (m_state == State::Watching)
        Q_EMIT logged(QStringLiteral("closed: it does not take the video"));
    else if (m_state != State::Drain)
        Q_EMIT logged(QStringLiteral("closed: nothing more came"));
    m_socket->abort();
}

} // namespace recorder
