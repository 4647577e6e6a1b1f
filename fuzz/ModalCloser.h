#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace paravue::fuzz
{

/// Closes every modal window and every popup that comes up above \a window, so that nothing waits for a user.
class ModalCloser
{
public:
    ModalCloser()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { close(); });
        m_timer.start(0);
    }

    void setWindow(QWidget *window) { m_window = window; }
    int closed() const { return m_closed; }

private:
    void close()
    {
        if (QWidget *const popup = QApplication::activePopupWidget())
            popup->close();
        QWidget *const modal = QApplication::activeModalWidget();
        // The setup window is not known yet while its constructor runs.
        if (!modal || modal == m_window || modal->inherits("CWinMain"))
            return;
        ++m_closed;
        modal->close();
    }

    QTimer m_timer;
    QPointer<QWidget> m_window;
    int m_closed = 0;
};

} // namespace paravue::fuzz
