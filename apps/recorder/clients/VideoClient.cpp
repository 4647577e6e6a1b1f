#include "recorder/clients/VideoClient.h"

#include "recorder/device/ConfigService.h"

namespace recorder
{

namespace
{

constexpr char VideoLoginByte = 0x01;
constexpr qint64 MaxUnsentVideo = 2 * 1024 * 1024;
/// The limit for a client that does not read.
constexpr int StuckVideoTimeout = 30 * 1000;

/// The limit for ignored lines that are logged one by one.
constexpr int MaxIgnoredLogged = 5;

class SocketSink : public VideoSink
{
public:
    explicit SocketSink(QTcpSocket *socket) : m_socket(socket) {}

    bool isReady() const override { return m_socket && m_socket->bytesToWrite() <= MaxUnsentVideo; }

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
    : LoginClient(socket, accounts, {VideoLoginByte}, timing, parent), m_video(&video)
{
    connect(m_socket, &QTcpSocket::bytesWritten, this, [this] {
        if (phase() == Phase::Service)
            m_timeout.start(StuckVideoTimeout);
    });
    connect(this, &Client::closed, this, [this] {
        if (m_ignored > MaxIgnoredLogged)
            Q_EMIT logged(QStringLiteral("ignored: %1 more lines").arg(m_ignored - MaxIgnoredLogged));
    });
}

void VideoClient::handleLine(const QByteArray &line)
{
    if (phase() == Phase::Service) {
        handleCommand(line);
        return;
    }
    logLine(line);
    if (phase() == Phase::Login)
        beginLogin(line);
    else
        finishLogin(line);
}

void VideoClient::handleCommand(const QByteArray &line)
{
    QString fault;
    if (!m_mayTurnCameras && line.startsWith("PTZ "))
        fault = QStringLiteral("not allowed");
    else if (m_video)
        fault = m_video->handleCommand(line);
    // A client that sends invalid lines without end must not fill the log.
    if (!fault.isEmpty() && ++m_ignored > MaxIgnoredLogged)
        return;
    logLine(line);
    if (!fault.isEmpty())
        Q_EMIT logged(QStringLiteral("ignored: ") + fault);
}

void VideoClient::answerLogin()
{
    m_mayTurnCameras = m_account && m_accounts.mayTurnCameras(*m_account);
    m_isAnswering = true;
    m_timeout.stop();
    QTimer::singleShot(m_timing.replyDelay, this, [this] {
        m_isAnswering = false;
        LoginClient::answerLogin();
        process(); // what has come during the delay
    });
}

/// Closing while there is unread input would reset the connection, and the answer might be lost.
void VideoClient::answer(const Answer &answer)
{
    Q_EMIT logged(QStringLiteral("> ") + answer.logText);
    m_socket->write(answer.bytes);
    if (phase() != Phase::Drain)
        return;
    m_sink.reset();
    if (m_socket->bytesAvailable() == 0)
        m_socket->disconnectFromHost();
}

void VideoClient::beginService()
{
    m_timeout.start(StuckVideoTimeout);
    if (!m_video)
        return;
    m_sink = std::make_shared<SocketSink>(m_socket);
    m_video->watch(m_sink);
}

void VideoClient::expired()
{
    if (phase() != Phase::Service) {
        LoginClient::expired();
    } else if (m_socket->bytesToWrite() == 0) {
        m_timeout.start(StuckVideoTimeout);
    } else {
        Q_EMIT logged(QStringLiteral("closed: it does not take the video"));
        close();
    }
}

} // namespace recorder
