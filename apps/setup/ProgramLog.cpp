#include "ProgramLog.h"

#include "program/ConsoleOutput.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLoggingCategory>
#include <QTextStream>

namespace paravue
{

namespace
{

ProgramLog *present = nullptr;

class LogMessage
{
    Q_DECLARE_TR_FUNCTIONS(ProgramLog)
};

bool isFailure(QtMsgType type)
{
    return type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg;
}

void writeError(const QString &text)
{
    const ConsoleWrite write;
    QTextStream(stderr) << QCoreApplication::applicationName() << ": " << text << Qt::endl;
}

} // namespace

ProgramLog::ProgramLog() : m_before(qInstallMessageHandler(handle))
{
    present = this;
}

ProgramLog::~ProgramLog()
{
    present = nullptr;
    qInstallMessageHandler(m_before);
}

QString ProgramLog::writeTo(const QString &path)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return LogMessage::tr("The log %1 cannot be written: %2").arg(path, m_file.errorString());
    // Addresses of recorders and names of users are nobody else's business.
    m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    QLoggingCategory::setFilterRules(QStringLiteral("paravue.*.info=true"));
    write(QStringLiteral("paravue.program"),
          QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion());
    return {};
}

void ProgramLog::tellFailure(const QString &text)
{
    if (present && present->m_lastFailure == text)
        return;
    writeError(text);
    if (!present)
        return;
    present->m_lastFailure = text;
    present->write(QStringLiteral("paravue.program"), text);
}

void ProgramLog::setScreenFailure(void (*handler)())
{
    if (present)
        present->m_screenFailure = handler;
}

void ProgramLog::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!present)
        return;
    if (type == QtFatalMsg && present->m_screenFailure)
        present->m_screenFailure();
    const QString category = QString::fromLatin1(context.category);
    if (!category.startsWith(QStringLiteral("paravue."))) {
        const ConsoleWrite write;
        if (present->m_before)
            present->m_before(type, context, text);
        return;
    }
    if (isFailure(type) && text != present->m_lastFailure) {
        present->m_lastFailure = text;
        writeError(text);
    }
    present->write(category, text);
}

void ProgramLog::write(const QString &category, const QString &text)
{
    if (!m_file.isOpen())
        return;
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    m_file.write(QStringLiteral("%1 %2 %3\n").arg(time, category.leftJustified(18), text).toUtf8());
    m_file.flush(); // the last line before a crash is the one that is needed
}

} // namespace paravue
