#include "ui/base/ElidedLabel.h"

#include "controls/MessageText.h"

#include <QPainter>
#include <QStyle>

namespace paravue
{
namespace
{

// Measuring takes time in proportion to the length, and no screen shows more than this.
constexpr int LongestToolTipLine = 1000;

} // namespace

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    // The text comes from the recorder.
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 8, fontMetrics().height()};
}

QSize ElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(line()), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    const QString shown = fontMetrics().elidedText(line(), Qt::ElideRight, width());
    setToolTip(shown == text() ? QString() : literalToolTip(shortenedMessage(text())));
    QPainter painter(this);
    style()->drawItemText(&painter, rect(), QStyle::visualAlignment(layoutDirection(), alignment()),
                          palette(), isEnabled(), shown, foregroundRole());
}

QString ElidedLabel::line() const
{
    return text().left(LongestToolTipLine).simplified();
}

} // namespace paravue
