#include "ui/window/WindowDrag.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QLabel>
#include <QMouseEvent>
#include <QSizeGrip>
#include <QTabWidget>
#include <QWindow>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace paravue
{

#ifdef Q_OS_WIN

/// The window procedure that the window and its header label share.
struct NativeWindowDrag {
    static inline QPointer<WindowDrag> drag;
    static inline HWND windowHandle = nullptr;
    static inline WNDPROC windowProcedure = nullptr;

    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wide, LPARAM wideLong)
    {
        if (message == WM_NCHITTEST) {
            if (handle != windowHandle)
                return HTTRANSPARENT;
            if (drag && drag->isHandle(positionInWindow()))
                return HTCAPTION;
        }
        // Deliberate: the label's messages go to the procedure of the window as well.
        return CallWindowProcW(windowProcedure, handle, message, wide, wideLong);
    }

    static QPoint positionInWindow() { return drag->m_window->mapFromGlobal(QCursor::pos()); }

    static void install(WindowDrag *object)
    {
        drag = object;
        windowHandle = reinterpret_cast<HWND>(object->m_window->winId());
        windowProcedure = replace(windowHandle, &procedure);
        replace(reinterpret_cast<HWND>(object->m_header->winId()), &procedure);
    }

    static void uninstall()
    {
        if (IsWindow(windowHandle))
            replace(windowHandle, windowProcedure);
        windowHandle = nullptr;
    }

    static WNDPROC replace(HWND handle, WNDPROC procedure)
    {
        return reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
    }
};

#else

struct NativeWindowDrag {
    static void install(WindowDrag *object)
    {
        object->m_window->installEventFilter(object);
        object->m_header->installEventFilter(object);
    }
    static void uninstall() {}
};

#endif

namespace
{

/// A control, as opposed to a label, a line or the ground of a page.
bool takesPresses(const QWidget *widget)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget->parentWidget());
    if (area && area->viewport() == widget)
        widget = area;
    if (qobject_cast<const QTabWidget *>(widget)) // can have the focus, but for its tabs only
        return false;
    return widget->focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QAbstractSlider *>(widget) || qobject_cast<const QSizeGrip *>(widget);
}

} // namespace

WindowDrag::WindowDrag(QWidget *window, QLabel *header) : QObject(window), m_window(window), m_header(header)
{
    NativeWindowDrag::install(this);
}

WindowDrag::~WindowDrag()
{
    NativeWindowDrag::uninstall();
}

bool WindowDrag::isHandle(const QPoint &windowPosition) const
{
    const QWidget *child = m_window->childAt(windowPosition);
    return !child || !takesPresses(child);
}

bool WindowDrag::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return move(static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        m_movingByHand = false;
        return false;
    default:
        return false;
    }
}

bool WindowDrag::press(QMouseEvent *event)
{
    const QPoint global = event->globalPosition().toPoint();
    if (event->button() != Qt::LeftButton || !isHandle(m_window->mapFromGlobal(global)))
        return false;
    QWindow *window = m_window->windowHandle();
    if (window && window->startSystemMove())
        return true;
    m_movingByHand = true;
    m_grabbedAt = global - m_window->pos();
    return true;
}

bool WindowDrag::move(QMouseEvent *event)
{
    if (!m_movingByHand)
        return false;
    m_window->move(event->globalPosition().toPoint() - m_grabbedAt);
    return true;
}

} // namespace paravue
