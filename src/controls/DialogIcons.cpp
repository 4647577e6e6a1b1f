#include "controls/DialogIcons.h"

#include "controls/DrawnIcon.h"
#include "controls/ReadableColors.h"

#include <QDialogButtonBox>
#include <QPainter>
#include <QPalette>
#include <QPushButton>

#include <algorithm>

namespace paravue
{
namespace
{

// The colours of ok.svg and cancel.svg, and two more of their kind.
constexpr QColor Green(0x2e, 0x94, 0x50);
constexpr QColor Red(0xd9, 0x48, 0x3f);
constexpr QColor Blue(0x2d, 0x6c, 0xb5);
constexpr QColor Amber(0xb0, 0x73, 0x00);

/// Lets \a paint draw in \a color on a square of 16 units. A disabled icon is faint.
QIcon unitIcon(const QColor &color, const std::function<void(QPainter &)> &paint)
{
    return drawnIcon([color, paint](QPainter &painter, const QRectF &rect, QIcon::Mode mode, QIcon::State) {
        const double unit = std::min(rect.width(), rect.height()) / 16;
        painter.translate(rect.center());
        painter.scale(unit, unit);
        painter.translate(-8, -8);
        painter.setOpacity(mode == QIcon::Disabled ? 0.4 : 1);
        painter.setPen(QPen(color, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        paint(painter);
    });
}

void drawCross(QPainter &painter)
{
    painter.drawLine(QPointF(4, 4), QPointF(12, 12));
    painter.drawLine(QPointF(4, 12), QPointF(12, 4));
}

void drawCheckMark(QPainter &painter)
{
    painter.drawPolyline(QPolygonF{QPointF(2.8, 8.6), QPointF(6.4, 12.2), QPointF(13.2, 4.2)});
}

/// A disc with \a sign on it.
QIcon discIcon(const QColor &color, const std::function<void(QPainter &)> &sign)
{
    return unitIcon(color, [color, sign](QPainter &painter) {
        painter.setBrush(color);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QRectF(1, 1, 14, 14));
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(readableTextOn(color), 1.8, Qt::SolidLine, Qt::RoundCap));
        sign(painter);
    });
}

/// An upright stroke and a dot, the dot above or below.
void drawMark(QPainter &painter, bool isDotAbove)
{
    painter.drawLine(QPointF(8, isDotAbove ? 7.5 : 4.5), QPointF(8, isDotAbove ? 11.5 : 8.5));
    painter.drawPoint(QPointF(8, isDotAbove ? 4.5 : 11.5));
}

void drawQuestionMark(QPainter &painter)
{
    painter.drawArc(QRectF(5.8, 4, 4.4, 4.4), -90 * 16, 270 * 16);
    painter.drawLine(QPointF(8, 8.4), QPointF(8, 9));
    painter.drawPoint(QPointF(8, 12));
}

} // namespace

QIcon closeIcon(const QPalette &palette)
{
    return unitIcon(palette.color(QPalette::WindowText), [](QPainter &painter) {
        painter.setPen(QPen(painter.pen().color(), 1.6, Qt::SolidLine, Qt::RoundCap));
        drawCross(painter);
    });
}

QIcon messageIcon(QMessageBox::Icon icon, const QPalette &palette)
{
    const auto tone = [&palette](const QColor &color) {
        return readableVersion(color, palette.color(QPalette::Window), VisibleContrast);
    };
    switch (icon) {
    case QMessageBox::Information:
        return discIcon(tone(Blue), [](QPainter &painter) { drawMark(painter, true); });
    case QMessageBox::Warning:
        return discIcon(tone(Amber), [](QPainter &painter) { drawMark(painter, false); });
    case QMessageBox::Critical:
        return discIcon(tone(Red), [](QPainter &painter) {
            painter.drawLine(QPointF(5.5, 5.5), QPointF(10.5, 10.5));
            painter.drawLine(QPointF(5.5, 10.5), QPointF(10.5, 5.5));
        });
    case QMessageBox::Question:
        return discIcon(tone(Blue), drawQuestionMark);
    case QMessageBox::NoIcon:
        break;
    }
    return {};
}

void setOwnIcons(const QDialogButtonBox &buttons)
{
    const auto tone = [&buttons](const QColor &color) {
        return readableVersion(color, buttons.palette().color(QPalette::Button), VisibleContrast);
    };
    for (QAbstractButton *button : buttons.buttons()) {
        const auto role = buttons.buttonRole(button);
        const bool repeats = buttons.standardButton(button) == QDialogButtonBox::Retry;
        QIcon icon;
        if (role == QDialogButtonBox::RejectRole || role == QDialogButtonBox::NoRole)
            icon = unitIcon(tone(Red), drawCross);
        else if (!repeats && (role == QDialogButtonBox::AcceptRole || role == QDialogButtonBox::YesRole))
            icon = unitIcon(tone(Green), drawCheckMark);
        button->setIcon(icon);
    }
}

} // namespace paravue
