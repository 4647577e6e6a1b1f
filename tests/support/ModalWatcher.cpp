#include "ModalWatcher.h"

#include <QApplication>
#include <QLabel>
#include <QStyleHints>

namespace paravue::test
{

ModalWatcher::ModalWatcher(Action action, const QByteArray &className)
    : m_action(std::move(action)), m_className(className)
{
    // The system's own file dialogs are no widgets.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // Actions press Enter sooner than a user can.
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &ModalWatcher::look);
    m_timer.start(1);
}

void ModalWatcher::look()
{
    const QPointer<QWidget> window = QApplication::activeModalWidget();
    if (!window || window == m_last || window != QApplication::activeWindow() ||
        window->metaObject()->className() != m_className)
        return;
    m_last = window;
    if (m_texts.isEmpty())
        m_title = window->windowTitle();
    QStringList lines;
    for (const QLabel *label : window->findChildren<QLabel *>()) {
        if (!label->text().isEmpty())
            lines << label->text();
    }
    m_texts << lines.join(u'\n');
    if (m_action)
        m_action(*window);
    if (window && window->isVisible())
        window->close();
}

} // namespace paravue::test
