#include "DemoRecorder.h"

#include "RecorderAddress.h"
#include "program/ConsoleOutput.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QMap>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTextStream>

namespace paravue
{

namespace
{

const char ProgramName[] = "paravue-recorder";
constexpr int StartLimitMs = 20'000;
constexpr int EndLimitMs = 3'000;

class DemoText
{
    Q_DECLARE_TR_FUNCTIONS(DemoRecorder)
};

/// Beside this program (installed), in the neighbouring folder (a build tree), or wherever programs are.
QString findProgram()
{
    const QString here = QCoreApplication::applicationDirPath();
    const QString beside = QStandardPaths::findExecutable(ProgramName, {here, here + "/../recorder"});
    return beside.isEmpty() ? QStandardPaths::findExecutable(ProgramName) : beside;
}

/// A port that reads the same as a signed 16-bit number, which is how the library takes it and the window
/// shows it. The system's own choice is mostly a higher one; it is asked for, with 0, only when nothing else
/// is found.
quint16 freePort()
{
    constexpr int Lowest = 20'000;
    constexpr int Highest = 32'767;
    constexpr int Attempts = 50;
    QTcpServer probe;
    for (int i = 0; i < Attempts; ++i) {
        const int port = QRandomGenerator::global()->bounded(Lowest, Highest + 1);
        if (probe.listen(QHostAddress::LocalHost, static_cast<quint16>(port)))
            return probe.serverPort();
    }
    return 0;
}

/// login:password of the account with the highest level. The file is read, as somebody may have changed the
/// password in an earlier session on the same folder.
QString accountIn(const QString &usersFile)
{
    QFile file(usersFile);
    if (!file.open(QIODevice::ReadOnly))
        return ":";
    static const QRegularExpression line("^(NAME|PASSWD|LEVEL)(\\d+)\\s*=\\s*['\"]?(.*?)['\"]?\\s*$");
    QMap<QString, QMap<QString, QString>> accounts;
    while (!file.atEnd()) {
        const auto match = line.match(QString::fromUtf8(file.readLine()));
        if (match.hasMatch())
            accounts[match.captured(2)][match.captured(1)] = match.captured(3);
    }
    QMap<QString, QString> highest;
    for (const auto &account : accounts) {
        if (highest.isEmpty() || account["LEVEL"].toInt() > highest["LEVEL"].toInt())
            highest = account;
    }
    return highest["NAME"] + ':' + highest["PASSWD"];
}

} // namespace

DemoRecorder::~DemoRecorder()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    // The end of its input ends the simulator. Windows has no signal for programs without windows.
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(EndLimitMs)) {
        m_process.kill();
        m_process.waitForFinished(EndLimitMs);
    }
}

QString DemoRecorder::start(const QString &dataFolder, const QString &model)
{
    const QString program = findProgram();
    if (program.isEmpty())
        return DemoText::tr("The program %1 was not found beside this one or in the search path.")
            .arg(ProgramName);
    m_dataFolder = dataFolder;
    // Until the port is known, earlyEnd() reads the messages. Later ones are passed on.
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process, [this] {
        if (m_port == 0)
            return;
        const ConsoleWrite write;
        QTextStream(stderr) << QString::fromUtf8(m_process.readAllStandardError()) << Qt::flush;
    });
    // The simulator does not outlive this program, even when that is killed.
    QStringList options{"--port", QString::number(freePort()), "--companion", "--until-input-ends"};
    if (!dataFolder.isEmpty())
        options << "--data" << dataFolder;
    if (!model.isEmpty())
        options << "--model" << model;
    m_process.start(program, options);
    if (!m_process.waitForStarted(StartLimitMs))
        return DemoText::tr("%1 could not be started: %2").arg(program, m_process.errorString());

    const QString problem = readPort();
    if (problem.isEmpty()) {
        // Its further output is not needed.
        m_process.closeReadChannel(QProcess::StandardOutput);
    }
    return problem;
}

QString DemoRecorder::address() const
{
    // In a folder of its own the simulator begins with the shipped account.
    const QString account = m_dataFolder.isEmpty() ? "admin:admin" : accountIn(m_dataFolder + "/users");
    return account + "@127.0.0.1:" + RecorderAddress::portText(m_port);
}

QString DemoRecorder::readPort()
{
    const QDeadlineTimer limit(StartLimitMs);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(static_cast<int>(limit.remainingTime())))
            return earlyEnd();
    }
    static const QRegularExpression announcement("^Listening on 127\\.0\\.0\\.1:(\\d+)\\s*$");
    const auto match = announcement.match(QString::fromUtf8(m_process.readLine()));
    m_port = match.captured(1).toUShort();
    if (m_port == 0)
        return DemoText::tr("%1 did not say on which port it listens.").arg(ProgramName);
    return {};
}

/// The error message of the simulator, if it has printed one.
QString DemoRecorder::earlyEnd()
{
    // Of its options only the model comes from the user, so the wrong usage is the user's.
    m_process.waitForFinished(EndLimitMs);
    if (m_process.state() == QProcess::NotRunning && m_process.exitCode() == int(ExitCode::WrongUsage))
        m_exitCode = ExitCode::WrongUsage;
    const QString said = QString::fromUtf8(m_process.readAllStandardError()).trimmed();
    return said.isEmpty() ? DemoText::tr("%1 ended or did not say on which port it listens.").arg(ProgramName)
                          : said;
}

} // namespace paravue
