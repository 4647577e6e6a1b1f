#pragma once

#include <QLabel>

namespace paravue
{

/// One line of plain text that asks for no room. A text that is too long is elided on the screen and shown
/// whole as the tool tip; text() is always the whole of it. Line ends are shown as blanks.
class ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(QWidget *parent);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QString line() const;
};

} // namespace paravue
