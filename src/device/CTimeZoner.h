#pragma once

#include <QByteArray>
#include <QtGlobal>

/// Tells the local time of a recorder from the rule of its time zone.
///
/// A rule is written in the manner of POSIX: "UTC-3" is three hours ahead of UTC all year round, and
/// "UTC-1UTC-2,M3.5.0/2,M10.5.0/3" is one hour ahead, two from the last Sunday of March, 2:00 standard time,
/// to the last Sunday of October, 3:00 daylight-saving time. Offsets are hours with optional ":minutes" and
/// count west of UTC as positive; a transition is Mmonth.week.weekday/hour, week 5 being the last one of the
/// month, 0 being Sunday, and the hour, 2 when it is left out, possibly beyond the day (-167 to 167). A start
/// behind the end in the year is a zone of the southern half. A missing daylight-saving offset is one hour
/// ahead of standard time. Where a rule cannot be read there is no daylight-saving time, or no offset.
class CTimeZoner
{
public:
    /// An empty \a rule means "UTC-3UTC-4,M3.5.0/2,M10.5.0/2".
    explicit CTimeZoner(const QByteArray &rule);

    /// Seconds since 1970 in UTC to the seconds whose reading as UTC are the digits of the local clock.
    qint64 toLocal(qint64 utcSeconds) const;

    /// True when the rule began with "UTC+0UTC+0" and was replaced by "UTC-0UTC+1,M3.5.0/2,M10.5.0/2", in
    /// which daylight-saving time is one hour ahead of UTC.
    bool isPlainUtcReplaced() const { return m_plainUtcReplaced; }

private:
    struct Transition {
        int month = 0;
        int week = 0;
        int weekday = 0;
        int hour = 2;
    };
    class Reader;

    static bool isPossible(const Transition &transition);
    static qint64 secondsOf(const Transition &transition, int year);
    bool isDaylightSaving(qint64 utcSeconds) const;

    bool m_plainUtcReplaced = false;
    bool m_hasDaylightSaving = false;
    int m_standard = 0; ///< seconds ahead of UTC
    int m_daylight = 0;
    Transition m_start; ///< read in standard time
    Transition m_end;   ///< read in daylight-saving time
};
