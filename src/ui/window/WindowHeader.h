#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QToolButton;

namespace paravue
{

/// The strip at the top of the frameless setup window, in place of a title bar: the name of what is set up,
/// and, once complete() is called, a picture before it and a button behind it that closes the window.
class WindowHeader : public QWidget
{
    Q_OBJECT

public:
    explicit WindowHeader(QWidget *parent = nullptr);

    /// Makes the picture and the button. To be called when the other widgets of the window are there, as
    /// the widgets that were made first come first in the tab order.
    void complete();

    /// Puts \a tool between the text and the button.
    void addTool(QWidget *tool);

    /// Shows plain text. A text that is too long is elided on the screen and shown whole as its tool tip;
    /// text() is always the whole of it.
    QLabel *label() const { return m_label; }
    /// Null before complete().
    QToolButton *closeButton() const { return m_closeButton; }

Q_SIGNALS:
    void closeRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void applyFont();

    QLabel *m_label;
    QHBoxLayout *m_layout;
    QToolButton *m_closeButton = nullptr;
};

} // namespace paravue
