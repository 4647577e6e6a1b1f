#include "ui/window/WindowDrag.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QCoreApplication>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QSizeGrip>
#include <QTabWidget>
#include <QWindow>

#ifdef Q_OS_WIN
#include <qt_windows.h>

#include <windowsx.h>
#endif

namespace paravue
{

#ifdef Q_OS_WIN

/// The window procedure that windows and their header labels have instead of Qt's.
struct NativeWindowDrag {
    struct Replaced {
        WindowDrag *drag = nullptr;
        bool isHeader = false;
        WNDPROC usual = nullptr; ///< where all other messages go
    };
    static inline QHash<HWND, Replaced> replaced;

    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wide, LPARAM wideLong)
    {
        const Replaced entry = replaced.value(handle); // a copy, as the message may change the table
        if (!entry.usual)
            return DefWindowProcW(handle, message, wide, wideLong);
        if (message == WM_NCHITTEST) {
            // The window below is asked instead.
            if (entry.isHeader)
                return HTTRANSPARENT;
            if (entry.drag->isHandle(positionInWindow(*entry.drag, handle, wideLong)))
                return HTCAPTION;
        }
        if (message == WM_NCDESTROY)
            putBack(handle);
        return CallWindowProcW(entry.usual, handle, message, wide, wideLong);
    }

    /// The point of the message in device-independent pixels. By now the cursor may be elsewhere.
    static QPoint positionInWindow(const WindowDrag &drag, HWND handle, LPARAM screenPoint)
    {
        POINT point{GET_X_LPARAM(screenPoint), GET_Y_LPARAM(screenPoint)};
        ScreenToClient(handle, &point);
        return (QPointF(point.x, point.y) / drag.m_window->devicePixelRatioF()).toPoint();
    }

    static void install(WindowDrag *drag)
    {
        const HWND window = handleOf(*drag->m_window);
        const WNDPROC usual = replace(window, &procedure);
        replaced[window] = {drag, false, usual};
        installOnHeader(drag, usual);
    }

    /// Only the label becomes a native window: others between the two would keep the hit test for themselves.
    static void installOnHeader(WindowDrag *drag, WNDPROC usual)
    {
        drag->m_header->setAttribute(Qt::WA_DontCreateNativeAncestors);
        const bool before = QCoreApplication::testAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
        QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
        const HWND label = handleOf(*drag->m_header);
        QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings, before);
        replace(label, &procedure);
        // Deliberate: the label's messages go to the procedure of the window as well.
        replaced[label] = {drag, true, usual};
    }

    static void uninstall(WindowDrag *drag)
    {
        const QList<HWND> handles = replaced.keys();
        for (const HWND handle : handles) {
            if (replaced.value(handle).drag == drag)
                putBack(handle);
        }
    }

    static void putBack(HWND handle)
    {
        const Replaced entry = replaced.take(handle);
        if (IsWindow(handle))
            replace(handle, entry.usual);
    }

    static HWND handleOf(const QWidget &widget) { return reinterpret_cast<HWND>(widget.winId()); }

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
    static void uninstall(WindowDrag *) {}
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
    return widget->focusPolicy() != Qt::NoFocus || qobject_cast<const QHeaderView *>(widget) ||
           qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QAbstractSlider *>(widget) ||
           qobject_cast<const QSizeGrip *>(widget);
}

} // namespace

WindowDrag::WindowDrag(QWidget *window, QLabel *header) : QObject(window), m_window(window), m_header(header)
{
    NativeWindowDrag::install(this);
}

WindowDrag::~WindowDrag()
{
    NativeWindowDrag::uninstall(this);
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
