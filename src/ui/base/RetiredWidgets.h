#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace paravue
{

/// Deletes widgets that have been taken from the window, once none of their own code can be waiting further
/// down the stack: an input field whose change opened a dialog goes on when the dialog is closed, and a new
/// description may have come meanwhile. The toolkit's own deleteLater() does not wait for that.
class RetiredWidgets
{
public:
    /// Runs \a wait, an event loop within the handling of an event.
    void runLoop(const std::function<void()> &wait);
    /// How many loops have begun so far.
    quint64 loopsBegun() const { return m_begun; }

    /// Takes a hidden widget, which still belongs to its parent. \a since is loopsBegun() at the time when
    /// the user first could use it.
    void add(QWidget *widget, quint64 since = 0);

private:
    int m_running = 0;
    quint64 m_begun = 0;
    QList<QPointer<QWidget>> m_waiting;
};

} // namespace paravue
