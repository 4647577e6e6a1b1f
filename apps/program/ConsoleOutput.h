#pragma once

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

private:
    unsigned m_codePage = 0; ///< of the console before; 0 without a console
};

} // namespace paravue
