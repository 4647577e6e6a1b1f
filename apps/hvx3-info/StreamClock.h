#pragma once

#include <QtGlobal>

#include <optional>

namespace paravue
{

/// Turns the times of a stream, in milliseconds, into times since its beginning.
///
/// Where the recorder's clock was set back, the time continues from where it was. Small steps back are kept:
/// they come from pictures that are not sent in the order in which they are shown.
class StreamClock
{
public:
    static constexpr qint64 LargestStepBack = 1000;

    StreamClock() = default;
    /// Counts from \a zero instead of the first time.
    explicit StreamClock(qint64 zero) : m_zero(zero) {}

    /// Takes the next time; returns the time since the beginning.
    qint64 advance(qint64 time)
    {
        if (!m_zero)
            m_zero = time;
        if (time - *m_zero < m_elapsed - LargestStepBack) {
            m_zero = time - m_elapsed;
            ++m_timesSetBack;
        }
        const qint64 since = time - *m_zero;
        if (since > m_elapsed) {
            if (m_hasAdvanced)
                m_largestStep = qMax(m_largestStep, since - m_elapsed);
            m_elapsed = since;
        }
        m_hasAdvanced = true;
        return since;
    }

    qint64 elapsed() const { return m_elapsed; }
    /// The largest step between two times.
    qint64 largestStep() const { return m_largestStep; }
    int timesSetBack() const { return m_timesSetBack; }

private:
    std::optional<qint64> m_zero;
    qint64 m_elapsed = 0;
    qint64 m_largestStep = 0;
    int m_timesSetBack = 0;
    bool m_hasAdvanced = false;
};

} // namespace paravue
