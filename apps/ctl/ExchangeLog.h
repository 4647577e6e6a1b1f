#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

namespace paravue
{

/// While it lives, what the link to one recorder logs is kept in it, without contents of files. Several may
/// live at once.
class ExchangeLog
{
public:
    /// \a address is that of the store.
    explicit ExchangeLog(const QString &address);
    ~ExchangeLog();
    Q_DISABLE_COPY_MOVE(ExchangeLog)

    /// Lines with the milliseconds since the beginning; the last ones of many.
    QString text() const;

private:
    static void keepLine(QtMsgType type, const QMessageLogContext &context, const QString &message);

    const QString m_prefix; ///< of its lines
    QElapsedTimer m_begun;
    QStringList m_lines;
};

} // namespace paravue
