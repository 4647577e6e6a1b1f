#include "controls/PictureNotice.h"

#include <QFontInfo>
#include <QPainter>

namespace paravue
{
namespace
{

constexpr int NoticeMargin = 8;
constexpr int SmallestText = 8; // pixels
constexpr float DimmedShare = 0.6F;
constexpr int Flags = Qt::AlignCenter | Qt::TextWordWrap;

/// Where \a text goes in \a room, with the font of the painter made as small as it needs.
QRect fittedPlace(QPainter &painter, const QRect &room, const QString &text)
{
    QRect place = painter.boundingRect(room, Flags, text);
    QFont font = painter.font();
    for (int size = QFontInfo(font).pixelSize() - 1; size >= SmallestText && !room.contains(place); --size) {
        font.setPixelSize(size);
        painter.setFont(font);
        place = painter.boundingRect(room, Flags, text);
    }
    return place;
}

} // namespace

void dimPicture(QPainter &painter, const QRect &picture, const QColor &background)
{
    QColor dimming = background;
    dimming.setAlphaF(DimmedShare);
    painter.fillRect(picture, dimming);
}

void paintNotice(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                 const QColor &foreground, float coverage)
{
    if (text.isEmpty())
        return;
    painter.save();
    const QRect room = picture.adjusted(NoticeMargin, NoticeMargin, -NoticeMargin, -NoticeMargin);
    const QRect place = fittedPlace(painter, room, text);
    QColor base = background;
    base.setAlphaF(coverage);
    painter.setOpacity(1); // a disabled palette dims the text by itself
    painter.fillRect(place.adjusted(-6, -4, 6, 4) & picture, base);
    painter.setPen(foreground);
    painter.drawText(room, Flags, text);
    painter.restore();
}

} // namespace paravue
