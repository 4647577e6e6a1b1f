#include "program/ConsoleOutput.h"

#ifdef _WIN32
#include <cstdio>

#include <windows.h>
#endif

namespace paravue
{

#ifdef _WIN32

namespace
{

bool isOpen(DWORD stream)
{
    const HANDLE handle = GetStdHandle(stream);
    return handle && handle != INVALID_HANDLE_VALUE;
}

/// A stream that leads to a file or a pipe stays what it is.
void connectToConsole()
{
    const bool hasOutput = isOpen(STD_OUTPUT_HANDLE);
    const bool hasErrors = isOpen(STD_ERROR_HANDLE);
    if ((hasOutput && hasErrors) || !AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    if (!hasOutput)
        std::freopen("CONOUT$", "w", stdout);
    if (!hasErrors)
        std::freopen("CONOUT$", "w", stderr);
}

} // namespace

ConsoleOutput::ConsoleOutput()
{
    connectToConsole();
    m_codePage = GetConsoleOutputCP();
    if (m_codePage != 0)
        SetConsoleOutputCP(CP_UTF8);
}

ConsoleOutput::~ConsoleOutput()
{
    std::fflush(nullptr);
    if (m_codePage != 0)
        SetConsoleOutputCP(m_codePage);
}

#else

ConsoleOutput::ConsoleOutput()
{
    static_cast<void>(m_codePage);
}

ConsoleOutput::~ConsoleOutput() = default;

#endif

} // namespace paravue
