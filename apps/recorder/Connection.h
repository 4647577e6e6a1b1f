#pragma once

#include "Accounts.h"
#include "Answers.h"
#include "CommandTable.h"
#include "ConnectionTiming.h"
#include "InputBuffer.h"

#include <QObject>
#include <QTimer>

class QTcpSocket;

namespace recorder
{

class ConfigService;

/// One client: reads its requests one after the other and answers each before it looks at the next.
///
/// What is kept in memory is bounded: a line, one body up to MaxBody (a package: MaxPackage) and the answers
/// not yet taken. While a client does not read its answers nothing more is read from it.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// The longest request line, and the largest file that is accepted.
    static constexpr qsizetype MaxLine = 1024;
    static constexpr qsizetype MaxBody = 8 * 1024 * 1024;
    static constexpr qsizetype MaxPackage = 64 * 1024 * 1024;

    /// The socket becomes a child of the connection.
    Connection(QTcpSocket *socket, ConfigService &service, const ConnectionTiming &timing, QObject *parent);

    /// The account that is logged in.
    const std::optional<Account> &account() const { return m_account; }
    /// Drops the client without another word.
    void close();
    void setTiming(const ConnectionTiming &timing) { m_timing = timing; }

Q_SIGNALS:
    void logged(const QString &line);
    void fileReceived(const QString &name, const QByteArray &body);
    /// The answer to a command that restarts the recorder is out.
    void restartRequested();
    /// The client is gone.
    void closed();

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

    QTcpSocket *m_socket; // child
    ConfigService &m_service;
    ConnectionTiming m_timing;
    QTimer m_patience;
    QTimer m_delay;
    State m_state = State::AwaitLogin;
    InputBuffer m_input;
    QByteArray m_loginName;
    std::optional<Account> m_account;
    Command m_command;    // the one whose body is awaited
    QByteArray m_body;    // what arrived of it
    quint64 m_wanted = 0; // bytes of the body still to come
    QByteArray m_pending; // an answer that is held back for the reply delay
    bool m_restarts = false;
    int m_refusals = 0; // while nobody is logged in
};

} // namespace recorder
