#include "recorder/clients/LoginClient.h"

#include "recorder/device/ConfigService.h"
#include "recorder/protocol/LogText.h"

namespace recorder
{

namespace
{

constexpr int LoginTimeout = 30 * 1000;

const QByteArray NamePrefix = QByteArrayLiteral("LOGIN=");
const QByteArray PasswordPrefix = QByteArrayLiteral("PASS=");
const QString HiddenPassword = QStringLiteral("PASS=***");

} // namespace

LoginClient::LoginClient(QTcpSocket *socket, const ConfigService &accounts, const LoginRules &rules,
                         const ConnectionTiming &timing, QObject *parent)
    : Client(socket, parent), m_accounts(accounts), m_timing(timing), m_rules(rules)
{
    connect(m_socket, &QTcpSocket::readyRead, this, &LoginClient::process);
    enter(Phase::Login);
}

void LoginClient::process()
{
    while (canRead()) {
        if (!useInput() && !readMore())
            return;
    }
}

bool LoginClient::readMore()
{
    const QByteArray piece = m_socket->read(ReadPiece);
    m_input.append(piece);
    return !piece.isEmpty();
}

bool LoginClient::useInput()
{
    switch (m_phase) {
    case Phase::Login:
    case Phase::Password:
        return takeLine();
    case Phase::Service:
        return serve();
    case Phase::Drain:
        break;
    }
    m_input.clear();
    return false;
}

bool LoginClient::takeLine()
{
    const std::optional<QByteArray> line = m_input.takeLine();
    if (line ? line->size() > MaxLine : m_input.size() > MaxLine) {
        Q_EMIT logged(QStringLiteral("< a line that does not end"));
        refuseForGood(QStringLiteral("the request line is too long"));
        return true;
    }
    if (line)
        handleLine(*line);
    return line.has_value();
}

void LoginClient::logLine(const QByteArray &line)
{
    Q_EMIT logged(QStringLiteral("< ") +
                  (m_phase == Phase::Password ? HiddenPassword : readableRequest(line)));
}

void LoginClient::beginLogin(const QByteArray &line)
{
    const QByteArray prefix = m_rules.serviceByte + NamePrefix;
    m_account.reset();
    if (!line.startsWith(prefix)) {
        refuseLogin(errorAnswer(QStringLiteral("the login has no user name")));
        return;
    }
    m_loginName = line.mid(prefix.size());
    enter(Phase::Password);
}

void LoginClient::finishLogin(const QByteArray &line)
{
    if (line.startsWith(PasswordPrefix))
        m_account = m_accounts.login(m_loginName, line.mid(PasswordPrefix.size()));
    answerLogin();
}

void LoginClient::answerLogin()
{
    if (!m_account) {
        refuseLogin(loginRefusal());
        return;
    }
    m_phase = Phase::Service;
    answer(okAnswer());
    beginService();
}

/// The number of attempts is limited, against guessing.
void LoginClient::refuseLogin(const Answer &refusal)
{
    enter(++m_refusals >= m_rules.maxRefusals ? Phase::Drain : Phase::Login);
    answer(refusal);
}

void LoginClient::refuseForGood(const QString &reason)
{
    enter(Phase::Drain);
    answer(errorAnswer(reason));
}

void LoginClient::enter(Phase phase)
{
    m_phase = phase;
    m_timeout.start(phase == Phase::Drain ? m_timing.drainTimeout : LoginTimeout);
}

void LoginClient::expired()
{
    if (m_phase == Phase::Drain)
        close();
    else
        Client::expired();
}

} // namespace recorder
