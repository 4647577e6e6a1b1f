#include "Prompt.h"

#include "ControlText.h"
#include "program/StopSignal.h"

#ifdef Q_OS_WIN
#include <QTextStream>

#include <chrono>
#include <thread>
#else
#include <unistd.h>
#endif

namespace paravue
{

QString typedLine()
{
#ifdef Q_OS_WIN
    const QString line = QTextStream(stdin).readLine();
    if (line.isNull())
        std::this_thread::sleep_for(std::chrono::milliseconds(100)); // Ctrl+C is told in another thread
    return hasStopSignal() ? QString() : line;
#else
    QByteArray line("");
    while (waitForInput()) {
        char letter = 0;
        if (::read(STDIN_FILENO, &letter, 1) <= 0)
            return line.isEmpty() ? QString() : QString::fromUtf8(line);
        if (letter == '\n')
            return QString::fromUtf8(line);
        line += letter;
    }
    return {};
#endif
}

bool isYesTyped()
{
    const QString answer = typedLine().trimmed();
    return answer == u"yes" || answer == ControlText::tr("yes");
}

Outcome notConfirmed(const QString &reason)
{
    if (hasStopSignal())
        return {ExitCode::Cancelled, ControlText::tr("stopped")};
    return {ExitCode::Different, reason};
}

} // namespace paravue
