#include "ui/window/ErrorDisplay.h"

#include "controls/OrbDlgQuestion.h"
#include "store/LogText.h"
#include "ui/base/WindowText.h"

#include <QLoggingCategory>
#include <QScopedValueRollback>
#include <QWidget>

#include <utility>

namespace paravue
{
namespace
{

Q_LOGGING_CATEGORY(messageLog, "paravue.messages", QtWarningMsg)

} // namespace

void ErrorDisplay::show(const QString &message, Repeats repeats)
{
    const bool isKnown = repeats == Repeats::Logged && m_shownOnce.contains(message);
    if (isKnown || m_isOnScreen || (isOperating() && !m_deferred.isEmpty()))
        return logConsequence(message);
    const QString explanation = m_explain(message);
    qCWarning(messageLog).noquote() << logText(
        explanation.isEmpty() ? message : message + QStringLiteral(": ") + explanation);
    if (repeats == Repeats::Logged)
        m_shownOnce.insert(message);
    m_accepted(message);
    if (isOperating())
        m_deferred = message;
    else
        showBox(message);
}

void ErrorDisplay::logConsequence(const QString &message)
{
    qCWarning(messageLog).noquote() << "not shown, a message came before:" << logText(message);
}

void ErrorDisplay::operate(const std::function<void()> &work)
{
    {
        const QScopedValueRollback depth(m_operations, m_operations + 1);
        work();
    }
    if (m_operations == 0 && !m_deferred.isEmpty())
        showBox(std::exchange(m_deferred, QString()));
}

void ErrorDisplay::suspend(const std::function<void()> &wait)
{
    const QScopedValueRollback depth(m_operations, 0);
    operate([] {}); // shows a deferred message first
    wait();
}

void ErrorDisplay::showBox(const QString &message)
{
    m_isOnScreen = true;
    m_runLoop([&] {
        OrbDlgQuestion::DoExplained(&m_window, QMessageBox::Critical, WindowText::tr("Paravue Setup"),
                                    message, m_explain(message), QMessageBox::Ok, QMessageBox::NoButton);
    });
    // Consequences of this error are reported before the event loop runs again; they are not shown.
    QMetaObject::invokeMethod(
        &m_window, [this] { m_isOnScreen = false; }, Qt::QueuedConnection);
}

} // namespace paravue
