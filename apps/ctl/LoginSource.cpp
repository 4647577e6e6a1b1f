#include "LoginSource.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "ProgressLine.h"
#include "Prompt.h"
#include "RecorderSession.h"
#include "program/StopSignal.h"
#include "program/TypedPassword.h"
#include "setup/RecorderAddress.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

#include <optional>

namespace paravue
{

namespace
{

constexpr auto PasswordVariable = "PARAVUE_PASSWORD";
constexpr auto UsualLogin = "admin"; // setting up is an administrator's work

/// While it lives, what is typed is not shown. Nobody can type where there is no terminal.
class HiddenTyping
{
public:
#ifdef Q_OS_WIN
    HiddenTyping() : m_input(GetStdHandle(STD_INPUT_HANDLE))
    {
        m_isTerminal =
            GetConsoleMode(m_input, &m_mode) && SetConsoleMode(m_input, m_mode & ~ENABLE_ECHO_INPUT);
    }
    ~HiddenTyping()
    {
        if (m_isTerminal)
            SetConsoleMode(m_input, m_mode);
    }
#else
    HiddenTyping()
    {
        m_isTerminal = ::tcgetattr(STDIN_FILENO, &m_mode) == 0;
        if (!m_isTerminal)
            return;
        termios hidden = m_mode;
        hidden.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~HiddenTyping()
    {
        if (m_isTerminal)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_mode);
    }
#endif
    Q_DISABLE_COPY_MOVE(HiddenTyping)

    bool isTerminal() const
    {
        return m_isTerminal;
    }

private:
#ifdef Q_OS_WIN
    HANDLE m_input;
    DWORD m_mode = 0;
#else
    termios m_mode{};
#endif
    bool m_isTerminal = false;
};

class TerminalLogin : public CredentialsSource
{
public:
    TerminalLogin(const QString &login, const std::function<void()> &typed) : m_login(login), m_typed(typed)
    {
    }

    bool ask(Credentials &record) override
    {
        const HiddenTyping typing;
        if (m_hasAsked || hasStopSignal() || !typing.isTerminal())
            return false;
        m_hasAsked = true;
        progressline::clear();
        QTextStream terminal(stderr);
        terminal << ControlText::tr("Password of %1 at %2: ").arg(m_login, QString::fromLocal8Bit(record.url))
                 << Qt::flush;
        const QString password = typedLine();
        terminal << Qt::endl;
        if (hasStopSignal())
            RecorderSession::stopAll();
        m_typed();
        if (password.isNull() || !isInLocalEncoding(password))
            return false;
        record.login = m_login.toLocal8Bit();
        record.password = digestOfTyped(password).toLatin1();
        record.remember = false;
        return true;
    }
    void save(const Credentials &) override {}

private:
    const QString m_login;
    const std::function<void()> m_typed;
    bool m_hasAsked = false;
};

Outcome readPasswordFile(const QString &path, QString &password)
{
    QFile file(path);
    constexpr QFile::Permissions Others = QFile::ReadGroup | QFile::ReadOther;
    if (!file.open(QIODevice::ReadOnly))
        return {ExitCode::LocalFile, ControlText::tr("cannot read %1: %2").arg(path, file.errorString())};
#ifndef Q_OS_WIN
    if (file.permissions() & Others)
        return {ExitCode::LocalFile,
                ControlText::tr("other users may read %1, so it is not used; chmod 600 helps").arg(path)};
#else
    Q_UNUSED(Others); // a folder of the user is protected by the system
#endif
    QByteArray line = file.readLine();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    password = QString::fromUtf8(line);
    return {};
}

/// The password as it is typed; nothing when none is given.
Outcome givenPassword(const ControlCommandLine &line, std::optional<QString> &password)
{
    QString text;
    if (!line.passwordFile.isEmpty()) {
        if (const Outcome read = readPasswordFile(line.passwordFile, text); !read.isDone())
            return read;
    } else if (qEnvironmentVariableIsSet(PasswordVariable)) {
        text = qEnvironmentVariable(PasswordVariable);
    } else {
        return {};
    }
    if (!isInLocalEncoding(text))
        return {ExitCode::WrongUsage,
                ControlText::tr("the password has letters that this computer's encoding lacks")};
    password = text;
    return {};
}

} // namespace

Outcome completeAddress(const ControlCommandLine &line, QString &address)
{
    address = line.address;
    if (line.hasPasswordInAddress)
        return {};
    std::optional<QString> password;
    if (const Outcome read = givenPassword(line, password); !read.isDone())
        return read;
    const QString remembered = RecorderAddress::withLogin(line.address);
    if (!password && line.login.isEmpty()) {
        address = remembered;
        return {};
    }
    // Without a password the recorder refuses the login, and then it is asked for.
    const QString login = line.login.isEmpty() ? QString(UsualLogin) : line.login;
    if (!password && remembered.startsWith(login + u':'))
        address = remembered;
    else
        address = login + u':' + digestOfTyped(password.value_or(QString())) + u'@' + line.address;
    return {};
}

std::unique_ptr<CredentialsSource> terminalLogin(const QString &login, const std::function<void()> &typed)
{
    return std::make_unique<TerminalLogin>(login.isEmpty() ? QString(UsualLogin) : login, typed);
}

} // namespace paravue
