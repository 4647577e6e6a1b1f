#include "Events.h"

#include "Require.h"

#include <QAbstractEventDispatcher>
#include <QThread>

namespace
{

/// More rounds mean that events never end.
constexpr int MaxRounds = 100000;

} // namespace

namespace paravue::fuzz
{

void handleEvents()
{
    QAbstractEventDispatcher *const events = QThread::currentThread()->eventDispatcher();
    int rounds = 0;
    while (events->processEvents(QEventLoop::AllEvents))
        require(++rounds < MaxRounds, "the event loop comes to rest");
}

void handleEventsUntil(const std::function<bool()> &isDone)
{
    handleEvents();
    while (!isDone()) {
        QThread::currentThread()->eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents);
        handleEvents();
    }
}

} // namespace paravue::fuzz
