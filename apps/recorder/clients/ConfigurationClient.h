#pragma once

#include "recorder/clients/LoginClient.h"
#include "recorder/protocol/CommandTable.h"
#include "recorder/protocol/ConnectionTiming.h"

namespace recorder
{

/// A client of the configuration service. Its requests are answered one after the other.
///
/// Memory is bounded: there is a line, one body of up to MaxBody (a package: MaxPackage), and the answers
/// that were not sent yet. While a client does not read its answers nothing more is read from it.
class ConfigurationClient : public LoginClient
{
    Q_OBJECT

public:
    /// The largest file that is accepted.
    static constexpr qsizetype MaxBody = 8 * 1024 * 1024;
    static constexpr qsizetype MaxPackage = 64 * 1024 * 1024;

    ConfigurationClient(QTcpSocket *socket, ConfigService &service, const ConnectionTiming &timing,
                        QObject *parent);

Q_SIGNALS:
    void fileReceived(const QString &name, const QByteArray &body);
    /// The answer to a command that restarts the recorder was sent.
    void restartRequested();

private:
    /// What is read next, in Phase::Service.
    enum class State {
        Ready,       // a request line
        AwaitLength, // the length line of a body that will be accepted
        Refused,     // like Ready, but a length line belongs to the request just refused
        Body,        // the bytes of an accepted body
        Skip,        // the bytes of a refused body
    };

    bool canRead() const override;
    bool serve() override;
    bool takeBody();
    bool skipBody();

    void handleLine(const QByteArray &line) override;
    void handleCommand(const QByteArray &line);
    void handleLength(const QByteArray &digits);
    void runCommand(const Command &command);

    void refuse(const QString &reason, State next);
    void answer(const Answer &answer) override;
    void send();
    void sendDelayed();
    void beginService() override { enter(State::Ready); }
    void enter(State state);
    void expired() override;

    ConfigService &m_service;
    QTimer m_delay;
    State m_state = State::Ready;
    Command m_command;    // the one whose body is awaited
    QByteArray m_body;    // what has arrived of it
    quint64 m_wanted = 0; // bytes of the body still to come
    QByteArray m_pending; // an answer that waits for the reply delay
    bool m_restarts = false;
};

} // namespace recorder
