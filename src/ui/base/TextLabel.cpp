#include "ui/base/TextLabel.h"

#include "controls/MessageText.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int LabelLetters = 120; // of average width, in a line
/// Measuring takes time in proportion to the length, and no screen shows more than this.
constexpr int LongestElidedLine = 1000;

} // namespace

bool TextLabel::isPlain() const
{
    const bool isRich = textFormat() != Qt::PlainText && Qt::mightBeRichText(text());
    return !isRich && !text().isEmpty();
}

QSize TextLabel::bounded(const QSize &size) const
{
    if (!isPlain())
        return size;
    return {std::min(size.width(), LabelLetters * fontMetrics().averageCharWidth()), size.height()};
}

QSize TextLabel::sizeHint() const
{
    return bounded(QLabel::sizeHint());
}

QSize TextLabel::minimumSizeHint() const
{
    return bounded(QLabel::minimumSizeHint());
}

bool TextLabel::isCut() const
{
    return isPlain() && width() < QLabel::sizeHint().width();
}

bool TextLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || !isCut())
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                       literalToolTip(shortenedMessage(text())), this);
    return true;
}

void TextLabel::paintEvent(QPaintEvent *event)
{
    if (!isCut())
        return QLabel::paintEvent(event);
    QStringList lines;
    for (const QString &line : text().split(u'\n'))
        lines.append(fontMetrics().elidedText(line.left(LongestElidedLine), Qt::ElideRight, width()));
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(),
                          int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
                          isEnabled(), lines.join(u'\n'), foregroundRole());
}

} // namespace paravue
