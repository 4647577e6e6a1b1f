#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace paravue
{

/// Deletes widgets that were removed from the window as soon as none of their code is on the call stack any
/// more. An input field whose change has opened a dialog continues when the dialog is closed, and a new
/// description may have replaced the field meanwhile. QObject::deleteLater() does not wait for that.
class RetiredWidgets
{
public:
    /// Runs \a wait, an event loop within the handling of an event.
    void runLoop(const std::function<void()> &wait);
    /// How many loops have begun so far.
    quint64 loopsBegun() const { return m_begun; }

    /// Takes over a hidden widget, which still has its parent. \a since is the value of loopsBegun() when the
    /// widget was first shown.
    void add(QWidget *widget, quint64 since = 0);

private:
    int m_running = 0;
    quint64 m_begun = 0;
    QList<QPointer<QWidget>> m_waiting;
};

} // namespace paravue
