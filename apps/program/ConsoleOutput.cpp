#include "program/ConsoleOutput.h"

#include <cstdlib>

#ifdef _WIN32
#include <atomic>
#include <cstdio>

#include <windows.h>
#endif

namespace paravue
{

#ifdef _WIN32

namespace
{

/// Of the console before; 0 without a console, and after it was put back.
std::atomic<UINT> codePageBefore = 0;

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
    codePageBefore = GetConsoleOutputCP();
    if (codePageBefore != 0)
        SetConsoleOutputCP(CP_UTF8);
}

ConsoleOutput::~ConsoleOutput()
{
    std::fflush(nullptr);
    restoreConsole();
}

void ConsoleOutput::showUnlessConnected(const QString &failure)
{
    if (isOpen(STD_ERROR_HANDLE) || GetConsoleCP() != 0)
        return;
    // Not Qt's own box, which needs the screen whose absence may be the failure.
    MessageBoxW(nullptr, failure.toStdWString().c_str(), L"Paravue Setup", MB_OK | MB_ICONERROR);
}

void ConsoleOutput::restoreConsole()
{
    if (const UINT before = codePageBefore.exchange(0))
        SetConsoleOutputCP(before);
}

ConsoleWrite::ConsoleWrite()
{
    const UINT present = GetConsoleOutputCP();
    if (present == 0 || present == CP_UTF8 || !SetConsoleOutputCP(CP_UTF8))
        return;
    m_codePageBefore = present;
}

ConsoleWrite::~ConsoleWrite()
{
    if (m_codePageBefore == 0)
        return;
    std::fflush(nullptr);
    SetConsoleOutputCP(m_codePageBefore);
}

#else

ConsoleOutput::ConsoleOutput() = default;

ConsoleOutput::~ConsoleOutput() = default;

void ConsoleOutput::showUnlessConnected(const QString &) {}

void ConsoleOutput::restoreConsole() {}

ConsoleWrite::ConsoleWrite() = default;

ConsoleWrite::~ConsoleWrite() = default;

#endif

void ConsoleOutput::endProgram(int exitCode)
{
    restoreConsole();
    std::_Exit(exitCode);
}

} // namespace paravue
