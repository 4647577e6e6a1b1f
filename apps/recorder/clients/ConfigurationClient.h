#pragma once

#include "recorder/clients/LoginClient.h"
#include "recorder/protocol/AnswerFaults.h"
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

    /// \a timing and \a faults are those of the server.
    ConfigurationClient(QTcpSocket *socket, ConfigService &service, const ConnectionTiming &timing,
                        AnswerFaults &faults, QObject *parent);

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
    void answerLogin() override;
    void answer(const Answer &answer) override;
    void deliver();
    void deliverPiece();
    void deliverLater();
    void end(Delivery::End end);
    void beginService() override { enter(State::Ready); }
    void enter(State state);
    void expired() override;

    ConfigService &m_service;
    AnswerFaults &m_faults;
    QTimer m_delay; // until the next piece of an answer is sent
    State m_state = State::Ready;
    Command m_command;    // the one whose body is awaited
    QByteArray m_body;    // what has arrived of it
    quint64 m_wanted = 0; // bytes of the body still to come
    QByteArray m_request; // the one that is answered next, as AnswerFaults::deliver() takes it
    int m_answers = 0;
    QList<Delivery> m_pending; // answers that wait to be sent
    bool m_hasEnded = false;   // nothing is read and sent any more
    bool m_restarts = false;
};

} // namespace recorder
