#include "program/StopSignal.h"

#include "program/ConsoleOutput.h"

#include <QCoreApplication>

#include <atomic>

#ifdef Q_OS_WIN
#include <thread>

#include <windows.h>
#else
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#endif

namespace paravue
{

namespace
{

std::atomic_bool isStopped = false;

// Not quit(), which a window may refuse.
void endEventLoops()
{
    isStopped = true;
    QCoreApplication::exit();
}

} // namespace

bool hasStopSignal()
{
    return isStopped;
}

#ifndef Q_OS_WIN

namespace
{

int signalPipe[2] = {-1, -1};

// A signal handler may call few functions. write() is one of them, and a byte in a pipe wakes the event loop.
void noteSignal(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

void noteOnce(int number)
{
    struct sigaction before {
    };
    if (::sigaction(number, nullptr, &before) != 0 || before.sa_handler == SIG_IGN)
        return;
    struct sigaction action {
    };
    action.sa_handler = noteSignal;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    ::sigaction(number, &action, nullptr);
}

} // namespace

void quitOnStopSignal()
{
    if (signalPipe[0] != -1 || ::pipe(signalPipe) != 0)
        return;
    for (const int end : signalPipe)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(signalPipe[1], F_SETFL, O_NONBLOCK);
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        endEventLoops();
    });
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        noteOnce(number);
}

bool waitForInput()
{
    pollfd places[] = {{STDIN_FILENO, POLLIN, 0}, {signalPipe[0], POLLIN, 0}};
    while (::poll(places, 2, -1) < 0 && errno == EINTR) {
    }
    isStopped = isStopped || (places[1].revents & POLLIN) != 0;
    return !isStopped;
}

void keepInputOpen()
{
    if (::fcntl(STDIN_FILENO, F_GETFD) == -1)
        ::open("/dev/null", O_RDONLY); // gets the lowest free number, that of the input
}

void quitAtEndOfInput()
{
    auto *notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        char ignored[256];
        if (::read(STDIN_FILENO, ignored, sizeof ignored) > 0)
            return;
        notifier->setEnabled(false);
        endEventLoops();
    });
}

#else

namespace
{

// Windows calls this in a thread of its own.
BOOL WINAPI noteConsoleEvent(DWORD event)
{
    static LONG isEnding = 0;
    if (InterlockedExchange(&isEnding, 1) == 1 && (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT)) {
        paravue::ConsoleOutput::restoreConsole();
        return FALSE; // ends the process
    }
    isStopped = true; // somebody may be asked something, outside of the event loop
    QMetaObject::invokeMethod(qApp, endEventLoops, Qt::QueuedConnection);
    // After the other events the process is ended when this function returns, or after some seconds.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

void quitOnStopSignal()
{
    static const bool isSet = SetConsoleCtrlHandler(noteConsoleEvent, TRUE) != 0;
    Q_UNUSED(isSet);
}

void keepInputOpen() {}

void quitAtEndOfInput()
{
    // A pipe cannot be waited for. The thread ends with the process.
    std::thread([] {
        const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
        char ignored[256];
        DWORD size = 0;
        while (ReadFile(input, ignored, sizeof ignored, &size, nullptr) && size > 0) {
        }
        QMetaObject::invokeMethod(qApp, endEventLoops, Qt::QueuedConnection);
    }).detach();
}

#endif

} // namespace paravue
