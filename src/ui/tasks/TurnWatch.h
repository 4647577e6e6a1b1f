#pragma once

#include "controls/PtzPosition.h"

#include <optional>

namespace paravue
{

/// Whether a recorder turns its camera as it was told. A command has no answer but its effect, and other
/// users and tours of the recorder turn the camera too: what counts is that it comes nearer to the goal.
///
/// During a silence nothing is known of that, and what is heard first behind one may be older than the
/// effect.
class TurnWatch
{
public:
    enum class Outcome { Open, Obeyed, Ignored };

    /// Whether a camera at \a present has to turn for \a goal.
    static bool isTurn(const PtzPosition &present, const PtzPosition &goal);

    /// The camera was told to turn. Without a \a goal, which only the recorder knows then, any movement
    /// counts. Commands follow each other in a gesture: the time runs from the first one. \a traffic is that
    /// of the source.
    void begin(quint64 traffic, const PtzPosition &present, const std::optional<PtzPosition> &goal);
    /// It was told to stay where it was, perhaps before it had begun to turn: it sets out for the goals
    /// before and comes back. So a single step nearer to them is an answer from now on.
    void stay();
    void end();
    void move(const PtzPosition &to);

    /// The time for an answer runs.
    bool isOpen() const { return m_isTimed; }
    bool hasGoal() const { return m_goal.has_value(); }
    /// The camera is at the goal of the last command, or was told to stay and has set out; perhaps only
    /// behind the time for it.
    bool isAnswered() const { return m_isAnswered; }
    /// It has come nearer to the goals since the first command.
    bool hasComeNearer() const;
    /// The outcome, once, when the recorder has had the time to answer. \a now, in milliseconds, wraps
    /// around.
    Outcome poll(quint32 now, quint64 traffic);

private:
    bool isTimeOver(quint32 now, quint64 traffic);

    PtzPosition m_position;
    std::optional<PtzPosition> m_goal;
    double m_approach = 0;     ///< by how much all movements have brought the camera nearer to the goals
    double m_furthest = 0;     ///< the least that it has been since the camera was told to stay
    bool m_isTracking = false; ///< between begin() and end()
    bool m_isStopped = false;  ///< the camera was told to stay
    bool m_isAnswered = false;

    bool m_isTimed = false;
    quint64 m_traffic = 0;
    std::optional<quint32> m_begin; ///< of the time: the first poll behind the command
    std::optional<quint32> m_first; ///< when the recorder was heard behind the command
    std::optional<quint32> m_last;  ///< when it was heard some time after that
};

} // namespace paravue
