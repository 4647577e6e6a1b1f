#include "ProgressLine.h"

#include "Terminal.h"
#include "TerminalText.h"

#include <QTextStream>

namespace paravue::progressline
{

namespace
{

constexpr int MaxLength = 78; // a longer line would be wrapped, and stay
qsizetype shownLength = 0;

} // namespace

void show(const QString &text)
{
    if (!isTerminal(stderr))
        return;
    const QString line = terminalText(text).left(MaxLength);
    QTextStream(stderr) << '\r' << line.leftJustified(shownLength) << Qt::flush;
    shownLength = line.size();
}

void clear()
{
    if (shownLength > 0)
        QTextStream(stderr) << '\r' << QString(shownLength, u' ') << '\r' << Qt::flush;
    shownLength = 0;
}

} // namespace paravue::progressline
