#pragma once

#include <QProcess>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <csignal>
#endif

namespace paravue::test
{

#ifdef Q_OS_WIN

/// How a user or the system ends a program.
enum class Ending { CtrlC, ConsoleClosed, LoggedOff, Killed };
constexpr Ending KilledProgram = Ending::Killed;

/// A console of this process, which a program that it starts connects to. Without one no program can be told
/// that Ctrl+C was pressed or that its console is closed.
class OwnConsole
{
public:
    OwnConsole()
    {
        FreeConsole();
        AllocConsole();
        m_window = GetConsoleWindow();
        // Ctrl+C is meant for the other program only.
        SetConsoleCtrlHandler(ignoreEvents, TRUE);
    }
    ~OwnConsole()
    {
        SetConsoleCtrlHandler(ignoreEvents, FALSE);
        FreeConsole();
    }
    Q_DISABLE_COPY_MOVE(OwnConsole)

    /// A program whose output leads to a pipe has no use for the console.
    void prepare(QProcess &process)
    {
        process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *arguments) {
            arguments->startupInfo->dwFlags &= ~DWORD(STARTF_USESTDHANDLES);
        });
    }

    void end(QProcess &process, Ending ending)
    {
        switch (ending) {
        case Ending::CtrlC:
            GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
            break;
        case Ending::ConsoleClosed:
            FreeConsole(); // this process would be ended too
            PostMessageW(m_window, WM_CLOSE, 0, 0);
            break;
        case Ending::LoggedOff:
            m_process = DWORD(process.processId());
            EnumWindows(endSession, LPARAM(this));
            break;
        case Ending::Killed:
            process.kill();
            break;
        }
    }

private:
    static BOOL WINAPI ignoreEvents(DWORD) { return TRUE; }
    /// What Windows sends to each window of a session that ends.
    static BOOL CALLBACK endSession(HWND window, LPARAM console)
    {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == reinterpret_cast<OwnConsole *>(console)->m_process) {
            DWORD_PTR answer = 0;
            SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, LPARAM(ENDSESSION_LOGOFF), SMTO_NORMAL, 5000,
                                &answer);
            SendMessageTimeoutW(window, WM_ENDSESSION, WPARAM(answer), LPARAM(ENDSESSION_LOGOFF), SMTO_NORMAL,
                                5000, &answer);
        }
        return TRUE;
    }

    HWND m_window = nullptr;
    DWORD m_process = 0;
};

#else

/// The number of a signal.
using Ending = int;
constexpr Ending KilledProgram = SIGKILL;

class OwnConsole
{
public:
    void prepare(QProcess &) {}
    void end(QProcess &process, Ending ending) { ::kill(static_cast<pid_t>(process.processId()), ending); }
};

#endif

} // namespace paravue::test

#ifdef Q_OS_WIN
Q_DECLARE_METATYPE(paravue::test::Ending)
#endif
