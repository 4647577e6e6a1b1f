#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/protocol/AnswerFaults.h"
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
/// files in a folder. Commands change these files: formatting empties a disk, installing adds a package to
/// the list.
///
/// A missing or empty folder is filled with the files of the shipped model ("interface.xml", the files
/// "streams", "net", "time", "timers", "soft", "disk", "users" and "state", and the stored "emails"). What a
/// client sends replaces a file whole, byte for byte, or not at all. Files may be changed on disk while the
/// server runs; the next request sees them, except for the turning camera: it reads "streams" when the server
/// begins to listen and when a client sends it.
///
/// Everything runs in the thread of the event loop without blocking it, so a test can run server and client
/// in one thread.
class RecorderServer : public QObject
{
    Q_OBJECT

public:
    /// The limit of connections of all kinds; more are closed at once.
    static constexpr int MaxClients = 32;

    explicit RecorderServer(const QString &dataDir, QObject *parent = nullptr);
    /// \a model is one of models().
    RecorderServer(const QString &dataDir, const QString &model, QObject *parent = nullptr);
    ~RecorderServer() override;

    /// Names of the shipped models: "standard", "patrol" with sixteen channels and steered cameras, and
    /// "everything", whose window has every type of control.
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
    /// Faults of the configuration protocol, in place of those of before. They apply to the next answers,
    /// also on open connections.
    void setFaults(const QList<AnswerFault> &faults) { m_faults.set(faults); }
    /// How long a PUT may wait for its length line before it counts as one without a body (default 2000 ms).
    void setBodyTimeout(int milliseconds);
    /// How long a client may take to disconnect after its last answer before the server does (default 1000
    /// ms).
    void setDrainTimeout(int milliseconds);

    /// How long the recorder does not listen when a client restarts it (default 3000 ms).
    void setRebootTime(int milliseconds) { m_rebootTime = milliseconds; }

    /// Path of a configuration file by its protocol name, for example "streams" ("interface" is
    /// interface.xml).
    QString filePath(const QString &name) const;

    const PtzState &ptz() const { return m_ptz; }
    /// The live video. It lives as long as the server.
    VideoService &video() { return *m_video; }

    /// Replaces the clock of this computer, from which the recorder's own is reckoned, by a function that
    /// returns the seconds since 1970 (UTC). The video has a clock of its own.
    void setClock(std::function<qint64()> seconds);

    /// The authentication schemes of the snapshot: a set of HttpAccess::Scheme, all by default.
    void setSnapshotLogins(unsigned schemes);

    int clientCount() const;
    /// Login names of the clients that are logged in now, in no particular order.
    QStringList loggedInUsers() const;

Q_SIGNALS:
    /// One line for each request, each answer, each body of a command and each body for the file "time".
    /// Passwords, packages and the contents of other files are left out.
    void logged(const QString &line);
    /// As VideoService::failed().
    void failed(const QString &line);
    /// A file of a client was accepted and stored.
    void fileReceived(const QString &name, const QByteArray &body);
    /// A restart: every client was disconnected and none is accepted until the recorder listens again.
    void wentDown();
    void cameBack();

private:
    void scheduleRestart();
    void stopForRestart();
    void startAgain();
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
    AnswerFaults m_faults;
    QTimer m_stopTimer;
    QTimer m_startTimer;
    int m_rebootTime = 3000;
    QHostAddress m_address; // for listening again after a restart
    quint16 m_port = 0;
};

} // namespace recorder
