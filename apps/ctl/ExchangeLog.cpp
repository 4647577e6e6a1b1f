#include "ExchangeLog.h"

#include "device/LinkLog.h"

#include <QList>

namespace paravue
{

namespace
{

constexpr qsizetype MaxLines = 5000;
QtMessageHandler handlerBefore = nullptr;

/// Those that are alive. The process has one handler for all of them.
QList<ExchangeLog *> &allLogs()
{
    static QList<ExchangeLog *> logs;
    return logs;
}

} // namespace

ExchangeLog::ExchangeLog(const QString &address) : m_prefix(linkLogName(address) + u' ')
{
    m_begun.start();
    if (allLogs().isEmpty()) {
        QLoggingCategory::setFilterRules(QStringLiteral("paravue.link.info=true"));
        handlerBefore = qInstallMessageHandler(keepLine);
    }
    allLogs().append(this);
}

ExchangeLog::~ExchangeLog()
{
    allLogs().removeOne(this);
    if (!allLogs().isEmpty())
        return;
    qInstallMessageHandler(handlerBefore);
    QLoggingCategory::setFilterRules(QString());
}

void ExchangeLog::keepLine(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtInfoMsg && type != QtDebugMsg)
        return handlerBefore(type, context, message);
    for (ExchangeLog *log : std::as_const(allLogs())) {
        if (!message.startsWith(log->m_prefix))
            continue;
        if (log->m_lines.size() == MaxLines)
            log->m_lines.removeFirst();
        log->m_lines << QStringLiteral("%1 %2")
                            .arg(log->m_begun.elapsed(), 6)
                            .arg(QStringView(message).sliced(log->m_prefix.size()));
    }
}

QString ExchangeLog::text() const
{
    return m_lines.join(u'\n');
}

} // namespace paravue
