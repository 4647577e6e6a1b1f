#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

namespace recorder
{

/// A rule as TIME_ZONE holds it: an offset after the letters UTC, counted west of Greenwich, and optionally a
/// second one for daylight-saving time with the two days on which that begins and ends, each as
/// Mmonth.week.day/hour. An empty text is the zone that recorders are shipped with.
class ZoneRule
{
public:
    /// Nothing when the text is no such rule.
    static std::optional<ZoneRule> parse(const QByteArray &text);

    /// All times are seconds since 1970; local ones are the reading of the clock taken as UTC. A reading that
    /// occurs twice in autumn is taken as the first, one that is skipped in spring as an hour later.
    qint64 localOf(qint64 utc) const;
    qint64 utcOf(qint64 local) const;

private:
    struct Change {
        int month = 1;
        int week = 1;
        int day = 0;
        int hour = 2;
    };

    qint64 changeIn(int year, const Change &change) const;

    qint64 m_winter = 0; // seconds to add to UTC
    qint64 m_summer = 0;
    bool m_hasSummer = false;
    Change m_begin;
    Change m_end;
};

} // namespace recorder
