#pragma once

#include <QLabel>

namespace paravue
{

/// A label that asks for the room of its text, but for no more than a line that can be read. A longer plain
/// text is elided on the screen and shown whole as the tool tip, unless the label has another one; text() is
/// always the whole of it.
class TextLabel : public QLabel
{
public:
    using QLabel::QLabel;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QSize bounded(const QSize &size) const;
    bool isPlain() const;
    bool isCut() const;
};

} // namespace paravue
