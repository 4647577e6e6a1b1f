#include "recorder/RecorderServer.h"

#include "recorder/clients/ConfigurationClient.h"
#include "recorder/clients/HttpAccess.h"
#include "recorder/clients/HttpClient.h"
#include "recorder/clients/ProtocolDetector.h"
#include "recorder/clients/VideoClient.h"
#include "recorder/device/ConfigService.h"
#include "recorder/files/DataFolder.h"
#include "recorder/video/VideoService.h"

namespace recorder
{

namespace
{

/// Milliseconds for the client to read the answer and to disconnect.
constexpr int RestartNotice = 100;
constexpr int RetryToListen = 500;

const QString streamsFile = QStringLiteral("streams");

} // namespace

RecorderServer::RecorderServer(const QString &dataDir, QObject *parent)
    : RecorderServer(dataDir, models().constFirst(), parent)
{
}

RecorderServer::RecorderServer(const QString &dataDir, const QString &model, QObject *parent)
    : QObject(parent), m_service(std::make_unique<ConfigService>(dataDir, model)),
      m_video(std::make_unique<VideoService>()), m_access(std::make_unique<HttpAccess>())
{
    m_service->folder().prepare(m_error);
    connect(&m_server, &QTcpServer::newConnection, this, &RecorderServer::acceptClients);
    connect(m_video.get(), &VideoService::logged, this, &RecorderServer::logged);
    connect(m_video.get(), &VideoService::failed, this, &RecorderServer::failed);
    m_stopTimer.setSingleShot(true);
    m_startTimer.setSingleShot(true);
    connect(this, &RecorderServer::fileReceived, this, [this](const QString &name, const QByteArray &body) {
        if (name == streamsFile)
            m_ptz.readFile(body);
    });
    connect(&m_ptz, &PtzState::moved, this, [this] { m_video->setPose(m_ptz.pose()); });
    m_video->setCommandHandler([this](const QByteArray &line) { return m_ptz.execute(line); });
    connect(&m_stopTimer, &QTimer::timeout, this, &RecorderServer::stopForRestart);
    connect(&m_startTimer, &QTimer::timeout, this, &RecorderServer::startAgain);
}

QStringList RecorderServer::models()
{
    return DataFolder::models();
}

RecorderServer::~RecorderServer()
{
    close();
}

bool RecorderServer::listen(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

bool RecorderServer::listen(const QHostAddress &address, quint16 port)
{
    m_error.clear();
    if (!m_service->folder().prepare(m_error))
        return false;
    m_ptz.readFile(m_service->folder().read(streamsFile).value_or(QByteArray()));
    if (m_server.listen(address, port))
        return true;
    m_error = m_server.errorString();
    return false;
}

void RecorderServer::close()
{
    m_stopTimer.stop();
    m_startTimer.stop();
    m_server.close();
    dropClients();
}

void RecorderServer::scheduleRestart()
{
    if (!m_stopTimer.isActive() && m_server.isListening())
        m_stopTimer.start(RestartNotice);
}

void RecorderServer::stopForRestart()
{
    m_address = m_server.serverAddress();
    m_port = m_server.serverPort();
    close();
    Q_EMIT logged(QStringLiteral("restarting"));
    m_startTimer.start(m_rebootTime);
    Q_EMIT wentDown();
}

void RecorderServer::startAgain()
{
    if (!m_server.listen(m_address, m_port)) {
        Q_EMIT logged(QStringLiteral("cannot come back: %1").arg(m_server.errorString()));
        m_startTimer.start(RetryToListen);
        return;
    }
    Q_EMIT logged(QStringLiteral("started again"));
    Q_EMIT cameBack();
}

void RecorderServer::dropClients()
{
    const QList<Client *> clients = std::exchange(m_clients, {}).values();
    for (Client *client : clients) {
        client->disconnect(this);
        client->close();
        client->deleteLater();
    }
}

quint16 RecorderServer::port() const
{
    return m_server.serverPort();
}

QHostAddress RecorderServer::address() const
{
    return m_server.serverAddress();
}

QString RecorderServer::errorString() const
{
    return m_error;
}

void RecorderServer::setReplyDelay(int milliseconds)
{
    m_timing.replyDelay = std::max(0, milliseconds);
}

void RecorderServer::setBodyTimeout(int milliseconds)
{
    m_timing.bodyTimeout = std::max(0, milliseconds);
}

void RecorderServer::setDrainTimeout(int milliseconds)
{
    m_timing.drainTimeout = std::max(0, milliseconds);
}

QString RecorderServer::filePath(const QString &name) const
{
    return m_service->folder().filePath(name);
}

void RecorderServer::setClock(std::function<qint64()> seconds)
{
    m_service->clock().setSource(std::move(seconds));
}

void RecorderServer::setSnapshotLogins(unsigned schemes)
{
    m_access->setSchemes(schemes);
}

int RecorderServer::clientCount() const
{
    return int(m_clients.size());
}

QStringList RecorderServer::loggedInUsers() const
{
    QStringList names;
    for (const Client *client : m_clients) {
        if (client->account())
            names.append(QString::fromUtf8(client->account()->name));
    }
    return names;
}

void RecorderServer::acceptClients()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        if (m_clients.size() >= MaxClients) {
            Q_EMIT logged(QStringLiteral("a client was turned away: there are %1 already").arg(MaxClients));
            socket->abort();
            socket->deleteLater();
            continue;
        }
        addClient(socket);
    }
}

void RecorderServer::addClient(QTcpSocket *socket)
{
    const int number = m_nextClient++;
    auto *detector = new ProtocolDetector(socket, this);
    connect(detector, &ProtocolDetector::detected, this,
            [=, this](Protocol protocol) { replaceDetector(number, detector, protocol); });
    Q_EMIT logged(QStringLiteral("#%1 connected").arg(number));
    keepClient(number, detector);
}

void RecorderServer::replaceDetector(int number, ProtocolDetector *detector, Protocol protocol)
{
    QTcpSocket *socket = detector->takeSocket();
    detector->disconnect(this);
    detector->deleteLater();
    keepClient(number, makeClient(protocol, socket));
}

Client *RecorderServer::makeClient(Protocol protocol, QTcpSocket *socket)
{
    if (protocol == Protocol::Video)
        return new VideoClient(socket, *m_service, *m_video, m_timing, this);
    if (protocol == Protocol::Http)
        return new HttpClient(socket, *m_service, *m_access, *m_video, m_timing, this);
    auto *client = new ConfigurationClient(socket, *m_service, m_timing, m_faults, this);
    connect(client, &ConfigurationClient::fileReceived, this, &RecorderServer::fileReceived);
    connect(client, &ConfigurationClient::restartRequested, this, &RecorderServer::scheduleRestart);
    return client;
}

void RecorderServer::keepClient(int number, Client *client)
{
    m_clients.insert(number, client);
    const auto log = [this, number](const QString &line) {
        Q_EMIT logged(QStringLiteral("#%1 %2").arg(QString::number(number), line));
    };
    connect(client, &Client::logged, this, log);
    connect(client, &Client::closed, this, [this, number, client, log] {
        if (m_clients.remove(number) > 0) {
            log(QStringLiteral("disconnected"));
            client->deleteLater();
        }
    });
    client->start();
}

} // namespace recorder
