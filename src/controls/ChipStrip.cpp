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
    const auto add = [&](int wanted) {
        const int width = std::max(1, std::min(wanted, area.width()));
        if (next.x() > 0 && next.x() + width > area.width())
            next = QPoint(0, next.y() + height + ChipGap);
        const QRect place(area.topLeft() + next, QSize(width, height));
        result.append(QStyle::visualRect(m_owner.layoutDirection(), area, place));
        next.rx() += width + ChipGap;
    };
    for (const QString &text : m_texts)
        add(metrics.height() + metrics.horizontalAdvance(text) + 6 * ChipGap);
    if (!m_note.isEmpty())
        add(metrics.horizontalAdvance(m_note) + 6 * ChipGap);
    return result;
}

int ChipStrip::height(int width) const
{
    const QList<QRect> all = places(QRect(0, 0, width, 1));
    return all.isEmpty() ? 0 : all.constLast().bottom() + 1;
}

bool ChipStrip::setNote(const QString &note, int width)
{
    const int before = height(width);
    m_note = note;
    return height(width) != before;
}

int ChipStrip::at(const QPoint &position, const QRect &area) const
{
    const QList<QRect> all = places(area);
    const auto hit =
        std::find_if(all.cbegin(), all.cend(), [&](const QRect &place) { return place.contains(position); });
    const auto chip = hit - all.cbegin();
    return chip < m_texts.size() ? int(chip) : -1;
}

void ChipStrip::paint(QPainter &painter, const QRect &area, const QList<int> &chosen,
                      const std::function<void(const QRect &, int)> &swatch) const
{
    const QFontMetrics metrics = m_owner.fontMetrics();
    const Qt::LayoutDirection direction = m_owner.layoutDirection();
    const QList<QRect> all = places(area);
    for (int chip = 0; chip < m_texts.size(); ++chip) {
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
    if (!m_note.isEmpty()) {
        const QRect place = all.constLast().adjusted(ChipGap, 0, -ChipGap, 0);
        painter.setPen(m_owner.palette().color(QPalette::WindowText));
        painter.drawText(place, QStyle::visualAlignment(direction, Qt::AlignLeft | Qt::AlignVCenter),
                         metrics.elidedText(m_note, Qt::ElideRight, place.width()));
    }
}

} // namespace paravue
