#pragma once

#include "recorder/clients/Client.h"
#include "recorder/protocol/Answers.h"
#include "recorder/protocol/InputBuffer.h"

namespace recorder
{

class ConfigService;

/// A client that sends lines and logs in with two of them: a byte that names the service with "LOGIN=" and
/// the name of the user, then "PASS=" and the password.
class LoginClient : public Client
{
    Q_OBJECT

public:
    /// No line is longer.
    static constexpr qsizetype MaxLine = 1024;

    void start() override { process(); }

protected:
    enum class Phase {
        Login,    // the line that names the user
        Password, // the line after it
        Service,  // what the client has logged in for
        Drain,    // the answer was the last one; what still comes is thrown away until the client leaves
    };

    /// How one service wants to be logged in to.
    struct LoginRules {
        char serviceByte = 0;
        int maxRefusals = 1; ///< the last of them ends the connection
    };

    LoginClient(QTcpSocket *socket, const ConfigService &accounts, const LoginRules &rules, QObject *parent);

    Phase phase() const { return m_phase; }
    /// Uses what has arrived for as long as canRead() and there is enough of it.
    void process();
    /// Uses up one line; false when there is none yet.
    bool takeLine();

    /// Logs a line that was received, without a password.
    void logLine(const QByteArray &line);
    /// Takes the line that names the user. It ends the login before.
    void beginLogin(const QByteArray &line);
    /// Takes the line with the password.
    void finishLogin(const QByteArray &line);
    /// Answers for the last time.
    void refuseForGood(const QString &reason);
    /// Refuses what came in place of a login.
    void refuseLogin(const Answer &refusal);

    void expired() override;

    /// Whether the client may send more, as far as the answers to it go.
    virtual bool canRead() const = 0;
    virtual void handleLine(const QByteArray &line) = 0;
    /// Uses up some input in Phase::Service; false when there is not enough of it.
    virtual bool serve() { return takeLine(); }
    /// Answers the password line; phase and account are set.
    virtual void answerLogin();
    /// The client has its answer and is in Phase::Service.
    virtual void beginService() = 0;
    /// Sends the answer, which is the last one in Phase::Drain.
    virtual void answer(const Answer &answer) = 0;

    const ConfigService &m_accounts;
    InputBuffer m_input;

private:
    bool readMore();
    bool useInput();
    void enter(Phase phase);

    const LoginRules m_rules;
    Phase m_phase = Phase::Login;
    QByteArray m_loginName;
    int m_refusals = 0;
};

} // namespace recorder
