#pragma once

#include <QObject>
#include <QPalette>
#include <QPointer>

class QFocusFrame;
class QWidget;

namespace paravue
{

/// Makes one window readable: its palette is mended (readablePalette()) whenever that of the desktop changes,
/// its controls get controlStyle(), and a ring shows which of them has the keyboard focus, from the moment
/// when the window is active, whether the keyboard or the mouse has put it there. The application and its
/// other windows stay as they are.
class WindowLook : public QObject
{
public:
    /// For \a window and all that it holds; once for each window, further calls do nothing. It may also be a
    /// widget in a window of somebody else.
    static void apply(QWidget &window);
    /// For controls that came into such a window later.
    static void styleControls(QWidget &root);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit WindowLook(QWidget &window);

    void applyPalette();
    void replaceThemeIcons();
    bool ownsPopup(const QWidget &popup) const;
    void showFocus(QWidget *focused);

    QWidget &m_window;
    const QPalette m_given; ///< what the host has set for the window itself
    QPointer<QFocusFrame> m_ring;
    bool m_isApplying = false;
};

} // namespace paravue
