#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

class QLabel;
class QMouseEvent;

namespace paravue
{

/// Lets the user drag a frameless window by any point that is not a control, its header label included. On
/// Windows the system itself does it, told by the window's procedure that the point belongs to a caption;
/// elsewhere the window manager is asked to, and a desktop without one gets the window moved by hand.
class WindowDrag : public QObject
{
public:
    /// Both must outlive the object; give it \a window as its parent.
    WindowDrag(QWidget *window, QLabel *header);
    ~WindowDrag() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool press(QMouseEvent *event);
    bool move(QMouseEvent *event);
    bool isHandle(const QPoint &windowPosition) const;

    QPointer<QWidget> m_window;
    QPointer<QLabel> m_header;
    QPoint m_grabbedAt;
    bool m_movingByHand = false;

    friend struct NativeWindowDrag;
};

} // namespace paravue
