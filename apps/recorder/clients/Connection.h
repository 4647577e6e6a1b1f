#pragma once

#include "recorder/clients/Client.h"
#include "recorder/protocol/Answers.h"
#include "recorder/protocol/CommandTable.h"
#include "recorder/protocol/ConnectionTiming.h"
#include "recorder/protocol/InputBuffer.h"

#include <QTimer>

namespace recorder
{

class ConfigService;

/// A client of the configuration service: reads its requests one after the other and answers each before it
/// looks at the next.
///
/// What is kept in memory is bounded: a line, one body up to MaxBody (a package: MaxPackage) and the answers
/// not yet taken. While a client does not read its answers nothing more is read from it.
class Connection : public Client
{
    Q_OBJECT

public:
    /// The largest file that is accepted.
    static constexpr qsizetype MaxBody = 8 * 1024 * 1024;
    static constexpr qsizetype MaxPackage = 64 * 1024 * 1024;

    Connection(QTcpSocket *socket, ConfigService &service, const ConnectionTiming &timing, QObject *parent);

    void start() override { process(); }

Q_SIGNALS:
    void fileReceived(const QString &name, const QByteArray &body);
    /// The answer to a command that restarts the recorder is out.
    void restartRequested();

private:
    enum class State {
        AwaitLogin,    // the line that names the user
        AwaitPassword, // the line after it
        Ready,         // a request line
        AwaitLength,   // the length line of a body that is welcome
        Refused,       // like Ready, but a length line belongs to the request just refused
        Body,          // its bytes
        Skip,          // the bytes of a body that nobody wants
        Drain,         // the answer was the last one; what still comes is thrown away until the client leaves
    };

    void process();
    bool readMore();
    bool step();
    bool stepLine();
    bool takeBody();
    bool skipBody();

    void handleLine(const QByteArray &line);
    void beginLogin(const QByteArray &line);
    void finishLogin(const QByteArray &line);
    void handleCommand(const QByteArray &line);
    void handleLength(const QByteArray &digits);
    void runCommand(const Command &command);

    void refuse(const QString &reason, State next);
    State afterLoginRefusal();
    void answer(const Answer &answer);
    void send();
    void sendLate();
    void enter(State state);
    void expired();

    ConfigService &m_service;
    const ConnectionTiming &m_timing; // that of the server
    QTimer m_patience;
    QTimer m_delay;
    State m_state = State::AwaitLogin;
    InputBuffer m_input;
    QByteArray m_loginName;
    Command m_command;    // the one whose body is awaited
    QByteArray m_body;    // what arrived of it
    quint64 m_wanted = 0; // bytes of the body still to come
    QByteArray m_pending; // an answer that is held back for the reply delay
    bool m_restarts = false;
    int m_refusals = 0; // while nobody is logged in
};

} // namespace recorder
