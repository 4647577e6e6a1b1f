#pragma once

#include "recorder/clients/Client.h"
#include "recorder/protocol/Answers.h"
#include "recorder/protocol/ConnectionTiming.h"
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
    /// The limit for a line, in bytes.
    static constexpr qsizetype MaxLine = 1024;

    void start() override { process(); }

protected:
    enum class Phase {
        Login,    // the line that names the user
        Password, // the line after it
        Service,  // requests of the service
        Drain,    // the last answer was sent; input is discarded until the client disconnects
    };

    /// What differs between the logins of the services.
    struct LoginRules {
        char serviceByte = 0;
        int maxRefusals = 1; ///< the last of them ends the connection
    };

    LoginClient(QTcpSocket *socket, const ConfigService &accounts, const LoginRules &rules,
                const ConnectionTiming &timing, QObject *parent);

    Phase phase() const { return m_phase; }
    /// Processes what has arrived while canRead().
    void process();
    /// Handles one line; false when none is complete.
    bool takeLine();

    /// Logs a line that was received, without a password.
    void logLine(const QByteArray &line);
    /// Handles the line with the user name. An earlier login ends.
    void beginLogin(const QByteArray &line);
    /// Handles the line with the password.
    void finishLogin(const QByteArray &line);
    /// Sends an error as the last answer.
    void refuseForGood(const QString &reason);
    /// Refuses a login, or what came in place of one.
    void refuseLogin(const Answer &refusal);

    void expired() override;

    /// False while too many answers wait to be sent.
    virtual bool canRead() const = 0;
    virtual void handleLine(const QByteArray &line) = 0;
    /// Handles input in Phase::Service; false when a request is not complete.
    virtual bool serve() { return takeLine(); }
    /// Answers the password line; phase and account are set.
    virtual void answerLogin();
    /// The login was accepted and answered; the phase is Phase::Service.
    virtual void beginService() = 0;
    /// Sends the answer. In Phase::Drain it is the last one.
    virtual void answer(const Answer &answer) = 0;

    const ConfigService &m_accounts;
    const ConnectionTiming &m_timing; // that of the server
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
