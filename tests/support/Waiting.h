#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QTest>
#include <QTimer>

namespace paravue::test
{

/// Runs the event loop until \a isDone() is true; false when that takes longer. It is called after every
/// event, and every ten milliseconds for changes that come without an event.
///
/// QTest::qWaitFor() and QTRY_COMPARE() sleep between two checks, so a conversation of twenty messages would
/// sleep twenty times.
template <typename Predicate>
bool waitUntil(Predicate isDone, int milliseconds = 5000)
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
#define AWAIT_VERIFY(condition) AWAIT_VERIFY_WITHIN(condition, 5000)

#define AWAIT_COMPARE_WITHIN(actual, expected, milliseconds)                                                 \
    do {                                                                                                     \
        static_cast<void>(paravue::test::waitUntil([&] { return (actual) == (expected); }, milliseconds));   \
        QCOMPARE(actual, expected);                                                                          \
    } while (false)
#define AWAIT_COMPARE(actual, expected) AWAIT_COMPARE_WITHIN(actual, expected, 5000)
