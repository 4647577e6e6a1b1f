#include "ui/tasks/TurnWatch.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace paravue
{
namespace
{

// In milliseconds.
constexpr quint32 FirstHeard = 1'000;
constexpr quint32 HeardAgain = 2'000;
/// What is heard at one moment is read in parts.
constexpr quint32 ReadingTime = 500;
/// Less than the finest step with all of the zoom.
constexpr double SmallestTurn = 0.004;
/// Some cameras do not reach the ends of their ranges exactly.
constexpr double End = 0.98;

/// The sum over the axes, which cameras turn about at the same time or one after the other.
double wayBetween(const PtzPosition &present, const PtzPosition &goal)
{
    const double zoom = present.zoom && goal.zoom ? std::abs(*present.zoom - *goal.zoom) : 0;
    return std::abs(present.pan - goal.pan) + std::abs(present.tilt - goal.tilt) + zoom;
}

} // namespace

bool TurnWatch::isTurn(const PtzPosition &present, const PtzPosition &goal)
{
    const auto reached = [](PtzPosition position) {
        position.pan = std::clamp(position.pan, -End, End);
        position.tilt = std::clamp(position.tilt, -End, End);
        if (position.zoom)
            position.zoom = std::min(*position.zoom, End);
        return position;
    };
    return !isNear(reached(present), reached(goal), SmallestTurn);
}

void TurnWatch::begin(quint64 traffic, const PtzPosition &present, const std::optional<PtzPosition> &goal)
{
    if (!m_isTimed) {
        *this = {};
        m_isTracking = true;
        m_isTimed = true;
        m_traffic = traffic;
    }
    m_position = present;
    m_goal = goal;
}

void TurnWatch::stay()
{
    if (!std::exchange(m_isStopped, true))
        m_furthest = m_approach;
}

void TurnWatch::end()
{
    *this = {};
}

void TurnWatch::move(const PtzPosition &to)
{
    if (!m_isTracking)
        return;
    if (m_goal)
        m_approach += wayBetween(m_position, *m_goal) - wayBetween(to, *m_goal);
    m_furthest = std::min(m_furthest, m_approach);
    m_position = to;
    const bool hasSetOut = m_isStopped && m_approach - m_furthest >= SmallestTurn;
    m_isAnswered = hasSetOut || !m_goal || !isTurn(to, *m_goal);
}

bool TurnWatch::hasComeNearer() const
{
    return m_isAnswered || m_approach >= SmallestTurn;
}

TurnWatch::Outcome TurnWatch::poll(quint32 now, quint64 traffic)
{
    if (!m_isTimed || !isTimeOver(now, traffic))
        return Outcome::Open;
    m_isTimed = false;
    return hasComeNearer() ? Outcome::Obeyed : Outcome::Ignored;
}

bool TurnWatch::isTimeOver(quint32 now, quint64 traffic)
{
    if (!m_begin)
        m_begin = now;
    if (traffic != m_traffic && !m_first && now - *m_begin >= FirstHeard)
        m_first = now;
    else if (traffic != m_traffic && m_first && !m_last && now - *m_first >= HeardAgain)
        m_last = now;
    m_traffic = traffic;
    return m_last && now - *m_last >= ReadingTime;
}

} // namespace paravue
