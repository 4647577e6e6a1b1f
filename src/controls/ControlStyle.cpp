#include "controls/ControlStyle.h"

#include "controls/DrawnIcon.h"
#include "controls/ReadableColors.h"
#include "controls/ReadablePalette.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOption>
#include <QTabBar>

namespace paravue
{

namespace
{

constexpr double CornerRadius = 3;
constexpr int RingMargin = 3;
constexpr int RingWidth = 2;
constexpr int TabMark = 3;
constexpr double TickWidth = 1.8;
constexpr const char *ValueProperty = "paravueShowsValue";

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

QColor edgeColor(const QStyleOption &option)
{
    const QColor edge = fieldEdgeColor(option.palette);
    return isEnabled(option) ? edge : mixedColor(option.palette.color(QPalette::Window), edge, 0.6);
}

void paintField(QPainter &painter, const QStyleOption &option, const QRect &rect, QPalette::ColorRole ground)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edgeColor(option));
    painter.setBrush(option.palette.brush(ground));
    painter.drawRoundedRect(outline(rect), CornerRadius, CornerRadius);
    painter.restore();
}

/// A line that points down, or up.
void paintArrow(QPainter &painter, const QRect &rect, const QColor &color, bool isUp)
{
    const QPointF centre = QRectF(rect).center();
    const double height = isUp ? -1.5 : 1.5;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF{centre + QPointF(-3, -height), centre + QPointF(0, height), centre + QPointF(3, -height)});
    painter.restore();
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

/// A check box to read is a tick, or a dash.
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

QStyleOptionButton asDefault(const QStyleOptionButton &button, const QPainter &painter)
{
    QStyleOptionButton option = button;
    const QColor text = option.palette.color(QPalette::HighlightedText);
    option.palette.setBrush(QPalette::Button, option.palette.brush(QPalette::Highlight));
    option.palette.setColor(QPalette::ButtonText, text);
    if (!option.icon.isNull())
        option.icon = iconInColor(option.icon, option.iconSize, painter, text);
    return option;
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

/// The current tab is a part of its page, with a mark along its outer side; \a overlap is how far tabs reach
/// into the edge of the page.
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

class ControlStyle : public QProxyStyle
{
public:
    ControlStyle() : QProxyStyle(QApplication::style()->name()) { setParent(qApp); }

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        if (metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin)
            return RingMargin;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        // Otherwise a parent without room around the widget would cut the ring off.
        if (hint == SH_FocusFrame_AboveWidget)
            return 1;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (!drawOwn(element, *option, *painter, widget))
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element == CE_ProgressBarGroove) {
            paintField(*painter, *option, option->rect, QPalette::Base);
        } else if (element == CE_FocusFrame) {
            drawRing(*option, *painter, option->rect, RingWidth / 2.0);
        } else if (element == CE_PushButtonBevel &&
                   button) { // native styles paint it with their own pictures
            drawBevel(*button, *painter, widget);
        } else if (element == CE_PushButton && button && isEnabled(*button) &&
                   (button->features & QStyleOptionButton::DefaultButton)) {
            const QStyleOptionButton marked = asDefault(*button, *painter);
            QProxyStyle::drawControl(element, &marked, painter, widget);
        } else if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
                   tab && element == CE_TabBarTabShape) {
            paintTab(*painter, *tab, pixelMetric(PM_TabBarBaseOverlap, option, widget));
        } else if (element == CE_MenuItem && item) {
            // The rows of a drop-down have the palette of the application's menus.
            QStyleOptionMenuItem readable = *item;
            readable.palette = readablePalette(item->palette);
            QProxyStyle::drawControl(element, &readable, painter, widget);
        } else {
            QProxyStyle::drawControl(element, option, painter, widget);
            if (element == CE_TabBarTabLabel && (option->state & State_HasFocus))
                drawRing(*option, *painter, option->rect, RingMargin);
        }
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        if (const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option))
            drawDropDown(*box, *painter, widget);
        else if (const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option))
            drawSpinBox(*spin, *painter, widget);
        else
            QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

private:
    static bool drawOwn(PrimitiveElement element, const QStyleOption &option, QPainter &painter,
                        const QWidget *widget)
    {
        const bool isList = qobject_cast<const QAbstractItemView *>(widget);
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(&option);
        switch (element) {
        case PE_PanelLineEdit:
            if (!frame || frame->lineWidth <= 0)
                return false; // a part of another control
            if (!isShownAsValue(widget))
                paintField(painter, option, option.rect, QPalette::Base);
            return true;
        case PE_Frame:
            if (!isList && !(widget && widget->windowType() == Qt::Popup))
                return false;
            if (!isShownAsValue(widget)) {
                painter.setPen(edgeColor(option));
                painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
            }
            return true;
        case PE_FrameTabWidget:
            painter.fillRect(option.rect, paneEdgeColor(option.palette));
            painter.fillRect(option.rect.adjusted(1, 1, -1, -1), option.palette.window());
            return true;
        case PE_IndicatorCheckBox:
            paintCheckBox(painter, option, isShownAsValue(widget));
            return true;
        case PE_PanelButtonCommand:
            paintButtonGround(painter, option, option.palette.color(QPalette::Button), edgeColor(option));
            return true;
        case PE_FrameFocusRect:
            return !isList; // the ring shows the focus; in a list the current row is shown, too
        default:
            return false;
        }
    }

    void drawBevel(const QStyleOptionButton &option, QPainter &painter, const QWidget *widget) const
    {
        if (!(option.features & QStyleOptionButton::Flat) || isPressed(option))
            drawOwn(PE_PanelButtonCommand, option, painter, widget);
        if (!(option.features & QStyleOptionButton::HasMenu))
            return;
        const int size = pixelMetric(PM_MenuButtonIndicator, &option, widget);
        const QRect arrow(option.rect.right() - size, option.rect.top(), size, option.rect.height());
        paintArrow(painter, visualRect(option.direction, option.rect, arrow),
                   option.palette.color(QPalette::ButtonText), false);
    }

    static void drawRing(const QStyleOption &option, QPainter &painter, const QRect &rect, double inset)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(markColor(option.palette), RingWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), CornerRadius + 1,
                                CornerRadius + 1);
        painter.restore();
    }

    void drawDropDown(const QStyleOptionComboBox &option, QPainter &painter, const QWidget *widget) const
    {
        if (isShownAsValue(widget))
            return;
        // Styles write the text of a drop-down in the colour of buttons, and that of an editable one as a
        // field.
        const bool isField = option.editable;
        paintField(painter, option, option.rect, isField ? QPalette::Base : QPalette::Button);
        const QRect arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
        const QPalette::ColorRole ink = isField ? QPalette::Text : QPalette::ButtonText;
        paintArrow(painter, arrow, option.palette.color(ink), false);
    }

    void drawSpinBox(const QStyleOptionSpinBox &option, QPainter &painter, const QWidget *widget) const
    {
        if (isShownAsValue(widget))
            return;
        paintField(painter, option, option.rect, QPalette::Base);
        for (const SubControl part : {SC_SpinBoxUp, SC_SpinBoxDown}) {
            const bool isUp = part == SC_SpinBoxUp;
            const auto step = isUp ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled;
            const bool canStep = isEnabled(option) && option.stepEnabled.testFlag(step);
            paintArrow(painter, subControlRect(CC_SpinBox, &option, part, widget),
                       option.palette.color(canStep ? QPalette::Active : QPalette::Disabled, QPalette::Text),
                       isUp);
        }
    }
};

/// Keeps the text of a value as dark as that of a label when the colours of the desktop change.
class ValueColors : public QObject
{
public:
    explicit ValueColors(QWidget &widget) : QObject(&widget), m_widget(widget)
    {
        widget.installEventFilter(this);
        apply();
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange)
            apply();
        return false;
    }

private:
    void apply()
    {
        QPalette palette = m_widget.palette();
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setBrush(QPalette::Disabled, role, palette.brush(QPalette::Active, QPalette::WindowText));
        palette.setBrush(QPalette::Disabled, QPalette::Base,
                         palette.brush(QPalette::Active, QPalette::Window));
        m_widget.setPalette(palette);
    }

    QWidget &m_widget;
};

} // namespace

QStyle *controlStyle()
{
    static QPointer<ControlStyle> style;
    if (!style)
        style = new ControlStyle; // a child of the application
    return style;
}

void showAsValue(QWidget &widget)
{
    if (widget.property(ValueProperty).toBool())
        return;
    widget.setProperty(ValueProperty, true);
    new ValueColors(widget);
}

bool isShownAsValue(const QWidget *widget)
{
    return widget && !widget->isEnabled() && widget->property(ValueProperty).toBool();
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

} // namespace paravue
