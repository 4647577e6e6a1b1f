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
constexpr int NoticeFlags = Qt::AlignCenter | Qt::TextWordWrap;
constexpr int RemarkFlags = Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap;
constexpr int CaptionFlags = Qt::AlignRight | Qt::AlignTop | Qt::TextWordWrap;
constexpr float RemarkCoverage = 0.8F;

/// Where \a text goes in \a room, with the font of the painter made as small as it needs.
QRect fittedPlace(QPainter &painter, const QRect &room, int flags, const QString &text)
{
    QRect place = painter.boundingRect(room, flags, text);
    QFont font = painter.font();
    for (int size = QFontInfo(font).pixelSize() - 1; size >= SmallestText && !room.contains(place); --size) {
        font.setPixelSize(size);
        painter.setFont(font);
        place = painter.boundingRect(room, flags, text);
    }
    return place;
}

void paintText(QPainter &painter, const QRect &picture, int flags, const QString &text, const QColor &base,
               const QColor &foreground)
{
    if (text.isEmpty())
        return;
    painter.save();
    const QRect room = picture.adjusted(NoticeMargin, NoticeMargin, -NoticeMargin, -NoticeMargin);
    const QRect place = fittedPlace(painter, room, flags, text);
    painter.setOpacity(1); // a disabled palette dims the text by itself
    painter.fillRect(place.adjusted(-6, -4, 6, 4) & picture, base);
    painter.setPen(foreground);
    painter.drawText(room, flags, text);
    painter.restore();
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
    QColor base = background;
    base.setAlphaF(coverage);
    paintText(painter, picture, NoticeFlags, text, base, foreground);
}

void paintCaption(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                  const QColor &foreground)
{
    QColor base = background;
    base.setAlphaF(RemarkCoverage);
    paintText(painter, picture, CaptionFlags, text, base, foreground);
}

void paintRemark(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                 const QColor &foreground)
{
    QColor base = background;
    base.setAlphaF(RemarkCoverage);
    paintText(painter, picture, RemarkFlags, text, base, foreground);
}

} // namespace paravue
