#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

namespace recorder
{

/// The recorder's reading of its TIME_ZONE: an offset after the letters UTC, counted west of Greenwich, and
/// optionally a second one for summer with the two days on which it begins and ends, each as
/// Mmonth.week.day/hour. A zone without a value is the one that recorders are shipped with.
class ZoneRule
{
public:
    /// Nothing when the text is no such rule.
    static std::optional<ZoneRule> parse(const QByteArray &text);

    /// Both in seconds since 1970, local ones being the reading of the clock as if it were UTC. A reading
    /// that comes twice in autumn means the first, one that is skipped in spring the hour behind it.
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
