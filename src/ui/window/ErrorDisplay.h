#pragma once

#include <QSet>
#include <QString>

#include <functional>
#include <utility>

class QWidget;

namespace paravue
{

/// Shows the errors of a window in message boxes, one at a time. Errors that come while one is shown, or that
/// follow from it, are only logged.
class ErrorDisplay
{
public:
    using RunLoop = std::function<void(const std::function<void()> &)>;
    /// What a message means, in plain words; empty when it says it itself.
    using Explain = std::function<QString(const QString &)>;

    /// The boxes are modal to \a window. \a accepted is called with every message that will be shown; \a
    /// runLoop runs the event loop of a box.
    ErrorDisplay(QWidget &window, Explain explain, std::function<void(const QString &)> accepted,
                 RunLoop runLoop)
        : m_window(window), m_explain(std::move(explain)), m_accepted(std::move(accepted)),
          m_runLoop(std::move(runLoop))
    {
    }

    enum class Repeats { Allowed, Logged };
    /// Shows \a message, now or at the end of the present operation. With Repeats::Logged a message is shown
    /// once until startOver().
    void show(const QString &message, Repeats repeats);
    /// \a message follows from one that was shown.
    void logConsequence(const QString &message);
    void startOver() { m_shownOnce.clear(); }

    /// Runs an operation and shows its first error at the end, so that a burst of errors becomes one message
    /// and no event loop of a message box runs in the middle of the operation.
    void operate(const std::function<void()> &work);
    bool isOperating() const { return m_operations > 0; }
    /// Runs \a wait, an event loop in which the user acts; errors are shown at once in it.
    void suspend(const std::function<void()> &wait);

private:
    void showBox(const QString &message);

    QWidget &m_window;
    Explain m_explain;
    std::function<void(const QString &)> m_accepted;
    RunLoop m_runLoop;
    QString m_deferred;   ///< the first message of the operation that runs
    int m_operations = 0; ///< operations that run, one inside the other
    bool m_isOnScreen = false;
    QSet<QString> m_shownOnce;
};

} // namespace paravue
