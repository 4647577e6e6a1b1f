#include "RecorderClock.h"

namespace recorder
{

namespace
{

const QString DigitsFormat = QStringLiteral("yyyyMMddHHmmss");

/// The wall-clock reading, kept as if it were UTC so that its digits follow no daylight-saving rule.
QDateTime hostClock()
{
    const QDateTime now = QDateTime::currentDateTime();
    return QDateTime(now.date(), now.time(), Qt::UTC);
}

QDateTime parsed(const QByteArray &digits)
{
    QDateTime time = QDateTime::fromString(QString::fromLatin1(digits), DigitsFormat);
    time.setTimeSpec(Qt::UTC);
    return time;
}

} // namespace

QByteArray RecorderClock::digits() const
{
    return hostClock().addMSecs(m_offsetMilliseconds).toString(DigitsFormat).toLatin1();
}

bool RecorderClock::set(const QByteArray &digits)
{
    if (!isValid(digits))
        return false;
    m_offsetMilliseconds = hostClock().msecsTo(parsed(digits));
    return true;
}

bool RecorderClock::isValid(const QByteArray &digits)
{
    return digits.size() == 14 && parsed(digits).isValid();
}

} // namespace recorder
