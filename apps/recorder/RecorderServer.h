#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/protocol/ConnectionTiming.h"

#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTcpServer>
#include <QTimer>

#include <memory>

namespace recorder
{

class Client;
class ConfigService;
class ProtocolDetector;
class HttpAccess;
class VideoService;
enum class Protocol;

/// A network video recorder: on one port it speaks the configuration protocol, sends live video of a camera
/// that sees a test picture, and serves that picture over HTTP as /snapshot.jpg. It keeps its configuration
/// files in a folder. Commands have their effect there: a formatted disk is empty, an installed package is in
/// the list, a clock that was set goes on.
///
/// A missing or empty folder is filled with the files of the shipped model ("interface.xml", the files
/// "streams", "net", "time", "timers", "soft", "disk", "users" and "state", and the stored "emails"). What a
/// client sends replaces a file whole, byte for byte, or not at all. Files may be changed on disk while the
/// server runs; the next request sees them. The turning camera knows what "streams" held when the server
/// began to listen, and what a client has sent since.
///
/// Everything runs in the thread of the event loop; a server never blocks it, so tests can use one in
/// process.
class RecorderServer : public QObject
{
    Q_OBJECT

public:
    /// Clients of all kinds that may be connected at a time; more are turned away.
    static constexpr int MaxClients = 32;

    explicit RecorderServer(const QString &dataDir, QObject *parent = nullptr);
    /// As another one of the shipped models().
    RecorderServer(const QString &dataDir, const QString &model, QObject *parent = nullptr);
    ~RecorderServer() override;

    /// Names of the shipped models: "standard" and "everything", which has a window with every control that
    /// there is.
    static QStringList models();

    /// Listens on the loopback interface; port 0 picks a free one. False, with errorString() set, when the
    /// port is taken or the data folder cannot be used.
    bool listen(quint16 port = 0);
    bool listen(const QHostAddress &address, quint16 port);
    /// Stops listening and drops every client.
    void close();

    quint16 port() const;
    QHostAddress address() const;
    QString errorString() const;

    /// Every answer, the one to a login included, is sent this much later (milliseconds, 0 for at once).
    void setReplyDelay(int milliseconds);
    int replyDelay() const;
    /// How long a PUT may wait for its length line before it counts as one without a body (default 2000 ms).
    void setBodyTimeout(int milliseconds);
    int bodyTimeout() const;

    /// How long the recorder is gone when a client restarts it (default 3000 ms).
    void setRebootTime(int milliseconds) { m_rebootTime = milliseconds; }

    /// Path of a configuration file by its protocol name, for example "streams" ("interface" is
    /// interface.xml).
    QString filePath(const QString &name) const;

    const PtzState &ptz() const { return m_ptz; }
    /// What it shows and sends. It is there as long as the server.
    VideoService &video() { return *m_video; }

    /// How the snapshot is logged in to: a set of HttpAccess::Scheme, all by default.
    void setSnapshotLogins(unsigned schemes);

    int clientCount() const;
    /// Login names of the clients that are logged in now, in no particular order.
    QStringList loggedInUsers() const;

Q_SIGNALS:
    /// One readable line for each request and each answer, and for the body of a command or of what is put
    /// into the file "time". Passwords, packages and the contents of other files are not in it.
    void logged(const QString &line);
    /// Something that the user asked for does not work, as VideoService::failed() says.
    void failed(const QString &line);
    /// A client sent a file that was accepted and is now kept.
    void fileReceived(const QString &name, const QByteArray &body);
    /// A restart: every client was dropped and none is accepted, until the recorder is back on its port.
    void wentDown();
    void cameBack();

private:
    void beginRestart();
    void goDown();
    void comeBack();
    void dropClients();
    void acceptClients();
    void addClient(QTcpSocket *socket);
    void replaceDetector(int number, ProtocolDetector *detector, Protocol protocol);
    void keepClient(int number, Client *client);
    Client *makeClient(Protocol protocol, QTcpSocket *socket);

    std::unique_ptr<ConfigService> m_service;
    PtzState m_ptz;
    std::unique_ptr<VideoService> m_video;
    std::unique_ptr<HttpAccess> m_access;
    QTcpServer m_server;
    QHash<int, Client *> m_clients; // children of the server
    QString m_error;
    int m_nextClient = 1;
    ConnectionTiming m_timing;
    QTimer m_goingDown;
    QTimer m_comingBack;
    int m_rebootTime = 3000;
    QHostAddress m_address; // to come back to
    quint16 m_port = 0;
};

} // namespace recorder
