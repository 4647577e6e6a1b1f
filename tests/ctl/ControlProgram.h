#pragma once

#include "support/ProgramText.h"

#include <QEventLoop>
#include <QProcess>
#include <QTimer>

namespace paravue::test
{

/// What a run of paravue-ctl has come to.
struct ControlRun {
    int exitCode = -1;
    QString out;
    QString err;
};

/// Runs \a program; \a running is its process meanwhile. Recorders of this process go on answering. Ends
/// without a result after a minute, or thirty when the tests run in full.
inline ControlRun runProgram(const QString &program, const QStringList &arguments,
                             const QProcessEnvironment &environment, QProcess **running = nullptr)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessEnvironment(environment);
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    process.start(program, arguments);
    QTimer::singleShot(qEnvironmentVariableIsSet("PARAVUE_SOAK") ? 1'800'000 : 60'000, &loop,
                       &QEventLoop::quit);
    if (running)
        *running = &process;
    loop.exec();
    if (running)
        *running = nullptr;
    if (process.state() != QProcess::NotRunning)
        return {};
    return {process.exitCode(), programText(process.readAllStandardOutput()),
            programText(process.readAllStandardError())};
}

/// Runs paravue-ctl as scripts do, with \a password in its environment unless it is null.
inline ControlRun runControlProgram(const QStringList &arguments, const QString &password,
                                    QProcess **running = nullptr)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("PARAVUE_PASSWORD");
    if (!password.isNull())
        environment.insert("PARAVUE_PASSWORD", password);
    return runProgram(CONTROL_PROGRAM, arguments, environment, running);
}

} // namespace paravue::test
