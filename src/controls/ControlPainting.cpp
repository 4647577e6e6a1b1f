#include "controls/ControlPainting.h"

#include "controls/ReadableColors.h"
#include "controls/ReadablePalette.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QTabBar>

namespace paravue
{

namespace
{

constexpr double CornerRadius = 3;
constexpr int TabMark = 3;
constexpr double TickWidth = 1.8;

bool isEnabled(const QStyleOption &option)
{
    return option.state & QStyle::State_Enabled;
}

bool isPressed(const QStyleOption &option)
{
    return option.state & (QStyle::State_Sunken | QStyle::State_On);
}

/// The ground of a button, changed visibly: towards the text where that stays readable, or away from it.
QColor shifted(const QColor &ground, const QColor &text, double share)
{
    const QColor towardsText = mixedColor(ground, text, share / 2);
    if (contrastRatio(towardsText, text) >= HighContrast)
        return towardsText;
    return mixedColor(ground, ground.lightnessF() > text.lightnessF() ? Qt::white : Qt::black, share);
}

QRectF outline(const QRect &rect)
{
    return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

void paintTick(QPainter &painter, const QRectF &box, QStyle::State state)
{
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    if (state & QStyle::State_On)
        painter.drawPolyline(QPolygonF{at(0.2, 0.52), at(0.42, 0.74), at(0.8, 0.28)});
    else
        painter.drawLine(at(0.25, 0.5), at(0.75, 0.5));
}

enum class Side { Top, Bottom, Left, Right };

/// The side of a tab that is away from the page.
Side outerSide(const QStyleOptionTab &tab)
{
    switch (tab.shape) {
    case QTabBar::RoundedSouth:
    case QTabBar::TriangularSouth:
        return Side::Bottom;
    case QTabBar::RoundedWest:
    case QTabBar::TriangularWest:
        return Side::Left;
    case QTabBar::RoundedEast:
    case QTabBar::TriangularEast:
        return Side::Right;
    default:
        return Side::Top;
    }
}

QRect without(QRect rect, Side side, int width)
{
    rect.adjust(side == Side::Left ? width : 0, side == Side::Top ? width : 0,
                side == Side::Right ? -width : 0, side == Side::Bottom ? -width : 0);
    return rect;
}

Side opposite(Side side)
{
    switch (side) {
    case Side::Top:
        return Side::Bottom;
    case Side::Bottom:
        return Side::Top;
    case Side::Left:
        return Side::Right;
    default:
        return Side::Left;
    }
}

QColor paneEdgeColor(const QPalette &palette)
{
    return mixedColor(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.3);
}

} // namespace

QColor edgeColor(const QStyleOption &option)
{
    const QColor edge = fieldEdgeColor(option.palette);
    return isEnabled(option) ? edge : mixedColor(option.palette.color(QPalette::Window), edge, 0.6);
}

void paintField(QPainter &painter, const QStyleOption &option, QPalette::ColorRole ground)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edgeColor(option));
    painter.setBrush(option.palette.brush(ground));
    painter.drawRoundedRect(outline(option.rect), CornerRadius, CornerRadius);
    painter.restore();
}

void paintProblem(QPainter &painter, const QStyleOption &option)
{
    constexpr double Width = 2;
    constexpr double Half = Width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(problemColor(option.palette), Width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(Half, Half, -Half, -Half), CornerRadius,
                            CornerRadius);
    painter.restore();
}

void paintArrow(QPainter &painter, const QRect &rect, const QColor &color, ArrowDirection direction)
{
    const QPointF centre = QRectF(rect).center();
    const double height = direction == ArrowDirection::Up ? -1.5 : 1.5;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF{centre + QPointF(-3, -height), centre + QPointF(0, height), centre + QPointF(3, -height)});
    painter.restore();
}

void paintCheckBox(QPainter &painter, const QStyleOption &option, bool isToRead)
{
    const QRectF box = outline(option.rect);
    const bool isMarked = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const bool isFilled = isMarked && isEnabled(option);
    const QPalette &palette = option.palette;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isToRead) {
        const QColor accent = palette.color(QPalette::Highlight);
        painter.setPen(isFilled ? readableVersion(accent, palette.color(QPalette::Window), VisibleContrast)
                                : edgeColor(option));
        painter.setBrush(isFilled ? accent : palette.color(QPalette::Base));
        painter.drawRoundedRect(box, CornerRadius, CornerRadius);
    }
    const QPalette::ColorRole ink = isFilled   ? QPalette::HighlightedText
                                    : isToRead ? QPalette::WindowText
                                               : QPalette::Text;
    painter.setPen(QPen(palette.color(ink), TickWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (isMarked || isToRead)
        paintTick(painter, box, option.state);
    painter.restore();
}

void paintButtonGround(QPainter &painter, const QStyleOption &option, const QColor &color, const QColor &edge)
{
    const bool isHovered = (option.state & QStyle::State_MouseOver) && isEnabled(option);
    const double shift = isPressed(option) ? 0.3 : isHovered ? 0.12 : 0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge);
    painter.setBrush(shifted(color, option.palette.color(QPalette::ButtonText), shift));
    const QRectF rect = outline(option.rect);
    painter.drawRoundedRect(rect, CornerRadius, CornerRadius);
    if (isPressed(option)) { // the shadow of the upper edge
        painter.setPen(mixedColor(color, Qt::black, 0.65));
        painter.drawLine(rect.topLeft() + QPointF(CornerRadius, 1),
                         rect.topRight() + QPointF(-CornerRadius, 1));
    }
    painter.restore();
}

void paintPane(QPainter &painter, const QStyleOption &option)
{
    painter.fillRect(option.rect, paneEdgeColor(option.palette));
    painter.fillRect(option.rect.adjusted(1, 1, -1, -1), option.palette.window());
}

void paintTab(QPainter &painter, const QStyleOptionTab &tab, int overlap)
{
    const QPalette &palette = tab.palette;
    const bool isCurrent = tab.state & QStyle::State_Selected;
    const bool isHovered = tab.state & QStyle::State_MouseOver;
    const Side outer = outerSide(tab);
    const double shade = isCurrent ? 0 : isHovered ? 0.04 : 0.1;
    const QRect rect = isCurrent ? tab.rect : without(tab.rect, opposite(outer), overlap);
    painter.fillRect(rect, paneEdgeColor(palette));
    QRect inside = rect;
    for (const Side side : {Side::Top, Side::Bottom, Side::Left, Side::Right}) {
        if (side != opposite(outer))
            inside = without(inside, side, 1);
    }
    painter.fillRect(inside,
                     mixedColor(palette.color(QPalette::Window), palette.color(QPalette::WindowText), shade));
    if (!isCurrent)
        return;
    const QRegion mark = QRegion(rect) - without(rect, outer, TabMark);
    for (const QRect &part : mark)
        painter.fillRect(part, markColor(palette));
}

void paintRing(QPainter &painter, const QPalette &palette, const QRectF &rect)
{
    constexpr double Half = FocusRingWidth / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(markColor(palette), FocusRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(Half, Half, -Half, -Half), CornerRadius + 1, CornerRadius + 1);
    painter.restore();
}

} // namespace paravue
