#include "ui/base/SilenceText.h"

#include <QCoreApplication>

namespace paravue
{

namespace
{

class SilenceWords
{
    Q_DECLARE_TR_FUNCTIONS(SilenceText)
};

} // namespace

QString silenceText(qint64 milliseconds)
{
    constexpr qint64 Minute = 60;
    constexpr qint64 ShortStep = 6;
    const qint64 seconds = milliseconds / 1000;
    const qint64 step = seconds < Minute ? ShortStep : Minute;
    return SilenceWords::tr("No answer from the recorder for %1 s").arg(seconds - seconds % step);
}

} // namespace paravue
