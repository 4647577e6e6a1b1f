#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace paravue::test
{

/// How many milliseconds tests wait for what has to happen. PARAVUE_TEST_PATIENCE says how many times longer
/// than usual that is on a slow system.
inline int patience()
{
    constexpr int Usual = 5000;
    static const int factor = std::max(1, qEnvironmentVariableIntValue("PARAVUE_TEST_PATIENCE"));
    return Usual * factor;
}

/// Runs the event loop until \a isDone() is true; false when that takes longer. It is called after every
/// event, and every ten milliseconds for changes that come without an event.
///
/// QTest::qWaitFor() and QTRY_COMPARE() sleep between two checks, so a conversation of twenty messages would
/// sleep twenty times.
template <typename Predicate>
bool waitUntil(Predicate isDone, int milliseconds = patience())
{
    constexpr int PollInterval = 10;
    const QDeadlineTimer end(milliseconds);
    QTimer poll;
    poll.start(PollInterval);
    while (!isDone()) {
        if (end.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace paravue::test

// As QTRY_VERIFY() and QTRY_COMPARE(), with waitUntil().

#define AWAIT_VERIFY_WITHIN(condition, milliseconds)                                                         \
    QVERIFY2(paravue::test::waitUntil([&] { return bool(condition); }, milliseconds), #condition)
#define AWAIT_VERIFY(condition) AWAIT_VERIFY_WITHIN(condition, paravue::test::patience())

#define AWAIT_COMPARE_WITHIN(actual, expected, milliseconds)                                                 \
    do {                                                                                                     \
        static_cast<void>(paravue::test::waitUntil([&] { return (actual) == (expected); }, milliseconds));   \
        QCOMPARE(actual, expected);                                                                          \
    } while (false)
#define AWAIT_COMPARE(actual, expected) AWAIT_COMPARE_WITHIN(actual, expected, paravue::test::patience())
