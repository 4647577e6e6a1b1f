#include "device/CTimeZoner.h"

#include <QByteArrayView>

#include <charconv>
#include <chrono>
#include <limits>

namespace
{

constexpr char DefaultRule[] = "UTC-3UTC-4,M3.5.0/2,M10.5.0/2";
constexpr char PlainUtc[] = "UTC+0UTC+0";
constexpr char PlainUtcRule[] = "UTC-0UTC+1,M3.5.0/2,M10.5.0/2";

constexpr int Minute = 60;
constexpr int Hour = 60 * Minute;
constexpr qint64 Day = 24 * Hour;
constexpr int MaxOffsetHours = 24;
constexpr int MaxTransitionHour = 167;
/// The calendar ends far beyond.
constexpr qint64 MaxSeconds = 100'000'000'000;

} // namespace

/// Reads a rule from its front.
class CTimeZoner::Reader
{
public:
    explicit Reader(QByteArrayView text) : m_rest(text) {}

    bool atEnd() const { return m_rest.isEmpty(); }

    /// Seconds ahead of UTC of an offset with the letters of its zone; nothing when there is no number.
    bool offset(int &seconds)
    {
        takeAny("UTC");
        const bool isAhead = takeAny(" +-").contains('-');
        int hours = 0;
        if (!digits(hours) || hours > MaxOffsetHours)
            return false;
        int minutes = 0;
        if (take(':') && (!digits(minutes) || minutes >= 60))
            return false;
        const int size = hours * Hour + minutes * Minute;
        seconds = isAhead ? size : -size;
        return true;
    }

    /// The "M" form with the "," in front of it.
    bool transition(Transition &transition)
    {
        const bool isRead = take(',') && take('M') && number(transition.month) && take('.') &&
                            number(transition.week) && take('.') && number(transition.weekday);
        return isRead && (!take('/') || number(transition.hour));
    }

private:
    QByteArrayView takeAny(const char *characters)
    {
        qsizetype size = 0;
        while (size < m_rest.size() && QByteArrayView(characters).contains(m_rest[size]))
            ++size;
        const QByteArrayView taken = m_rest.first(size);
        m_rest = m_rest.sliced(size);
        return taken;
    }

    bool take(char character)
    {
        const bool isThere = m_rest.startsWith(character);
        m_rest = m_rest.sliced(isThere ? 1 : 0);
        return isThere;
    }

    bool digits(int &value)
    {
        const QByteArrayView text = takeAny("0123456789");
        return std::from_chars(text.begin(), text.end(), value).ec == std::errc();
    }

    bool number(int &value)
    {
        const bool isNegative = take('-');
        const bool isRead = digits(value);
        value = isNegative ? -value : value;
        return isRead;
    }

    QByteArrayView m_rest;
};

CTimeZoner::CTimeZoner(const QByteArray &rule)
{
    // Deliberate: plain UTC gets a daylight-saving rule of one hour.
    m_plainUtcReplaced = rule.startsWith(PlainUtc);
    const QByteArray text = m_plainUtcReplaced ? QByteArray(PlainUtcRule)
                            : rule.isEmpty()   ? QByteArray(DefaultRule)
                                               : rule;
    const qsizetype comma = text.indexOf(',');
    Reader offsets(QByteArrayView(text).first(comma < 0 ? text.size() : comma));
    if (!offsets.offset(m_standard) || comma < 0)
        return;
    if (!offsets.offset(m_daylight))
        m_daylight = m_standard + Hour;
    // In this one rule "UTC+1" is an hour ahead of UTC; elsewhere it is an hour behind.
    if (m_plainUtcReplaced)
        m_daylight = Hour;
    Reader transitions(QByteArrayView(text).sliced(comma));
    m_hasDaylightSaving = transitions.transition(m_start) && transitions.transition(m_end) &&
                          isPossible(m_start) && isPossible(m_end);
}

qint64 CTimeZoner::toLocal(qint64 utcSeconds) const
{
    return utcSeconds + (isDaylightSaving(utcSeconds) ? m_daylight : m_standard);
}

bool CTimeZoner::isPossible(const Transition &transition)
{
    const auto isIn = [](int value, int least, int most) { return value >= least && value <= most; };
    return isIn(transition.month, 1, 12) && isIn(transition.week, 1, 5) && isIn(transition.weekday, 0, 6) &&
           isIn(transition.hour, -MaxTransitionHour, MaxTransitionHour);
}

/// The transition's reading on the local clock, in seconds since 1970.
qint64 CTimeZoner::secondsOf(const Transition &transition, int year)
{
    using namespace std::chrono;
    const auto month = std::chrono::year(year) / std::chrono::month(unsigned(transition.month));
    const std::chrono::weekday weekday(unsigned(transition.weekday));
    const sys_days day = transition.week == 5 ? sys_days(month / weekday[last])
                                              : sys_days(month / weekday[unsigned(transition.week)]);
    return day.time_since_epoch().count() * Day + qint64(transition.hour) * Hour;
}

bool CTimeZoner::isDaylightSaving(qint64 utcSeconds) const
{
    using namespace std::chrono;
    if (!m_hasDaylightSaving || qAbs(utcSeconds) > MaxSeconds)
        return false;
    const sys_days today = floor<days>(sys_seconds(seconds(utcSeconds)));
    const int year = int(year_month_day(today).year());
    // Whatever happened last: this holds for both halves of the globe and at the turn of the year.
    bool isDaylight = false;
    qint64 latest = std::numeric_limits<qint64>::min();
    const auto note = [&](qint64 moment, bool begins) {
        if (moment <= utcSeconds && moment > latest) {
            latest = moment;
            isDaylight = begins;
        }
    };
    for (int near = year - 1; near <= year + 1; ++near) {
        note(secondsOf(m_start, near) - m_standard, true);
        note(secondsOf(m_end, near) - m_daylight, false);
    }
    return isDaylight;
}
