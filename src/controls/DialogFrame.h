#pragma once

#include <QPoint>
#include <QWidget>

class QDialog;
class QToolButton;

namespace paravue
{

/// Makes a dialog look like the setup window: in place of the frame of the desktop it has a strip with its
/// title and a cross that closes it, by which it can be moved, and a line around it. It stands in the middle
/// of its window (DialogPlace), and its message and its standard buttons have pictures of our own.
class DialogFrame : public QWidget
{
    Q_OBJECT

public:
    enum class Size {
        OfItsContent,
        OfTheUser, ///< may be resized
    };

    /// To be called once, when all of \a dialog is made and before it is shown.
    static void give(QDialog &dialog, Size size);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    explicit DialogFrame(QDialog &dialog);

    void fitFont();
    void fitWidth();
    void paintEdge() const;
    void applyIcons();

    QDialog &m_dialog;
    QToolButton *m_close;
    QPoint m_grabbedAt; ///< in the dialog, where the desktop does not move windows
    bool m_isMoving = false;
};

} // namespace paravue
