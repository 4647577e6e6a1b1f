#pragma once

#include <QSet>
#include <QString>

#include <functional>
#include <utility>

class QWidget;

namespace paravue
{

/// Shows the errors of a window in message boxes, one at a time: those that come while one is on the screen,
/// or as its consequence, are logged only.
class ErrorDisplay
{
public:
    using RunLoop = std::function<void(const std::function<void()> &)>;

    /// The boxes stand above \a window. \a accepted learns of every message that is going to be shown; \a
    /// runLoop runs the event loop of a box.
    ErrorDisplay(QWidget &window, std::function<void(const QString &)> accepted, RunLoop runLoop)
        : m_window(window), m_accepted(std::move(accepted)), m_runLoop(std::move(runLoop))
    {
    }

    enum class Repeats { Allowed, Logged };
    /// Shows \a message, now or when the work that runs is done. With Repeats::Logged a message is shown once
    /// until startOver().
    void show(const QString &message, Repeats repeats);
    void startOver() { m_shownOnce.clear(); }

    /// Runs a piece of work during which errors wait, so that a burst of them becomes one message, and no
    /// message box lets other events in while the work is half done.
    void operate(const std::function<void()> &work);
    bool isOperating() const { return m_operations > 0; }
    /// Runs \a wait, in which the user acts: nothing is half done then, so errors need not wait.
    void suspend(const std::function<void()> &wait);

private:
    void showBox(const QString &message);

    QWidget &m_window;
    std::function<void(const QString &)> m_accepted;
    RunLoop m_runLoop;
    QString m_deferred;   ///< the first message of the operation that runs
    int m_operations = 0; ///< operations that run, one inside the other
    bool m_isOnScreen = false;
    QSet<QString> m_shownOnce;
};

} // namespace paravue
