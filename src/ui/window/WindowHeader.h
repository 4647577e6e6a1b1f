#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace paravue
{

/// The strip at the top of the frameless setup window, in place of a title bar: a picture, the name of what
/// is set up, and a button that closes the window.
class WindowHeader : public QWidget
{
    Q_OBJECT

public:
    explicit WindowHeader(QWidget *parent = nullptr);

    /// Shows plain text. A text that is too long is elided on the screen and shown whole as its tool tip;
    /// text() is always the whole of it.
    QLabel *label() const { return m_label; }
    QToolButton *closeButton() const { return m_closeButton; }

Q_SIGNALS:
    void closeRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void applyFont();

    QLabel *m_label;
    QToolButton *m_closeButton;
};

} // namespace paravue
