#include "ModalWatcher.h"

#include <QApplication>
#include <QLabel>

namespace paravue::test
{

ModalWatcher::ModalWatcher(Action action) : m_action(std::move(action))
{
    connect(&m_timer, &QTimer::timeout, this, &ModalWatcher::look);
    m_timer.start(1);
}

void ModalWatcher::look()
{
    const QPointer<QWidget> window = QApplication::activeModalWidget();
    if (!window || !window->isVisible())
        return;
    m_timer.stop();
    m_seen = true;
    m_title = window->windowTitle();
    QStringList texts;
    for (const QLabel *label : window->findChildren<QLabel *>()) {
        if (!label->text().isEmpty())
            texts << label->text();
    }
    m_text = texts.join(u'\n');
    if (m_action)
        m_action(*window);
    if (window && window->isVisible())
        window->close();
}

} // namespace paravue::test
