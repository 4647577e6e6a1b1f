#include "controls/OrbProgressPie.h"

#include "controls/ControlStyle.h"
#include "controls/ReadableColors.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace
{

constexpr int MinimumDiameter = 16;
constexpr int SmallestReadableText = 8;
// Of the diameter, so that "100%" stays well inside the pie.
constexpr double TextHeightShare = 0.24;

QString percentText(int percent)
{
    return OrbProgressPie::tr("%1%").arg(percent);
}

QRectF pieRect(const QSize &size)
{
    const double diameter = std::min(size.width(), size.height()) - 1.0;
    return QRectF((size.width() - diameter) / 2, (size.height() - diameter) / 2, diameter, diameter);
}

/// The part of the pie that \a percent fills, clockwise from the top.
QPainterPath filledPart(const QRectF &rect, int percent)
{
    QPainterPath path;
    if (percent > 0) {
        path.moveTo(rect.center());
        path.arcTo(rect, 90, -3.6 * percent);
        path.closeSubpath();
    }
    return path;
}

/// A line across the rim at \a percent, clear of the digits in the middle.
QLineF limitMark(const QRectF &rect, int percent)
{
    QLineF line = QLineF::fromPolar(rect.width() / 2, 90 - 3.6 * percent).translated(rect.center());
    line.setP1(line.pointAt(0.7));
    return line;
}

struct PieColors {
    QColor rest;
    QColor filled;
    QColor outline;
    QColor text;
};

/// The border of the filled part runs through the digits, so both parts are made to suit one text colour.
PieColors pieColors(const QPalette &palette, bool enabled)
{
    const QColor background = palette.color(QPalette::Window);
    const QColor foreground = palette.color(QPalette::WindowText);
    PieColors colors;
    colors.rest = paravue::mixedColor(background, foreground, 0.12);
    colors.text = paravue::readableTextOn(colors.rest);
    const QColor farFromText = colors.text == Qt::black ? Qt::white : Qt::black;
    colors.filled = palette.color(QPalette::Highlight);
    for (int step = 0; step < 10; ++step) {
        if (paravue::contrastRatio(colors.filled, colors.text) >= paravue::ReadableContrast) {
            break;
        }
        colors.filled = paravue::mixedColor(colors.filled, farFromText, 0.1);
    }
    colors.outline = paravue::mixedColor(background, foreground, 0.4);
    if (!enabled) {
        // Not every palette dims the highlight of its disabled group.
        colors.filled = paravue::mixedColor(colors.rest, colors.filled, 0.4);
        colors.text = paravue::mixedColor(colors.rest, colors.text, 0.6);
    }
    return colors;
}

QFont fittingFont(QFont font, double diameter)
{
    font.setPixelSize(std::max(1, qRound(diameter * TextHeightShare)));
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace

OrbProgressPie::OrbProgressPie(QWidget *parent) : QWidget(parent) {}

int OrbProgressPie::progress() const
{
    return m_progress;
}

int OrbProgressPie::limit() const
{
    return m_limit;
}

QSize OrbProgressPie::sizeHint() const
{
    // The percentage then has the size of the text around the pie.
    const int diameter = std::max(MinimumDiameter, qRound(fontInfo().pixelSize() / TextHeightShare));
    return {diameter, diameter};
}

QSize OrbProgressPie::minimumSizeHint() const
{
    return {MinimumDiameter, MinimumDiameter};
}

void OrbProgressPie::setProgress(int percent)
{
    const int clamped = std::clamp(percent, 0, 100);
    if (clamped == m_progress) {
        return;
    }
    m_progress = clamped;
    update();
    QAccessibleValueChangeEvent event(this, m_progress);
    QAccessible::updateAccessibility(&event);
}

void OrbProgressPie::setLimit(int percent)
{
    const int clamped = std::clamp(percent, 0, 100);
    if (clamped == m_limit)
        return;
    m_limit = clamped;
    update();
}

void OrbProgressPie::paintEvent(QPaintEvent *)
{
    const QRectF rect = pieRect(size());
    if (rect.width() < 1) {
        return;
    }
    const PieColors colors = pieColors(palette(), isEnabled() || paravue::isShownAsValue(this));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.rest);
    painter.drawEllipse(rect);
    painter.setBrush(colors.filled);
    painter.drawPath(filledPart(rect, m_progress));
    painter.setPen(colors.outline);
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(rect);
    if (m_limit > 0 && m_limit < 100) {
        painter.setPen(QPen(colors.text, std::max(2.0, rect.width() / 40)));
        painter.drawLine(limitMark(rect, m_limit));
    }

    painter.setFont(fittingFont(font(), rect.width()));
    if (painter.fontInfo().pixelSize() >= SmallestReadableText) {
        painter.setPen(colors.text);
        painter.drawText(rect, Qt::AlignCenter, percentText(m_progress));
    }
}
