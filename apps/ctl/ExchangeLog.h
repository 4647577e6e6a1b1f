#pragma once

#include <QString>

namespace paravue
{

/// While it lives, what the link to recorders logs is kept in it, without contents of files. One at a time.
class ExchangeLog
{
public:
    ExchangeLog();
    ~ExchangeLog();
    Q_DISABLE_COPY_MOVE(ExchangeLog)

    /// Lines with the milliseconds since the beginning; the last ones of many.
    QString text() const;
};

} // namespace paravue
