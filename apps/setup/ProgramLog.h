#pragma once

#include <QFile>
#include <QString>
#include <QtGlobal>

namespace paravue
{

/// Where the messages of the program and of the library go while it lives: failures to standard error, and
/// with a log file everything that the categories "paravue.*" tell to that file. There is one at a time.
class ProgramLog
{
public:
    ProgramLog();
    ~ProgramLog();
    Q_DISABLE_COPY_MOVE(ProgramLog)

    /// Writes everything to the file at \a path from now on, behind what it holds. Returns what went wrong,
    /// or an empty text.
    QString writeTo(const QString &path);

    /// Tells a failure, unless it was the last one that was told.
    static void tellFailure(const QString &text);

    /// Called when Qt gives up for want of a screen, which ends the process. Null: no longer.
    static void setScreenFailure(void (*handler)());

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);
    void write(const QString &category, const QString &text);

    QFile m_file;
    QtMessageHandler m_before;
    QString m_lastFailure;
    void (*m_screenFailure)() = nullptr;
};

} // namespace paravue
