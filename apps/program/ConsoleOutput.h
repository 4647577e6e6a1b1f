#pragma once

#include <QString>

namespace paravue
{

/// While it lives, texts of the program reach the console that it was started from. The programs write UTF-8,
/// into files and pipes too; consoles of Windows expect another encoding unless they are told, and a program
/// with windows is not connected to the console at all. Does nothing on other systems.
class ConsoleOutput
{
public:
    ConsoleOutput();
    ~ConsoleOutput();
    ConsoleOutput(const ConsoleOutput &) = delete;
    ConsoleOutput &operator=(const ConsoleOutput &) = delete;

    /// Shows \a failure in a box, and waits until it is closed, when nobody can read what the program writes:
    /// on Windows a program with windows that was started from the desktop has neither a console nor a
    /// stream.
    static void showUnlessConnected(const QString &failure);

    /// Ends the process at once, without destructors, and leaves the console as it was.
    [[noreturn]] static void endProgram(int exitCode);
    /// Gives the console its code page back, before something else ends the process, or when the program goes
    /// on beside the user's next commands. From then on texts need a ConsoleWrite.
    static void restoreConsole();
};

/// Lets the console read UTF-8 for one write, after ConsoleOutput::restoreConsole().
class ConsoleWrite
{
public:
    ConsoleWrite();
    ~ConsoleWrite();
    ConsoleWrite(const ConsoleWrite &) = delete;
    ConsoleWrite &operator=(const ConsoleWrite &) = delete;

private:
    [[maybe_unused]] unsigned m_codePageBefore = 0; ///< 0 when there is nothing to put back
};

} // namespace paravue
