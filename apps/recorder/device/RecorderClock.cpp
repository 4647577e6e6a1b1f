#include "recorder/device/RecorderClock.h"

#include "recorder/files/DataFolder.h"
#include "recorder/files/IniValues.h"

#include <QDateTime>

namespace recorder
{

namespace
{

const QString DigitsFormat = QStringLiteral("yyyyMMddHHmmss");
const QString ClockFile = QStringLiteral("clock");
constexpr char OffsetKey[] = "/SECONDS_AHEAD";

QDateTime parsed(const QByteArray &digits)
{
    QDateTime time = QDateTime::fromString(QString::fromLatin1(digits), DigitsFormat);
    time.setTimeSpec(Qt::UTC);
    return time;
}

} // namespace

RecorderClock::RecorderClock(const DataFolder &folder)
    : m_folder(folder), m_source(&QDateTime::currentSecsSinceEpoch)
{
}

qint64 RecorderClock::localNow(const ZoneRule &zone) const
{
    const QByteArray kept = m_folder.read(ClockFile).value_or(QByteArray());
    return zone.localOf(m_source() + iniValues(kept).value(OffsetKey).toLongLong());
}

QByteArray RecorderClock::digits(const ZoneRule &zone) const
{
    return QDateTime::fromSecsSinceEpoch(localNow(zone), Qt::UTC).toString(DigitsFormat).toLatin1();
}

QByteArray RecorderClock::reading(const ZoneRule &zone) const
{
    const QString format = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    return QDateTime::fromSecsSinceEpoch(localNow(zone), Qt::UTC).toString(format).toLatin1();
}

bool RecorderClock::set(const QByteArray &digits, const ZoneRule &zone) const
{
    if (!isValid(digits))
        return false;
    keepOffset(zone.utcOf(parsed(digits).toSecsSinceEpoch()) - m_source());
    return true;
}

void RecorderClock::synchronise() const
{
    keepOffset(0);
}

void RecorderClock::keepOffset(qint64 seconds) const
{
    m_folder.replace(ClockFile, "# By how much the clock is ahead of this computer's\nSECONDS_AHEAD=" +
                                    QByteArray::number(seconds) + '\n');
}

bool RecorderClock::isValid(const QByteArray &digits)
{
    return digits.size() == 14 && parsed(digits).isValid();
}

} // namespace recorder
