#include "ui/base/RetiredWidgets.h"

#include <QScopedValueRollback>

#include <utility>

namespace paravue
{

void RetiredWidgets::runLoop(const std::function<void()> &wait)
{
    {
        const QScopedValueRollback running(m_running, m_running + 1);
        ++m_begun;
        wait();
    }
    if (m_running > 0)
        return;
    for (const QPointer<QWidget> &widget : std::exchange(m_waiting, {})) {
        if (widget)
            widget->deleteLater();
    }
}

void RetiredWidgets::add(QWidget *widget, quint64 since)
{
    if (m_running == 0 || m_begun == since)
        widget->deleteLater();
    else
        m_waiting.append(widget);
}

} // namespace paravue
