#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

class QDialog;
class QWidget;

namespace paravue
{

/// Puts a dialog in the middle of the window that it belongs to, or of the screen when there is none, and
/// never beyond the edges of the screen. Qt's own placing uses the size that a dialog has before its texts
/// are laid out, and the position that its window has at this moment.
class DialogPlace : public QObject
{
public:
    /// While an X window manager takes up a new window, it moves it through the corner of the screen, and the
    /// window learns its place after that. This long, in milliseconds, the position of a window that was just
    /// shown or placed may be wrong.
    static constexpr int TakeUpTime = 2000;

    /// To be called once; \a dialog is placed whenever it is shown.
    static void keepCentred(QDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DialogPlace(QDialog &dialog);
    void place() const;

    QDialog &m_dialog;
    QPointer<QWidget> m_above;
    QElapsedTimer m_sinceShown;
};

} // namespace paravue
