#include "recorder/device/ZoneRule.h"

#include <QDate>
#include <QDateTime>
#include <QRegularExpression>

namespace recorder
{

namespace
{

constexpr qint64 HourSeconds = 3600;
constexpr qint64 DaySeconds = 24 * HourSeconds;

/// A rule counts west of Greenwich as positive; what is added to UTC is positive in the east.
qint64 secondsEast(const QRegularExpressionMatch &match, const QString &name)
{
    const qint64 size =
        match.captured(name + 'h').toInt() * HourSeconds + match.captured(name + 'm').toInt() * 60;
    return match.captured(name + 's') == QLatin1String("-") ? size : -size;
}

QString offsetPattern(char name)
{
    return QStringLiteral("UTC *(?<%1s>[+-]?) *(?<%1h>\\d{1,2})(:(?<%1m>[0-5]\\d))?").arg(QLatin1Char(name));
}

QString changePattern(char name)
{
    return QStringLiteral(",M(?<%1m>\\d{1,2})\\.(?<%1w>[1-5])\\.(?<%1d>[0-6])(/(?<%1h>-?\\d{1,3}))?")
        .arg(QLatin1Char(name));
}

/// Recorders take the rule UTC+0UTC+0 for British time. Installations rely on this old mistake.
QString withoutSpecialNames(const QString &text)
{
    if (text.isEmpty())
        return QStringLiteral("UTC-3UTC-4,M3.5.0/2,M10.5.0/2");
    if (text.startsWith(QLatin1String("UTC+0UTC+0")))
        return QStringLiteral("UTC-0UTC-1,M3.5.0/2,M10.5.0/2");
    return text;
}

} // namespace

std::optional<ZoneRule> ZoneRule::parse(const QByteArray &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^%1(%2(%3%4)?)?$")
            .arg(offsetPattern('a'), offsetPattern('b'), changePattern('c'), changePattern('d')));
    const auto match = pattern.match(withoutSpecialNames(QString::fromLatin1(text.trimmed())));
    if (!match.hasMatch())
        return std::nullopt;
    const auto change = [&](const QString &name) {
        const QString hour = match.captured(name + 'h');
        return Change{match.captured(name + 'm').toInt(), match.captured(name + 'w').toInt(),
                      match.captured(name + 'd').toInt(), hour.isEmpty() ? 2 : hour.toInt()};
    };
    ZoneRule rule;
    rule.m_winter = secondsEast(match, QStringLiteral("a"));
    rule.m_hasSummer = !match.captured(QStringLiteral("cm")).isEmpty();
    if (rule.m_hasSummer) {
        rule.m_summer = secondsEast(match, QStringLiteral("b"));
        rule.m_begin = change(QStringLiteral("c"));
        rule.m_end = change(QStringLiteral("d"));
        for (const int month : {rule.m_begin.month, rule.m_end.month}) {
            if (month < 1 || month > 12)
                return std::nullopt;
        }
    }
    return rule;
}

qint64 ZoneRule::changeIn(int year, const Change &change) const
{
    QDate day(year, change.month, 1);
    while (day.dayOfWeek() % 7 != change.day)
        day = day.addDays(1);
    for (int week = 1; week < change.week && day.addDays(7).month() == change.month; ++week)
        day = day.addDays(7);
    return QDate(1970, 1, 1).daysTo(day) * DaySeconds + change.hour * HourSeconds;
}

qint64 ZoneRule::localOf(qint64 utc) const
{
    const qint64 winter = utc + m_winter;
    if (!m_hasSummer)
        return winter;
    const int year = QDateTime::fromSecsSinceEpoch(winter, Qt::UTC).date().year();
    const qint64 begin = changeIn(year, m_begin);
    const qint64 end = changeIn(year, m_end) - m_summer + m_winter; // in winter time
    const bool isSummer = begin < end ? winter >= begin && winter < end : winter >= begin || winter < end;
    return isSummer ? utc + m_summer : winter;
}

qint64 ZoneRule::utcOf(qint64 local) const
{
    if (m_hasSummer && localOf(local - m_summer) == local)
        return local - m_summer;
    return local - m_winter;
}

} // namespace recorder
