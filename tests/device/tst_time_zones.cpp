#include "device/CTimeZoner.h"
#include "device/TimeZoneTable.h"
#include "support/TestTable.h"

#include <QSet>
#include <QTimeZone>

using namespace paravue;
using paravue::test::TestTable;

namespace
{

constexpr qint64 Hour = 60 * 60;

qint64 utc(const char *time)
{
    return QDateTime::fromString(time, Qt::ISODate).toSecsSinceEpoch();
}

QByteArray readable(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate).toLatin1();
}

} // namespace

class TestTimeZones : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsLocalTime_data();
    void tellsLocalTime();
    void replacesPlainUtcOnly();
    void listsZonesOfTheWorld();
    void agreesWithTheSystemsZones_data();
    void agreesWithTheSystemsZones();
};

void TestTimeZones::tellsLocalTime_data()
{
    const char *summer = "2026-07-01T12:00:00Z";
    const TestTable<QByteArray, QByteArray, QByteArray> row("rule", "time", "local");
    row("absent, winter", "", "2026-01-01T00:00:00Z", "2026-01-01T03:00:00Z");
    row("absent, before the start", "", "2026-03-28T22:59:59Z", "2026-03-29T01:59:59Z");
    row("absent, at the start", "", "2026-03-28T23:00:00Z", "2026-03-29T03:00:00Z");
    // The end is read in daylight-saving time: 2:00 is 22:00 UTC.
    row("absent, before the end", "", "2026-10-24T21:59:59Z", "2026-10-25T01:59:59Z");
    row("absent, at the end", "", "2026-10-24T22:00:00Z", "2026-10-25T01:00:00Z");
    row("plain UTC, summer", "UTC+0UTC+0", summer, "2026-07-01T13:00:00Z");
    row("plain UTC with more, winter", "UTC+0UTC+0,M1.1.1/1,M2.1.1/1", "2026-01-15T12:00:00Z",
        "2026-01-15T12:00:00Z");
    row("standard offset only", "UTC-3UTC-4", summer, "2026-07-01T15:00:00Z");
    row("no daylight-saving offset", "UTC-3UTC,M3.5.0/2,M10.5.0/2", summer, "2026-07-01T16:00:00Z");
    row("no sign is west", "UTC5", summer, "2026-07-01T07:00:00Z");
    row("blanks and minutes", "UTC - 5:45", summer, "2026-07-01T17:45:00Z");
    row("no transitions", "UTC-3UTC-4,", summer, "2026-07-01T15:00:00Z");
    row("one transition", "UTC-3UTC-4,M3.5.0/2", summer, "2026-07-01T15:00:00Z");
    row("no such month", "UTC-3UTC-4,M13.5.0/2,M10.5.0/2", summer, "2026-07-01T15:00:00Z");
    row("no hours", "UTC-3UTC-4,M3.5.0,M10.5.0", "2026-03-28T23:00:00Z", "2026-03-29T03:00:00Z");
    row("endless number", "UTC-3UTC-4,M3.5.0/99999999999999,M10.5.0/2", summer, "2026-07-01T15:00:00Z");
    row("offset beyond a day", "UTC-99999999999999", summer, summer);
    row("other letters", "nonsense", summer, summer);
    row("beyond the calendar", "", "9999-12-31T00:00:00Z", "9999-12-31T03:00:00Z");
}

void TestTimeZones::tellsLocalTime()
{
    QFETCH(QByteArray, rule);
    QFETCH(QByteArray, time);
    QTEST(readable(CTimeZoner(rule).toLocal(utc(time))), "local");
}

void TestTimeZones::replacesPlainUtcOnly()
{
    QVERIFY(CTimeZoner("UTC+0UTC+0,M3.5.0/2,M10.5.0/3").isPlainUtcReplaced());
    for (const char *rule : {"", "UTC+0", "UTC-0UTC+0", "utc+0utc+0"})
        QVERIFY2(!CTimeZoner(rule).isPlainUtcReplaced(), rule);
}

void TestTimeZones::listsZonesOfTheWorld()
{
    QVERIFY(timeZoneTable().size() >= 60);
    QSet<QByteArray> rules;
    int offset = -12 * 60;
    for (const TimeZoneRow &row : timeZoneTable()) {
        QVERIFY2(!rules.contains(row.rule), row.rule);
        rules.insert(row.rule);
        QVERIFY2(row.offsetMinutes >= offset, row.rule);
        offset = row.offsetMinutes;
    }
    const TimeZoneRow &first = timeZoneTable().front();
    QCOMPARE(timeZoneCaption(first, "en"), "UTC-11, Pago Pago, Niue");
    QCOMPARE(timeZoneCaption({345, "", "", "Катманду", ""}, "ru"), "UTC+5:45, Катманду");
}

void TestTimeZones::agreesWithTheSystemsZones_data()
{
    const TestTable<QByteArray, int> row("rule", "offset");
    for (const TimeZoneRow &zone : timeZoneTable()) {
        for (const QByteArray &name : QByteArray(zone.zones).split(' '))
            row(name, zone.rule, zone.offsetMinutes);
    }
}

/// Every hour around every transition of the next ten years, and one in every ten days.
void TestTimeZones::agreesWithTheSystemsZones()
{
    QFETCH(QByteArray, rule);
    QFETCH(int, offset);
    const QTimeZone zone(QTest::currentDataTag());
    QVERIFY2(zone.isValid(), "the system lacks its time zone data");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime end = now.addYears(10);
    QList<qint64> moments;
    for (qint64 time = now.toSecsSinceEpoch(); time < end.toSecsSinceEpoch(); time += 10 * 24 * Hour)
        moments.append(time);
    for (const QTimeZone::OffsetData &transition : zone.transitions(now, end)) {
        for (const int hour : {-72, -24, -12, -3, -2, -1, 0, 1, 2, 3, 12, 24, 72}) {
            moments.append(transition.atUtc.toSecsSinceEpoch() + hour * Hour);
            moments.append(moments.constLast() - 1);
        }
    }
    const CTimeZoner zoner(rule);
    int least = 24 * 60 * 60;
    for (const qint64 time : moments) {
        const int ahead = zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(time, Qt::UTC));
        QVERIFY2(zoner.toLocal(time) == time + ahead, rule + ' ' + readable(time));
        least = std::min(least, ahead);
    }
    QCOMPARE(least, offset * 60);
}

QTEST_GUILESS_MAIN(TestTimeZones)
#include "tst_time_zones.moc"
