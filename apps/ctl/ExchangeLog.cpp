#include "ExchangeLog.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QStringList>

namespace paravue
{

namespace
{

constexpr qsizetype MaxLines = 5000;
QStringList lines;
QElapsedTimer begun;
QtMessageHandler handlerBefore = nullptr;

void keepLine(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtInfoMsg || type == QtDebugMsg) {
        if (lines.size() == MaxLines)
            lines.removeFirst();
        lines << QStringLiteral("%1 %2").arg(begun.elapsed(), 6).arg(message);
    } else {
        handlerBefore(type, context, message);
    }
}

} // namespace

ExchangeLog::ExchangeLog()
{
    lines.clear();
    begun.start();
    QLoggingCategory::setFilterRules(QStringLiteral("paravue.link.info=true"));
    handlerBefore = qInstallMessageHandler(keepLine);
}

ExchangeLog::~ExchangeLog()
{
    qInstallMessageHandler(handlerBefore);
    QLoggingCategory::setFilterRules(QString());
}

QString ExchangeLog::text() const
{
    return lines.join(u'\n');
}

} // namespace paravue
