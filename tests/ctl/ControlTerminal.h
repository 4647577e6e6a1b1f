#pragma once

#include "ControlProgram.h"

#ifndef Q_OS_WIN

#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace paravue::test
{

/// What is typed once the program has printed \a prompt.
struct TypedAnswer {
    QString prompt;
    QByteArray typed;
};

/// Runs paravue-ctl on a terminal of its own, where somebody types. What it prints, messages too, is in \a
/// out; what is typed is there as well when the program lets it be shown. \a echoes tells whether the
/// terminal shows it behind the program.
inline ControlRun runOnTerminal(const QStringList &arguments, QList<TypedAnswer> answers,
                                bool *echoes = nullptr)
{
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0)
        return {};
    const QByteArray name = ::ptsname(terminal);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("PARAVUE_PASSWORD");
    environment.insert("NO_COLOR", "1");
    process.setProcessEnvironment(environment);
    process.setChildProcessModifier([&name] {
        ::setsid(); // the terminal that is opened next becomes that of the process
        const int own = ::open(name.constData(), O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::dup2(own, stream);
    });
    QString shown;
    QEventLoop loop;
    QSocketNotifier notifier(terminal, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [&] {
        char bytes[4096];
        const auto size = ::read(terminal, bytes, sizeof(bytes));
        notifier.setEnabled(size > 0); // at the end there is nothing any more
        shown += QString::fromUtf8(bytes, std::max<qsizetype>(size, 0));
        while (!answers.isEmpty() && shown.contains(answers.first().prompt)) {
            const QByteArray typed = answers.takeFirst().typed;
            if (::write(terminal, typed.constData(), size_t(typed.size())) != typed.size())
                loop.quit();
        }
    });
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(60'000, &loop, &QEventLoop::quit);
    process.start(CONTROL_PROGRAM, arguments);
    loop.exec();
    const bool hasEnded = process.state() == QProcess::NotRunning;
    if (!hasEnded) {
        process.kill();
        process.waitForFinished();
    }
    while (notifier.isEnabled())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
    termios mode{};
    if (echoes)
        *echoes = ::tcgetattr(terminal, &mode) == 0 && (mode.c_lflag & ECHO) != 0;
    ::close(terminal);
    return hasEnded ? ControlRun{process.exitCode(), shown, {}} : ControlRun{};
}

} // namespace paravue::test

#endif
