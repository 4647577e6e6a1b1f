#pragma once

#include <QByteArray>
#include <QDateTime>

namespace recorder
{

/// The recorder's wall clock. It starts with the time of this computer and can be set without touching that.
class RecorderClock
{
public:
    /// Now, as the 14 digits YYYYMMDDHHMMSS.
    QByteArray digits() const;
    /// False when the text is not a date and time in that form.
    bool set(const QByteArray &digits);

    static bool isValid(const QByteArray &digits);

private:
    qint64 m_offsetMilliseconds = 0;
};

} // namespace recorder
