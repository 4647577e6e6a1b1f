#include "recorder/StopSignal.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace recorder
{

#ifdef Q_OS_UNIX

namespace
{

int signalPipe[2] = {-1, -1};

// A signal handler may call few functions. write() is one of them, and a byte in a pipe wakes the event loop.
void noteSignal(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

} // namespace

void quitOnStopSignal()
{
    if (::pipe(signalPipe) != 0)
        return;
    ::fcntl(signalPipe[1], F_SETFL, O_NONBLOCK);
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    std::signal(SIGTERM, noteSignal);
    std::signal(SIGINT, noteSignal);
}

#else

// Windows calls the handler in a thread of its own, so a queued call is safe.
void quitOnStopSignal()
{
    const auto quit = [](int) {
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    };
    std::signal(SIGTERM, quit);
    std::signal(SIGINT, quit);
}

#endif

} // namespace recorder
