#include "ui/base/SliderLook.h"

#include "controls/ControlStyle.h"
#include "controls/ReadablePalette.h"
#include "ui/base/WindowStyle.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyleOptionSlider>

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int HandleSize = 14;
constexpr int GrooveWidth = 4;

/// The parts of a slider along its length, from the start of its rectangle.
struct Parts {
    explicit Parts(const QStyleOptionSlider &option)
        : isHorizontal(option.orientation == Qt::Horizontal),
          length(isHorizontal ? option.rect.width() : option.rect.height()),
          handleLength(std::min(HandleSize, length)),
          handle(QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                 length - handleLength, option.upsideDown))
    {
    }

    QRect part(const QRect &rect, int begin, int end) const
    {
        return isHorizontal ? QRect(rect.left() + begin, rect.top(), end - begin, rect.height())
                            : QRect(rect.left(), rect.top() + begin, rect.width(), end - begin);
    }

    bool isHorizontal;
    int length;
    int handleLength;
    int handle; ///< where it begins
};

class SliderStyle : public QProxyStyle
{
public:
    SliderStyle() : QProxyStyle(QApplication::style()->name()) { setParent(qApp); }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override
    {
        const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
        if (control != CC_ScrollBar || !slider)
            return QProxyStyle::subControlRect(control, option, part, widget);
        return visualRect(slider->direction, slider->rect, partRect(*slider, part));
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
        if (control == CC_ScrollBar && slider)
            drawSlider(*slider, *painter, widget);
        else
            QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

private:
    static QRect partRect(const QStyleOptionSlider &option, SubControl part)
    {
        const Parts parts(option);
        const int behind = parts.handle + parts.handleLength;
        switch (part) {
        case SC_ScrollBarGroove:
            return option.rect;
        case SC_ScrollBarSlider:
            return parts.part(option.rect, parts.handle, behind);
        case SC_ScrollBarSubPage:
            return parts.part(option.rect, 0, parts.handle);
        case SC_ScrollBarAddPage:
            return parts.part(option.rect, behind, parts.length);
        default:
            return {}; // there are no arrows
        }
    }

    void drawSlider(const QStyleOptionSlider &option, QPainter &painter, const QWidget *widget) const
    {
        const bool isEnabled = option.state & State_Enabled;
        const bool isHorizontal = option.orientation == Qt::Horizontal;
        const QPalette &palette = option.palette;
        const QRectF handle = subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider, widget);
        const QPointF centre = handle.center();
        const double radius = HandleSize / 2.0 - 1;
        const double half = GrooveWidth / 2.0;
        QRectF groove = option.rect;
        groove = isHorizontal
                     ? QRectF(groove.left() + half, centre.y() - half, groove.width() - 2 * half, 2 * half)
                     : QRectF(centre.x() - half, groove.top() + half, 2 * half, groove.height() - 2 * half);
        QRectF before = groove; // the part up to the handle, which shows how large the value is
        if (isHorizontal)
            option.direction == Qt::RightToLeft ? before.setLeft(centre.x()) : before.setRight(centre.x());
        else
            before.setBottom(centre.y());
        const bool isValue = isShownAsValue(widget);
        const QColor mark = isEnabled || isValue ? markColor(palette) : fieldEdgeColor(palette);

        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(borderColor(palette));
        painter.drawRoundedRect(groove, half, half);
        painter.setBrush(mark);
        painter.drawRoundedRect(before, half, half);
        const bool isHeld = option.state & State_Sunken;
        painter.setPen(QPen(mark, 1.5));
        painter.setBrush(isHeld ? mark : palette.color(isEnabled ? QPalette::Base : QPalette::Window));
        if (!isValue) // a value to read has nothing to hold
            painter.drawEllipse(centre, radius, radius);
        painter.restore();
    }
};

/// One for all, made for the style that the application has at its first slider.
QStyle *sliderStyle()
{
    static QPointer<SliderStyle> style;
    if (!style)
        style = new SliderStyle; // a child of the application
    return style;
}

} // namespace

void showAsSlider(QScrollBar &bar)
{
    bar.setStyle(sliderStyle());
    bar.setAttribute(Qt::WA_Hover);
}

} // namespace paravue
