#include "controls/ChipStrip.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int ChipGap = 4;

} // namespace

QList<QRect> ChipStrip::places(const QRect &area) const
{
    const QFontMetrics metrics = m_owner.fontMetrics();
    const int height = metrics.height() + 2 * ChipGap;
    QList<QRect> result;
    QPoint next(0, ChipGap);
    for (const QString &text : m_texts) {
        const int wanted = metrics.height() + metrics.horizontalAdvance(text) + 6 * ChipGap;
        const int width = std::max(1, std::min(wanted, area.width()));
        if (next.x() > 0 && next.x() + width > area.width())
            next = QPoint(0, next.y() + height + ChipGap);
        const QRect place(area.topLeft() + next, QSize(width, height));
        result.append(QStyle::visualRect(m_owner.layoutDirection(), area, place));
        next.rx() += width + ChipGap;
    }
    return result;
}

int ChipStrip::height(int width) const
{
    if (m_texts.isEmpty())
        return 0;
    return places(QRect(0, 0, width, 1)).constLast().bottom() + 1;
}

int ChipStrip::at(const QPoint &position, const QRect &area) const
{
    const QList<QRect> all = places(area);
    const auto hit =
        std::find_if(all.cbegin(), all.cend(), [&](const QRect &place) { return place.contains(position); });
    return hit == all.cend() ? -1 : int(hit - all.cbegin());
}

void ChipStrip::paint(QPainter &painter, const QRect &area, const QList<int> &chosen,
                      const std::function<void(const QRect &, int)> &swatch) const
{
    const QFontMetrics metrics = m_owner.fontMetrics();
    const Qt::LayoutDirection direction = m_owner.layoutDirection();
    const QList<QRect> all = places(area);
    for (int chip = 0; chip < all.size(); ++chip) {
        const QRect &place = all[chip];
        const bool isChosen = chosen.contains(chip);
        const QPalette &palette = m_owner.palette();
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.brush(QPalette::Highlight));
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChosen)
            painter.drawRoundedRect(place, ChipGap, ChipGap);
        const QRect inside = place.adjusted(ChipGap, ChipGap, -ChipGap, -ChipGap);
        const QRect swatchPlace(inside.topLeft(), QSize(inside.height(), inside.height()));
        const QRect shownSwatch = QStyle::visualRect(direction, inside, swatchPlace);
        painter.setOpacity(m_owner.isEnabled() ? 1 : 0.6); // the palette dims the text only
        painter.fillRect(shownSwatch, palette.brush(QPalette::Base));
        swatch(shownSwatch, chip);
        painter.setOpacity(1);
        const QRect textPlace = inside.adjusted(inside.height() + 2 * ChipGap, 0, 0, 0);
        painter.setPen(palette.color(isChosen ? QPalette::HighlightedText : QPalette::WindowText));
        painter.drawText(QStyle::visualRect(direction, inside, textPlace),
                         QStyle::visualAlignment(direction, Qt::AlignLeft | Qt::AlignVCenter),
                         metrics.elidedText(m_texts[chip], Qt::ElideRight, textPlace.width()));
    }
}

} // namespace paravue
