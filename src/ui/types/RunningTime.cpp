#include "ui/types/RunningTime.h"

#include <QDateTimeEdit>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QTimer>

namespace paravue
{
namespace
{

constexpr int TickInterval = 500; // milliseconds; twice a second, so that no second is skipped

} // namespace

RunningTime::RunningTime(QDateTimeEdit &field) : QObject(&field), m_field(field)
{
    // Only the user's edits are signalled: what is loaded is set silently.
    connect(&field, &QDateTimeEdit::dateTimeChanged, this, [this] { m_isRunning = false; });
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &RunningTime::tick);
    timer->start(TickInterval);
}

RunningTime *RunningTime::of(const QDateTimeEdit &field)
{
    return field.findChild<RunningTime *>(QString(), Qt::FindDirectChildrenOnly);
}

bool RunningTime::begin(const QDateTime &time)
{
    const bool isKnown = m_isRunning ? time == m_loaded : time == m_field.dateTime();
    if (!time.isValid() || (isKnown && m_loaded.isValid()))
        return false;
    m_loaded = time;
    m_sinceLoaded.start();
    m_isRunning = true;
    const QDateTime before = m_field.dateTime();
    const QSignalBlocker silent(m_field);
    m_field.setDateTime(time);
    return m_field.dateTime() != before;
}

void RunningTime::tick()
{
    // A number that is half typed is not a date yet.
    const auto *line = m_field.findChild<QLineEdit *>();
    if (!m_isRunning || (line && line->isModified()))
        return;
    const QSignalBlocker silent(m_field);
    m_field.setDateTime(m_loaded.addSecs(m_sinceLoaded.elapsed() / 1000));
}

} // namespace paravue
