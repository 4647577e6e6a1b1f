#include "SessionEnd.h"

#include "program/ConsoleOutput.h"
#include "program/ExitCode.h"

#include <QCoreApplication>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace paravue
{

SessionEnd::SessionEnd(const std::function<void()> &cleanUp) : m_cleanUp(cleanUp)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

SessionEnd::~SessionEnd()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool SessionEnd::nativeEventFilter(const QByteArray &, [[maybe_unused]] void *message, qintptr *)
{
#ifdef Q_OS_WIN
    const auto *received = static_cast<const MSG *>(message);
    // With FALSE another program has kept the session from ending.
    if (received->message == WM_ENDSESSION && received->wParam) {
        m_cleanUp();
        // What is still on the stack uses what was deleted.
        ConsoleOutput::endProgram(int(ExitCode::Cancelled));
    }
#endif
    return false;
}

} // namespace paravue
